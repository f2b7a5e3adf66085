// SPDX-License-Identifier: MIT
#include "platform/swiftui/ViewNode.h"

#include "platform/swiftui/ViewHost.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// Stacks ask for the smallest, the largest and the final size; a few more offers fit before the oldest goes.
constexpr std::size_t rememberedSizes = 6;

CGSize usable(CGSize size)
{
    return {usableLength(size.width), usableLength(size.height)};
}

std::uint64_t nextNumber = 0; // main thread only

// What cannot be placed takes what it was offered, or nothing.
CGFloat finiteLength(CGFloat length, std::optional<CGFloat> offered)
{
    if (std::isfinite(length))
        return length;
    return offered && std::isfinite(*offered) ? usableLength(*offered) : 0;
}

} // namespace

ViewNode::ViewNode(const NodeContext& context)
    : context_(context)
    , depth_(context.parent ? context.parent->depth_ + 1 : 0)
    , number_(nextNumber++)
{
    host().nodeMounted();
}

ViewNode::~ViewNode()
{
    forgetSources();
    host().nodeUnmounted(*this);
}

void ViewNode::markDirty()
{
    if (isDirty_ || isDetached_)
        return;
    isDirty_ = true;
    host().addDirty(*this);
}

void ViewNode::dependOn(const std::shared_ptr<ChangeSource>& source)
{
    if (!isDetached_ && source->dependents_.insert(this).second)
        sources_.push_back(source);
}

void ViewNode::forgetSources()
{
    for (auto& source : sources_)
        source->dependents_.erase(this);
    sources_.clear();
}

void ViewNode::detach()
{
    isDetached_ = true;
    forgetSources();
    host().forget(*this);
    forEachChild([](ViewNode& child) { child.detach(); });
}

CGSize ViewNode::sizeThatFits(const ProposedSize& proposal)
{
    auto found = std::ranges::find(measured_, proposal, &Measured::proposal);
    if (found != measured_.end())
        return found->size;
    auto size = usable(measure(proposal));
    host().nodeMeasured();
    if (measured_.size() == rememberedSizes)
        measured_.erase(measured_.begin());
    measured_.push_back({proposal, size});
    return size;
}

void ViewNode::place(CGRect rect, const ProposedSize& proposal)
{
    if (!std::isfinite(rect.origin.x) || !std::isfinite(rect.origin.y))
        rect.origin = {};
    rect.size = {finiteLength(rect.size.width, proposal.width),
                 finiteLength(rect.size.height, proposal.height)};
    if (!needsPlacing_ && !isLayoutDirty_ && rect == rect_ && proposal == placedProposal_)
        return;
    rect_ = rect;
    placedProposal_ = proposal;
    needsPlacing_ = false;
    isLayoutDirty_ = false;
    host().nodePlaced();
    arrange(rect, proposal);
}

void ViewNode::invalidateLayout()
{
    if (isLayoutDirty_ || isDetached_)
        return;
    isLayoutDirty_ = true;
    host().addLayoutDirty(*this);
}

void ViewNode::forgetSizes()
{
    measured_.clear();
    needsPlacing_ = true;
}

bool ViewNode::absorbLayoutChange()
{
    if (needsPlacing_ && measured_.empty())
        return false; // never laid out: the parent does it
    auto former = std::move(measured_);
    measured_.clear();
    for (auto& each : former) {
        if (sizeThatFits(each.proposal) != each.size) {
            needsPlacing_ = true;
            return false;
        }
    }
    needsPlacing_ = true;
    place(rect_, placedProposal_);
    return true;
}

CGFloat ViewNode::guide(VerticalAlignment alignment, CGSize size)
{
    if (auto* child = onlyChild(); child && alignment >= VerticalAlignment::firstTextBaseline)
        return child->guide(alignment, size);
    switch (alignment) {
    case VerticalAlignment::top:
        return 0;
    case VerticalAlignment::center:
        return size.height / 2;
    case VerticalAlignment::bottom:
    case VerticalAlignment::firstTextBaseline:
    case VerticalAlignment::lastTextBaseline:
        break;
    }
    return size.height;
}

void ViewNode::appendPlatformViews(std::vector<std::shared_ptr<UIView>>& views) const
{
    forEachChild([&](ViewNode& child) { child.appendPlatformViews(views); });
}

void ViewNode::appendContentViews(std::vector<std::shared_ptr<UIView>>& views) const
{
    forEachChild([&](ViewNode& child) { child.appendContentViews(views); });
}

CGSize ViewNode::measure(const ProposedSize& proposal)
{
    auto* child = onlyChild();
    return child ? child->sizeThatFits(proposal) : CGSize{};
}

void ViewNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    if (auto* child = onlyChild())
        child->place(rect, proposal);
}

ViewNode* ViewNode::onlyChild() const
{
    ViewNode* only = nullptr;
    int count = 0;
    forEachChild([&](ViewNode& child) {
        only = &child;
        ++count;
    });
    return count == 1 ? only : nullptr;
}

} // namespace platform
