// SPDX-License-Identifier: MIT
#include "platform/foundation/NSScanner.h"

#include <gtest/gtest.h>

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
        {"white space alone", " \n", {}},
        {"a prefix of nothing is a digit", "0xG", 0, 1},
        {"one prefix only", "0x0x1", 0, 3},
        {"space of every kind first", "\t\r\n\u00A0\u2003\u3000 7", 7, 13},
        {"wide digits are others", "\uFF17", {}},
        {"ill-formed", "\xE2\x80", {}},
        {"the largest", "FFFFFFFFFFFFFFFF", ~0ULL, 16},
        {"far more", "1000000000000000000000000000000001 2", ~0ULL, 34},
    };
    for (const auto& each : cases) {
        NSScanner scanner{std::string(each.text)};
        std::uint64_t value = 99;
        EXPECT_EQ(scanner.scanHexLongLong(&value), each.value.has_value()) << each.name;
        EXPECT_EQ(value, each.value.value_or(99)) << each.name;
        EXPECT_EQ(scanner.scanLocation(), each.location) << each.name;
    }
}

} // namespace
} // namespace platform
