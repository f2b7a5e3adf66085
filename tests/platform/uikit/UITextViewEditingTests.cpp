// SPDX-License-Identifier: MIT
#include "tests/platform/uikit/UITextViewTestSupport.h"

#include <gtest/gtest.h>

using namespace platform;
using namespace texttests;

namespace {

struct Recorder : UITextViewDelegate {
    void textViewDidChange(UITextView&) override { ++changes; }
    void textViewDidChangeSelection(UITextView&) override { ++selections; }
    void textViewDidBeginEditing(UITextView&) override { ++begins; }
    void textViewDidEndEditing(UITextView&) override { ++ends; }
    int changes = 0, selections = 0, begins = 0, ends = 0;
};

} // namespace

TEST(UITextViewEditing, KeysDoWhatTheySay)
{
    struct Case {
        std::string_view name, text;
        TextRange selection;
        UIKeyCode key;
        std::uint8_t modifiers;
        std::string_view expected;
        std::int64_t caret;
    };
    using enum UIKeyCode;
    const Case cases[] = {
        {"Backspace", "abc", {{2}, {2}}, deleteBackward, 0, "ac", 1},
        {"Backspace at the start", "abc", {{0}, {0}}, deleteBackward, 0, "abc", 0},
        {"Backspace over CR LF", "a\r\nb", {{3}, {3}}, deleteBackward, 0, "ab", 1},
        {"Backspace over joined emoji", "a👨‍👩‍👧", {{19}, {19}}, deleteBackward, 0, "a", 1},
        {"Backspace over a selection", "abcd", {{1}, {3}}, deleteBackward, 0, "ad", 1},
        {"Control Backspace takes a word", "one two", {{7}, {7}}, deleteBackward, control, "one ", 4},
        {"Delete", "abc", {{1}, {1}}, deleteForward, 0, "ac", 1},
        {"Delete at the end", "abc", {{3}, {3}}, deleteForward, 0, "abc", 3},
        {"Control Delete takes a word", "one two", {{0}, {0}}, deleteForward, control, " two", 0},
        {"Return", "ab", {{1}, {1}}, returnKey, 0, "a\nb", 2},
        {"Return in a text of CR LF", "a\r\nb", {{4}, {4}}, returnKey, 0, "a\r\nb\r\n", 6},
        {"Tab", "ab", {{1}, {1}}, tab, 0, "a\tb", 2},
        {"Space over a selection", "abc", {{1}, {2}}, space, 0, "a c", 2},
    };
    for (auto& each : cases) {
        SCOPED_TRACE(each.name);
        ShownTextView shown(std::string(each.text), Editing::yes);
        shown.view->setSelectedRange(each.selection);
        if (each.key == space)
            shown.hands.type(" ");
        else
            shown.hands.press(each.key, each.modifiers);
        EXPECT_EQ(shown.text(), each.expected);
        EXPECT_EQ(shown.view->selectedRange(), (TextRange{{each.caret}, {each.caret}}));
    }
}

TEST(UITextViewEditing, TypingGoesIntoTheTextAndTellsTheDelegateOfEachChange)
{
    ShownTextView shown("", Editing::yes);
    auto recorder = std::make_shared<Recorder>();
    shown.view->setDelegate(recorder);
    shown.hands.type("añ語");
    EXPECT_EQ(shown.text(), "añ語");
    EXPECT_EQ(recorder->changes, 3);
    EXPECT_EQ(recorder->selections, 3);
    shown.view->setText("other");
    EXPECT_EQ(recorder->changes, 3); // only the user's changes
    shown.view->resignFirstResponder();
    shown.view->becomeFirstResponder();
    EXPECT_EQ(recorder->ends, 1);
    EXPECT_EQ(recorder->begins, 1);
}

TEST(UITextViewEditing, CutsAndPastesAndUndoesInSteps)
{
    ShownTextView shown("one two", Editing::yes);
    auto after = [&](std::string_view key, std::uint8_t modifiers = control) {
        shown.hands.press(key, modifiers);
        return shown.text();
    };
    shown.view->setSelectedRange({{0}, {4}});
    EXPECT_EQ(after("x"), "two");
    EXPECT_EQ(ShownTextView::clipboard(), "one ");
    shown.hands.press(UIKeyCode::end);
    EXPECT_EQ(after("v"), "twoone ");
    EXPECT_EQ(after("z"), "two");
    EXPECT_EQ(after("z"), "one two");
    EXPECT_EQ(shown.selected(), "one "); // what was selected then
    EXPECT_FALSE(shown.view->canUndo());
    EXPECT_EQ(after("z", control | shift), "two");
    EXPECT_EQ(after("y"), "twoone ");
    EXPECT_FALSE(shown.view->canRedo());
}

