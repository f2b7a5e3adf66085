// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIControl.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/ValueRange.h"

namespace platform {

// A control that holds a number in a range: what sliders and steppers have in common but for their looks. Sends
// valueChanged when the user changes the number, never when the program does. The range is a proper one whatever is set:
// an end that is not finite is ignored, one that crosses the other takes it along, and the value stays inside; a value
// that is not a number is ignored. Arrow keys, Page Up and Down, Home and End change it while it has the keyboard.
// Main thread only.
class NumericControl : public UIControl {
public:
    double value() const { return value_; }
    // Moves there when `animated`, unless the user asked for less motion; inside of UIView::animate in any case.
    void setValue(double value, Animated animated = Animated::no);
    double minimumValue() const { return range_.lower; }
    void setMinimumValue(double value);
    double maximumValue() const { return range_.upper; }
    void setMaximumValue(double value);
    const ValueRange& range() const { return range_; }
    void setRange(const ValueRange& range);
    // What the user's values are a whole number of from the minimum; 0: any.
    double stepValue() const { return step_; }
    void setStepValue(double step);
    // Whether valueChanged is sent during a drag too, not only at its end.
    bool isContinuous() const { return isContinuous_; }
    void setContinuous(bool isContinuous) { isContinuous_ = isContinuous; }

    bool pressesBegan(const UIPress& press) override;
    bool keepsTouchesFrom(const UIGestureRecognizer& recognizer) const override;
    AccessibilityProperties accessibilityNow() const override;
    bool accessibilityActivate() override { return false; }
    bool accessibilitySetValue(double value) override;
    bool accessibilityAdjust(int steps) override;

protected:
    NumericControl(const ValueRange& range, double step);

    // The parts go to where the value says, inside of an animation when it is animated.
    virtual void placeParts() { setNeedsDisplay(); }
    // What the user did, to the nearest step. True when it changed the value. Sends valueChanged then, or not, where a drag
    // tells only at its end.
    enum class Tells { now, later };
    bool changeByUser(double value, Tells tells = Tells::now);
    // How far an arrow key goes, and a page key.
    virtual double arrowStep() const;
    virtual double pageStep() const;
    // What becomes of a value that an arrow leads to; a stepper may go round.
    virtual double wished(double value) const { return range_.clamped(value); }
    bool isRightToLeft() const;

private:
    void valueMoved(double before, Animated animated);

    ValueRange range_;
    double step_;
    double value_;
    bool isContinuous_ = true;
};

} // namespace platform
