// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/CompositeNode.h"

#include <concepts>
#include <utility>

namespace platform {

template <View Content, std::equality_comparable Identity>
class IdentifiedNode;

// A view whose place has an identity: with another one it begins anew, without the state it had.
template <View Content, std::equality_comparable Identity>
struct IdentifiedView {
    Content content;
    Identity identity;

    using Node = IdentifiedNode<Content, Identity>;
    friend bool operator==(const IdentifiedView& a, const IdentifiedView& b)
        requires std::equality_comparable<Content>
    = default;
};

template <View Content, std::equality_comparable Identity>
class IdentifiedNode final : public UnaryNode {
public:
    IdentifiedNode(const NodeContext& context, const IdentifiedView<Content, Identity>& view)
        : UnaryNode(context)
        , identity_(view.identity)
    {
        setChild(makeNode(context.below(*this), view.content));
    }
    void update(const IdentifiedView<Content, Identity>& view)
    {
        if (view.identity == identity_) {
            updateNode(child(), view.content);
            return;
        }
        identity_ = view.identity;
        replaceChild(makeNode(context().below(*this), view.content));
    }
    void appendLayoutNodes(std::vector<ViewNode*>& nodes) override { child().appendLayoutNodes(nodes); }

private:
    Identity identity_;
};

template <class Identity>
struct IdentityModifier {
    Identity identity;
};

// `content | id(document.url)`: another value ends the content with its state and begins it anew.
template <std::equality_comparable Identity>
auto id(Identity identity)
{
    return IdentityModifier<Identity>{std::move(identity)};
}

template <View Content, class Identity>
auto operator|(Content content, IdentityModifier<Identity> modifier)
{
    return IdentifiedView<Content, Identity>{std::move(content), std::move(modifier.identity)};
}

} // namespace platform
