// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/uikit/UIEvent.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {

// For a process that shows its window on behalf of another one: says where the windows that open from now on stand and
// whose they are, and tells the other what becomes of them. Main thread only, after the application has started; at most
// one at a time.
class WindowGuide {
public:
    struct Wishes {
        // Of the content, in points; none: its own size, where the window system puts it.
        std::optional<CGRect> frame;
        bool takesKeyboard = true;
        // Whose window it belongs to: "x11:HEX". Anything that does not name a window of this window system is ignored.
        std::string parentHandle;
        std::string activationToken; // of who asked for the window, for compositors; empty: none
    };
    struct Handlers {
        // The window is painted and on the screen; once.
        std::function<void()> onShown;
        std::function<void(CGRect frame, bool hasKeyboard)> onPlace;
        // A key before anything in the window hears of it. True when it was used.
        std::function<bool(const UIPress&)> onPress;
    };

    WindowGuide(const Wishes& wishes, Handlers handlers);
    ~WindowGuide();
    WindowGuide(const WindowGuide&) = delete; // its address is with the application
    WindowGuide& operator=(const WindowGuide&) = delete;

private:
    struct Filter;
    std::unique_ptr<Filter> filter_;
};

} // namespace platform
