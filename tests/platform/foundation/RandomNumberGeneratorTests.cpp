// SPDX-License-Identifier: MIT
#include "platform/foundation/RandomNumberGenerator.h"

#include <gtest/gtest.h>

#include <set>
#include <utility>
#include <vector>

namespace platform {
namespace {

class KnownNumbers final : public RandomNumberGenerator {
public:
    explicit KnownNumbers(std::vector<std::uint64_t> numbers)
        : numbers_(std::move(numbers))
    {
    }
    using RandomNumberGenerator::next;
    std::uint64_t next() override { return numbers_.at(place_++); }
    std::size_t drawn() const { return place_; }

private:
    std::vector<std::uint64_t> numbers_;
    std::size_t place_ = 0;
};

TEST(RandomNumberGeneratorTests, aBoundedNumberIsDrawnAgainWhereItWouldBeLikelierThanOthers)
{
    // 2^64 numbers fall on 3 results evenly but for one: the number 0.
    KnownNumbers thirds({0, 1, ~0ULL});
    EXPECT_EQ(thirds.next(3), 0U);
    EXPECT_EQ(thirds.drawn(), 2U);
    EXPECT_EQ(thirds.next(3), 2U);
    KnownNumbers whole({5, ~0ULL});
    EXPECT_EQ(whole.next(1), 0U);
    EXPECT_EQ(whole.next(1ULL << 63), (1ULL << 63) - 1);
    EXPECT_DEATH(KnownNumbers({1}).next(0), "random number below zero");
}

TEST(RandomNumberGeneratorTests, theSystemsNumbersDoNotRepeat)
{
    std::set<std::uint64_t> seen;
    for (int i = 0; i < 100; ++i)
        seen.insert(SystemRandomNumberGenerator::shared().next());
    EXPECT_EQ(seen.size(), 100U);
}

} // namespace
} // namespace platform
