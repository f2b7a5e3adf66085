// SPDX-License-Identifier: MIT
#include "platform/swiftui/accessibility.h"

#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/UIView.h"

#include <algorithm>

namespace platform {

void AccessibilityHiddenModifier::Node::updateModifier(const AccessibilityHiddenModifier& modifier)
{
    Base::Node::updateModifier({modifier.isHidden}); // for what is mounted from now on
    std::vector<std::shared_ptr<UIView>> views;
    appendPlatformViews(views);
    for (auto& view : views)
        view->accessibility().isHidden = modifier.isHidden;
}

namespace {

constexpr std::pair<AccessibilityTraits, AccessibilityRole> roles[] = {
    {AccessibilityTraits::isButton, AccessibilityRole::button},
    {AccessibilityTraits::isHeader, AccessibilityRole::header},
    {AccessibilityTraits::isLink, AccessibilityRole::link},
    {AccessibilityTraits::isImage, AccessibilityRole::image},
    {AccessibilityTraits::isStaticText, AccessibilityRole::staticText},
};

std::optional<AccessibilityRole> roleOf(AccessibilityTraits traits)
{
    auto found = std::ranges::find_if(roles, [&](auto& each) { return traits.contains(each.first); });
    return found == std::end(roles) ? std::nullopt : std::optional(found->second);
}

void say(AccessibilityProperties& properties, const AccessibilityModifier& modifier)
{
    properties.label = modifier.label.value_or(properties.label);
    properties.value = modifier.value.value_or(properties.value);
    properties.hint = modifier.hint.value_or(properties.hint);
    properties.identifier = modifier.identifier.value_or(properties.identifier);
    properties.role = roleOf(modifier.traits).value_or(properties.role);
    properties.isSelected |= modifier.traits.contains(AccessibilityTraits::isSelected);
    properties.isModal |= modifier.traits.contains(AccessibilityTraits::isModal);
}

// Takes back what the modifier said that it says no more.
void withdraw(AccessibilityProperties& properties, AccessibilityTraits said)
{
    if (roleOf(said) == properties.role)
        properties.role = AccessibilityRole::none;
    properties.isSelected &= !said.contains(AccessibilityTraits::isSelected);
    properties.isModal &= !said.contains(AccessibilityTraits::isModal);
}

bool isElement(const std::shared_ptr<UIView>& view)
{
    return view->accessibilityNow().role != AccessibilityRole::none;
}

} // namespace

void AccessibilityModifier::Node::appendPlatformViews(std::vector<std::shared_ptr<UIView>>& views) const
{
    ModifierNode::appendPlatformViews(views);
    apply(); // other views may stand here now
}

void AccessibilityModifier::Node::updateModifier(const AccessibilityModifier& modifier)
{
    if (auto view = element())
        withdraw(view->accessibility(), modifier_.traits);
    modifier_ = modifier;
    applyAfterSync();
}

void AccessibilityModifier::Node::applyAfterSync()
{
    host().performAfterSync([this, isMounted = std::weak_ptr(alive_)] {
        if (isMounted.lock())
            apply();
    });
}

std::shared_ptr<UIView> AccessibilityModifier::Node::element() const
{
    std::vector<std::shared_ptr<UIView>> views;
    child().appendContentViews(views);
    auto found = std::ranges::find_if(views, isElement);
    return found != views.end() ? *found : views.empty() ? nullptr : views.front();
}

void AccessibilityModifier::Node::apply() const
{
    auto view = element();
    if (!view)
        return;
    auto before = view->accessibilityNow();
    say(view->accessibility(), modifier_);
    // What is spoken of is an element.
    if (!isElement(view) && !view->accessibility().label.empty())
        view->accessibility().role = AccessibilityRole::group;
    auto after = view->accessibilityNow();
    if (after.label != before.label)
        notifyAccessibility(*view, AccessibilityEvent::labelChanged);
    if (after.value != before.value)
        notifyAccessibility(*view, AccessibilityEvent::valueChanged);
    if (after.isSelected != before.isSelected)
        notifyAccessibility(*view, AccessibilityEvent::stateChanged);
}

} // namespace platform
