// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/CompositeNode.h"
#include "platform/swiftui/EmptyView.h"
#include "platform/swiftui/View.h"

#include <memory>
#include <optional>
#include <utility>

namespace platform {

// One of two views. Each has an identity of its own: changing over ends the one with its state and begins the other.
template <View First, View Second>
class ConditionalContent {
public:
    explicit ConditionalContent(First first)
        : first_(std::move(first))
    {
    }
    explicit ConditionalContent(Second second)
        requires(!std::same_as<First, Second>)
        : second_(std::move(second))
    {
    }
    static ConditionalContent first(First view) { return ConditionalContent(std::move(view), std::nullopt); }
    static ConditionalContent second(Second view)
    {
        return ConditionalContent(std::nullopt, std::move(view));
    }

    bool isFirst() const { return first_.has_value(); }
    // Calls `visitor` with the view that it is.
    template <class Visitor>
    void visit(const Visitor& visitor) const
    {
        first_ ? visitor(*first_) : visitor(*second_);
    }

    class Node;
    friend bool operator==(const ConditionalContent& a, const ConditionalContent& b)
        requires std::equality_comparable<First> && std::equality_comparable<Second>
    = default;

private:
    ConditionalContent(std::optional<First> first, std::optional<Second> second)
        : first_(std::move(first))
        , second_(std::move(second))
    {
    }

    // Exactly one is set. No variant: it would cost much to compile for the long types of views.
    std::optional<First> first_;
    std::optional<Second> second_;
};

template <View First, View Second>
class ConditionalContent<First, Second>::Node final : public UnaryNode {
public:
    Node(const NodeContext& context, const ConditionalContent& view)
        : UnaryNode(context)
        , isFirst_(view.isFirst())
    {
        setChild(make(view));
    }

    void update(const ConditionalContent& view)
    {
        if (view.isFirst() != isFirst_) {
            isFirst_ = view.isFirst();
            replaceChild(make(view));
        } else if (isFirst_) {
            updateNode(child(), *view.first_);
        } else {
            updateNode(child(), *view.second_);
        }
    }

    void appendLayoutNodes(std::vector<ViewNode*>& nodes) override { child().appendLayoutNodes(nodes); }

private:
    std::unique_ptr<ViewNode> make(const ConditionalContent& view)
    {
        const auto below = context().below(*this);
        return isFirst_ ? makeNode(below, *view.first_) : makeNode(below, *view.second_);
    }

    bool isFirst_;
};

// `when(isLoading, [&] { return spinner; }, [&] { return list; })`
template <class MakeFirst, class MakeSecond>
auto when(bool condition, MakeFirst makeFirst, MakeSecond makeSecond)
{
    using Content = ConditionalContent<decltype(makeFirst()), decltype(makeSecond())>;
    return condition ? Content::first(makeFirst()) : Content::second(makeSecond());
}

// The content while the condition holds, otherwise nothing: `when(isOpen, [&] { return details; })`
template <class MakeContent>
auto when(bool condition, MakeContent makeContent)
{
    return when(condition, std::move(makeContent), [] { return EmptyView{}; });
}

} // namespace platform
