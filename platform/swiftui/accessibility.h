// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/environment.h"
#include "platform/uikit/UIAccessibility.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace platform {

enum class AccessibilityHidden { no, yes };

// Whether assistive technology passes over the content with all it holds.
struct AccessibilityHiddenModifier {
    bool isHidden = false;
    class Node;
    bool operator==(const AccessibilityHiddenModifier&) const = default;
};

class AccessibilityHiddenModifier::Node : public EnvironmentWritingModifier<AccessibilityHiddenKey>::Node {
    using Base = EnvironmentWritingModifier<AccessibilityHiddenKey>;

public:
    Node(const NodeContext& context, const AccessibilityHiddenModifier& modifier)
        : Base::Node(context, {modifier.isHidden})
    {
    }

protected:
    void updateModifier(const AccessibilityHiddenModifier& modifier);
};

inline auto accessibilityHidden(AccessibilityHidden hidden = AccessibilityHidden::yes)
{
    return AccessibilityHiddenModifier{hidden == AccessibilityHidden::yes};
}

// What the content is besides what it says itself; an option set.
struct AccessibilityTraits {
    unsigned rawValue = 0;
    static const AccessibilityTraits isButton, isHeader, isLink, isImage, isStaticText, isSelected, isModal;
    constexpr bool contains(AccessibilityTraits other) const
    {
        return (rawValue & other.rawValue) == other.rawValue;
    }
    friend constexpr AccessibilityTraits operator|(AccessibilityTraits a, AccessibilityTraits b)
    {
        return {a.rawValue | b.rawValue};
    }
    bool operator==(const AccessibilityTraits&) const = default;
};

inline constexpr AccessibilityTraits AccessibilityTraits::isButton{1}, AccessibilityTraits::isHeader{2},
    AccessibilityTraits::isLink{4}, AccessibilityTraits::isImage{8}, AccessibilityTraits::isStaticText{16},
    AccessibilityTraits::isSelected{32}, AccessibilityTraits::isModal{64};

// Tells assistive technology something of the content instead of what the content tells itself. It is told of the first view
// of the content that is an element, or of the first at all. What is absent stays as it is.
struct AccessibilityModifier {
    std::optional<std::string> label, value, hint, identifier;
    AccessibilityTraits traits;
    class Node;
    bool operator==(const AccessibilityModifier&) const = default;
};

class AccessibilityModifier::Node : public ModifierNode {
public:
    Node(const NodeContext& context, const AccessibilityModifier& modifier)
        : ModifierNode(context)
        , modifier_(modifier)
    {
    }
    void appendLayoutNodes(std::vector<ViewNode*>& nodes) override { child().appendLayoutNodes(nodes); }
    void appendPlatformViews(std::vector<std::shared_ptr<UIView>>& views) const override;

protected:
    void contentMounted(const AccessibilityModifier&) { applyAfterSync(); }
    void updateModifier(const AccessibilityModifier& modifier);

private:
    void applyAfterSync();
    void apply() const;
    std::shared_ptr<UIView> element() const;
    AccessibilityModifier modifier_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

inline auto accessibilityLabel(std::string label)
{
    return AccessibilityModifier{.label = std::move(label)};
}
inline auto accessibilityValue(std::string value)
{
    return AccessibilityModifier{.value = std::move(value)};
}
inline auto accessibilityHint(std::string hint)
{
    return AccessibilityModifier{.hint = std::move(hint)};
}
// For tests; not spoken.
inline auto accessibilityIdentifier(std::string identifier)
{
    return AccessibilityModifier{.identifier = std::move(identifier)};
}
inline auto accessibilityAddTraits(AccessibilityTraits traits)
{
    return AccessibilityModifier{.traits = traits};
}

} // namespace platform
