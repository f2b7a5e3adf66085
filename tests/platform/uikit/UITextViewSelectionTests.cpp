// SPDX-License-Identifier: MIT
#include "tests/platform/uikit/UITextViewTestSupport.h"

#include <gtest/gtest.h>

using namespace platform;
using namespace texttests;
using namespace std::chrono_literals;

TEST(UITextViewSelection, AClickPlacesTheCaretAndADragSelectsExactlyWhatItPasses)
{
    ShownTextView shown("first line\nsecond line\n");
    shown.hands.tap(shown.before(3));
    EXPECT_EQ(shown.view->selectedRange(), (TextRange{{3}, {3}}));
    shown.hands.drag(shown.before(2), shown.before(15));
    EXPECT_EQ(shown.selected(), "rst line\nseco");
    shown.hands.drag(shown.before(15), shown.before(2)); // backwards
    EXPECT_EQ(shown.selected(), "rst line\nseco");
}

TEST(UITextViewSelection, ATripleClickSelectsTheLineWithItsEndAndADoubleClickAndDragWholeWords)
{
    ShownTextView shown("one two three four\r\nsecond line\n");
    shown.hands.tap(shown.before(8), {.tapCount = 3});
    EXPECT_EQ(shown.selected(), "one two three four\r\n");
    shown.hands.down(shown.before(9), {.tapCount = 2});
    EXPECT_EQ(shown.selected(), "three");
    shown.hands.moveTo(shown.before(15)); // whole words both ways
    EXPECT_EQ(shown.selected(), "three four");
    shown.hands.moveTo(shown.before(5));
    EXPECT_EQ(shown.selected(), "two three");
    shown.hands.up();
}

TEST(UITextViewSelection, AShiftClickKeepsTheOtherEnd)
{
    ShownTextView shown("0123456789");
    shown.hands.tap(shown.before(4));
    shown.hands.tap(shown.before(8), {.modifiers = {shift}});
    EXPECT_EQ(shown.selected(), "4567");
    shown.hands.tap(shown.before(1), {.modifiers = {shift}});
    EXPECT_EQ(shown.selected(), "123");
}

TEST(UITextViewSelection, ADragOutOfTheViewScrollsAndGoesOnSelectingWhileItIsHeld)
{
    ShownTextView shown(subtitles(20'000));
    shown.hands.down(shown.before(0));
    shown.hands.moveTo({50, 340});
    auto before = shown.view->selectedRange().end;
    shown.hands.advance(1s);
    auto after = shown.view->selectedRange().end;
    EXPECT_GT(after - before, 300);
    EXPECT_GT(shown.view->textOffset(), 200);
    shown.hands.up();
    auto offset = shown.view->textOffset();
    shown.hands.advance(1s);
    EXPECT_EQ(shown.view->textOffset(), offset);
    EXPECT_EQ(shown.view->selectedRange().end, after);
    shown.hands.down({50, 200});
    shown.hands.moveTo({50, -100});
    shown.hands.advance(60s);
    EXPECT_EQ(shown.view->textOffset(), 0);
    EXPECT_EQ(shown.view->selectedRange().start.value, 0);
    EXPECT_LT(shown.view->selectedRange().end, after);
    shown.hands.moveTo({50, 600});
    shown.hands.advance(60s);
    EXPECT_EQ(shown.view->selectedRange().end.value, std::ssize(shown.text()));
    shown.hands.up();
}

TEST(UITextViewSelection, AFinishedSelectionIsOfferedAsThePrimarySelectionAndTheClipboardIsLeftAlone)
{
    ShownTextView shown("first line\nsecond line\n");
    shown.hands.down(shown.before(0));
    shown.hands.moveTo(shown.before(5));
    EXPECT_EQ(ShownTextView::primary(), "(nothing)");
    shown.hands.up();
    EXPECT_EQ(ShownTextView::primary(), "first");
    EXPECT_EQ(ShownTextView::clipboard(), "(nothing)");
}

TEST(UITextViewSelection, CopiesExactlyTheBytesOfTheFile)
{
    for (std::string text :
         {std::string("a\r\nb\0c\n", 7), std::string("e\xCC\x81 שלום\r"), repeated("語\r\n", 20'000)}) {
        ShownTextView shown(text);
        EXPECT_TRUE(shown.hands.press("a", control));
        EXPECT_TRUE(shown.hands.press("c", control));
        EXPECT_EQ(ShownTextView::clipboard(), text);
    }
}

TEST(UITextViewSelection, ACopyOfAllSharesTheTextAndACopyOutlivesIt)
{
    String original(subtitles(1'000'000));
    ShownTextView shown("");
    shown.view->setText(original);
    shown.view->selectAll();
    shown.view->copy();
    EXPECT_EQ(UIPasteboard::general().string()->utf8().data(), original.utf8().data());
    shown.view->setSelectedRange({{10}, {20}});
    shown.view->copy();
    shown.view->setText("");
    EXPECT_FALSE(shown.view->copy()); // nothing replaces nothing
    EXPECT_EQ(ShownTextView::clipboard(), original.toStdString().substr(10, 10));
}

TEST(UITextViewSelection, ARangeThatIsSetIsWidenedToWholeCharactersInsideOfTheText)
{
    const std::tuple<std::string_view, std::string, TextRange, TextRange> cases[] = {
        {"as it is", "abc", {{1}, {2}}, {{1}, {2}}},
        {"past the end", "abc", {{2}, {99}}, {{2}, {3}}},
        {"before the start", "abc", {{-5}, {1}}, {{0}, {1}}},
        {"inside of a sequence", "a語b", {{2}, {3}}, {{1}, {4}}},
        {"inside of CR LF", "a\r\nb", {{2}, {4}}, {{1}, {4}}},
        {"a caret inside of marks", "e\xCC\x81x", {{2}, {2}}, {{0}, {0}}},
    };
    for (auto& [name, text, set, expected] : cases) {
        ShownTextView shown(text);
        shown.view->setSelectedRange(set);
        EXPECT_EQ(shown.view->selectedRange(), expected) << name;
    }
    ShownTextView shown("😀ab");
    shown.view->setSelectedUtf16Range({2, 1});
    EXPECT_EQ(shown.selected(), "a");
    EXPECT_EQ(shown.view->selectedUtf16Range(), (NSRange{2, 1}));
}

TEST(UITextViewSelection, AViewThatIsNotSelectableTakesNoSelectionAndNoKeyboard)
{
    ShownTextView shown("some text");
    shown.view->setSelectedRange({{0}, {4}});
    shown.view->setSelectable(false);
    EXPECT_TRUE(shown.view->selectedRange().isEmpty());
    EXPECT_FALSE(shown.view->isFirstResponder());
    shown.hands.drag({20, 15}, {60, 15});
    EXPECT_TRUE(shown.view->selectedRange().isEmpty());
    EXPECT_FALSE(shown.view->becomeFirstResponder());
}
