// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/uikit/UIView.h"

#include <memory>
#include <string>

namespace platform {

// A UIWindow's place on the desktop: a raster surface, and what the window system says. Owned by the UIWindow, which
// drops it before it lets it go. Main thread only.
class WindowBackend {
public:
    // Makes the window system's window, of the UIWindow's size, without showing it.
    static std::unique_ptr<WindowBackend> make(UIWindow& window);
    static CGRect availableScreenBounds();

    virtual ~WindowBackend() = default;

    // Paints the first frame and shows it.
    virtual void open() = 0;
    // The desktop's window goes, at the latest when the event that is being handled has been. Nothing is called back from
    // here on.
    virtual void drop() = 0;
    virtual void raise() = 0;
    virtual bool isExposed() const = 0; // it is mapped, and neither minimised nor on another workspace
    virtual void setTitle(const std::string& title) = 0;
    virtual void setMinimumSize(CGSize size) = 0;
    virtual void setPointer(UIView::Cursor cursor) = 0;
    virtual void textInputDidChange() = 0; // another first responder, or its caret has moved
    virtual double scale() const = 0;      // pixels a point
};

} // namespace platform
