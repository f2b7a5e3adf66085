// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/DisplayLink.h"
#include "platform/uikit/UIView.h"

namespace platform {

// A view that is painted anew at each frame of the display for as long as it is seen. Being painted is what asks for the
// next frame: while it is hidden, off the screen or in no window nothing runs, and when it comes back the first painting
// starts it again. All such views share the display's clock, so they move together. Main thread only.
class FrameDrawnView : public UIView {
public:
    using UIView::UIView;

    bool isRunning() const { return isRunning_; }
    void setRunning(bool isRunning);
    void draw(CGContext& context, CGRect dirty) final;
    void didMoveToWindow() override;

protected:
    // `seconds` on the display's clock; the time stands while the view does not run.
    virtual void drawFrame(CGContext& context, double seconds) = 0;

private:
    void frame(Instant time);

    Token frames_; // asked for while it is seen
    double seconds_ = 0;
    bool isRunning_ = false;
    bool wasPainted_ = false; // since the last frame
};

} // namespace platform
