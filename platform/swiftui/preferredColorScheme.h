// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ModifiedContent.h"
#include "platform/swiftui/PreferredColorSchemes.h"

#include <memory>
#include <optional>

namespace platform {

// Wishes that what shows the content be light or dark: the window, where the content's hosting controller is its root, else
// the hosting controller's view. None wishes for nothing: the desktop's scheme, or that of another wish (see
// PreferredColorSchemes for which of several holds).
struct PreferredColorSchemeModifier {
    std::optional<ColorScheme> scheme;
    class Node;
    bool operator==(const PreferredColorSchemeModifier&) const = default;
};

class PreferredColorSchemeModifier::Node : public ModifierNode {
public:
    Node(const NodeContext& context, const PreferredColorSchemeModifier& modifier)
        : ModifierNode(context)
        , schemes_(context.environment->value<PreferredColorSchemesKey>(nullptr))
    {
        updateModifier(modifier);
    }
    ~Node() override
    {
        if (schemes_)
            schemes_->remove(*this);
    }
    void appendLayoutNodes(std::vector<ViewNode*>& nodes) override { child().appendLayoutNodes(nodes); }

protected:
    void updateModifier(const PreferredColorSchemeModifier& modifier)
    {
        if (schemes_)
            schemes_->set(*this, modifier.scheme);
    }

private:
    std::shared_ptr<PreferredColorSchemes> schemes_; // null in a tree that no controller hosts
};

inline auto preferredColorScheme(std::optional<ColorScheme> scheme)
{
    return PreferredColorSchemeModifier{scheme};
}

} // namespace platform
