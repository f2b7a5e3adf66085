// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIControl.h"
#include "platform/uikit/UIViewController.h"

#include <memory>
#include <optional>

namespace platform {

class ControlKnob;
class FocusRing;

// A choice between on and off. A click, Space or Return turns it over; the knob can be dragged too. Sends valueChanged
// when the user has changed it. Has one size. Main thread only.
class UISwitch : public UIControl {
public:
    UISwitch();
    explicit UISwitch(CGRect frame); // of which only the origin counts
    ~UISwitch() override;

    bool isOn() const { return isOn_; }
    // Tells nobody.
    void setOn(bool isOn, Animated animated = Animated::no);
    void setOnTintColor(std::optional<UIColor> color);    // null: the tint colour
    void setThumbTintColor(std::optional<UIColor> color); // null: white

    void layoutSubviews() override;
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(CGSize available) const override;
    void tintColorDidChange() override;
    void didMoveToSuperview() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    std::shared_ptr<UIView> hitTest(CGPoint point) override;
    bool keepsTouchesFrom(const UIGestureRecognizer& recognizer) const override;
    AccessibilityProperties accessibilityNow() const override;

protected:
    void controlStateChanged() override;
    bool beginTracking(UITouch& touch) override;
    bool continueTracking(UITouch& touch) override;
    void endTracking(UITouch& touch) override;
    void cancelTracking() override;

private:
    class Ground;
    void setUp();
    void updateColors();
    void placeParts();
    void moveParts(Animated animated);
    void turnOver();
    bool isRightToLeft() const;
    CGRect capsule() const;

    std::shared_ptr<Ground> ground_;
    std::shared_ptr<ControlKnob> knob_;
    std::shared_ptr<FocusRing> ring_;
    std::optional<UIColor> onColor_;
    CGFloat beginning_ = 0;    // of a touch, its x
    std::optional<bool> wish_; // where the knob was dragged to
    bool isOn_ = false;
};

} // namespace platform
