// SPDX-License-Identifier: MIT
#include "platform/graphics/UIFont.h"

#include "platform/graphics/TextLayout.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(UIFontTests, theBodySizeFollowsThePersonsTextSize)
{
    constexpr double sizes[]{14, 15, 16, 17, 19, 21, 23, 28, 33, 40, 47, 53};
    auto category = UIContentSizeCategory::extraSmall;
    for (auto size : sizes) {
        EXPECT_EQ(UIFont::preferredFont(FontTextStyle::body, category).pointSize(), size);
        category = larger(category);
    }
    EXPECT_EQ(category, UIContentSizeCategory::accessibilityExtraExtraExtraLarge) << "the last one stays";
}

TEST(UIFontTests, noTextStyleShrinksWhenTheTextSizeGrows)
{
    for (int style = 0; style <= static_cast<int>(FontTextStyle::caption2); ++style) {
        for (auto category = UIContentSizeCategory::extraSmall; larger(category) != category;
             category = larger(category)) {
            EXPECT_LE(preferredPointSize(static_cast<FontTextStyle>(style), category),
                      preferredPointSize(static_cast<FontTextStyle>(style), larger(category)));
            EXPECT_EQ(smaller(larger(category)), category);
        }
    }
}

TEST(UIFontTests, theDesktopsTextScalingMultiplies)
{
    auto font = UIFont::preferredFont(FontTextStyle::body, UIContentSizeCategory::large, 1.5);
    EXPECT_EQ(font.pointSize(), 25.5);
    for (auto wrong : {0.0, -2.0, std::nan("")})
        EXPECT_EQ(UIFont::preferredFont(FontTextStyle::body, {}, wrong).pointSize(), 14);
}

TEST(UIFontTests, illegalSizesBecomeLegal)
{
    EXPECT_EQ(UIFont::systemFont(-3).pointSize(), 1);
    EXPECT_EQ(UIFont::systemFont(std::nan("")).pointSize(), 1);
    EXPECT_EQ(UIFont::systemFont(1e9).pointSize(), 2000);
    EXPECT_GT(UIFont::systemFont(0).lineHeight(), 0);
}

TEST(UIFontTests, everyNarrowCharacterOfTheMonospacedFontTakesOneColumn)
{
    auto font = UIFont::monospacedSystemFont(17);
    for (std::string_view text : {"iiiiiiiiii", "WWWWWWWWWW", "0123456789", "....------"}) {
        TextLayout layout(text, {.font = font});
        EXPECT_NEAR(layout.caretRect(10).minX(), 10 * font.columnWidth(), 0.2) << text;
    }
    EXPECT_NE(TextLayout("iiii", {.font = UIFont::systemFont(17)}).size().width,
              TextLayout("WWWW", {.font = UIFont::systemFont(17)}).size().width);
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

TEST(UIFontTests, boldIsWiderThanRegular)
{
    EXPECT_GT(TextLayout("minimum", {.font = UIFont::boldSystemFont(17)}).size().width,
              TextLayout("minimum", {.font = UIFont::systemFont(17)}).size().width);
}

TEST(UIFontTests, equalDescriptionsAreEqualFonts)
{
    auto font = UIFont::systemFont(17);
    font.lineHeight();
    EXPECT_EQ(font, UIFont()) << "whether metrics were looked up does not count";
    EXPECT_NE(font, font.italic());
    EXPECT_NE(font, font.bold());
    EXPECT_EQ(font.bold().withWeight(FontWeight::regular), font);
}

} // namespace
} // namespace platform
