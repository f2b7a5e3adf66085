// SPDX-License-Identifier: MIT
#include "kit/theme/colorFromHex.h"
#include "kit/theme/hexString.h"
#include "kit/theme/uiColor.h"
#include "platform/graphics/CurrentAppearance.h"
#include "platform/graphics/UIImage.h"

#include <gtest/gtest.h>

namespace zelk {
namespace {

using platform::Color;
using platform::UIColor;

TEST(ColorHexTests, aTextIsAColorOrNothing)
{
    struct Case {
        std::string_view name, text;
        std::string_view printed; // empty: no colour
    };
    constexpr Case cases[]{
        {"eight digits after a hash", "#FF000080", "FF000080"},
        {"eight digits", "12345678", "12345678"},
        {"six digits are opaque", "FF0000", "FF0000FF"},
        {"six digits after a hash", "#0000FF", "0000FFFF"},
        {"lower case", "ff00aa", "FF00AAFF"},
        {"nothing", "", ""},
        {"a hash alone", "#", ""},
        {"two hashes", "##FF0000", ""},
        {"a second hash in the count", "##FF000", ""},
        {"three digits", "F00", ""},
        {"four digits", "F00F", ""},
        {"five", "FF000", ""},
        {"seven", "FF00000", ""},
        {"nine", "FF0000FF0", ""},
        {"a blank in front is too long", " FF0000", ""},
        {"a blank counts but is skipped", " FF000", "0FF000FF"},
        {"blanks of other scripts as well", "\u3000FF000", "0FF000FF"},
        {"a prefix counts but is skipped", "0xFF00", "00FF00FF"},
        {"a prefix with alpha", "0XFF8000", "00FF8000"},
        {"stops at what is no digit", "12345G", "012345FF"},
        {"a single digit", "1-----", "000001FF"},
        {"eight of which two count", "7Fzzzzzz", "0000007F"},
        {"no digit to begin with", "G12345", ""},
        {"a sign", "-12345", ""},
        {"blanks alone", "      ", ""},
        {"characters, not bytes, are counted", "FF00\u20AC\u20AC", "00FF00FF"},
        {"an accent belongs to its digit", "FF000e\u0301", "FF000EFF"},
        {"a family is one character", "FF000\U0001F469\u200D\U0001F467", "0FF000FF"},
        {"a line break is one character", "\r\nFF000", "0FF000FF"},
    };
    for (const auto& each : cases) {
        auto color = colorFromHex(each.text);
        EXPECT_EQ(color ? hexString(*color).value_or("none") : "", each.printed) << each.name;
        EXPECT_EQ(colorFromHex<Color>(each.text), color ? std::optional(Color{*color}) : std::nullopt)
            << each.name;
    }
    auto half = colorFromHex("#FF000080");
    ASSERT_TRUE(half);
    EXPECT_EQ(*half, UIColor(1, 0, 0, 128 / 255.0)) << "not 0.5";
}

TEST(ColorHexTests, componentsAreCutToTheRangeAndRounded)
{
    constexpr auto nan = std::numeric_limits<double>::quiet_NaN(),
                   inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(hexString(UIColor::white()), "FFFFFFFF");
    EXPECT_EQ(hexString(UIColor(0.5, 1.2, -0.2, 0.5)), "80FF0080") << "halves go up";
    EXPECT_EQ(hexString(UIColor(nan, inf, -inf, nan)), "00FF0000");
    EXPECT_EQ(hexString(UIColor(2.49 / 255, 2.5 / 255, 2.51 / 255, 1)), "020303FF");
    // The product is below a half in double precision, but is one as a float.
    EXPECT_EQ(hexString(UIColor(0.49999999999 / 255, 0, 0, 1)), "010000FF");
    for (int byte = 0; byte <= 255; ++byte) {
        UIColor color(byte / 255.0, 0, 1, byte / 255.0);
        auto text = hexString(color);
        ASSERT_TRUE(text);
        EXPECT_EQ(colorFromHex(*text), color) << "what was read once is stored and read for ever: " << *text;
    }
}

TEST(ColorHexTests, colorsThatAreNoSingleRGBAHaveNoText)
{
    auto dynamic = UIColor::dynamic(UIColor::red(), UIColor::blue());
    EXPECT_EQ(hexString(dynamic), "FF0000FF");
    {
        platform::CurrentAppearance dark({.isDark = true});
        EXPECT_EQ(hexString(dynamic), "0000FFFF");
    }
    EXPECT_EQ(hexString(Color{dynamic}), std::nullopt);
    EXPECT_EQ(uiColor(Color{dynamic}), std::nullopt);
    constexpr std::byte pixel[4]{};
    auto pattern = UIColor::pattern(platform::UIImage::fromPixels(pixel, 1, 1));
    EXPECT_EQ(hexString(pattern), std::nullopt);
    EXPECT_EQ(hexString(Color{pattern}), std::nullopt);
    EXPECT_EQ(uiColor(Color{pattern}), pattern);
    EXPECT_EQ(hexString(Color{UIColor::red()}), "FF0000FF");
}

} // namespace
} // namespace zelk
