// SPDX-License-Identifier: MIT
#include "platform/foundation/NSScanner.h"

#include <gtest/gtest.h>

#include <optional>
#include <string_view>

namespace platform {
namespace {

TEST(NSScannerTests, hexadecimalNumbersAreReadUpToWhatIsNone)
{
    struct Case {
        std::string_view name, text;
        std::optional<std::uint64_t> value;
        std::size_t location = 0;
    };
    constexpr Case cases[]{
        {"nothing", "", {}},
        {"white space alone", " \n", {}},
        {"either case", "aBcDeF", 0xABCDEF, 6},
        {"zeros in front", "00FF", 0xFF, 4},
        {"stops at a letter", "12G", 0x12, 2},
        {"a prefix", "0x1F", 0x1F, 4},
        {"a large prefix", "0X1f", 0x1F, 4},
        {"a prefix of nothing is a digit", "0xG", 0, 1},
        {"one prefix only", "0x0x1", 0, 3},
        {"a sign is no digit", "-1", {}},
        {"space of every kind first", "\t\r\n\u00A0\u2003\u3000 7", 7, 13},
        {"a mark is no space", "\u03017", {}},
        {"wide digits are others", "\uFF17", {}},
        {"ill-formed", "\xE2\x80", {}},
        {"the largest", "FFFFFFFFFFFFFFFF", ~0ULL, 16},
        {"more than the largest", "10000000000000000", ~0ULL, 17},
        {"far more", "1000000000000000000000000000000001", ~0ULL, 34},
    };
    for (const auto& each : cases) {
        NSScanner scanner{std::string(each.text)};
        std::uint64_t value = 99;
        EXPECT_EQ(scanner.scanHexLongLong(&value), each.value.has_value()) << each.name;
        EXPECT_EQ(value, each.value.value_or(99)) << each.name;
        EXPECT_EQ(scanner.scanLocation(), each.location) << each.name;
    }
    NSScanner several("1 0xG ");
    std::uint64_t value = 0;
    EXPECT_TRUE(several.scanHexLongLong(&value) && several.scanHexLongLong(nullptr));
    EXPECT_FALSE(several.scanHexLongLong(&value));
    EXPECT_EQ(value, 1U);
    EXPECT_FALSE(several.isAtEnd());
}

} // namespace
} // namespace platform
