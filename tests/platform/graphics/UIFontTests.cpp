// SPDX-License-Identifier: MIT
#include "platform/graphics/UIFont.h"

#include "platform/graphics/TextLayout.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(UIFontTests, everyTextStyleFollowsThePersonsTextSize)
{
    auto category = UIContentSizeCategory::extraSmall;
    for (auto size : {14, 15, 16, 17, 19, 21, 23, 28, 33, 40, 47, 53}) {
        EXPECT_EQ(UIFont::preferredFont(FontTextStyle::body, category).pointSize(), size);
        for (int style = 0; style <= static_cast<int>(FontTextStyle::caption2); ++style)
            EXPECT_LE(preferredPointSize(static_cast<FontTextStyle>(style), category),
                      preferredPointSize(static_cast<FontTextStyle>(style), larger(category)));
        EXPECT_TRUE(larger(category) == category || smaller(larger(category)) == category);
        category = larger(category);
    }
    EXPECT_EQ(category, UIContentSizeCategory::accessibilityExtraExtraExtraLarge) << "the last one stays";
}

TEST(UIFontTests, theDesktopsTextScalingMultipliesAndIllegalSizesBecomeLegal)
{
    auto scaled = [](double by) { return UIFont::preferredFont(FontTextStyle::body, {}, by).pointSize(); };
    EXPECT_EQ(scaled(1.5), 21);
    for (auto wrong : {0.0, -2.0, std::nan("")})
        EXPECT_EQ(scaled(wrong), 14);
    for (auto [size, legal] : {std::pair(-3.0, 1), {std::nan(""), 1}, {1e9, 2000}})
        EXPECT_EQ(UIFont::systemFont(size).pointSize(), legal);
    EXPECT_GT(UIFont::systemFont(0).lineHeight(), 0);
}

TEST(UIFontTests, everyNarrowCharacterOfTheMonospacedFontTakesOneColumn)
{
    auto font = UIFont::monospacedSystemFont(17);
    for (std::string_view text : {"iiiiiiiiii", "WWWWWWWWWW", "0123456789", "....------"}) {
        TextLayout layout(text, {.font = font});
        EXPECT_NEAR(layout.caretRect(10).minX(), 10 * font.columnWidth(), 0.2) << text;
    }
    auto width = [](const char* text, UIFont of) { return TextLayout(text, {.font = of}).size().width; };
    EXPECT_LT(width("iiii", UIFont::systemFont(17)), width("WWWW", UIFont::systemFont(17)));
    EXPECT_LT(width("minimum", UIFont::systemFont(17)), width("minimum", UIFont::boldSystemFont(17)));
}

TEST(UIFontTests, metricsGrowWithTheSizeAndFitTogether)
{
    auto small = UIFont::systemFont(12);
    auto large = small.withSize(48);
    EXPECT_NEAR(large.ascender() / small.ascender(), 4, 0.1);
    EXPECT_NEAR(large.columnWidth() / small.columnWidth(), 4, 0.1);
    for (auto& font :
         {small, large, large.bold(), large.italic(), large.withDesign(FontDesign::monospaced)}) {
        EXPECT_GE(font.lineHeight(), font.ascender() + font.descender());
        EXPECT_GT(font.capHeight(), font.xHeight());
        EXPECT_GT(font.ascender(), font.capHeight());
        EXPECT_GT(font.descender(), 0);
    }
}

} // namespace
} // namespace platform
