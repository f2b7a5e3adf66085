// SPDX-License-Identifier: MIT
#include "platform/swiftui/RowHeights.h"

#include <bit>
#include <cmath>

namespace platform {

void RowHeights::reset(std::size_t count)
{
    heights_.assign(count, -1);
    sums_.assign(count + 1, {});
}

void RowHeights::add(std::size_t row, CGFloat height, std::size_t measured)
{
    for (auto at = row + 1; at < sums_.size(); at += at & (~at + 1)) {
        sums_[at].height += height;
        sums_[at].measured += measured;
    }
}

void RowHeights::set(std::size_t row, CGFloat height)
{
    if (!std::isfinite(height) || height < 0)
        height = estimate_;
    auto former = heights_[row];
    if (former == height)
        return;
    heights_[row] = height;
    add(row, former < 0 ? height : height - former, former < 0 ? 1 : 0);
}

CGFloat RowHeights::height(std::size_t row) const
{
    return heights_[row] < 0 ? estimate_ : heights_[row];
}

CGFloat RowHeights::offset(std::size_t row) const
{
    Sum sum;
    for (auto at = row; at > 0; at -= at & (~at + 1)) {
        sum.height += sums_[at].height;
        sum.measured += sums_[at].measured;
    }
    return heightOf(sum, row);
}

std::size_t RowHeights::rowAt(CGFloat place) const
{
    std::size_t row = 0;
    for (auto step = std::bit_floor(count()); step > 0; step /= 2) {
        if (row + step >= sums_.size())
            continue;
        auto height = heightOf(sums_[row + step], step);
        if (height > place)
            continue;
        place -= height;
        row += step;
    }
    return row < count() ? row : count() - 1;
}

void RowHeights::estimateFromMeasured()
{
    Sum all;
    for (auto at = count(); at > 0; at -= at & (~at + 1)) {
        all.height += sums_[at].height;
        all.measured += sums_[at].measured;
    }
    if (all.measured > 0)
        estimate_ = std::round(all.height / static_cast<CGFloat>(all.measured));
}

} // namespace platform
