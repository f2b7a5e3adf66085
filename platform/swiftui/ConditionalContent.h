// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/CompositeNode.h"
#include "platform/swiftui/EmptyView.h"
#include "platform/swiftui/View.h"

#include <memory>
#include <utility>
#include <variant>

namespace platform {

// One of two views. Each has an identity of its own: changing over ends the one with its state and begins the other.
template <View First, View Second>
class ConditionalContent {
public:
    explicit ConditionalContent(First first)
        : content_(std::in_place_index<0>, std::move(first))
    {
    }
    explicit ConditionalContent(Second second)
        requires(!std::same_as<First, Second>)
        : content_(std::in_place_index<1>, std::move(second))
    {
    }
    static ConditionalContent first(First view)
    {
        return ConditionalContent(std::variant<First, Second>(std::in_place_index<0>, std::move(view)));
    }
    static ConditionalContent second(Second view)
    {
        return ConditionalContent(std::variant<First, Second>(std::in_place_index<1>, std::move(view)));
    }

    bool isFirst() const { return content_.index() == 0; }
    // Calls `visitor` with the view that it is.
    template <class Visitor>
    void visit(const Visitor& visitor) const
    {
        std::visit(visitor, content_);
    }

    class Node;
    friend bool operator==(const ConditionalContent& a, const ConditionalContent& b)
        requires std::equality_comparable<First> && std::equality_comparable<Second>
    = default;

private:
    explicit ConditionalContent(std::variant<First, Second> content)
        : content_(std::move(content))
    {
    }
    std::variant<First, Second> content_;
};

template <View First, View Second>
class ConditionalContent<First, Second>::Node final : public UnaryNode {
public:
    Node(const NodeContext& context, const ConditionalContent& view)
        : UnaryNode(context)
        , index_(view.content_.index())
    {
        setChild(make(view));
    }

    void update(const ConditionalContent& view)
    {
        if (view.content_.index() == index_) {
            std::visit([this](const auto& content) { updateNode(child(), content); }, view.content_);
            return;
        }
        index_ = view.content_.index();
        replaceChild(make(view));
    }

    void appendLayoutNodes(std::vector<ViewNode*>& nodes) override { child().appendLayoutNodes(nodes); }

private:
    std::unique_ptr<ViewNode> make(const ConditionalContent& view)
    {
        return std::visit([this](const auto& content) { return makeNode(context().below(*this), content); },
                          view.content_);
    }

    std::size_t index_;
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
