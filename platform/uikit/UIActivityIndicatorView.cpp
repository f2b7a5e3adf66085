// SPDX-License-Identifier: MIT
#include "platform/uikit/UIActivityIndicatorView.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/uikit/AccessibilityEvents.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace platform {

namespace {

constexpr int spokes = 8;
constexpr double turn = 0.8;   // seconds
constexpr double breath = 2.4; // seconds
constexpr double faintest = 0.18;

double partOf(double seconds, double period)
{
    return std::fmod(seconds, period) / period;
}

} // namespace

UIActivityIndicatorView::UIActivityIndicatorView(UIActivityIndicatorViewStyle style)
    : style_(style)
{
    setUserInteractionEnabled(false);
    setHidden(true);
    sizeToFit();
}

UIActivityIndicatorView::UIActivityIndicatorView(CGRect frame)
    : UIActivityIndicatorView()
{
    setFrame(frame);
}

void UIActivityIndicatorView::startAnimating()
{
    if (isRunning())
        return;
    setRunning(true);
    if (hidesWhenStopped_)
        setHidden(false);
    notifyAccessibility(*this, AccessibilityEvent::stateChanged);
}

void UIActivityIndicatorView::stopAnimating()
{
    if (!isRunning())
        return;
    setRunning(false);
    if (hidesWhenStopped_)
        setHidden(true);
    notifyAccessibility(*this, AccessibilityEvent::stateChanged);
}

void UIActivityIndicatorView::setHidesWhenStopped(bool hides)
{
    assertOnMainThread();
    hidesWhenStopped_ = hides;
    setHidden(hides && !isRunning());
}

void UIActivityIndicatorView::setStyle(UIActivityIndicatorViewStyle style)
{
    assertOnMainThread();
    if (std::exchange(style_, style) == style)
        return;
    invalidateIntrinsicContentSize();
    setNeedsDisplay();
}

void UIActivityIndicatorView::setColor(std::optional<UIColor> color)
{
    assertOnMainThread();
    color_ = std::move(color);
    setNeedsDisplay();
}

CGSize UIActivityIndicatorView::intrinsicContentSize() const
{
    auto side = style_ == UIActivityIndicatorViewStyle::medium ? 20.0 : 37.0;
    return {side, side};
}

CGSize UIActivityIndicatorView::sizeThatFits(CGSize) const
{
    return intrinsicContentSize();
}

void UIActivityIndicatorView::drawFrame(CGContext& context, double seconds)
{
    auto radius = intrinsicContentSize().width / 2;
    StrokeStyle line;
    line.lineWidth = radius * 0.22;
    line.lineCap = LineCap::round;
    auto inner = radius * 0.48;
    auto outer = radius - line.lineWidth / 2;
    auto color = color_.value_or(UIColor::secondaryLabel());
    bool stands = !isRunning() || traitCollection().prefersReducedMotion;
    auto glow = isRunning() ? 0.5 + 0.5 * std::cos(2 * std::numbers::pi * partOf(seconds, breath)) : 0.5;
    auto head = partOf(seconds, turn) * spokes;
    auto middle = bounds().center();
    for (int spoke = 0; spoke < spokes; ++spoke) {
        auto behind = std::fmod(head - spoke + spokes, spokes) / spokes; // 0 at the head, toward 1 around
        auto strength = stands ? faintest + (1 - faintest) * glow : faintest + (1 - faintest) * (1 - behind);
        auto angle = 2 * std::numbers::pi * spoke / spokes - std::numbers::pi / 2;
        UIBezierPath path;
        path.moveTo({middle.x + inner * std::cos(angle), middle.y + inner * std::sin(angle)});
        path.addLine({middle.x + outer * std::cos(angle), middle.y + outer * std::sin(angle)});
        auto alpha = color.components(context.appearance()).alpha;
        context.stroke(path, color.resolved(context.appearance()).withAlphaComponent(alpha * strength), line);
    }
}

AccessibilityProperties UIActivityIndicatorView::accessibilityNow() const
{
    auto properties = FrameDrawnView::accessibilityNow();
    if (properties.role == AccessibilityRole::none)
        properties.role = AccessibilityRole::progress;
    properties.isBusy = isRunning();
    return properties;
}

} // namespace platform
