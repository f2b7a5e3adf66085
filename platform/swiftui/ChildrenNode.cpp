// SPDX-License-Identifier: MIT
#include "platform/swiftui/ChildrenNode.h"

#include "platform/foundation/Logger.h"
#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/ViewContainer.h"
#include "platform/swiftui/ViewHost.h"

#include <utility>

namespace platform {

ChildrenNode::~ChildrenNode() = default;

void ChildrenNode::forEachChild(const std::function<void(ViewNode&)>& visit) const
{
    for (auto& child : children_)
        visit(*child);
}

std::vector<ViewNode*> ChildrenNode::layoutParts() const
{
    std::vector<ViewNode*> parts;
    parts.reserve(children_.size());
    for (auto& child : children_)
        child->appendLayoutNodes(parts);
    return parts;
}

StackLayout::Direction ChildrenNode::direction()
{
    return environment<LayoutDirectionKey>() == LayoutDirection::rightToLeft
        ? StackLayout::Direction::rightToLeft
        : StackLayout::Direction::leftToRight;
}

void ChildrenNode::rearrange(const std::vector<std::size_t>& sources,
                             const std::function<std::unique_ptr<ViewNode>(std::size_t)>& make)
{
    auto former = std::exchange(children_, {});
    children_.reserve(sources.size());
    for (std::size_t index = 0; index < sources.size(); ++index)
        children_.push_back(sources[index] == newChild ? make(index) : std::move(former[sources[index]]));
    for (auto& node : former) {
        if (node)
            host().retire(std::move(node));
    }
    container().contentsDidChange();
    invalidateLayout();
}

void ListNode::appendLayoutNodes(std::vector<ViewNode*>& nodes)
{
    forEachChild([&](ViewNode& child) { child.appendLayoutNodes(nodes); });
}

bool ListNode::isRigid(Axis axis) const
{
    return StackLayout{}.isRigid(layoutParts(), axis);
}

CGFloat ListNode::guide(VerticalAlignment alignment, CGSize size)
{
    auto parts = layoutParts();
    if (alignment < VerticalAlignment::firstTextBaseline || parts.empty())
        return ViewNode::guide(alignment, size);
    return StackLayout{}.guideOf(parts, alignment, size);
}

CGSize ListNode::measure(const ProposedSize& proposal)
{
    return StackLayout{}.sizeOf(layoutParts(), proposal);
}

void ListNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    StackLayout{}.arrange(layoutParts(), rect, proposal, direction());
}

void ListNode::reportDuplicates()
{
    if (std::exchange(hasReportedDuplicates_, true))
        return;
    Logger("org.zelk.platform", "swiftui")
        .error("elements of a ForEach share an identity; their state stays with their number among those");
}

} // namespace platform
