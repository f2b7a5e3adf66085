// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSError.h"
#include "platform/foundation/URL.h"

#include <functional>
#include <optional>

namespace platform {

// What the principal class of a preview extension is, besides a view controller.
class QLPreviewingController {
public:
    using CompletionHandler = std::function<void(std::optional<NSError>)>;

    virtual ~QLPreviewingController() = default;

    // Makes the controller's view show the file at `url`, then calls `completionHandler` exactly once: with
    // nothing when the view shows the file, with the error when it cannot be shown. Called once, on the
    // main thread, after the view has been loaded.
    virtual void preparePreviewOfFile(const URL& url, CompletionHandler completionHandler) = 0;
};

} // namespace platform
