// SPDX-License-Identifier: MIT
#include "platform/uikit/ControlLook.h"

#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat ringWidth = 2;
constexpr CGFloat ringDistance = 1; // between the control and the ring
constexpr double ringAlpha = 0.7;

} // namespace

FocusRing::FocusRing()
{
    setUserInteractionEnabled(false);
    accessibility().isHidden = true;
    setHidden(true);
}

void FocusRing::showAround(const CGRect& rect, CGFloat cornerRadius)
{
    radius_ = cornerRadius + ringDistance + ringWidth;
    auto reach = ringDistance + ringWidth;
    setFrame(rect.insetBy(-reach, -reach));
    setNeedsDisplay();
}

void FocusRing::draw(CGContext& context, CGRect)
{
    auto line = bounds().insetBy(ringWidth / 2, ringWidth / 2);
    if (!line.isEmpty())
        context.stroke(UIBezierPath::roundedRect(line, radius_ - ringWidth / 2),
                       tintColor().withAlphaComponent(ringAlpha), {.lineWidth = ringWidth});
}

bool isHighContrast(const UIView& view)
{
    return view.traitCollection().accessibilityContrast == UIAccessibilityContrast::high;
}

UIColor grooveColor(const UIView& view)
{
    return isHighContrast(view) ? UIColor::systemGray() : UIColor::systemFill();
}

ControlKnob::ControlKnob()
{
    setUserInteractionEnabled(false);
    accessibility().isHidden = true;
}

void ControlKnob::setColor(std::optional<UIColor> color)
{
    color_ = std::move(color);
    setNeedsDisplay();
}

void ControlKnob::setPressed(bool isPressed)
{
    if (std::exchange(isPressed_, isPressed) != isPressed)
        setNeedsDisplay();
}

void ControlKnob::setDimmed(bool isDimmed)
{
    if (std::exchange(isDimmed_, isDimmed) != isDimmed)
        setNeedsDisplay();
}

void ControlKnob::draw(CGContext& context, CGRect)
{
    auto disc = bounds().insetBy(shadowReach, shadowReach);
    if (disc.isEmpty())
        return;
    auto radius = std::min(disc.width(), disc.height()) / 2;
    if (!isDimmed_) {
        // A soft shadow from above; it ends where the view does.
        constexpr CGFloat drop = 1;
        const GradientStop shade[] = {{(radius - 3) / (radius + shadowReach - drop), UIColor::gray(0, 0.28)},
                                      {radius / (radius + shadowReach - drop), UIColor::gray(0, 0.14)},
                                      {1, UIColor::gray(0, 0)}};
        context.drawRadialGradient(shade, {disc.midX(), disc.midY() + drop}, 0, radius + shadowReach - drop);
    }
    auto shape = UIBezierPath::roundedRect(disc, radius);
    auto ground = color_.value_or(UIColor::dynamic(UIColor::white(), UIColor::gray(0.96)));
    if (isDimmed_)
        ground = UIColor::dynamic(UIColor::gray(0.98), UIColor::gray(0.55));
    context.fill(shape, isPressed_ ? ground.blended(UIColor::black(), 0.07) : ground);
    auto line = isHighContrast(*this) ? UIColor::label() : UIColor::gray(0, isDimmed_ ? 0.12 : 0.08);
    auto width = isHighContrast(*this) ? 1.5 : 0.5;
    context.stroke(UIBezierPath::roundedRect(disc.insetBy(width / 2, width / 2), radius), line,
                   {.lineWidth = width});
}

} // namespace platform
