// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIGestureRecognizer.h"

namespace platform {

// Two fingers that move apart or together.
class UIPinchGestureRecognizer : public UIGestureRecognizer {
public:
    using UIGestureRecognizer::UIGestureRecognizer;
    double scale() const { return scale_; }       // of their distance, since the start or since it was set
    void setScale(double scale);                  // a positive number
    double velocity() const { return velocity_; } // of the scale, a second

    void touchBegan(UITouch& touch) override;
    void touchMoved(UITouch& touch) override;
    void touchEnded(UITouch& touch) override;
    void reset() override;

private:
    double distance() const;

    double startDistance_ = 0; // that a scale of 1 stands for
    double scale_ = 1;
    double velocity_ = 0;
    Instant lastTime_;
};

} // namespace platform
