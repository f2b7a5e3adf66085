// SPDX-License-Identifier: MIT
#include "platform/uikit/NSLayoutConstraint.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/ViewLayout.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

enum class Kind { none, horizontal, vertical, length };

Kind kindOf(NSLayoutAttribute attribute)
{
    switch (attribute) {
    case NSLayoutAttribute::notAnAttribute:
        return Kind::none;
    case NSLayoutAttribute::left:
    case NSLayoutAttribute::right:
    case NSLayoutAttribute::leading:
    case NSLayoutAttribute::trailing:
    case NSLayoutAttribute::centerX:
        return Kind::horizontal;
    case NSLayoutAttribute::width:
    case NSLayoutAttribute::height:
        return Kind::length;
    default:
        return Kind::vertical;
    }
}

// The view itself, or the one that a guide belongs to.
std::shared_ptr<UIView> viewOf(const std::shared_ptr<NSObject>& item)
{
    if (auto guide = std::dynamic_pointer_cast<UILayoutGuide>(item))
        return guide->owningView();
    return std::dynamic_pointer_cast<UIView>(item);
}

std::shared_ptr<UIView> commonSuperview(std::shared_ptr<UIView> a, const UIView& b)
{
    while (a && !b.isDescendant(*a))
        a = a->superview();
    return a;
}

} // namespace

NSLayoutConstraint::NSLayoutConstraint(std::shared_ptr<NSObject> firstItem, NSLayoutAttribute firstAttribute,
                                       NSLayoutRelation relation, std::shared_ptr<NSObject> secondItem,
                                       NSLayoutAttribute secondAttribute, CGFloat multiplier,
                                       CGFloat constant)
    : firstItem_(firstItem)
    , secondItem_(secondItem)
    , firstAttribute_(firstAttribute)
    , secondAttribute_(secondAttribute)
    , relation_(relation)
    , multiplier_(multiplier)
    , constant_(constant)
{
    precondition(viewOf(firstItem) != nullptr,
                 "the first item of a constraint is neither a view nor a guide");
    precondition(!secondItem || viewOf(secondItem) != nullptr,
                 "the second item of a constraint is neither a view nor a guide");
    precondition((secondItem == nullptr) == (secondAttribute == NSLayoutAttribute::notAnAttribute),
                 "a constraint needs a second item and a second attribute, or neither");
    auto first = kindOf(firstAttribute), second = kindOf(secondAttribute);
    precondition(first == second || (second == Kind::none && first == Kind::length),
                 "a constraint joins attributes of different kinds");
}

void NSLayoutConstraint::activateConstraints(
    const std::vector<std::shared_ptr<NSLayoutConstraint>>& constraints)
{
    for (auto& constraint : constraints)
        constraint->setActive(true);
}

void NSLayoutConstraint::deactivateConstraints(
    const std::vector<std::shared_ptr<NSLayoutConstraint>>& constraints)
{
    for (auto& constraint : constraints)
        constraint->setActive(false);
}

bool NSLayoutConstraint::isActive() const
{
    return !owner_.expired();
}

void NSLayoutConstraint::setActive(bool active)
{
    assertOnMainThread();
    if (active == isActive())
        return;
    auto self = sharedFrom(this);
    if (!active) {
        auto owner = std::exchange(owner_, {}).lock();
        std::erase(owner->layoutState().constraints, self);
        ViewLayout::invalidate(*owner);
        return;
    }
    auto first = viewOf(firstItem()), second = viewOf(secondItem());
    precondition(first && (second || secondAttribute_ == NSLayoutAttribute::notAnAttribute),
                 "a view or guide of the constraint is gone");
    auto owner = second ? commonSuperview(first, *second) : first;
    precondition(owner != nullptr,
                 "the items of a constraint have no common superview: add them to the "
                 "view tree before the constraint is activated");
    owner_ = owner;
    conflictIsReported_ = false;
    owner->layoutState().constraints.push_back(std::move(self));
    ViewLayout::invalidate(*owner);
}

void NSLayoutConstraint::setConstant(CGFloat constant)
{
    assertOnMainThread();
    if (constant_ == constant)
        return;
    constant_ = constant;
    conflictIsReported_ = false;
    if (auto owner = owner_.lock())
        ViewLayout::invalidate(*owner);
}

void NSLayoutConstraint::setPriority(UILayoutPriority priority)
{
    assertOnMainThread();
    priority = std::isnan(priority) ? UILayoutPriorityRequired
                                    : std::clamp(priority, 1.0f, UILayoutPriorityRequired);
    if (priority_ == priority)
        return;
    priority_ = priority;
    conflictIsReported_ = false;
    if (auto owner = owner_.lock())
        ViewLayout::invalidate(*owner);
}

CGRect UILayoutGuide::layoutFrame() const
{
    auto view = owningView();
    if (!view || !isSafeArea_)
        return frame_;
    auto bounds = view->bounds();
    auto insets = view->safeAreaInsets();
    auto width = std::max(bounds.width() - insets.left - insets.right, 0.0);
    auto height = std::max(bounds.height() - insets.top - insets.bottom, 0.0);
    return CGRect::make(bounds.minX() + insets.left, bounds.minY() + insets.top, width, height);
}

NSLayoutXAxisAnchor UILayoutGuide::leadingAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::leading};
}

NSLayoutXAxisAnchor UILayoutGuide::trailingAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::trailing};
}

NSLayoutXAxisAnchor UILayoutGuide::leftAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::left};
}

NSLayoutXAxisAnchor UILayoutGuide::rightAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::right};
}

NSLayoutXAxisAnchor UILayoutGuide::centerXAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::centerX};
}

NSLayoutYAxisAnchor UILayoutGuide::topAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::top};
}

NSLayoutYAxisAnchor UILayoutGuide::bottomAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::bottom};
}

NSLayoutYAxisAnchor UILayoutGuide::centerYAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::centerY};
}

NSLayoutDimension UILayoutGuide::widthAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::width};
}

NSLayoutDimension UILayoutGuide::heightAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::height};
}

} // namespace platform
