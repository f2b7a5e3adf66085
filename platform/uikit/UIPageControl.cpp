// SPDX-License-Identifier: MIT
#include "platform/uikit/UIPageControl.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/uikit/ControlLook.h"
#include "platform/uikit/UIEvent.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat dot = 7;
constexpr CGFloat pitchOfDots = 16;
constexpr CGFloat usualHeight = 26, capsuleHeight = 22;
constexpr CGFloat capsuleMargin = 6; // beside the outer dots' share
constexpr int edgeDots = 1;          // that are small where more follow

} // namespace

UIPageControl::UIPageControl()
    : NumericControl({0, 0}, 1)
    , ring_(std::make_shared<FocusRing>())
{
    addSubview(ring_);
}

UIPageControl::UIPageControl(CGRect frame)
    : UIPageControl()
{
    setFrame(frame);
}

UIPageControl::~UIPageControl() = default;

void UIPageControl::setNumberOfPages(int pages)
{
    assertOnMainThread();
    pages_ = std::max(pages, 0);
    setRange({0, std::max(pages_ - 1.0, 0.0)});
    invalidateIntrinsicContentSize();
    setNeedsLayout();
    setNeedsDisplay();
}

int UIPageControl::currentPage() const
{
    return static_cast<int>(value());
}

void UIPageControl::setCurrentPage(int page)
{
    setValue(page);
}

void UIPageControl::setHidesForSinglePage(bool hides)
{
    assertOnMainThread();
    hidesForSinglePage_ = hides;
    setNeedsDisplay();
}

void UIPageControl::setPageIndicatorTintColor(std::optional<UIColor> color)
{
    color_ = std::move(color);
    setNeedsDisplay();
}

void UIPageControl::setCurrentPageIndicatorTintColor(std::optional<UIColor> color)
{
    currentColor_ = std::move(color);
    setNeedsDisplay();
}

void UIPageControl::setBackgroundStyle(UIPageControlBackgroundStyle style)
{
    assertOnMainThread();
    if (std::exchange(backgroundStyle_, style) == style)
        return;
    invalidateIntrinsicContentSize();
    setNeedsLayout();
    setNeedsDisplay();
}

void UIPageControl::setHovered(bool isHovered)
{
    if (std::exchange(isHovered_, isHovered) != isHovered)
        setNeedsDisplay();
}

bool UIPageControl::hasCapsule() const
{
    return backgroundStyle_ == UIPageControlBackgroundStyle::prominent
        || (backgroundStyle_ == UIPageControlBackgroundStyle::automatic && isEnabled()
            && (isHovered_ || isFirstResponder()));
}

CGRect UIPageControl::capsule() const
{
    auto width = std::min(row().count * pitchOfDots + 2 * capsuleMargin, bounds().width());
    auto height = std::min(capsuleHeight, bounds().height());
    return CGRect::make(bounds().midX() - width / 2, bounds().midY() - height / 2, width, height);
}

// --- Where the dots are --------------------------------------------------------------------------

UIPageControl::Row UIPageControl::row() const
{
    auto area = bounds();
    Row row;
    auto room = static_cast<int>(std::clamp((area.width() - margins()) / pitchOfDots, 1.0, 1e6));
    row.count = std::min(pages_, room);
    row.first = std::clamp(currentPage() - row.count / 2, 0, std::max(pages_ - row.count, 0));
    row.pitch = isRightToLeft() ? -pitchOfDots : pitchOfDots;
    row.start = area.midX() - row.pitch * (row.count - 1) / 2;
    return row;
}

void UIPageControl::goTo(CGFloat x)
{
    auto place = row();
    if (place.count == 0)
        return;
    auto index = std::clamp(std::round((x - place.start) / place.pitch), 0.0, place.count - 1.0);
    changeByUser(place.first + index);
}

bool UIPageControl::beginTracking(UITouch& touch)
{
    goTo(touch.location(*this).x);
    return isEnabled(); // an action may have switched it off
}

bool UIPageControl::continueTracking(UITouch& touch)
{
    goTo(touch.location(*this).x);
    return isEnabled();
}

// --- Look ----------------------------------------------------------------------------------------

CGSize UIPageControl::sizeForNumberOfPages(int pages) const
{
    return {std::max(pages, 0) * pitchOfDots, usualHeight};
}

void UIPageControl::draw(CGContext& context, CGRect)
{
    if (hidesForSinglePage_ && pages_ <= 1)
        return;
    auto place = row();
    auto present = currentColor_.value_or(UIColor::label());
    auto other =
        color_.value_or(isHighContrast(*this) ? UIColor::secondaryLabel() : UIColor::tertiaryLabel());
    if (hasCapsule()) {
        auto shape = UIBezierPath::roundedRect(capsule(), capsule().height() / 2);
        auto ground = UIColor::dynamic(UIColor::gray(1, 0.78), UIColor::gray(0.16, 0.78), UIColor::white(),
                                       UIColor::black());
        context.fill(shape, ground);
    }
    for (int index = 0; index < place.count; ++index) {
        auto page = place.first + index;
        bool isAtEdge = (index < edgeDots && place.first > 0)
            || (index >= place.count - edgeDots && place.first + place.count < pages_);
        auto size = isAtEdge ? dot * 0.6 : dot;
        auto middle = place.start + place.pitch * index;
        auto color = page == currentPage() ? present : other;
        if (!isEnabled())
            color = UIColor::quaternaryLabel();
        context.fill(
            UIBezierPath::oval(CGRect::make(middle - size / 2, bounds().midY() - size / 2, size, size)),
            color);
    }
}

void UIPageControl::layoutSubviews()
{
    NumericControl::layoutSubviews();
    ring_->showAround(capsule(), capsule().height() / 2);
}

void UIPageControl::controlStateChanged()
{
    ring_->setHidden(!isFirstResponder());
    setNeedsDisplay();
}

CGSize UIPageControl::intrinsicContentSize() const
{
    auto size = sizeForNumberOfPages(pages_);
    return {size.width + margins(), size.height};
}

CGFloat UIPageControl::margins() const
{
    return backgroundStyle_ == UIPageControlBackgroundStyle::prominent ? 2 * capsuleMargin : 0;
}

CGSize UIPageControl::sizeThatFits(CGSize available) const
{
    auto size = intrinsicContentSize();
    return {available.width > 0 ? std::min(size.width, available.width) : size.width, size.height};
}

AccessibilityProperties UIPageControl::accessibilityNow() const
{
    auto properties = NumericControl::accessibilityNow();
    if (properties.role == AccessibilityRole::none)
        properties.role = AccessibilityRole::spinButton;
    // People count from one.
    properties.range = AccessibilityRange{std::min(pages_, 1) * 1.0, pages_ * 1.0,
                                          std::min(currentPage() + 1.0, pages_ * 1.0), 1};
    return properties;
}

} // namespace platform
