// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Alignment.h"
#include "platform/swiftui/EnvironmentScope.h"
#include "platform/swiftui/Forward.h"
#include "platform/swiftui/ProposedSize.h"
#include "platform/uikit/Forward.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace platform {

enum class Axis { horizontal, vertical };

// Where a node is mounted.
struct NodeContext {
    ViewHost& host;
    ViewNode* parent = nullptr;
    std::shared_ptr<EnvironmentScope> environment;
    ViewContainer* container = nullptr; // whose platform view holds the node's platform views

    NodeContext below(ViewNode& node) const
    {
        auto context = *this;
        context.parent = &node;
        return context;
    }
};

// The persistent side of a declarative view: made when the view is first described at a place, told of each
// new description, gone when the place is. Owns its children, the state kept for it, and the platform view it
// drew. Owned by its parent node. Main thread only.
//
// Layout: a parent calls sizeThatFits with what it offers, as often as it likes, then place once. Both are
// remembered: a node that did not change answers from memory.
class ViewNode {
public:
    explicit ViewNode(const NodeContext& context);
    virtual ~ViewNode();
    // Parents, hosts and change sources hold its address.
    ViewNode(const ViewNode&) = delete;
    ViewNode& operator=(const ViewNode&) = delete;

    ViewHost& host() const { return context_.host; }
    ViewNode* parent() const { return context_.parent; }
    ViewContainer& container() const { return *context_.container; }
    const NodeContext& context() const { return context_; }
    int depth() const { return depth_; }
    std::uint64_t number() const { return number_; } // of its mounting: one that came later has a larger one

    // --- Change -----------------------------------------------------------------------------------
    // Asks for `refresh` before the run loop sleeps.
    void markDirty();
    // Something that was read has changed: describe or draw again. Parents come first. Default: lays out again.
    virtual void refresh() { invalidateLayout(); }
    // Registers this node with what it read; until the next `forgetSources` or its end.
    void dependOn(const std::shared_ptr<ChangeSource>& source);
    void forgetSources();
    // The environment's value here; a change refreshes this node.
    template <EnvironmentKey Key>
    typename Key::Value environment()
    {
        return context_.environment->value<Key>(this);
    }

    // --- Layout -----------------------------------------------------------------------------------
    CGSize sizeThatFits(const ProposedSize& proposal);
    // `rect` is in the container's coordinates; `proposal` is what its size was computed from.
    void place(CGRect rect, const ProposedSize& proposal);
    CGRect placedRect() const { return rect_; }
    // Sizes and places of this node are out of date.
    void invalidateLayout();
    // The nodes that a container lays out for this one: itself, or its parts when it is a list of views.
    virtual void appendLayoutNodes(std::vector<ViewNode*>& nodes) { nodes.push_back(this); }
    // Whether the length along `axis` depends on nothing but the other length offered. Spares measuring.
    virtual bool isRigid(Axis) const { return false; }
    virtual double layoutPriority() const { return 0; }
    virtual bool isSpacer() const { return false; }
    // The stack around this node, for views that look different in rows and columns.
    virtual void setStackAxis(std::optional<Axis>) { }
    // Distance of the guide from the top, in a view of that size.
    virtual CGFloat guide(VerticalAlignment alignment, CGSize size);
    virtual bool ignoresSafeArea() const { return false; }

    // --- What it put on screen --------------------------------------------------------------------
    // The platform views of this node and below that stand directly in its container, in painting order.
    virtual void appendPlatformViews(std::vector<std::shared_ptr<UIView>>& views) const;
    // The platform views that show something themselves, through groups: for what a modifier says of the content.
    virtual void appendContentViews(std::vector<std::shared_ptr<UIView>>& views) const;
    // Every child, in painting order: backgrounds before content, overlays after.
    virtual void forEachChild(const std::function<void(ViewNode&)>&) const { }
    // The node whose removal is animated when this one is removed; null when it goes at once.
    virtual ViewNode* transitionNode() { return nullptr; }

protected:
    // Sizes for an offer; pure but for what it remembers. Default: the first child's.
    virtual CGSize measure(const ProposedSize& proposal);
    // Gives the children, or the platform view, their places. Default: the first child fills it.
    virtual void arrange(CGRect rect, const ProposedSize& proposal);
    ViewNode* onlyChild() const;

private:
    friend class ViewHost;
    void forgetSizes();
    // Has left the tree but is seen for a while: it and what is below follow nothing any more.
    void detach();
    // Places again where it was if its answers are the same as before; false when the parent has to decide.
    bool absorbLayoutChange();

    struct Measured {
        ProposedSize proposal;
        CGSize size;
    };

    const NodeContext context_;
    const int depth_;
    const std::uint64_t number_;
    std::vector<std::shared_ptr<ChangeSource>> sources_;
    std::vector<Measured> measured_; // the offers since the last change, a few
    CGRect rect_;
    ProposedSize placedProposal_;
    bool isDetached_ = false; // its parent may be gone
    bool isDirty_ = false;
    bool isLayoutDirty_ = false;
    bool needsPlacing_ = true;
};

} // namespace platform
