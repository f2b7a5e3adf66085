// SPDX-License-Identifier: MIT
#include "platform/uikit/UISwitch.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/ControlLook.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIPanGestureRecognizer.h"

#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr CGSize usualSize{46, 28};
constexpr CGFloat knobInset = 2;
constexpr CGFloat pressedStretch = 4; // how much longer the knob is while it is pressed
constexpr CGFloat dragThreshold = 4;
constexpr double movingTime = 0.2; // seconds

} // namespace

// The capsule behind the knob, with the signs of on and off where colour shall not be all that tells them apart.
class UISwitch::Ground : public UIView {
public:
    Ground()
    {
        setUserInteractionEnabled(false);
        accessibility().isHidden = true;
    }
    void setState(bool isOn, bool isRightToLeft)
    {
        isOn_ = isOn;
        isRightToLeft_ = isRightToLeft;
        setNeedsDisplay();
    }
    void draw(CGContext& context, CGRect) override
    {
        if (!isHighContrast(*this))
            return;
        auto area = bounds();
        auto middle = area.height() / 2;
        auto isLeft = isOn_ != isRightToLeft_; // the knob is at the other end
        auto x = isLeft ? area.minX() + middle : area.maxX() - middle;
        constexpr CGFloat half = 4;
        StrokeStyle line;
        line.lineWidth = 1.5;
        if (isOn_) {
            UIBezierPath sign;
            sign.moveTo({x, area.midY() - half});
            sign.addLine({x, area.midY() + half});
            context.stroke(sign, UIColor::white(), line);
        } else {
            context.stroke(UIBezierPath::oval(CGRect::make(x - half, area.midY() - half, 2 * half, 2 * half)),
                           UIColor::white(), line);
        }
        line.lineWidth = 1;
        context.stroke(UIBezierPath::roundedRect(area.insetBy(0.5, 0.5), middle), UIColor::label(), line);
    }

private:
    bool isOn_ = false;
    bool isRightToLeft_ = false;
};

UISwitch::UISwitch()
{
    setUp();
}

UISwitch::UISwitch(CGRect frame)
    : UIControl(CGRect{frame.origin, usualSize})
{
    setUp();
}

UISwitch::~UISwitch() = default;

void UISwitch::setUp()
{
    assertOnMainThread();
    ground_ = std::make_shared<Ground>();
    knob_ = std::make_shared<ControlKnob>();
    ring_ = std::make_shared<FocusRing>();
    addSubview(ground_);
    addSubview(knob_);
    addSubview(ring_);
    addAction([](UIControl& control) { static_cast<UISwitch&>(control).turnOver(); },
              {UIControlEvents::primaryActionTriggered});
    updateColors();
}

// --- The state -----------------------------------------------------------------------------------

void UISwitch::setOn(bool isOn, Animated animated)
{
    assertOnMainThread();
    if (std::exchange(isOn_, isOn) == isOn)
        return;
    moveParts(animated);
    notifyAccessibility(*this, AccessibilityEvent::stateChanged);
}

// A click, or the end of a drag, which has a side of its own.
void UISwitch::turnOver()
{
    auto wanted = std::exchange(wish_, std::nullopt).value_or(!isOn_);
    if (wanted == isOn_)
        return;
    setOn(wanted, Animated::yes);
    sendActions({UIControlEvents::valueChanged});
}

bool UISwitch::isRightToLeft() const
{
    return effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
}

// --- Look ----------------------------------------------------------------------------------------

void UISwitch::setOnTintColor(std::optional<UIColor> color)
{
    onColor_ = std::move(color);
    updateColors();
}

void UISwitch::setThumbTintColor(std::optional<UIColor> color)
{
    knob_->setColor(std::move(color));
}

