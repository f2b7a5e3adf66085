// SPDX-License-Identifier: MIT
#include "platform/uikit/UISegmentedControl.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/ControlLook.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UILabel.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat usualHeight = 32;
constexpr CGFloat cornerRadiusOfGround = 8;
constexpr CGFloat pillInset = 2;
constexpr CGFloat sideInset = 12;  // of a title
constexpr double movingTime = 0.2; // seconds
constexpr double pressedAlpha = 0.45;

} // namespace

class UISegmentedControl::Segment : public UILabel {
public:
    explicit Segment(UISegmentedControl& owner)
        : owner_(owner)
    {
        setUserInteractionEnabled(false);
        setTextAlignment(TextAlignment::center);
        setPreferredFont(FontTextStyle::subheadline);
    }
    bool isOn = true;

    AccessibilityProperties accessibilityNow() const override
    {
        auto properties = UILabel::accessibilityNow();
        properties.role = AccessibilityRole::radioButton;
        properties.isEnabled = isOn && owner_.isEnabled();
        properties.isSelected = index() == owner_.selected_;
        return properties;
    }
    bool accessibilityActivate() override
    {
        if (!isOn || !owner_.isEnabled())
            return false;
        owner_.select(index());
        return true;
    }

private:
    int index() const
    {
        auto found = std::ranges::find(owner_.segments_, this, [](auto& each) { return each.get(); });
        return found == owner_.segments_.end() ? noSegment
                                               : static_cast<int>(found - owner_.segments_.begin());
    }
    UISegmentedControl& owner_; // a segment that somebody keeps is no part of the tree, which is what asks it
};

// The ground of the segment that is chosen.
class UISegmentedControl::Pill : public UIView {
public:
    Pill()
    {
        setUserInteractionEnabled(false);
        accessibility().isHidden = true;
    }
    std::optional<UIColor> color;
    bool isDimmed = false;

    void draw(CGContext& context, CGRect) override
    {
        auto area = bounds().insetBy(shadowReach, shadowReach);
        if (area.isEmpty())
            return;
        auto radius = cornerRadiusOfGround - pillInset;
        for (int step = 0; step < 3 && !isDimmed; ++step) {
            auto reach = 2.0 - step;
            context.fill(
                UIBezierPath::roundedRect(area.insetBy(-reach, -reach).offsetBy(0, 1), radius + reach),
                UIColor::gray(0, 0.035));
        }
        auto ground = color.value_or(UIColor::dynamic(UIColor::white(), UIColor::gray(0.39)));
        auto shape = UIBezierPath::roundedRect(area, radius);
        context.fill(shape, isDimmed ? ground.withAlphaComponent(disabledAlpha) : ground);
        if (isHighContrast(*this))
            context.stroke(shape, UIColor::label(), {.lineWidth = 1.5});
    }
    static constexpr CGFloat shadowReach = 4;
};

UISegmentedControl::UISegmentedControl()
    : pill_(std::make_shared<Pill>())
    , ring_(std::make_shared<FocusRing>())
{
    pill_->setHidden(true);
    addSubview(pill_);
    addSubview(ring_);
}

UISegmentedControl::UISegmentedControl(const std::vector<std::string>& titles)
    : UISegmentedControl()
{
    setTitles(titles);
}

UISegmentedControl::~UISegmentedControl()
{
    for (auto& segment : segments_)
        segment->removeFromSuperview();
}

// --- Segments ------------------------------------------------------------------------------------

void UISegmentedControl::setTitles(const std::vector<std::string>& titles)
{
    assertOnMainThread();
    while (segments_.size() > titles.size())
        removeSegment(segments_.size() - 1);
    for (std::size_t index = 0; index < titles.size(); ++index) {
        if (index >= segments_.size())
            insertSegment(titles[index], index);
        else if (segments_[index]->text() != titles[index]) {
            segments_[index]->setText(titles[index]);
            segmentsChanged();
        }
    }
}

void UISegmentedControl::insertSegment(std::string title, std::size_t index)
{
    assertOnMainThread();
    auto place = std::min(index, segments_.size());
    auto segment = std::make_shared<Segment>(*this);
    segment->setText(std::move(title));
    insertSubviewBelow(segment, *ring_);
    segments_.insert(segments_.begin() + static_cast<std::ptrdiff_t>(place), std::move(segment));
    if (selected_ >= static_cast<int>(place))
        ++selected_;
    segmentsChanged();
}

void UISegmentedControl::removeSegment(std::size_t index)
{
    assertOnMainThread();
    if (index >= segments_.size())
        return;
    segments_[index]->removeFromSuperview();
    segments_.erase(segments_.begin() + static_cast<std::ptrdiff_t>(index));
    auto removed = static_cast<int>(index);
    if (selected_ == removed)
        selected_ = noSegment;
    else if (selected_ > removed)
        --selected_;
    pressed_ = noSegment;
    segmentsChanged();
}

