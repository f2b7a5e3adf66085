// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/StackLayout.h"
#include "platform/swiftui/View.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

namespace platform {

// A node with any number of children, in painting order.
class ChildrenNode : public ViewNode {
public:
    explicit ChildrenNode(const NodeContext& context)
        : ViewNode(context)
    {
    }
    ~ChildrenNode() override;
    void forEachChild(const std::function<void(ViewNode&)>& visit) const override;

protected:
    void addChild(std::unique_ptr<ViewNode> node) { children_.push_back(std::move(node)); }
    ViewNode& child(std::size_t index) const { return *children_[index]; }
    std::size_t childCount() const { return children_.size(); }
    // What is laid out: the children, or their parts where they are lists.
    std::vector<ViewNode*> layoutParts() const;
    StackLayout::Direction direction();

    static constexpr std::size_t newChild = static_cast<std::size_t>(-1);
    // The children from now on: each the former one of that index, or a new one that `make` gives for the index it
    // will have. Those that are not named leave. Requires: no former index comes twice.
    void rearrange(const std::vector<std::size_t>& sources,
                   const std::function<std::unique_ptr<ViewNode>(std::size_t)>& make);

private:
    std::vector<std::unique_ptr<ViewNode>> children_;
};

// Views that stand in the surrounding stack one by one. Laid out as a single view they are a column.
class ListNode : public ChildrenNode {
public:
    using ChildrenNode::ChildrenNode;
    void appendLayoutNodes(std::vector<ViewNode*>& nodes) override;
    bool isRigid(Axis axis) const override;
    CGFloat guide(VerticalAlignment alignment, CGSize size) override;

protected:
    CGSize measure(const ProposedSize& proposal) override;
    void arrange(CGRect rect, const ProposedSize& proposal) override;
    // Logs, once for each place, that children share an identity.
    void reportDuplicates();

private:
    bool hasReportedDuplicates_ = false;
};

// A ChildrenNode whose children are a fixed number of views, each of its own type.
template <class Base, View... Views>
class TupleChildren : public Base {
protected:
    template <class... Arguments>
    TupleChildren(const NodeContext& context, const std::tuple<Views...>& views,
                  const Arguments&... arguments)
        : Base(context, arguments...)
    {
        const auto below = context.below(*this);
        eachIndex([&]<std::size_t... index>(std::index_sequence<index...>) {
            (this->addChild(makeNode(below, std::get<index>(views))), ...);
        });
    }
    void updateChildren(const std::tuple<Views...>& views)
    {
        eachIndex([&]<std::size_t... index>(std::index_sequence<index...>) {
            (updateNode(this->child(index), std::get<index>(views)), ...);
        });
    }

private:
    static void eachIndex(const auto& perform) { perform(std::index_sequence_for<Views...>{}); }
};

} // namespace platform
