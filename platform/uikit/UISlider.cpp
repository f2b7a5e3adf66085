// SPDX-License-Identifier: MIT
#include "platform/uikit/UISlider.h"

#include "platform/uikit/ControlLook.h"
#include "platform/uikit/UIEvent.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat thumbDiameter = 22;
constexpr CGFloat grooveHeight = 4;
constexpr CGFloat usualWidth = 200, usualHeight = 30;

} // namespace

UISlider::UISlider()
    : NumericControl({0, 1}, 0)
{
    setUp();
}

UISlider::UISlider(CGRect frame)
    : UISlider()
{
    setFrame(frame);
}

UISlider::~UISlider() = default;

void UISlider::setUp()
{
    groove_ = std::make_shared<UIView>();
    fill_ = std::make_shared<UIView>();
    thumb_ = std::make_shared<ControlKnob>();
    ring_ = std::make_shared<FocusRing>();
    for (auto& bar : {groove_, fill_}) {
        bar->setCornerRadius(grooveHeight / 2);
        bar->setUserInteractionEnabled(false);
    }
    addSubview(groove_);
    addSubview(fill_);
    addSubview(thumb_);
    addSubview(ring_);
    updateColors();
}

// --- Look ----------------------------------------------------------------------------------------

void UISlider::setMinimumTrackTintColor(std::optional<UIColor> color)
{
    fillColor_ = std::move(color);
    updateColors();
}

void UISlider::setMaximumTrackTintColor(std::optional<UIColor> color)
{
    grooveColor_ = std::move(color);
    updateColors();
}

void UISlider::setThumbTintColor(std::optional<UIColor> color)
{
    thumb_->setColor(std::move(color));
}

void UISlider::updateColors()
{
    auto filled = fillColor_.value_or(tintColor());
    fill_->setBackgroundColor(isEnabled() ? filled : filled.withAlphaComponent(disabledAlpha));
    groove_->setBackgroundColor(grooveColor_.value_or(grooveColor(*this)));
    thumb_->setPressed(isHighlighted());
    thumb_->setDimmed(!isEnabled());
    ring_->setHidden(!isFirstResponder());
}

void UISlider::controlStateChanged()
{
    updateColors();
}

void UISlider::tintColorDidChange()
{
    NumericControl::tintColorDidChange();
    updateColors();
}

void UISlider::didMoveToSuperview()
{
    NumericControl::didMoveToSuperview();
    updateColors();
}

void UISlider::traitCollectionDidChange(const UITraitCollection& previous)
{
    NumericControl::traitCollectionDidChange(previous);
    updateColors();
    setNeedsLayout(); // direction
}

CGRect UISlider::thumbRect() const
{
    auto area = bounds();
    auto diameter = std::min({thumbDiameter, area.width(), area.height()});
    auto way = area.width() - diameter;
    auto part = range().fractionOf(value());
    auto x = area.minX() + way * (isRightToLeft() ? 1 - part : part);
    return CGRect::make(x, area.midY() - diameter / 2, diameter, diameter);
}

void UISlider::placeParts()
{
    auto area = bounds();
    auto disc = thumbRect();
    auto groove = CGRect::make(area.minX(), area.midY() - grooveHeight / 2, area.width(), grooveHeight);
    groove_->setFrame(groove);
    auto start = isRightToLeft() ? disc.midX() : area.minX();
    auto end = isRightToLeft() ? area.maxX() : disc.midX();
    fill_->setFrame(CGRect::make(start, groove.minY(), end - start, grooveHeight));
    thumb_->setFrame(ControlKnob::frameAround(disc));
    ring_->showAround(disc, disc.width() / 2);
}

void UISlider::layoutSubviews()
{
    NumericControl::layoutSubviews();
    placeParts();
}

CGSize UISlider::intrinsicContentSize() const
{
    return {noIntrinsicMetric, usualHeight};
}

CGSize UISlider::sizeThatFits(CGSize available) const
{
    auto width = std::isfinite(available.width) && available.width > 0 ? available.width : usualWidth;
    return {width, usualHeight};
}

// --- Dragging ------------------------------------------------------------------------------------

std::shared_ptr<UIView> UISlider::hitTest(CGPoint point)
{
    auto hit = NumericControl::hitTest(point);
    return hit ? std::static_pointer_cast<UIView>(weak_from_this().lock()) : nullptr;
}

double UISlider::valueAt(CGFloat x) const
{
    auto disc = thumbRect();
    auto way = bounds().width() - disc.width();
    if (!(way > 0))
        return value();
    auto part = (x - bounds().minX() - disc.width() / 2) / way;
    return range().valueAt(isRightToLeft() ? 1 - part : part);
}

bool UISlider::beginTracking(UITouch& touch)
{
    valueAtBeginning_ = value();
    auto place = touch.location(*this);
    auto disc = thumbRect();
    bool isOnThumb = std::abs(place.x - disc.midX()) <= disc.width() / 2;
    grip_ = isOnThumb ? place.x - disc.midX() : 0;
    return true;
}

void UISlider::touchesBegan(UITouch& touch)
{
    bool wasTracking = isTracking();
    NumericControl::touchesBegan(touch);
    if (isTracking() && !wasTracking && grip_ == 0) // after touchDown, with which the drag begins
        changeByUser(valueAt(touch.location(*this).x), isContinuous() ? Tells::now : Tells::later);
}

bool UISlider::continueTracking(UITouch& touch)
{
    changeByUser(valueAt(touch.location(*this).x - grip_), isContinuous() ? Tells::now : Tells::later);
    return isEnabled(); // an action may have switched it off
}

void UISlider::endTracking(UITouch&)
{
    if (!isContinuous() && value() != valueAtBeginning_)
        sendActions({UIControlEvents::valueChanged});
}

void UISlider::cancelTracking()
{
    if (!isContinuous() && value() != valueAtBeginning_)
        setValue(valueAtBeginning_, Animated::yes); // nobody heard of the other
}

AccessibilityProperties UISlider::accessibilityNow() const
{
    auto properties = NumericControl::accessibilityNow();
    if (properties.role == AccessibilityRole::none)
        properties.role = AccessibilityRole::slider;
    return properties;
}

} // namespace platform
