// SPDX-License-Identifier: MIT
#include "tests/support/harness/Element.h"

#include "tests/support/harness/ViewHarness.h"

#include "platform/foundation/Precondition.h"
#include "platform/uikit/ScreenSight.h"

namespace harness {

using namespace platform;

Element::Element(ViewHarness& harness, std::shared_ptr<UIView> view)
    : harness_(&harness)
    , view_(std::move(view))
{
}

UIView& Element::view() const
{
    auto view = view_.lock();
    precondition(view != nullptr, "the element that the test holds is gone; find it again");
    return *view;
}

std::string Element::name() const
{
    return std::string("the ").append(roleName(role())).append(" \"").append(label()).append("\"");
}

bool Element::isFocused() const
{
    return view().isFirstResponder();
}

bool Element::activate() const
{
    auto keptAlive = view_.lock();
    auto isDone = isEnabled() && view().accessibilityActivate();
    harness_->settle();
    return isDone;
}

bool Element::increment(int steps) const
{
    auto keptAlive = view_.lock();
    auto isDone = isEnabled() && view().accessibilityAdjust(steps);
    harness_->settle();
    return isDone;
}

bool Element::decrement(int steps) const
{
    return increment(-steps);
}

bool Element::setValue(double value) const
{
    auto keptAlive = view_.lock();
    auto limits = range();
    precondition(limits && value >= limits->minimum && value <= limits->maximum,
                 name().append(" has no range with that value"));
    auto isDone = isEnabled() && view().accessibilitySetValue(value);
    harness_->settle();
    return isDone;
}

CGRect Element::frame() const
{
    return rectOnScreen(view(), view().presentationBounds());
}

CGRect Element::visibleFrame() const
{
    return seenPart(rectOnScreen);
}

CGRect Element::seenPart(CGRect (*place)(const UIView&, CGRect)) const
{
    auto window = view().window();
    if (!window)
        return {};
    auto seen = place(view(), view().presentationBounds()).intersection({{}, window->bounds().size});
    for (auto above = view().superview(); above && !seen.isEmpty(); above = above->superview()) {
        if (above->clipsToBounds())
            seen = seen.intersection(place(*above, above->presentationBounds()));
    }
    return seen;
}

CGPoint Element::reach() const
{
    harness_->settle();
    auto seen = seenPart([](const UIView& view, CGRect) { return view.convertTo(view.bounds(), nullptr); });
    auto outOfSight = seen.isEmpty();
    precondition(!outOfSight, outOfSight ? name().append(" is out of sight") : std::string());
    auto place = seen.center();
    auto hit = harness_->window().hitTest(place);
    auto isReached = !hit || hit->isDescendant(view()) || view().isDescendant(*hit);
    precondition(isReached,
                 isReached ? std::string()
                           : name()
                                 .append(" is covered by ")
                                 .append(Element(*harness_, hit)
                                             .name()
                                             .append("; there are:\n")
                                             .append(describeElements(harness_->window()))));
    return place;
}

void Element::tap(const Press& press) const
{
    harness_->tap(reach(), press);
}

void Element::longPress(Duration time, const Press& press) const
{
    harness_->down(reach(), press);
    harness_->advance(time);
    harness_->up();
}

void Element::drag(CGVector by, const DragOptions& options) const
{
    auto from = reach();
    harness_->drag(from, {from.x + by.dx, from.y + by.dy}, options);
}

void Element::hover() const
{
    harness_->hover(reach());
}

bool Element::scroll(CGVector delta) const
{
    return harness_->scroll(reach(), delta);
}

void Element::type(std::string_view text) const
{
    if (!isFocused())
        tap();
    harness_->type(text);
}

Element Element::find(AccessibilityRole role, std::string_view label) const
{
    return harness_->findWithin(view(), role, label);
}

Element Element::find(AccessibilityRole role) const
{
    return harness_->findWithin(view(), role, std::nullopt);
}

std::optional<Element> Element::tryFind(AccessibilityRole role, std::string_view label) const
{
    auto found = harness_->findAllWithin(view(), role, label);
    return found.empty() ? std::nullopt : std::optional(found.front());
}

std::vector<Element> Element::findAll(AccessibilityRole role) const
{
    return harness_->findAllWithin(view(), role, std::nullopt);
}

std::vector<Element> Element::findAll(AccessibilityRole role, std::string_view label) const
{
    return harness_->findAllWithin(view(), role, label);
}

} // namespace harness