void UISegmentedControl::removeAllSegments()
{
    while (!segments_.empty())
        removeSegment(segments_.size() - 1);
}

std::string UISegmentedControl::titleForSegment(std::size_t index) const
{
    return index < segments_.size() ? segments_[index]->text() : std::string();
}

bool UISegmentedControl::isEnabledForSegment(std::size_t index) const
{
    return index < segments_.size() && segments_[index]->isOn;
}

void UISegmentedControl::setEnabledForSegment(std::size_t index, bool isEnabled)
{
    assertOnMainThread();
    if (index >= segments_.size())
        return;
    segments_[index]->isOn = isEnabled;
    updateColors();
}

void UISegmentedControl::segmentsChanged()
{
    updateColors();
    setNeedsLayout();
    setNeedsDisplay();
    invalidateIntrinsicContentSize();
}

// --- The choice ----------------------------------------------------------------------------------

void UISegmentedControl::setSelectedSegmentIndex(int index, Animated animated)
{
    assertOnMainThread();
    auto wanted = index >= 0 && index < static_cast<int>(segments_.size()) ? index : noSegment;
    auto before = std::exchange(selected_, wanted);
    if (before == wanted)
        return;
    updateColors();
    auto isMove = before != noSegment && wanted != noSegment;
    if (isMove && animated == Animated::yes && !traitCollection().prefersReducedMotion)
        UIView::animate(AnimationTiming::easeInOut(movingTime), [this] { placePill(); });
    else if (isMove)
        placePill();
    else
        UIView::performWithoutAnimation([this] { placePill(); }); // it comes from nowhere
    for (int each : {before, wanted}) {
        if (each >= 0 && each < static_cast<int>(segments_.size()))
            notifyAccessibility(*segments_[static_cast<std::size_t>(each)], AccessibilityEvent::stateChanged);
    }
}

void UISegmentedControl::select(int index)
{
    if (index < 0 || index == selected_ || !isEnabledForSegment(static_cast<std::size_t>(index)))
        return;
    setSelectedSegmentIndex(index, Animated::yes);
    sendActions({UIControlEvents::valueChanged});
}

// The next one that can be chosen; `from` itself when there is none.
int UISegmentedControl::neighbour(int from, int direction) const
{
    auto count = static_cast<int>(segments_.size());
    for (int index = from + direction; index >= 0 && index < count; index += direction) {
        if (segments_[static_cast<std::size_t>(index)]->isOn)
            return index;
    }
    return from;
}

bool UISegmentedControl::pressesBegan(const UIPress& press)
{
    auto isPlain = (press.modifiers.rawValue & ~UIKeyModifierFlags::keypad) == 0;
    if (!isPlain || !isEnabled() || !isFirstResponder())
        return UIView::pressesBegan(press);
    auto count = static_cast<int>(segments_.size());
    auto onwards = isRightToLeft() ? -1 : 1;
    switch (press.key) {
    case UIKeyCode::right:
        select(neighbour(selected_ == noSegment && onwards < 0 ? count : selected_, onwards));
        return true;
    case UIKeyCode::left:
        select(neighbour(selected_ == noSegment && onwards > 0 ? count : selected_, -onwards));
        return true;
    case UIKeyCode::home:
        select(neighbour(-1, 1));
        return true;
    case UIKeyCode::end:
        select(neighbour(count, -1));
        return true;
    default:
        return UIView::pressesBegan(press);
    }
}

// --- Touches -------------------------------------------------------------------------------------

std::shared_ptr<UIView> UISegmentedControl::hitTest(CGPoint point)
{
    auto hit = UIControl::hitTest(point);
    return hit ? std::static_pointer_cast<UIView>(weak_from_this().lock()) : nullptr;
}

int UISegmentedControl::segmentAt(CGFloat x) const
{
    auto count = static_cast<int>(segments_.size());
    auto area = bounds();
    if (count == 0 || !(area.width() > 0))
        return noSegment;
    auto place =
        static_cast<int>(std::clamp(std::floor((x - area.minX()) / area.width() * count), 0.0, count - 1.0));
    return isRightToLeft() ? count - 1 - place : place;
}

bool UISegmentedControl::beginTracking(UITouch& touch)
{
    pressed_ = segmentAt(touch.location(*this).x);
    if (pressed_ == noSegment || !isEnabledForSegment(static_cast<std::size_t>(pressed_)))
        return false;
    updateColors();
    return true;
}

bool UISegmentedControl::continueTracking(UITouch& touch)
{
    auto under = segmentAt(touch.location(*this).x);
    if (under != pressed_ && isEnabledForSegment(static_cast<std::size_t>(under))) {
        pressed_ = under;
        updateColors();
    }
    return true;
}

