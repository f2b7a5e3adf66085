// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"

#include <cstddef>
#include <vector>

namespace platform {

// How high the rows of a column are of which only those were measured that were seen; the rest counts with an estimate.
// Every question takes logarithmic time. Heights are points, finite and not negative: others count as the estimate.
class RowHeights {
public:
    static constexpr CGFloat firstEstimate = 44;

    // `count` rows, none of them measured. The estimate stays.
    void reset(std::size_t count);
    std::size_t count() const { return heights_.size(); }
    CGFloat estimate() const { return estimate_; }
    // What has not been measured is as high as what has, on average, in whole points. Does nothing before anything was measured.
    void estimateFromMeasured();

    void set(std::size_t row, CGFloat height); // Requires: the row exists
    CGFloat height(std::size_t row) const;
    CGFloat offset(std::size_t row) const; // of the row's top; of the count: the total
    CGFloat total() const { return offset(count()); }
    // The row that a place is in; the first or the last one outside. Requires: there are rows.
    std::size_t rowAt(CGFloat place) const;

private:
    struct Sum {
        CGFloat height = 0;
        std::size_t measured = 0;
    };
    CGFloat heightOf(const Sum& sum, std::size_t rows) const
    {
        return sum.height + static_cast<CGFloat>(rows - sum.measured) * estimate_;
    }
    void add(std::size_t row, CGFloat height, std::size_t measured);

    std::vector<CGFloat> heights_; // negative: not measured
    std::vector<Sum> sums_;        // a binary indexed tree
    CGFloat estimate_ = firstEstimate;
};

} // namespace platform
