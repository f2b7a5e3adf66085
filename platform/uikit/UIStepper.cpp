// SPDX-License-Identifier: MIT
#include "platform/uikit/UIStepper.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/Timer.h"
#include "platform/graphics/CGContext.h"
#include "platform/uikit/ControlLook.h"
#include "platform/uikit/UIEvent.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace platform {

using namespace std::chrono_literals;

namespace {

constexpr CGSize usualSize{84, 30};
constexpr CGFloat cornerRadiusOfBox = 8;
constexpr Duration holdTime = 500ms;
constexpr Duration repeatTime = 100ms;
constexpr int repeatsBeforeTens = 20; // then it goes by tens

} // namespace

UIStepper::UIStepper()
    : NumericControl({0, 100}, 1)
    , ring_(std::make_shared<FocusRing>())
{
    addSubview(ring_);
}

UIStepper::UIStepper(CGRect frame)
    : UIStepper()
{
    setFrame({frame.origin, usualSize});
}

UIStepper::~UIStepper()
{
    stopRepeating();
}

void UIStepper::setWraps(bool wraps)
{
    assertOnMainThread();
    wraps_ = wraps;
    setNeedsDisplay();
}

// --- Stepping ------------------------------------------------------------------------------------

double UIStepper::arrowStep() const
{
    return stepValue() > 0 ? stepValue() : 1;
}

double UIStepper::pageStep() const
{
    return 10 * arrowStep();
}

double UIStepper::wished(double value) const
{
    if (wraps_ && value > maximumValue())
        return minimumValue();
    if (wraps_ && value < minimumValue())
        return maximumValue();
    return range().clamped(value);
}

bool UIStepper::canGo(Half half) const
{
    if (half == Half::none || range().isEmpty())
        return false;
    return wraps_ || (half == Half::raise ? value() < maximumValue() : value() > minimumValue());
}

void UIStepper::step(Half half)
{
    if (!canGo(half))
        return;
    auto change = repeats_ > repeatsBeforeTens ? 10 * arrowStep() : arrowStep();
    changeByUser(wished(value() + (half == Half::raise ? change : -change)),
                 isContinuous() ? Tells::now : Tells::later);
}

void UIStepper::startRepeating()
{
    repeats_ = 0;
    timer_ = Timer::scheduledTimer(holdTime, Timer::Repeats::no, [this](Timer&) {
        timer_ = Timer::scheduledTimer(repeatTime, Timer::Repeats::yes, [this](Timer&) {
            auto self = weak_from_this().lock(); // an action may drop the last reference
            ++repeats_;
            if (isOver_)
                step(pressed_);
        });
    });
}

void UIStepper::stopRepeating()
{
    if (auto timer = std::exchange(timer_, nullptr))
        timer->invalidate();
    repeats_ = 0;
}

// --- Touches -------------------------------------------------------------------------------------

CGRect UIStepper::box() const
{
    auto area = bounds();
    return CGRect::make(area.midX() - usualSize.width / 2, area.midY() - usualSize.height / 2,
                        usualSize.width, usualSize.height);
}

CGRect UIStepper::rectOf(Half half) const
{
    auto area = box();
    bool isLeft = (half == Half::lower) != isRightToLeft();
    return CGRect::make(isLeft ? area.minX() : area.midX(), area.minY(), area.width() / 2, area.height());
}

UIStepper::Half UIStepper::halfAt(CGPoint point) const
{
    return rectOf(Half::lower).contains(point) ? Half::lower
        : rectOf(Half::raise).contains(point)  ? Half::raise
                                               : Half::none;
}

bool UIStepper::beginTracking(UITouch& touch)
{
    pressed_ = halfAt(touch.location(*this));
    if (pressed_ == Half::none)
        return false;
    isOver_ = true;
    firstValue_ = value();
    setNeedsDisplay();
    if (autorepeats_)
        startRepeating();
    step(pressed_);
    if (isEnabled() && window())
        return true;
    cancelTracking(); // an action has switched it off or removed it, before there was a touch to cancel
    return false;
}

bool UIStepper::continueTracking(UITouch& touch)
{
    isOver_ = halfAt(touch.location(*this)) == pressed_;
    setNeedsDisplay();
    return isEnabled();
}

void UIStepper::endTracking(UITouch&)
{
    auto before = std::exchange(firstValue_, value()); // what is left to be told
    cancelTracking();
    if (!isContinuous() && value() != before)
        sendActions({UIControlEvents::valueChanged});
}

void UIStepper::cancelTracking()
{
    stopRepeating();
    pressed_ = Half::none;
    isOver_ = false;
    if (!isContinuous())
        setValue(firstValue_); // nobody heard of the other
    setNeedsDisplay();
}

void UIStepper::willMoveToWindow(UIWindow* window)
{
    NumericControl::willMoveToWindow(window);
    stopRepeating();
}

// --- Look ----------------------------------------------------------------------------------------

void UIStepper::draw(CGContext& context, CGRect)
{
    auto area = box();
    auto shape = UIBezierPath::roundedRect(area, cornerRadiusOfBox);
    context.fill(shape, UIColor::tertiarySystemFill());
    StrokeStyle line;
    if (isHighContrast(*this))
        context.stroke(UIBezierPath::roundedRect(area.insetBy(0.5, 0.5), cornerRadiusOfBox), UIColor::label(),
                       line);
    if (isOver_) {
        CGContextState state(context);
        context.clip(rectOf(pressed_));
        context.fill(shape, UIColor::systemFill());
    }
    context.fill(CGRect::make(area.midX() - 0.5, area.minY() + 7, 1, area.height() - 14),
                 UIColor::separator());
    line.lineWidth = 2;
    line.lineCap = LineCap::round;
    constexpr CGFloat arm = 6;
    for (auto half : {Half::lower, Half::raise}) {
        auto middle = rectOf(half).center();
        auto color = isEnabled() && canGo(half) ? UIColor::label() : UIColor::tertiaryLabel();
        UIBezierPath sign;
        sign.moveTo({middle.x - arm, middle.y});
        sign.addLine({middle.x + arm, middle.y});
        if (half == Half::raise) {
            sign.moveTo({middle.x, middle.y - arm});
            sign.addLine({middle.x, middle.y + arm});
        }
        context.stroke(sign, color, line);
    }
}

void UIStepper::controlStateChanged()
{
    ring_->setHidden(!isFirstResponder());
    setNeedsDisplay();
}

void UIStepper::layoutSubviews()
{
    NumericControl::layoutSubviews();
    ring_->showAround(box(), cornerRadiusOfBox);
}

CGSize UIStepper::intrinsicContentSize() const
{
    return usualSize;
}

CGSize UIStepper::sizeThatFits(CGSize) const
{
    return usualSize;
}

void UIStepper::tintColorDidChange()
{
    NumericControl::tintColorDidChange();
    setNeedsDisplay();
}

void UIStepper::traitCollectionDidChange(const UITraitCollection& previous)
{
    NumericControl::traitCollectionDidChange(previous);
    setNeedsDisplay();
}

AccessibilityProperties UIStepper::accessibilityNow() const
{
    auto properties = NumericControl::accessibilityNow();
    if (properties.role == AccessibilityRole::none)
        properties.role = AccessibilityRole::spinButton;
    return properties;
}

} // namespace platform
