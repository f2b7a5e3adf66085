// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/ModifiedContent.h"

#include <memory>
#include <optional>
#include <utility>

namespace platform {

// Writes a value of the environment for the content. Only what reads the value is updated when it changes.
template <EnvironmentKey Key>
struct EnvironmentWritingModifier {
    typename Key::Value value;

    class Node;
    bool operator==(const EnvironmentWritingModifier&) const = default;
};

template <EnvironmentKey Key>
class EnvironmentWritingModifier<Key>::Node : public ModifierNode {
public:
    Node(const NodeContext& context, const EnvironmentWritingModifier& modifier)
        : ModifierNode(context)
        , scope_(std::make_shared<EnvironmentScope>(context.environment))
    {
        scope_->set<Key>(modifier.value);
    }
    void appendLayoutNodes(std::vector<ViewNode*>& nodes) override { child().appendLayoutNodes(nodes); }

protected:
    NodeContext contentContext() override
    {
        auto inner = ModifierNode::contentContext();
        inner.environment = scope_;
        return inner;
    }
    void updateModifier(const EnvironmentWritingModifier& modifier) { scope_->set<Key>(modifier.value); }

private:
    std::shared_ptr<EnvironmentScope> scope_;
};

// `content | environment<FontKey>(Font::title())`
template <EnvironmentKey Key>
auto environment(typename Key::Value value)
{
    return EnvironmentWritingModifier<Key>{std::move(value)};
}

inline auto font(std::optional<Font> font)
{
    return environment<FontKey>(std::move(font));
}
inline auto foregroundColor(std::optional<UIColor> color)
{
    return environment<ForegroundColorKey>(std::move(color));
}
inline auto tint(std::optional<UIColor> color)
{
    return environment<TintKey>(std::move(color));
}
inline auto lineLimit(std::optional<int> lines)
{
    return environment<LineLimitKey>(lines);
}
inline auto multilineTextAlignment(HorizontalAlignment alignment)
{
    return environment<MultilineTextAlignmentKey>(alignment);
}

} // namespace platform
