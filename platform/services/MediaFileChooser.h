// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Token.h"
#include "platform/services/MediaListing.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {

class UIWindow;

// The desktop's own dialog for choosing a file, or what a test puts in its place. Main thread only.
class MediaFileChooser {
public:
    struct Question {
        std::string title;
        MediaKinds kinds;
        std::shared_ptr<UIWindow> window; // to stand over; may be null
    };
    enum class Outcome {
        picked,
        cancelled,   // by the user
        unavailable, // there is no such dialog, or it went away without an answer
        unusable     // what it named is no file here, or not of the kinds asked for
    };
    // With the file when it was picked.
    using Handler = std::function<void(Outcome, std::optional<LibraryFile>)>;

    virtual ~MediaFileChooser() = default;
    // Calls `handler` once, later. Letting go of the token takes the dialog away, and nobody is told.
    [[nodiscard]] virtual Token ask(const Question& question, Handler handler) = 0;
};

} // namespace platform
