// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/Forward.h"

#include <functional>

namespace platform {

// Who wants to present something while something else is presented waits here for its turn. Main thread only.
class PresentationQueue {
public:
    // Runs `action` when the outermost parent of `controller` presents nothing: at once, or in order of the calls
    // when what it presents has gone. An action that presents makes the later ones wait on. It is dropped with the
    // controller.
    static void perform(UIViewController& controller, std::function<void()> action);

private:
    friend class UIPresentationController;
    static void run(UIViewController& presenter);
};

} // namespace platform
