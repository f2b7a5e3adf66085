// SPDX-License-Identifier: MIT
#include "platform/uikit/DirtyRegion.h"

#include <algorithm>
#include <limits>

namespace platform {

namespace {

CGFloat area(const CGRect& rect)
{
    return rect.isNull() ? 0 : rect.width() * rect.height();
}

} // namespace

bool DirtyRegion::contains(const CGRect& rect) const
{
    return std::ranges::any_of(rects_, [&](const CGRect& mine) { return mine.contains(rect); });
}

CGRect DirtyRegion::bounds() const
{
    auto result = CGRect::null();
    for (const auto& rect : rects_)
        result = result.unionWith(rect);
    return result;
}

void DirtyRegion::add(CGRect rect)
{
    if (rect.isEmpty() || contains(rect))
        return;
    mergeOverlapping(rect);
    while (rects_.size() > maximumCount)
        mergeCheapestPair();
}

// Takes in what the rectangle meets, and, as it grows by that, what it meets then.
void DirtyRegion::mergeOverlapping(CGRect rect)
{
    for (std::size_t i = 0; i < rects_.size();) {
        if (!rects_[i].intersects(rect)) {
            ++i;
            continue;
        }
        rect = rect.unionWith(rects_[i]);
        rects_.erase(rects_.begin() + static_cast<std::ptrdiff_t>(i));
        i = 0;
    }
    rects_.push_back(rect);
}

void DirtyRegion::mergeCheapestPair()
{
    auto cheapest = std::numeric_limits<CGFloat>::infinity();
    std::size_t first = 0, second = 1;
    for (std::size_t i = 0; i < rects_.size(); ++i) {
        for (std::size_t j = i + 1; j < rects_.size(); ++j) {
            auto cost = area(rects_[i].unionWith(rects_[j])) - area(rects_[i]) - area(rects_[j]);
            if (cost < cheapest) {
                cheapest = cost;
                first = i;
                second = j;
            }
        }
    }
    auto merged = rects_[first].unionWith(rects_[second]);
    rects_.erase(rects_.begin() + static_cast<std::ptrdiff_t>(second));
    rects_.erase(rects_.begin() + static_cast<std::ptrdiff_t>(first));
    mergeOverlapping(merged);
}

} // namespace platform