TEST(UITextViewEditing, UndoesAndRedoesALongRandomSession)
{
    Dice dice(11);
    ShownTextView shown(subtitles(3000), Editing::yes);
    std::vector<std::string> states{shown.text()};
    const std::string_view parts[] = {"a", "word", "\n", "語", "😀", ""};
    for (int round = 0; round < 60; ++round) {
        auto at = dice.below(std::ssize(shown.text()));
        shown.view->setSelectedRange({{at}, {at + dice.below(20)}});
        auto before = shown.text();
        auto part = parts[dice.below(std::ssize(parts))];
        if (part.empty())
            shown.hands.press(UIKeyCode::deleteBackward);
        else
            shown.view->insertText(part);
        if (shown.text() != before)
            states.push_back(shown.text());
    }
    for (auto state = states.rbegin() + 1; state != states.rend(); ++state) {
        ASSERT_TRUE(shown.view->undo());
        ASSERT_EQ(shown.text(), *state);
    }
    EXPECT_FALSE(shown.view->undo());
    for (auto state = states.begin() + 1; state != states.end(); ++state) {
        ASSERT_TRUE(shown.view->redo());
        ASSERT_EQ(shown.text(), *state);
    }
}

TEST(UITextViewEditing, UndoTakesBackAWordOrARunOfDeletionsOrWhatWasTypedInOnePlace)
{
    ShownTextView shown("", Editing::yes);
    auto undone = [&] {
        shown.hands.press("z", control);
        return shown.text();
    };
    shown.hands.type("two words");
    EXPECT_EQ(undone(), "two ");
    EXPECT_EQ(undone(), "");
    shown.view->redo();
    shown.view->redo();
    for (int i = 0; i < 4; ++i)
        shown.hands.press(UIKeyCode::deleteBackward);
    EXPECT_EQ(undone(), "two words");
    shown.hands.press(UIKeyCode::home);
    shown.hands.type("ab");
    shown.hands.press(UIKeyCode::home);
    shown.hands.type("cd");
    EXPECT_EQ(undone(), "abtwo words");
    shown.hands.type("x");
    EXPECT_FALSE(shown.view->canRedo()); // another future
}

TEST(UITextViewEditing, ComposedTextShowsAndIsReplacedByWhatIsCommitted)
{
    ShownTextView shown("ab", Editing::yes);
    shown.view->setSelectedRange({{1}, {1}});
    shown.view->setMarkedText("ni");
    shown.view->setMarkedText("nihao");
    EXPECT_EQ(shown.text(), "anihaob");
    EXPECT_EQ(shown.view->markedRange(), (TextRange{{1}, {6}}));
    shown.view->insertText("你好");
    EXPECT_EQ(shown.text(), "a你好b");
    EXPECT_FALSE(shown.view->markedRange());
    shown.view->undo();
    EXPECT_EQ(shown.text(), "ab"); // the composition is no step of its own
}

TEST(UITextViewEditing, AnAbandonedCompositionLeavesNothingAndAnInterruptedOneItsText)
{
    ShownTextView shown("ab", Editing::yes);
    shown.view->setMarkedText("x");
    shown.view->setMarkedText("");
    EXPECT_EQ(shown.text(), "ab");
    EXPECT_FALSE(shown.view->canUndo());
    shown.view->setMarkedText("x");
    shown.hands.tap(shown.before(3));
    EXPECT_EQ(shown.text(), "xab");
    EXPECT_FALSE(shown.view->markedRange());
}

TEST(UITextViewEditing, TheMiddleButtonPastesThePrimarySelectionWhereItClicks)
{
    ShownTextView shown("abcd", Editing::yes);
    UIPasteboard::primarySelection().setString("--");
    shown.hands.tap(shown.before(2), {.button = UIPointerButton::middle});
    EXPECT_EQ(shown.text(), "ab--cd");
}

TEST(UITextViewEditing, SettingTheTextThatIsShownKeepsSelectionAndUndo)
{
    ShownTextView shown("abc", Editing::yes);
    shown.hands.press(UIKeyCode::end);
    shown.hands.type("d");
    shown.view->setText(shown.view->text()); // as a binding does
    EXPECT_EQ(shown.view->selectedRange().start.value, 4);
    EXPECT_TRUE(shown.view->canUndo());
    shown.view->setText("new");
    EXPECT_EQ(shown.view->selectedRange().start.value, 0);
    EXPECT_FALSE(shown.view->canUndo());
}

TEST(UITextViewEditing, TakesNoTextFromInputMethodsWhileItIsOnlyRead)
{
    ShownTextView shown("abc");
    EXPECT_EQ(shown.view->textInput(), nullptr);
    shown.view->insertText("x");
    shown.view->setMarkedText("y");
    EXPECT_EQ(shown.text(), "abc");
}
