// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/CompositeNode.h"
#include "platform/swiftui/View.h"

#include <concepts>
#include <type_traits>
#include <utility>

namespace platform {

// A modifier is a copyable record that a view is piped into. It either describes the result, in
// `body(content) const`, or is a primitive and names the node that stands around the content.
template <class M>
concept PrimitiveModifier = std::copyable<M> && requires { typename M::Node; };
template <class M, class Content>
concept CompositeModifierOf = std::copyable<M> && requires(const M& modifier, const Content& content) {
    { modifier.body(content) } -> View;
};

// What `content | modifier` is, where the modifier is a primitive. Left to right reads inside to outside.
template <View Content, PrimitiveModifier Modifier>
class ModifiedNode;

template <class Content, class Modifier>
struct ModifiedContent {
    Content content;
    Modifier modifier;

    using Node = ModifiedNode<Content, Modifier>;
    friend bool operator==(const ModifiedContent& a, const ModifiedContent& b)
        requires std::equality_comparable<Content> && std::equality_comparable<Modifier>
    = default;
};

// Where the modifier describes its result it is a view of its own: its dynamic properties are the modifier's.
template <class Content, class Modifier>
    requires(!PrimitiveModifier<Modifier>)
struct ModifiedContent<Content, Modifier> {
    Content content;
    Modifier modifier;

    auto body() const { return modifier.body(content); }
    auto dynamicProperties()
        requires detail::HasDynamicProperties<Modifier>
    {
        return modifier.dynamicProperties();
    }
    friend bool operator==(const ModifiedContent& a, const ModifiedContent& b)
        requires std::equality_comparable<Content> && std::equality_comparable<Modifier>
    = default;
};

// The node of a primitive modifier with its content. The modifier's own part, `Modifier::Node`, is no template:
// a UnaryNode, constructible from (const NodeContext&, const Modifier&) and with `updateModifier(const Modifier&)`, that
// never calls setChild. It may change the context of the content in `contentContext`, and act when the content stands in
// `contentMounted(const Modifier&)`.
template <View Content, PrimitiveModifier Modifier>
class ModifiedNode final : public Modifier::Node {
public:
    ModifiedNode(const NodeContext& context, const ModifiedContent<Content, Modifier>& view)
        : Modifier::Node(context, view.modifier)
        , modifier_(view.modifier)
    {
        this->setChild(makeNode(this->contentContext(), view.content));
        if constexpr (requires { this->contentMounted(modifier_); })
            this->contentMounted(modifier_);
    }

    void update(const ModifiedContent<Content, Modifier>& view)
    {
        bool changed = !detail::isSameRecord(view.modifier, modifier_);
        if (changed)
            modifier_ = view.modifier;
        this->updateAround(changed, &view.content);
    }

private:
    void applyModifier() override { this->updateModifier(modifier_); }
    void applyContent(const void* content) override
    {
        updateNode(this->child(), *static_cast<const Content*>(content));
    }

    Modifier modifier_;
};

// What the nodes of primitive modifiers build on.
class ModifierNode : public UnaryNode {
public:
    using UnaryNode::UnaryNode;

protected:
    virtual NodeContext contentContext() { return context().below(*this); }
    // The order of an update; a transaction wraps the content's.
    virtual void updateAround(bool modifierChanged, const void* content)
    {
        if (modifierChanged)
            applyModifier();
        applyContent(content);
    }
    // What the node of a modifier with its content knows the types of: the new modifier, and the new content, which
    // lives as long as the call.
    virtual void applyModifier() = 0;
    virtual void applyContent(const void* content) = 0;
};

template <View Content, class M>
    requires PrimitiveModifier<M> || CompositeModifierOf<M, Content>
auto operator|(Content content, M modifier)
{
    return ModifiedContent<Content, M>{std::move(content), std::move(modifier)};
}

} // namespace platform
