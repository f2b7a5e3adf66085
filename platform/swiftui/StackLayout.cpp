// SPDX-License-Identifier: MIT
#include "platform/swiftui/StackLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace platform {

namespace {

constexpr auto infinity = std::numeric_limits<CGFloat>::infinity();

// What a part may take and how badly it wants it.
struct Wish {
    std::size_t index = 0;
    double priority = 0;
    CGFloat minimum = 0;
    CGFloat flexibility = 0; // how much longer than the minimum it can be
};

CGFloat less(CGFloat length, CGFloat taken)
{
    return std::isinf(length) ? length : usableLength(length - taken);
}

// How far a row or column reaches to both sides of the line on which its parts are aligned.
struct Extent {
    CGFloat before = 0;
    CGFloat after = 0;
    bool isEmpty = true;

    void add(CGFloat guide, CGFloat length)
    {
        auto rest = std::isinf(length) ? length : length - guide;
        before = isEmpty ? guide : std::max(before, guide);
        after = isEmpty ? rest : std::max(after, rest);
        isEmpty = false;
    }
    CGFloat length() const { return usableLength(before + after); }
};

} // namespace

CGFloat StackLayout::usableSpacing() const
{
    return std::isfinite(spacing) ? spacing : 0;
}

ProposedSize StackLayout::offer(std::optional<CGFloat> length, std::optional<CGFloat> across) const
{
    return axis == Axis::horizontal ? ProposedSize{length, across} : ProposedSize{across, length};
}

CGFloat StackLayout::crossGuide(const Part& part) const
{
    if (axis == Axis::horizontal)
        return part.node->guide(verticalAlignment, part.size);
    switch (horizontalAlignment) {
    case HorizontalAlignment::leading:
        return 0;
    case HorizontalAlignment::center:
        return part.size.width / 2;
    case HorizontalAlignment::trailing:
        break;
    }
    return part.size.width;
}

std::vector<StackLayout::Part> StackLayout::distribute(const std::vector<ViewNode*>& nodes,
                                                       const ProposedSize& proposal) const
{
    auto isRow = axis == Axis::horizontal;
    auto offered = isRow ? proposal.width : proposal.height;
    auto crossOffer = isRow ? proposal.height : proposal.width;

    std::vector<Part> parts;
    parts.reserve(nodes.size());
    for (auto* node : nodes)
        parts.push_back({node, offer(std::nullopt, crossOffer), {}});

    std::vector<Wish> wishes;
    for (std::size_t index = 0; index < parts.size(); ++index) {
        auto& part = parts[index];
        part.node->setStackAxis(axis);
        Wish wish{index, part.node->isSpacer() ? -infinity : part.node->layoutPriority()};
        if (std::isnan(wish.priority))
            wish.priority = 0;
        if (!offered || part.node->isRigid(axis)) {
            part.size = part.node->sizeThatFits(part.offer);
            wish.minimum = length(part.size);
        } else {
            wish.minimum = length(part.node->sizeThatFits(offer(0, crossOffer)));
            auto maximum = length(part.node->sizeThatFits(offer(infinity, crossOffer)));
            wish.flexibility = std::isinf(maximum) ? infinity : maximum - wish.minimum;
            part.offer = offer(0, crossOffer);
        }
        wishes.push_back(wish);
    }

    if (offered) {
        std::ranges::stable_sort(wishes, [](const Wish& a, const Wish& b) {
            return a.priority != b.priority ? a.priority > b.priority : a.flexibility < b.flexibility;
        });
        auto available = less(usableLength(*offered), usableSpacing() * (CGFloat(parts.size()) - 1));
        // The lesser ones keep at least their smallest lengths.
        auto reserved = std::accumulate(wishes.begin(), wishes.end(), 0.0,
                                        [](CGFloat sum, const Wish& wish) { return sum + wish.minimum; });
        for (auto first = wishes.begin(); first != wishes.end();) {
            auto last = std::find_if(first, wishes.end(),
                                     [&](const Wish& wish) { return wish.priority != first->priority; });
            reserved = std::accumulate(first, last, reserved,
                                       [](CGFloat sum, const Wish& wish) { return less(sum, wish.minimum); });
            auto rest = less(available, reserved);
            auto taken = 0.0;
            for (auto wish = first; wish != last; ++wish) {
                auto& part = parts[wish->index];
                auto isRigid = !(isRow ? part.offer.width : part.offer.height);
                if (!isRigid) {
                    part.offer = offer(rest / CGFloat(last - wish), crossOffer);
                    part.size = part.node->sizeThatFits(part.offer);
                }
                rest = less(rest, length(part.size));
                taken += length(part.size);
            }
            available = less(available, taken);
            first = last;
        }
    }

    CGFloat position = 0;
    for (auto& part : parts) {
        part.start = position;
        position += length(part.size) + usableSpacing();
    }
    return parts;
}

CGSize StackLayout::sizeOf(const std::vector<ViewNode*>& nodes, const ProposedSize& proposal) const
{
    if (nodes.empty())
        return {};
    auto parts = distribute(nodes, proposal);
    Extent extent;
    for (auto& part : parts)
        extent.add(crossGuide(part), across(part.size));
    auto total = parts.back().start + length(parts.back().size);
    return axis == Axis::horizontal ? CGSize{total, extent.length()} : CGSize{extent.length(), total};
}

void StackLayout::arrange(const std::vector<ViewNode*>& nodes, CGRect rect, const ProposedSize& proposal,
                          Direction direction) const
{
    auto isRow = axis == Axis::horizontal;
    auto parts = distribute(nodes, proposal);
    // Where no length across was offered, views that would take any take that of the whole.
    if (!(isRow ? proposal.height : proposal.width)) {
        for (auto& part : parts) {
            if (part.node->isRigid(isRow ? Axis::vertical : Axis::horizontal))
                continue;
            part.offer = offer(length(part.size), across(rect.size));
            part.size = part.node->sizeThatFits(part.offer);
        }
    }
    Extent extent;
    for (auto& part : parts)
        extent.add(crossGuide(part), across(part.size));
    for (auto& part : parts) {
        auto aside = extent.before - crossGuide(part);
        auto place = isRow ? CGPoint{part.start, aside} : CGPoint{aside, part.start};
        if (direction == Direction::rightToLeft)
            place.x = rect.size.width - place.x - part.size.width;
        part.node->place({rect.origin + place, part.size}, part.offer);
    }
}

CGFloat StackLayout::guideOf(const std::vector<ViewNode*>& nodes, VerticalAlignment alignment,
                             CGSize size) const
{
    auto parts = distribute(nodes, ProposedSize::of(size));
    auto isFirst = alignment == VerticalAlignment::firstTextBaseline;
    if (axis == Axis::vertical) {
        auto& part = isFirst ? parts.front() : parts.back();
        return part.start + part.node->guide(alignment, part.size);
    }
    Extent extent;
    for (auto& part : parts)
        extent.add(crossGuide(part), part.size.height);
    std::optional<CGFloat> result;
    for (auto& part : parts) {
        if (part.node->isSpacer())
            continue;
        auto guide = extent.before - crossGuide(part) + part.node->guide(alignment, part.size);
        result = !result ? guide : isFirst ? std::min(*result, guide) : std::max(*result, guide);
    }
    return result.value_or(size.height);
}

bool StackLayout::isRigid(const std::vector<ViewNode*>& parts, Axis along) const
{
    return std::ranges::all_of(parts, [&](ViewNode* part) {
        part->setStackAxis(axis);
        return part->isRigid(along);
    });
}

} // namespace platform
