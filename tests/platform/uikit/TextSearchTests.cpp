// SPDX-License-Identifier: MIT
#include "platform/uikit/text/TextSearch.h"

#include "platform/uikit/TextFinder.h"
#include "platform/uikit/UITextField.h"
#include "platform/uikit/UITextView.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

#include <random>

namespace platform {
namespace {

// Where matches begin, as the search tells it by walking on from each.
std::vector<std::int64_t> walk(const TextSearch& search, Utf8Offset end)
{
    std::vector<std::int64_t> found;
    Utf8Offset from;
    while (auto match = search.first({from, end})) {
        found.push_back(match->start.value);
        from = match->end;
    }
    return found;
}

TEST(TextSearch, matchesAreFoundWithoutRegardToCase)
{
    struct Case {
        const char *name, *text, *pattern;
        std::vector<std::int64_t> matches;
    };
    const std::string filler(40, '.');
    const Case cases[] = {
        {"nothing in nothing", "", "a", {}},
        {"nothing is looked for", "abc", "", {}},
        {"the text itself", "a", "A", {0}},
        {"longer than the text", "ab", "abc", {}},
        {"at both ends", "xaax", "X", {0, 3}},
        {"matches do not overlap", "aaaaa", "aa", {0, 2}},
        {"Latin beyond ASCII", "Über über", "üBER", {0, 6}},
        {"Cyrillic, whose cases differ in both bytes", "Привет, ПРИВЕТ", "привет", {0, 14}},
        {"Greek has two small sigmas, each with one great", "ΟΔΟΣ οδος", "οδοσ", {0}},
        {"cases of different lengths", "Ⱥ ⱥ", "ⱥ", {0, 3}},
        {"a character beyond the basic plane", "\U0001F600x\U0001F600", "\U0001F600", {0, 5}},
        {"across line ends", "a\r\nb", "A\r\nB", {0}},
    };
    for (auto& each : cases) {
        SCOPED_TRACE(each.name);
        TextBuffer buffer{String(each.text)};
        TextSearch search(buffer, TextPattern(each.pattern));
        while (search.countOn()) { }
        auto found = walk(search, buffer.end());
        EXPECT_EQ(found, each.matches);
        EXPECT_EQ(search.count(), std::ssize(found));
    }
}

// Small alphabets make overlaps and near misses common; the texts are longer than blocks and registers.
TEST(TextSearch, countsStepsAndPlacesAgreeWithAPlainSearch)
{
    std::mt19937 random(7);
    for (auto size : {0, 15, 16, 17, 31, 33, 400, 5000}) {
        std::string text;
        for (int i = 0; i < size; ++i)
            text += "aAb"[random() % 3];
        TextBuffer buffer{String(text)};
        for (std::string pattern : {"a", "aab", "abaabaab", "aaaaaaaaaaaaaaaaaaaaaa"}) {
            SCOPED_TRACE(pattern + " in " + std::to_string(size));
            auto lower = text;
            std::ranges::replace(lower, 'A', 'a');
            std::vector<std::size_t> expected;
            for (auto at = lower.find(pattern); at != lower.npos;
                 at = lower.find(pattern, at + pattern.size()))
                expected.push_back(at);
            TextSearch search(buffer, TextPattern(pattern), 100);
            while (search.countOn()) { }
            ASSERT_EQ(search.count(), std::ssize(expected));
            for (std::size_t i = 0; i < expected.size(); i += 1 + expected.size() / 7)
                EXPECT_EQ(search.countBefore({static_cast<std::int64_t>(expected[i])}), static_cast<int>(i));
            // Back from the end, as one goes to the previous match again and again.
            auto end = buffer.end();
            for (auto each = expected.rbegin(); each != expected.rend(); ++each) {
                auto last = search.lastBefore(end);
                ASSERT_TRUE(last);
                ASSERT_EQ(last->start.value, static_cast<std::int64_t>(*each));
                end = last->start;
            }
            EXPECT_FALSE(search.lastBefore(end));
        }
    }
}

struct Finding {
    harness::ViewHarness stage{{300, 200}};
    std::shared_ptr<UITextView> view = std::make_shared<UITextView>();
    TextFinder finder;
    explicit Finding(const String& text)
    {
        view->setText(text);
        view->setEditable(false);
        stage.show(view);
        finder.setTextView(view);
    }
    std::string selected() { return view->buffer().text(view->selectedRange()); }
};

TEST(TextFinder, stepsGoAroundTheEndsAndTellTheirNumber)
{
    Finding at("one two One\nthree ONE\n");
    at.finder.find("one");
    at.stage.settle();
    auto present = [&] { return std::pair(at.selected(), at.finder.status().present); };
    EXPECT_EQ(present(), std::pair(std::string("one"), std::int64_t{1}));
    EXPECT_EQ(at.finder.status().count, 3);
    at.finder.goToNext();
    EXPECT_EQ(present(), std::pair(std::string("One"), std::int64_t{2}));
    at.finder.goToNext();
    at.finder.goToNext();
    EXPECT_EQ(present(), std::pair(std::string("one"), std::int64_t{1}));
    at.finder.goToPrevious();
    EXPECT_EQ(present(), std::pair(std::string("ONE"), std::int64_t{3}));
    at.finder.find("absent");
    at.stage.settle();
    EXPECT_EQ(at.finder.status(), (TextFinder::Status{.count = 0, .present = 0, .isComplete = true}));
    // Another text, and none, in the middle of counting.
    at.view->setText(String(std::string(1 << 20, 'z')));
    at.finder.find("z");
    at.stage.settle();
    EXPECT_EQ(at.finder.status().count, 1 << 20);
    at.finder.find("zz");
    at.finder.setTextView(nullptr);
    at.stage.settle();
    EXPECT_EQ(at.finder.status().count, 0);
}

TEST(TextFinder, onlyMatchesThatAreSeenAreTinted)
{
    Finding at("x\nword\nx\n");
    auto before = at.stage.snapshot();
    at.finder.find("o");
    at.stage.settle();
    EXPECT_FALSE(at.stage.snapshot() == before);
    at.view->setSelectedRange({});
    at.finder.find("");
    EXPECT_TRUE(at.stage.snapshot() == before);
}

TEST(UITextField, oneLineIsTypedPastedAndReturned)
{
    harness::ViewHarness stage({300, 60});
    auto field = std::make_shared<UITextField>();
    field->setPlaceholder("Find");
    int changes = 0, returns = 0;
    field->addAction([&](UIControl&) { ++changes; }, {UIControlEvents::valueChanged});
    field->addAction([&](UIControl&) { ++returns; }, {UIControlEvents::primaryActionTriggered});
    stage.show(field);
    ASSERT_TRUE(field->becomeFirstResponder());
    auto empty = stage.snapshot();
    stage.type("two words");
    EXPECT_EQ(field->text(), "two words");
    EXPECT_EQ(changes, 9);
    EXPECT_FALSE(stage.snapshot() == empty);
    stage.press(UIKeyCode::returnKey);
    EXPECT_EQ(returns, 1);
    EXPECT_EQ(field->text(), "two words");
    stage.window().activeTextInput()->insertText("\r\nthree");
    EXPECT_EQ(field->text(), "two words  three");
    field->selectAll();
    stage.press(UIKeyCode::deleteBackward);
    EXPECT_EQ(field->text(), "");
    field->setText("a\nb");
    EXPECT_EQ(field->text(), "a b");
    field->setEnabled(false);
    EXPECT_FALSE(field->becomeFirstResponder());
}

TEST(UITextView, linesThatDoNotWrapAreScrolledAlong)
{
    harness::ViewHarness stage({200, 100});
    auto view = std::make_shared<UITextView>();
    std::string longLine(300, 'm');
    view->setFont(UIFont::monospacedSystemFont(17));
    view->setText(String(longLine + "\nshort\n"));
    stage.show(view);
    auto height = view->textHeight();
    view->setLineBreak(LineBreak::none);
    EXPECT_LT(view->textHeight(), height);
    EXPECT_GT(view->caretRect({300}).value().minX(), 2000) << "the end of the line is out of sight";
    view->scrollRangeToVisible({{300}, {300}});
    EXPECT_LE(view->caretRect({300}).value().minX(), 200);
    EXPECT_LT(view->caretRect({0}).value().minX(), 0);
    // A line of the other direction begins at the right edge and goes on to the left.
    view->setText(String(std::string("\u05D0") + std::string(300, '1')));
    EXPECT_GT(view->caretRect({0}).value().minX(), 180);
    EXPECT_TRUE(view->scrollByLines(-5, UILayoutAxis::horizontal));
    view->setText(String(longLine + "\nshort\n"));
    view->setLineBreak(LineBreak::word);
    EXPECT_EQ(view->textHeight(), height);
    EXPECT_GE(view->caretRect({0}).value().minX(), 0);
}

} // namespace
} // namespace platform
