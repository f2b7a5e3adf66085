// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace platform {

class UIView;

// Where the subviews of one view show anything, so that of ten thousand rows only those are looked at that are seen.
//
// The subviews, in the order of the tree, are taken together sixteen at a time, those groups again, and so on; of each
// group the rectangle around it is kept. Rows and columns come in the order of their places, so a group of neighbours
// is small; any other order is found as well, only slower. What changes is marked and counted anew when somebody asks.
// Owned by the view; main thread only.
class SubviewBounds {
public:
    // Around all that the subviews show, in the view's coordinates; null where they show nothing.
    CGRect all(const UIView& view);
    // The subviews that may show something in `rect`, from back to front.
    std::vector<std::shared_ptr<UIView>> seenIn(const UIView& view, CGRect rect);

    // A subview has another place. False when it was known already that this view has to be asked again.
    bool markChanged(const UIView& view, const UIView& subview);
    // Subviews came, went, or have another order. False as above.
    bool markReordered();

private:
    static constexpr std::size_t groupSize = 16;
    struct Group {
        CGRect bounds;
        bool isStale = true;
    };
    void build(const UIView& view);
    // The groups of a level, the lowest being 0: where they begin in `groups_` and how many they are.
    struct Level {
        std::size_t first = 0;
        std::size_t count = 0;
    };
    Level level(std::size_t number) const;
    const CGRect& refresh(const UIView& view, std::size_t number, std::size_t index);
    void collect(const UIView& view, std::size_t number, std::size_t index, const CGRect& rect,
                 std::vector<std::shared_ptr<UIView>>& seen);

    std::vector<Group> groups_; // the lowest level first; empty: to be built
    std::size_t levelCount_ = 0;
    std::size_t subviewCount_ = 0;
};

} // namespace platform
