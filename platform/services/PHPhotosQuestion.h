// SPDX-License-Identifier: MIT
#pragma once

#include "platform/services/PHAuthorizationStatus.h"

#include <functional>

namespace platform {

// Who asks the user whether the program may use the photo library: an alert, or what a test puts in its place. Main
// thread only.
class PHPhotosQuestion {
public:
    using Answer = std::function<void(PHAuthorizationStatus)>;

    virtual ~PHPhotosQuestion() = default;
    // Calls `answer` on the main thread, once, at once or later: authorized, denied, for reading too limited; or
    // notDetermined when nobody could be asked or the user gave no answer, which is not remembered.
    virtual void ask(PHAccessLevel level, Answer answer) = 0;
};

// Asks in front of the window that has the keyboard, with the reason that the program's manifest gives under
// NSPhotoLibraryAddUsageDescription or NSPhotoLibraryUsageDescription. A program without such a window cannot ask.
class PHPhotosAlertQuestion : public PHPhotosQuestion {
public:
    void ask(PHAccessLevel level, Answer answer) override;
};

} // namespace platform
