// SPDX-License-Identifier: MIT
#include "platform/uikit/ControlLook.h"

#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"

#include <algorithm>
#include <cmath>
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

namespace {

// The relative luminance of the web's accessibility guidelines, of what is opaque in that appearance.
double luminance(const UIColor& color, const ColorAppearance& appearance)
{
    auto parts = color.components(appearance);
    auto page = appearance.isDark ? 0.0 : 1.0;
    auto linear = [&](double part) {
        part = std::clamp(part * parts.alpha + page * (1 - parts.alpha), 0.0, 1.0);
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(parts.red) + 0.7152 * linear(parts.green) + 0.0722 * linear(parts.blue);
}

} // namespace

UIColor legibleColor(const UIColor& ground)
{
    auto over = [&](bool isDark, bool highContrast) {
        auto light = luminance(ground, {.isDark = isDark, .highContrast = highContrast}) + 0.05;
        auto white = 1.05 / light, black = light / 0.05;
        constexpr double enough = 3, enoughForText = 4.5;
        return white >= (highContrast ? enoughForText : enough) || white >= black ? UIColor::white()
                                                                                  : UIColor::black();
    };
    return UIColor::dynamic(over(false, false), over(true, false), over(false, true), over(true, true));
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
