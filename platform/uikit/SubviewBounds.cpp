// SPDX-License-Identifier: MIT
#include "platform/uikit/SubviewBounds.h"

#include "platform/foundation/Precondition.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/text/SelfCheck.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// But for what adding in another order makes.
bool isNear(const CGRect& a, const CGRect& b)
{
    auto isNearNumber = [](CGFloat x, CGFloat y) { return std::abs(x - y) <= 1e-6 * (1 + std::abs(x)); };
    return a.isNull() || b.isNull() ? a.isNull() && b.isNull()
                                    : isNearNumber(a.minX(), b.minX()) && isNearNumber(a.maxX(), b.maxX())
            && isNearNumber(a.minY(), b.minY()) && isNearNumber(a.maxY(), b.maxY());
}

} // namespace

SubviewBounds::Level SubviewBounds::level(std::size_t number) const
{
    Level result{0, (subviewCount_ + groupSize - 1) / groupSize};
    for (; number > 0; --number)
        result = {result.first + result.count, (result.count + groupSize - 1) / groupSize};
    return result;
}

void SubviewBounds::build(const UIView& view)
{
    if (!groups_.empty() || view.subviews_.empty())
        return;
    subviewCount_ = view.subviews_.size();
    levelCount_ = 1;
    while (level(levelCount_ - 1).count > 1)
        ++levelCount_;
    auto top = level(levelCount_ - 1);
    groups_.resize(top.first + top.count);
    for (std::size_t i = 0; i < subviewCount_; ++i)
        view.subviews_[i]->placeAmongSubviews_ = static_cast<std::uint32_t>(i);
}

const CGRect& SubviewBounds::refresh(const UIView& view, std::size_t number, std::size_t index)
{
    auto [first, count] = level(number);
    auto& group = groups_[first + index];
    if (!std::exchange(group.isStale, false))
        return group.bounds;
    auto below = number == 0 ? subviewCount_ : level(number - 1).count;
    auto bounds = CGRect::null();
    for (auto i = index * groupSize; i < std::min((index + 1) * groupSize, below); ++i)
        bounds =
            bounds.unionWith(number == 0 ? view.subviews_[i]->visualFrame() : refresh(view, number - 1, i));
    group.bounds = bounds;
    return group.bounds;
}

CGRect SubviewBounds::all(const UIView& view)
{
    build(view);
    auto bounds = groups_.empty() ? CGRect::null() : refresh(view, levelCount_ - 1, 0);
    if constexpr (provesCaches) {
        auto counted = CGRect::null();
        for (const auto& subview : view.subviews_)
            counted = counted.unionWith(subview->visualFrame());
        precondition(isNear(bounds, counted),
                     "a subview's place changed and the view around it was not told");
    }
    return bounds;
}

void SubviewBounds::collect(const UIView& view, std::size_t number, std::size_t index, const CGRect& rect,
                            std::vector<std::shared_ptr<UIView>>& seen)
{
    if (!refresh(view, number, index).intersects(rect))
        return;
    auto below = number == 0 ? subviewCount_ : level(number - 1).count;
    for (auto i = index * groupSize; i < std::min((index + 1) * groupSize, below); ++i) {
        if (number > 0)
            collect(view, number - 1, i, rect, seen);
        else if (view.subviews_[i]->visualFrame().intersects(rect))
            seen.push_back(view.subviews_[i]);
    }
}

std::vector<std::shared_ptr<UIView>> SubviewBounds::seenIn(const UIView& view, CGRect rect)
{
    std::vector<std::shared_ptr<UIView>> seen;
    build(view);
    if (groups_.empty())
        return seen;
    collect(view, levelCount_ - 1, 0, rect, seen);
    if (!std::ranges::is_sorted(seen, {}, &UIView::zPosition))
        std::ranges::stable_sort(seen, {}, &UIView::zPosition);
    return seen;
}

bool SubviewBounds::markChanged(const UIView& view, const UIView& subview)
{
    if (groups_.empty())
        return false;
    std::size_t index = subview.placeAmongSubviews_;
    precondition(index < view.subviews_.size() && view.subviews_[index].get() == &subview,
                 "the order of subviews changed and the view around them was not told");
    for (std::size_t number = 0; number < levelCount_; ++number) {
        index /= groupSize;
        auto& group = groups_[level(number).first + index];
        if (std::exchange(group.isStale, true))
            return false;
    }
    return true;
}

bool SubviewBounds::markReordered()
{
    auto wasKnown = !groups_.empty() && !groups_.back().isStale;
    groups_.clear();
    return wasKnown;
}

} // namespace platform