void UISwitch::updateColors()
{
    auto color = wish_.value_or(isOn_) ? onColor_.value_or(tintColor()) : grooveColor(*this);
    ground_->setBackgroundColor(
        isEnabled() ? color : color.withAlphaComponent(disabledAlpha * color.components().alpha));
    ground_->setState(wish_.value_or(isOn_), isRightToLeft());
    knob_->setDimmed(!isEnabled());
    ring_->setHidden(!isFirstResponder());
}

void UISwitch::moveParts(Animated animated)
{
    auto move = [this] {
        updateColors();
        placeParts();
    };
    if (animated == Animated::yes && !traitCollection().prefersReducedMotion)
        UIView::animate(AnimationTiming::easeInOut(movingTime), move);
    else
        move();
}

CGRect UISwitch::capsule() const
{
    auto area = bounds();
    return CGRect::make(area.midX() - usualSize.width / 2, area.midY() - usualSize.height / 2,
                        usualSize.width, usualSize.height);
}

void UISwitch::placeParts()
{
    auto area = capsule();
    ground_->setFrame(area);
    ground_->setCornerRadius(area.height() / 2);
    auto height = area.height() - 2 * knobInset;
    auto width = height + (isHighlighted() ? pressedStretch : 0);
    bool isAtRight = wish_.value_or(isOn_) != isRightToLeft();
    auto x = isAtRight ? area.maxX() - knobInset - width : area.minX() + knobInset;
    knob_->setFrame(ControlKnob::frameAround(CGRect::make(x, area.minY() + knobInset, width, height)));
    ring_->showAround(area, area.height() / 2);
}

void UISwitch::layoutSubviews()
{
    UIControl::layoutSubviews();
    placeParts();
}

CGSize UISwitch::intrinsicContentSize() const
{
    return usualSize;
}

CGSize UISwitch::sizeThatFits(CGSize) const
{
    return usualSize;
}

void UISwitch::controlStateChanged()
{
    // The press is shown by a longer knob.
    if (knob_)
        moveParts(window() ? Animated::yes : Animated::no);
}

void UISwitch::tintColorDidChange()
{
    UIControl::tintColorDidChange();
    updateColors();
}

void UISwitch::didMoveToSuperview()
{
    UIControl::didMoveToSuperview();
    updateColors();
}

void UISwitch::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIControl::traitCollectionDidChange(previous);
    updateColors();
    setNeedsLayout(); // direction
}

// --- Touches -------------------------------------------------------------------------------------

std::shared_ptr<UIView> UISwitch::hitTest(CGPoint point)
{
    auto hit = UIControl::hitTest(point);
    return hit ? std::static_pointer_cast<UIView>(weak_from_this().lock()) : nullptr;
}

bool UISwitch::keepsTouchesFrom(const UIGestureRecognizer& recognizer) const
{
    return UIControl::keepsTouchesFrom(recognizer)
        || (recognizer.view().get() != this && dynamic_cast<const UIPanGestureRecognizer*>(&recognizer));
}

bool UISwitch::beginTracking(UITouch& touch)
{
    beginning_ = touch.location(*this).x;
    wish_ = std::nullopt;
    return true;
}

bool UISwitch::continueTracking(UITouch& touch)
{
    auto x = touch.location(*this).x;
    if (!wish_ && std::abs(x - beginning_) < dragThreshold)
        return true;
    auto wish = (x > capsule().midX()) != isRightToLeft();
    if (std::exchange(wish_, wish) != wish)
        moveParts(Animated::yes);
    return true;
}

void UISwitch::endTracking(UITouch&)
{
    // A drag may end anywhere; a click that ends outside is none.
    if (wish_ && !isTouchInside())
        turnOver();
}

void UISwitch::cancelTracking()
{
    if (std::exchange(wish_, std::nullopt))
        moveParts(Animated::yes);
}

AccessibilityProperties UISwitch::accessibilityNow() const
{
    auto properties = UIControl::accessibilityNow();
    if (properties.role == AccessibilityRole::none)
        properties.role = AccessibilityRole::toggle;
    properties.isSelected = isOn_;
    return properties;
}

} // namespace platform
