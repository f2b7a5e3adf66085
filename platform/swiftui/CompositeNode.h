// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/View.h"
#include "platform/swiftui/ViewHost.h"

#include <memory>
#include <utility>

namespace platform {

// A node with one child that fills it: what composite views and most modifiers are.
class UnaryNode : public ViewNode {
public:
    using ViewNode::ViewNode;

    void forEachChild(const std::function<void(ViewNode&)>& visit) const override
    {
        if (child_)
            visit(*child_);
    }
    bool isRigid(Axis axis) const override { return child_ && child_->isRigid(axis); }
    double layoutPriority() const override { return child_ ? child_->layoutPriority() : 0; }
    bool isSpacer() const override { return child_ && child_->isSpacer(); }
    bool ignoresSafeArea() const override { return child_ && child_->ignoresSafeArea(); }
    void setStackAxis(std::optional<Axis> axis) override
    {
        if (child_)
            child_->setStackAxis(axis);
    }
    CGFloat guide(VerticalAlignment alignment, CGSize size) override
    {
        return child_ ? child_->guide(alignment, size) : ViewNode::guide(alignment, size);
    }
    ViewNode* transitionNode() override { return child_ ? child_->transitionNode() : nullptr; }

protected:
    ViewNode& child() const { return *child_; }
    void setChild(std::unique_ptr<ViewNode> child) { child_ = std::move(child); }
    // The place has another identity now: what stood there leaves, with its transition if it has one.
    void replaceChild(std::unique_ptr<ViewNode> child)
    {
        host().retire(std::exchange(child_, std::move(child)));
        container().contentsDidChange();
        invalidateLayout();
    }

private:
    std::unique_ptr<ViewNode> child_;
};

// A view that describes itself by others: keeps its record, its state, and the node of its body.
template <CompositeView V>
class CompositeNode final : public UnaryNode {
    using Body = std::remove_cvref_t<decltype(std::declval<const V&>().body())>;

public:
    CompositeNode(const NodeContext& context, const V& view)
        : UnaryNode(context)
        , record_(view)
    {
        detail::connectProperties(record_, *this, storage_);
        setChild(makeNode(context.below(*this), evaluate()));
    }

    void update(const V& view)
    {
        if (detail::isSameRecord(view, record_))
            return;
        record_ = view;
        refresh();
    }

    void refresh() override
    {
        forgetSources();
        detail::connectProperties(record_, *this, storage_);
        updateNode<Body>(child(), evaluate());
    }

    // A body may be a list of views, which then stand in the surrounding stack one by one.
    void appendLayoutNodes(std::vector<ViewNode*>& nodes) override { child().appendLayoutNodes(nodes); }

private:
    Body evaluate()
    {
        ViewHost::Evaluation evaluation(host());
        return std::as_const(record_).body();
    }

    V record_;
    PropertyStorage storage_;
};

} // namespace platform
