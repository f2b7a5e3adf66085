// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIColor.h"
#include "platform/uikit/Forward.h"
#include "platform/uikit/UIView.h"

namespace platform {

// How the controls look alike. Main thread only.

// The line around a control that has the keyboard; a subview, since it stands outside of the control.
class FocusRing : public UIView {
public:
    FocusRing(); // hidden
    // Around that rectangle of the superview, whose corners are round.
    void showAround(const CGRect& rect, CGFloat cornerRadius);
    void draw(CGContext& context, CGRect dirty) override;
    void tintColorDidChange() override { setNeedsDisplay(); }

private:
    CGFloat radius_ = 0;
};

inline constexpr double disabledAlpha = 0.4; // of what is disabled, over its ground

bool isHighContrast(const UIView& view);
// What a control's empty part is made of: the groove of a slider, the ground of a switch that is off.
UIColor grooveColor(const UIView& view);

// What is written on a ground of that colour, in each appearance: white, as long as it has the contrast of 3 to 1 that large
// text and controls need at least, else the better one of black and white. What shows through the ground counts as the page.
UIColor legibleColor(const UIColor& ground);

// The white disc that is dragged: the thumb of a slider, the knob of a switch. Its view has room for the shadow around.
class ControlKnob : public UIView {
public:
    ControlKnob();
    static constexpr CGFloat shadowReach = 5;
    // Where the view goes for a disc of that size.
    static CGRect frameAround(const CGRect& disc) { return disc.insetBy(-shadowReach, -shadowReach); }
    void setColor(std::optional<UIColor> color); // null: white
    void setPressed(bool isPressed);
    void setDimmed(bool isDimmed);
    void draw(CGContext& context, CGRect dirty) override;

private:
    std::optional<UIColor> color_;
    bool isPressed_ = false;
    bool isDimmed_ = false;
};

} // namespace platform
