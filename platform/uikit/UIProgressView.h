// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"
#include "platform/uikit/UIViewController.h"

#include <memory>
#include <optional>

namespace platform {

// A bar that shows how much of a task is done. Grows from where reading begins. Main thread only.
class UIProgressView : public UIView {
public:
    UIProgressView();
    explicit UIProgressView(CGRect frame);

    double progress() const { return progress_; } // 0...1
    // Not-a-number is ignored. Moves there when animated, unless the user asked for less motion.
    void setProgress(double progress, Animated animated = Animated::no);
    // Nobody knows how much is done: assistive technology is told that it is busy.
    bool isIndeterminate() const { return isIndeterminate_; }
    void setIndeterminate(bool isIndeterminate);
    void setProgressTintColor(std::optional<UIColor> color); // null: the tint colour
    void setTrackTintColor(std::optional<UIColor> color);
    void setDimmed(bool isDimmed); // what it is about is disabled

    void layoutSubviews() override;
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(CGSize available) const override;
    void tintColorDidChange() override;
    void didMoveToSuperview() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    AccessibilityProperties accessibilityNow() const override;

private:
    class Sweep;
    void setUp();
    void updateColors();
    void placeParts();

    std::shared_ptr<UIView> groove_, fill_;
    std::shared_ptr<Sweep> sweep_;
    std::optional<UIColor> fillColor_, grooveColor_;
    double progress_ = 0;
    bool isIndeterminate_ = false;
    bool isDimmed_ = false;
};

} // namespace platform
