// SPDX-License-Identifier: MIT
#include "platform/uikit/DirtyRegion.h"

#include <gtest/gtest.h>
#include <random>

namespace {

using namespace platform;

TEST(DirtyRegion, merges_what_meets_and_keeps_apart_what_does_not)
{
    using Rects = std::vector<CGRect>;
    auto rect = CGRect::make;
    const std::tuple<std::string_view, Rects, Rects> cases[] = {
        {"nothing", {}, {}},
        {"empty rectangles", {rect(1, 1, 0, 5), CGRect::null(), rect(2, 2, 5, 0)}, {}},
        {"apart", {rect(0, 0, 10, 10), rect(50, 50, 10, 10)}, {rect(0, 0, 10, 10), rect(50, 50, 10, 10)}},
        {"inside", {rect(0, 0, 10, 10), rect(2, 2, 3, 3)}, {rect(0, 0, 10, 10)}},
        {"around", {rect(2, 2, 3, 3), rect(0, 0, 10, 10)}, {rect(0, 0, 10, 10)}},
        {"edge to edge stay apart",
         {rect(0, 0, 10, 10), rect(10, 0, 10, 10)},
         {rect(0, 0, 10, 10), rect(10, 0, 10, 10)}},
        {"overlapping", {rect(0, 0, 10, 10), rect(5, 5, 10, 10)}, {rect(0, 0, 15, 15)}},
        {"one that joins two, which then meet a third",
         {rect(0, 0, 10, 10), rect(20, 0, 10, 10), rect(8, 8, 3, 20), rect(9, 5, 12, 1)},
         {rect(0, 0, 30, 28)}},
    };
    for (const auto& [name, added, expected] : cases) {
        SCOPED_TRACE(name);
        DirtyRegion region;
        for (const auto& each : added)
            region.add(each);
        EXPECT_EQ(region.rects(), expected);
    }
}

TEST(DirtyRegion, stays_small_covers_all_and_never_overlaps_whatever_is_added)
{
    std::mt19937 random(7);
    auto number = [&](int limit) { return static_cast<CGFloat>(random() % static_cast<unsigned>(limit)); };
    for (int trial = 0; trial < 200; ++trial) {
        DirtyRegion region;
        std::vector<CGRect> added;
        for (int i = 0; i < 30; ++i) {
            added.push_back(CGRect::make(number(500), number(500), number(40), number(40)));
            region.add(added.back());
        }
        const auto& rects = region.rects();
        ASSERT_LE(rects.size(), DirtyRegion::maximumCount);
        for (const auto& each : added)
            ASSERT_TRUE(each.isEmpty() || region.contains(each));
        for (std::size_t i = 0; i < rects.size(); ++i) {
            for (std::size_t j = i + 1; j < rects.size(); ++j)
                ASSERT_FALSE(rects[i].intersects(rects[j]));
        }
    }
}

} // namespace