void UISegmentedControl::endTracking(UITouch&)
{
    auto chosen = std::exchange(pressed_, noSegment);
    updateColors();
    if (isTouchInside())
        select(chosen);
}

void UISegmentedControl::cancelTracking()
{
    pressed_ = noSegment;
    updateColors();
}

// --- Look ----------------------------------------------------------------------------------------

bool UISegmentedControl::isRightToLeft() const
{
    return effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
}

void UISegmentedControl::setSelectedSegmentTintColor(std::optional<UIColor> color)
{
    pill_->color = std::move(color);
    updateColors();
}

void UISegmentedControl::updateColors()
{
    for (int index = 0; index < static_cast<int>(segments_.size()); ++index) {
        auto& segment = *segments_[static_cast<std::size_t>(index)];
        bool isLight = index == selected_ && pill_->color;
        segment.setTextColor(!isEnabled() || !segment.isOn ? UIColor::tertiaryLabel()
                                 : isLight                 ? legibleColor(*pill_->color)
                                                           : UIColor::label());
        segment.setAlpha(index == pressed_ && index != selected_ ? pressedAlpha : 1);
    }
    pill_->setHidden(selected_ == noSegment);
    pill_->isDimmed = !isEnabled();
    pill_->setNeedsDisplay();
    ring_->setHidden(!isFirstResponder());
    setNeedsDisplay(); // lines between the segments
}

CGRect UISegmentedControl::rectOf(int index) const
{
    auto count = static_cast<int>(segments_.size());
    auto area = bounds();
    auto width = count > 0 ? area.width() / count : 0;
    auto place = isRightToLeft() ? count - 1 - index : index;
    return CGRect::make(area.minX() + place * width, area.minY(), width, area.height());
}

void UISegmentedControl::placePill()
{
    if (selected_ == noSegment)
        return;
    auto place = rectOf(selected_).insetBy(pillInset, pillInset);
    if (!place.isNull())
        pill_->setFrame(place.insetBy(-Pill::shadowReach, -Pill::shadowReach));
}

void UISegmentedControl::layoutSubviews()
{
    UIControl::layoutSubviews();
    for (int index = 0; index < static_cast<int>(segments_.size()); ++index) {
        auto place = rectOf(index).insetBy(pillInset * 2, 0);
        segments_[static_cast<std::size_t>(index)]->setFrame(place.isNull() ? CGRect{rectOf(index).origin, {}}
                                                                            : place);
    }
    placePill();
    ring_->showAround(bounds(), cornerRadiusOfGround);
}

void UISegmentedControl::draw(CGContext& context, CGRect)
{
    auto area = bounds();
    context.fill(UIBezierPath::roundedRect(area, cornerRadiusOfGround), UIColor::tertiarySystemFill());
    if (isHighContrast(*this))
        context.stroke(UIBezierPath::roundedRect(area.insetBy(0.5, 0.5), cornerRadiusOfGround),
                       UIColor::label(), {});
    for (int index = 1; index < static_cast<int>(segments_.size()); ++index) {
        if (index == selected_ || index - 1 == selected_)
            continue;
        auto between = isRightToLeft() ? rectOf(index).maxX() : rectOf(index).minX();
        context.fill(CGRect::make(between - 0.5, area.minY() + 8, 1, std::max(area.height() - 16, 0.0)),
                     UIColor::separator());
    }
}

CGSize UISegmentedControl::intrinsicContentSize() const
{
    CGFloat widest = 0, highest = 0;
    for (auto& segment : segments_) {
        auto size = segment->sizeThatFits({unlimitedWidth, 0});
        widest = std::max(widest, size.width);
        highest = std::max(highest, size.height);
    }
    return {std::ceil(widest + 2 * sideInset) * static_cast<double>(segments_.size()),
            std::max(usualHeight, std::ceil(highest) + 10)};
}

CGSize UISegmentedControl::sizeThatFits(CGSize) const
{
    return intrinsicContentSize();
}

void UISegmentedControl::controlStateChanged()
{
    updateColors();
}

void UISegmentedControl::tintColorDidChange()
{
    UIControl::tintColorDidChange();
    updateColors();
}

void UISegmentedControl::didMoveToSuperview()
{
    UIControl::didMoveToSuperview();
    updateColors();
}

void UISegmentedControl::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIControl::traitCollectionDidChange(previous);
    segmentsChanged(); // text size, direction
}

AccessibilityProperties UISegmentedControl::accessibilityNow() const
{
    auto properties = UIControl::accessibilityNow();
    if (properties.role == AccessibilityRole::none)
        properties.role = AccessibilityRole::group;
    properties.isSelected = false;
    return properties;
}

} // namespace platform
