// SPDX-License-Identifier: MIT
#include "tests/platform/uikit/UITextViewTestSupport.h"

#include <gtest/gtest.h>

using namespace platform;
using namespace texttests;
using namespace std::chrono_literals;

TEST(UITextViewKeyboard, KeysScrollATextThatIsOnlyRead)
{
    ShownTextView shown(subtitles(20'000));
    auto press = [&](UIKeyCode key, std::uint8_t modifiers = 0) {
        auto before = shown.view->textOffset();
        EXPECT_TRUE(shown.hands.press(key, modifiers));
        shown.hands.advance(1s);
        return shown.view->textOffset() - before;
    };
    EXPECT_NEAR(press(UIKeyCode::down), 34, 1);
    EXPECT_NEAR(press(UIKeyCode::up), -34, 1);
    EXPECT_GT(press(UIKeyCode::pageDown), 150);
    EXPECT_LT(press(UIKeyCode::pageUp), -150);
    EXPECT_GT(press(UIKeyCode::end), 1000);
    EXPECT_EQ(shown.view->visibleRange().end.value, std::ssize(shown.text()));
    EXPECT_LT(press(UIKeyCode::home), -1000);
    EXPECT_GT(press(UIKeyCode::end, control), 1000);
    EXPECT_LT(press(UIKeyCode::home, control), -1000);
    EXPECT_EQ(shown.view->textOffset(), 0);
    EXPECT_TRUE(shown.view->selectedRange().isEmpty());
}

TEST(UITextViewKeyboard, KeysOfWhoeverShowsTheTextPassThroughWhileItIsOnlyRead)
{
    ShownTextView shown("text\n");
    EXPECT_FALSE(shown.hands.press(UIKeyCode::escape));
    EXPECT_FALSE(shown.hands.press(UIKeyCode::space));
    EXPECT_FALSE(shown.hands.press("q", 0));
    EXPECT_FALSE(shown.hands.press("w", control));
    EXPECT_FALSE(shown.hands.press("+", control));
    shown.hands.press(UIKeyCode::returnKey);
    shown.hands.press(UIKeyCode::deleteBackward);
    shown.hands.press("v", control);
    shown.hands.press("x", control);
    EXPECT_EQ(shown.text(), "text\n");
}

TEST(UITextViewKeyboard, ShiftExtendsTheSelectionFromWhereItWasClicked)
{
    ShownTextView shown("first line\nsecond line\nthird");
    shown.hands.tap(shown.before(2));
    shown.hands.press(UIKeyCode::right, shift);
    EXPECT_EQ(shown.selected(), "r");
    shown.hands.press(UIKeyCode::right, shift | control);
    EXPECT_EQ(shown.selected(), "rst");
    shown.hands.press(UIKeyCode::down, shift);
    EXPECT_EQ(shown.selected(), "rst line\nsecon");
    shown.hands.press(UIKeyCode::end, shift);
    EXPECT_EQ(shown.selected(), "rst line\nsecond line");
    EXPECT_EQ(ShownTextView::primary(), shown.selected());
    shown.hands.press(UIKeyCode::home, shift | control);
    EXPECT_EQ(shown.selected(), "fi");
    shown.hands.press(UIKeyCode::end, shift | control);
    EXPECT_EQ(shown.selected(), "rst line\nsecond line\nthird");
}

TEST(UITextViewKeyboard, ShiftStartsAtWhatIsSeenWhenTheCaretIsOutOfSight)
{
    ShownTextView shown(subtitles(20'000));
    shown.view->scrollToEnd();
    auto seen = shown.view->visibleRange().start;
    shown.hands.press(UIKeyCode::down, shift);
    EXPECT_GE(shown.view->selectedRange().start, seen);
    EXPECT_GT(shown.view->textOffset(), 1000);
}

TEST(UITextViewKeyboard, PagesOfAnEditedTextTakeTheCaretAlong)
{
    ShownTextView shown(repeated("a line\n", 500), Editing::yes);
    shown.hands.press(UIKeyCode::pageDown);
    auto first = shown.view->selectedRange().start.value;
    EXPECT_GT(first, 7 * 10);
    EXPECT_TRUE(shown.view->caretRect({first}));
    shown.hands.press(UIKeyCode::pageDown);
    EXPECT_NEAR(static_cast<double>(shown.view->selectedRange().start.value),
                2.0 * static_cast<double>(first), 14);
    for (int page = 0; page < 60; ++page)
        shown.hands.press(UIKeyCode::pageDown);
    EXPECT_EQ(shown.view->selectedRange().start.value, 3500);
    shown.hands.press(UIKeyCode::pageUp, shift);
    EXPECT_LT(shown.view->selectedRange().start.value, 3500 - 70);
    EXPECT_EQ(shown.view->selectedRange().end.value, 3500);
}

TEST(UITextViewKeyboard, TheCaretBlinksOnlyWhileItShows)
{
    ShownTextView shown("text", Editing::yes);
    auto place = CGPoint{shown.view->caretRect({0})->minX() + 0.5, shown.view->caretRect({0})->midY()};
    auto background = harness::colorAt(shown.hands.snapshot(), {300, 200});
    shown.hands.press(UIKeyCode::home);
    EXPECT_NE(harness::colorAt(shown.hands.snapshot(), place), background);
    shown.hands.advance(600ms);
    EXPECT_EQ(harness::colorAt(shown.hands.snapshot(), place), background);
    shown.hands.press(UIKeyCode::home); // a key lights it
    shown.view->setSelectedRange({{2}, {2}});
    shown.view->setSelectedRange({{0}, {0}});
    EXPECT_NE(harness::colorAt(shown.hands.snapshot(), place), background);
    shown.view->setEditable(false);
    EXPECT_EQ(harness::colorAt(shown.hands.snapshot(), place), background);
    shown.hands.advance(10s);
    shown.hands.paintFrame();
    shown.hands.advance(10s);
    EXPECT_TRUE(shown.hands.window().dirtyRegion().isEmpty());
}
