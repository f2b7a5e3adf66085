// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"

#include <vector>

namespace platform {

// Where a surface is out of date: a few rectangles that do not overlap. It may grow to more than was added (never
// less), when one rectangle costs less to paint than many.
class DirtyRegion {
public:
    static constexpr std::size_t maximumCount = 8;

    // An empty rectangle adds nothing.
    void add(CGRect rect);
    void clear() { rects_.clear(); }
    bool isEmpty() const { return rects_.empty(); }
    bool contains(const CGRect& rect) const; // in one of the rectangles
    const std::vector<CGRect>& rects() const { return rects_; }
    CGRect bounds() const; // null when empty

private:
    void mergeOverlapping(CGRect rect);
    void mergeCheapestPair();

    std::vector<CGRect> rects_;
};

} // namespace platform
