// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/FrameDrawnView.h"

#include <optional>

namespace platform {

enum class UIActivityIndicatorViewStyle { medium, large };

// A wheel that turns while a task of unknown length runs. It costs nothing while it stands or is not seen; all wheels on
// screen turn together. Where the user asked for less motion it fades in and out in its place. Main thread only.
class UIActivityIndicatorView : public FrameDrawnView {
public:
    explicit UIActivityIndicatorView(
        UIActivityIndicatorViewStyle style = UIActivityIndicatorViewStyle::medium);
    explicit UIActivityIndicatorView(CGRect frame);

    bool isAnimating() const { return isRunning(); } // the wheel, not the view's place
    void startAnimating();
    void stopAnimating();
    bool hidesWhenStopped() const { return hidesWhenStopped_; } // default true
    void setHidesWhenStopped(bool hides);
    UIActivityIndicatorViewStyle style() const { return style_; }
    void setStyle(UIActivityIndicatorViewStyle style);
    void setColor(std::optional<UIColor> color); // null: secondaryLabel

    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(CGSize available) const override;
    AccessibilityProperties accessibilityNow() const override;

protected:
    void drawFrame(CGContext& context, double seconds) override;

private:
    UIActivityIndicatorViewStyle style_;
    std::optional<UIColor> color_;
    bool hidesWhenStopped_ = true;
};

} // namespace platform
