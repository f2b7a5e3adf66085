// SPDX-License-Identifier: MIT
#include "platform/uikit/UIProgressView.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/ControlLook.h"
#include "platform/uikit/FrameDrawnView.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat barHeight = 4;
constexpr CGFloat usualWidth = 200;
constexpr double movingTime = 0.25; // seconds
constexpr double sweepTime = 1.6;   // seconds, to the end and back
constexpr double sweepPart = 0.3;   // of the bar's width

} // namespace

// The piece that wanders while nobody knows how much is done.
class UIProgressView::Sweep : public FrameDrawnView {
public:
    Sweep()
    {
        setUserInteractionEnabled(false);
        accessibility().isHidden = true;
    }
    UIColor color;

protected:
    void drawFrame(CGContext& context, double seconds) override
    {
        auto area = bounds();
        auto width = area.width() * sweepPart;
        auto phase = 2 * std::numbers::pi * std::fmod(seconds, sweepTime) / sweepTime;
        auto part = traitCollection().prefersReducedMotion ? 0.5 : 0.5 - 0.5 * std::cos(phase);
        auto x = area.minX() + (area.width() - width) * part;
        context.fill(
            UIBezierPath::roundedRect(CGRect::make(x, area.minY(), width, area.height()), barHeight / 2),
            color);
    }
};

UIProgressView::UIProgressView()
{
    setUp();
}

UIProgressView::UIProgressView(CGRect frame)
    : UIView(frame)
{
    setUp();
}

void UIProgressView::setUp()
{
    groove_ = std::make_shared<UIView>();
    fill_ = std::make_shared<UIView>();
    sweep_ = std::make_shared<Sweep>();
    sweep_->setHidden(true);
    for (auto& bar : {groove_, fill_}) {
        bar->setCornerRadius(barHeight / 2);
        bar->setUserInteractionEnabled(false);
        addSubview(bar);
    }
    addSubview(sweep_);
    updateColors();
}

void UIProgressView::setProgress(double progress, Animated animated)
{
    assertOnMainThread();
    auto part = std::clamp(progress, 0.0, 1.0);
    if (std::isnan(progress) || std::exchange(progress_, part) == part)
        return;
    if (animated == Animated::yes && !traitCollection().prefersReducedMotion)
        UIView::animate(AnimationTiming::easeInOut(movingTime), [this] { placeParts(); });
    else
        placeParts();
    notifyAccessibility(*this, AccessibilityEvent::valueChanged);
}

void UIProgressView::setIndeterminate(bool isIndeterminate)
{
    assertOnMainThread();
    if (std::exchange(isIndeterminate_, isIndeterminate) == isIndeterminate)
        return;
    fill_->setHidden(isIndeterminate);
    sweep_->setHidden(!isIndeterminate);
    updateColors();
    notifyAccessibility(*this, AccessibilityEvent::stateChanged);
}

void UIProgressView::setProgressTintColor(std::optional<UIColor> color)
{
    fillColor_ = std::move(color);
    updateColors();
}

void UIProgressView::setTrackTintColor(std::optional<UIColor> color)
{
    grooveColor_ = std::move(color);
    updateColors();
}

void UIProgressView::setDimmed(bool isDimmed)
{
    if (std::exchange(isDimmed_, isDimmed) != isDimmed)
        updateColors();
}

void UIProgressView::updateColors()
{
    auto filled = fillColor_.value_or(tintColor());
    if (isDimmed_)
        filled = filled.withAlphaComponent(disabledAlpha);
    fill_->setBackgroundColor(filled);
    groove_->setBackgroundColor(grooveColor_.value_or(grooveColor(*this)));
    sweep_->color = filled;
    sweep_->setRunning(isIndeterminate_ && !traitCollection().prefersReducedMotion);
    sweep_->setNeedsDisplay();
}

void UIProgressView::placeParts()
{
    auto area = bounds();
    auto height = std::min(barHeight, area.height());
    auto bar = CGRect::make(area.minX(), area.midY() - height / 2, area.width(), height);
    groove_->setFrame(bar);
    sweep_->setFrame(bar);
    auto width = bar.width() * progress_;
    bool isRightToLeft =
        effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    fill_->setFrame(CGRect::make(isRightToLeft ? bar.maxX() - width : bar.minX(), bar.minY(), width, height));
}

void UIProgressView::layoutSubviews()
{
    UIView::layoutSubviews();
    placeParts();
}

CGSize UIProgressView::intrinsicContentSize() const
{
    return {noIntrinsicMetric, barHeight};
}

CGSize UIProgressView::sizeThatFits(CGSize available) const
{
    auto width = std::isfinite(available.width) && available.width > 0 ? available.width : usualWidth;
    return {width, barHeight};
}

void UIProgressView::tintColorDidChange()
{
    UIView::tintColorDidChange();
    updateColors();
}

void UIProgressView::didMoveToSuperview()
{
    UIView::didMoveToSuperview();
    updateColors();
}

void UIProgressView::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIView::traitCollectionDidChange(previous);
    updateColors();
    setNeedsLayout(); // direction
}

AccessibilityProperties UIProgressView::accessibilityNow() const
{
    auto properties = UIView::accessibilityNow();
    if (properties.role == AccessibilityRole::none)
        properties.role = AccessibilityRole::progress;
    properties.isReadOnly = true;
    properties.isBusy = isIndeterminate_;
    if (!isIndeterminate_)
        properties.range = AccessibilityRange{0, 1, progress_, 0};
    return properties;
}

} // namespace platform
