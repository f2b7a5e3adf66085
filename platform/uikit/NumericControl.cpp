// SPDX-License-Identifier: MIT
#include "platform/uikit/NumericControl.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/NumericKeys.h"
#include "platform/uikit/UIPanGestureRecognizer.h"

#include <cmath>
#include <optional>
#include <utility>

namespace platform {

namespace {

constexpr double movingTime = 0.2;     // seconds
constexpr double arrowPart = 1.0 / 20; // of the range
constexpr double arrowsInAPage = 4;

} // namespace

NumericControl::NumericControl(const ValueRange& range, double step)
    : range_(range)
    , step_(step)
    , value_(range.lower)
{
}

bool NumericControl::isRightToLeft() const
{
    return effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
}

// --- The value -----------------------------------------------------------------------------------

void NumericControl::setValue(double value, Animated animated)
{
    assertOnMainThread();
    if (std::isnan(value))
        return;
    auto before = std::exchange(value_, range_.clamped(value));
    valueMoved(before, animated);
}

void NumericControl::valueMoved(double before, Animated animated)
{
    if (value_ == before)
        return;
    if (animated == Animated::yes && !traitCollection().prefersReducedMotion)
        UIView::animate(AnimationTiming::easeInOut(movingTime), [this] { placeParts(); });
    else
        placeParts();
    notifyAccessibility(*this, AccessibilityEvent::valueChanged);
}

void NumericControl::setRange(const ValueRange& range)
{
    assertOnMainThread();
    auto proper = range.proper(range_);
    if (proper == range_)
        return;
    range_ = proper;
    auto before = std::exchange(value_, range_.clamped(value_));
    placeParts(); // the same value lies elsewhere
    valueMoved(before, Animated::no);
}

void NumericControl::setMinimumValue(double value)
{
    if (std::isfinite(value))
        setRange({value, std::max(value, range_.upper)});
}

void NumericControl::setMaximumValue(double value)
{
    if (std::isfinite(value))
        setRange({std::min(value, range_.lower), value});
}

void NumericControl::setStepValue(double step)
{
    assertOnMainThread();
    step_ = std::isfinite(step) ? std::max(step, 0.0) : step_;
}

bool NumericControl::changeByUser(double value, Tells tells)
{
    auto before = std::exchange(value_, range_.snapped(value, step_));
    if (value_ == before)
        return false;
    valueMoved(before, Animated::no);
    if (tells == Tells::now)
        sendActions({UIControlEvents::valueChanged}); // this may be gone
    return true;
}

// --- Keys ----------------------------------------------------------------------------------------

double NumericControl::arrowStep() const
{
    return step_ > 0 ? step_ : 2 * arrowPart * range_.halfSpan();
}

double NumericControl::pageStep() const
{
    return std::max(arrowStep(),
                    range_.snapped(range_.lower + arrowsInAPage * 2 * arrowPart * range_.halfSpan(), step_)
                        - range_.lower);
}

bool NumericControl::pressesBegan(const UIPress& press)
{
    NumericKeys keys{
        .range = range_, .arrowStep = arrowStep(), .pageStep = pageStep(), .isRightToLeft = isRightToLeft()};
    auto wish = isEnabled() && isFirstResponder() ? keys.valueAfter(press, value_) : std::nullopt;
    if (!wish)
        return UIView::pressesBegan(press);
    changeByUser(wished(*wish));
    return true;
}

bool NumericControl::keepsTouchesFrom(const UIGestureRecognizer& recognizer) const
{
    // What is dragged here shall not scroll what is around.
    return UIControl::keepsTouchesFrom(recognizer)
        || (recognizer.view().get() != this && dynamic_cast<const UIPanGestureRecognizer*>(&recognizer));
}

// --- Accessibility -------------------------------------------------------------------------------

AccessibilityProperties NumericControl::accessibilityNow() const
{
    auto properties = UIControl::accessibilityNow();
    properties.range = {range_.lower, range_.upper, value_, step_};
    return properties;
}

bool NumericControl::accessibilitySetValue(double value)
{
    if (!isEnabled() || std::isnan(value))
        return false;
    changeByUser(value);
    return true;
}

bool NumericControl::accessibilityAdjust(int steps)
{
    if (!isEnabled())
        return false;
    changeByUser(wished(value_ + steps * arrowStep()));
    return true;
}

} // namespace platform
