// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/NumericControl.h"

#include <memory>
#include <optional>

namespace platform {

class ControlKnob;
class FocusRing;

// A choice of a number in a range by dragging a thumb along a groove. From 0 to 1 at first. A press beside the thumb
// brings the thumb there. Grows from where reading begins. Main thread only.
class UISlider : public NumericControl {
public:
    UISlider();
    explicit UISlider(CGRect frame);
    ~UISlider() override;

    // Null: the tint colour, the groove's own, white.
    void setMinimumTrackTintColor(std::optional<UIColor> color);
    void setMaximumTrackTintColor(std::optional<UIColor> color);
    void setThumbTintColor(std::optional<UIColor> color);
    // Where the thumb's disc is, in own coordinates.
    CGRect thumbRect() const;

    void layoutSubviews() override;
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(CGSize available) const override;
    void tintColorDidChange() override;
    void didMoveToSuperview() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    void touchesBegan(UITouch& touch) override;
    std::shared_ptr<UIView> hitTest(CGPoint point) override;
    AccessibilityProperties accessibilityNow() const override;

protected:
    void placeParts() override;
    void controlStateChanged() override;
    bool beginTracking(UITouch& touch) override;
    bool continueTracking(UITouch& touch) override;
    void endTracking(UITouch& touch) override;
    void cancelTracking() override;

private:
    void setUp();
    void updateColors();
    double valueAt(CGFloat x) const; // of the thumb's middle

    std::shared_ptr<UIView> groove_, fill_;
    std::shared_ptr<ControlKnob> thumb_;
    std::shared_ptr<FocusRing> ring_;
    std::optional<UIColor> fillColor_, grooveColor_;
    CGFloat grip_ = 0;            // from the thumb's middle to where it was taken
    double valueAtBeginning_ = 0; // of the drag
};

} // namespace platform
