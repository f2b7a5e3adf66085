// SPDX-License-Identifier: MIT
#include "tests/platform/uikit/UITextViewTestSupport.h"

#include <gtest/gtest.h>

using namespace platform;
using namespace texttests;
using Boundary = AccessibleText::Boundary;

TEST(UITextViewAccessibility, CountsInUtf16Units)
{
    ShownTextView shown("a😀語\r\nend");
    auto& text = *shown.view->accessibleText();
    EXPECT_EQ(text.characterCount(), 9u);
    EXPECT_EQ(text.text({1, 4}), u"😀語");
    EXPECT_EQ(text.text({6, 99}), u"end");
    EXPECT_EQ(text.text({5, 2}), u"");
    text.setSelection({3, 6});
    EXPECT_EQ(shown.selected(), "語\r\n");
    EXPECT_EQ(text.selection().start, 3u);
    EXPECT_EQ(text.selection().end, 6u);
    EXPECT_EQ(text.caretOffset(), 6u);
    text.setCaretOffset(1);
    EXPECT_EQ(shown.view->selectedRange(), (TextRange{{1}, {1}}));
}

TEST(UITextViewAccessibility, FindsTheUnitAroundAnOffset)
{
    ShownTextView shown("one two\nwrapped wrapped wrapped wrapped wrapped wrapped wrapped\n😀", Editing::no,
                        {200, 300});
    auto& text = *shown.view->accessibleText();
    auto around = [&](std::size_t offset, Boundary boundary) {
        auto range = text.rangeAround(offset, boundary);
        return std::pair(static_cast<int>(range.start), static_cast<int>(range.end));
    };
    EXPECT_EQ(around(5, Boundary::character), std::pair(5, 6));
    EXPECT_EQ(around(5, Boundary::word), std::pair(4, 7));
    EXPECT_EQ(around(5, Boundary::line), std::pair(0, 8));
    EXPECT_EQ(around(20, Boundary::paragraph), std::pair(8, 64));
    auto row = around(20, Boundary::line);
    EXPECT_TRUE(row.first >= 8 && row.first <= 20 && row.second > 20 && row.second < 64);
    EXPECT_EQ(around(65, Boundary::character), std::pair(64, 66)); // the second half of a pair
    EXPECT_EQ(around(0, Boundary::document), std::pair(0, 66));
}

TEST(UITextViewAccessibility, PlacesCharactersInTheWindowAndFindsThemThere)
{
    ShownTextView shown("one two\n" + repeated("more\n", 200));
    auto& text = *shown.view->accessibleText();
    auto rect = text.characterRect(4);
    EXPECT_EQ(text.offsetAt({rect.minX() + 1, rect.midY()}), 4u);
    EXPECT_GT(rect.width(), 3);
    EXPECT_FALSE(text.offsetAt({-5, 10}));
    EXPECT_TRUE(text.characterRect(800).isNull()); // out of sight
    text.scrollTo({800, 801});
    EXPECT_FALSE(text.characterRect(800).isNull());
    EXPECT_TRUE(text.characterRect(4).isNull());
}
