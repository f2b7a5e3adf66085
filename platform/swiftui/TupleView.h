// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ChildrenNode.h"

#include <tuple>
#include <utility>

namespace platform {

template <View... Views>
class TupleNode;

// Several views in the place of one: each stands in the surrounding stack by itself.
template <View... Views>
struct TupleView {
    std::tuple<Views...> views;

    using Node = TupleNode<Views...>;
    friend bool operator==(const TupleView& a, const TupleView& b)
        requires(std::equality_comparable<Views> && ...)
    = default;
};

template <View... Views>
class TupleNode final : public TupleChildren<ListNode, Views...> {
public:
    TupleNode(const NodeContext& context, const TupleView<Views...>& view)
        : TupleChildren<ListNode, Views...>(context, view.views)
    {
    }
    void update(const TupleView<Views...>& view) { this->updateChildren(view.views); }
};

// `Group{a, b}`: several views that are written, passed on and modified as one.
template <View... Views>
struct Group {
    std::tuple<Views...> views;

    explicit Group(Views... each)
        : views(std::move(each)...)
    {
    }
    class Node final : public TupleChildren<ListNode, Views...> {
    public:
        Node(const NodeContext& context, const Group& group)
            : TupleChildren<ListNode, Views...>(context, group.views)
        {
        }
        void update(const Group& group) { this->updateChildren(group.views); }
    };
    friend bool operator==(const Group& a, const Group& b)
        requires(std::equality_comparable<Views> && ...)
    = default;
};

} // namespace platform
