// SPDX-License-Identifier: MIT
#include "platform/uikit/text/UndoHistory.h"
#include "tests/platform/uikit/TextTestSupport.h"

#include <gtest/gtest.h>

using namespace platform;
using namespace texttests;

namespace {

struct Editor {
    explicit Editor(std::string text)
        : buffer(String(text))
    {
    }
    void replace(std::int64_t from, std::int64_t to, std::string_view text, UndoHistory::Kind kind)
    {
        auto before = TextSelection::of({{from}, {to}});
        auto edit = buffer.replace({{from}, {to}}, text);
        history.record(std::move(edit), kind, before, TextSelection::caret({from + std::ssize(text)}));
    }
    void type(std::int64_t at, std::string_view text)
    {
        for (std::size_t i = 0; i < text.size(); ++i)
            replace(at + static_cast<std::int64_t>(i), at + static_cast<std::int64_t>(i), text.substr(i, 1),
                    UndoHistory::Kind::typing);
    }
    std::string undo()
    {
        auto edits = history.undo().edits;
        for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit)
            buffer.apply(edit->reversed());
        return buffer.text().toStdString();
    }
    std::string redo()
    {
        for (auto& edit : history.redo().edits)
            buffer.apply(edit);
        return buffer.text().toStdString();
    }
    TextBuffer buffer;
    UndoHistory history;
};

} // namespace

TEST(TextUndoHistory, TakesTypedWordsBackOneByOne)
{
    Editor editor("");
    editor.type(0, "two words");
    EXPECT_EQ(editor.undo(), "two ");
    EXPECT_EQ(editor.undo(), "");
    EXPECT_FALSE(editor.history.canUndo());
    EXPECT_EQ(editor.redo(), "two ");
    EXPECT_EQ(editor.redo(), "two words");
}

TEST(TextUndoHistory, TakesARunOfBackspacesBackAtOnce)
{
    Editor editor("abcdef");
    for (std::int64_t at = 6; at > 2; --at)
        editor.replace(at - 1, at, "", UndoHistory::Kind::deleting);
    EXPECT_EQ(editor.buffer.text().toStdString(), "ab");
    EXPECT_EQ(editor.undo(), "abcdef");
}

TEST(TextUndoHistory, BeginsAStepWhereTheCaretWasMoved)
{
    Editor editor("");
    editor.type(0, "ab");
    editor.history.closeStep();
    editor.type(2, "cd");
    EXPECT_EQ(editor.undo(), "ab");
    editor.type(2, "x");
    EXPECT_FALSE(editor.history.canRedo()); // another future
}

TEST(TextUndoHistory, RestoresALargeTextThatWasReplaced)
{
    auto text = subtitles(200'000);
    Editor editor(text);
    editor.replace(10, 150'000, "short", UndoHistory::Kind::other);
    editor.replace(0, 3, "", UndoHistory::Kind::other);
    editor.undo();
    EXPECT_EQ(editor.undo(), text);
}
