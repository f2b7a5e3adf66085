// SPDX-License-Identifier: MIT
#include "tests/platform/uikit/UITextViewTestSupport.h"

#include <gtest/gtest.h>

using namespace platform;
using namespace texttests;

namespace {

// Points of a rectangle that are not of the colour at the window's right bottom, where nothing is.
int inkIn(const UIImage& image, CGRect rect)
{
    auto background = harness::colorAt(image, {390, 290});
    int ink = 0;
    for (auto y = rect.minY(); y < rect.maxY(); ++y) {
        for (auto x = rect.minX(); x < rect.maxX(); ++x)
            ink += harness::colorAt(image, {x, y}) != background;
    }
    return ink;
}

} // namespace

TEST(UITextViewDrawing, InkIsWhereTheTextIs)
{
    ShownTextView shown("left\n\nשלום");
    auto image = shown.hands.snapshot();
    auto line = shown.view->caretRect({0})->height();
    EXPECT_GT(inkIn(image, CGRect::make(5, 8, 40, line)), 20);
    EXPECT_EQ(inkIn(image, CGRect::make(60, 8, 330, line)), 0);
    EXPECT_EQ(inkIn(image, CGRect::make(0, 8 + line + 2, 400, line - 4)), 0); // the empty line
    EXPECT_EQ(inkIn(image, CGRect::make(5, 8 + 2 * line, 200, line)), 0);
    EXPECT_GT(inkIn(image, CGRect::make(340, 8 + 2 * line, 56, line)), 20);
}

TEST(UITextViewDrawing, TheTextColourIsThatOfTheAppearanceOrTheOneSet)
{
    ShownTextView shown("▉▉▉▉");
    CGPoint inside{shown.before(3).x + 3, shown.before(3).y};
    auto light = harness::colorAt(shown.hands.snapshot(), inside);
    shown.view->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::dark);
    auto dark = harness::colorAt(shown.hands.snapshot(), inside);
    EXPECT_NE(light, dark);
    EXPECT_NE(harness::colorAt(shown.hands.snapshot(), {300, 200}), dark);
    shown.view->setTextColor(UIColor::red());
    EXPECT_EQ(harness::colorAt(shown.hands.snapshot(), inside), "ff0000");
}

TEST(UITextViewDrawing, ASelectionIsTintedWithTheKeyboardAndGreyWithoutIt)
{
    ShownTextView shown("a     b\nc");
    CGPoint between{shown.before(3).x, shown.before(3).y};
    auto plain = harness::colorAt(shown.hands.snapshot(), between);
    shown.view->setSelectedRange({{1}, {6}});
    auto tinted = harness::colorAt(shown.hands.snapshot(), between);
    EXPECT_NE(tinted, plain);
    shown.view->resignFirstResponder();
    auto grey = harness::colorAt(shown.hands.snapshot(), between);
    EXPECT_NE(grey, plain);
    EXPECT_NE(grey, tinted);
}

TEST(UITextViewDrawing, TheEndOfALongTextIsPaintedLikeItsStart)
{
    // A coordinate that grows with the file would lose its precision here.
    auto inkOfLastLine = [](const std::string& text) {
        ShownTextView shown(text);
        shown.view->scrollToEnd();
        auto caret = shown.view->caretRect({std::ssize(text)});
        // The scroll bar is at the other side.
        return caret ? inkIn(shown.hands.snapshot(), CGRect::make(5, caret->minY(), 120, caret->height()))
                     : -1;
    };
    auto ink = inkOfLastLine("the last line");
    EXPECT_GT(ink, 100);
    EXPECT_EQ(inkOfLastLine(std::string(3'000'000, '\n') + "the last line"), ink);
}
