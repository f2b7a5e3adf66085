// SPDX-License-Identifier: MIT
#include "kit/foundation/characters.h"
#include "kit/foundation/components.h"
#include "kit/foundation/joined.h"

#include "platform/foundation/NSMutableAttributedString.h"
#include "platform/graphics/UIFont.h"

#include <gtest/gtest.h>

using namespace platform;
using namespace zelk;

namespace {

// "red", "green", ...: runs by the name under the key "c".
NSAttributedString styled(std::initializer_list<std::pair<const char*, const char*>> runs)
{
    NSMutableAttributedString text;
    for (auto& [piece, color] : runs)
        text.append(NSAttributedString(piece, {{"c", color}}));
    return text;
}

} // namespace

TEST(StyledText, Components_keep_empty_pieces_and_attributes)
{
    auto text = styled({{"a,", "red"}, {",b", "green"}});
    auto pieces = components(text, ",");
    ASSERT_EQ(pieces.size(), 3u);
    EXPECT_EQ(pieces[0], styled({{"a", "red"}}));
    EXPECT_TRUE(pieces[1].isEmpty());
    EXPECT_EQ(pieces[2], styled({{"b", "green"}}));

    struct Case {
        const char* name;
        const char* text;
        const char* separator;
        std::vector<std::string> pieces;
    };
    const Case cases[] = {
        {"an empty text is one piece", "", ",", {""}},
        {"no separator in it", "abc", ",", {"abc"}},
        {"nothing occurs nowhere", "abc", "", {"abc"}},
        {"separators at both ends", ",a,", ",", {"", "a", ""}},
        {"several units", "שלום😀😀עולם😀!", "😀", {"שלום", "", "עולם", "!"}},
        {"longer than a character", "a--b---c", "--", {"a", "b", "-c"}},
        {"longer than the text", "a", "aa", {"a"}},
    };
    for (auto& row : cases) {
        std::vector<std::string> found;
        for (auto& piece : components(NSAttributedString(row.text), row.separator))
            found.emplace_back(piece.string());
        EXPECT_EQ(found, row.pieces) << row.name;
    }
}

TEST(StyledText, Characters_are_whole_and_styled)
{
    auto found = characters(styled({{"e\u0301👨‍👩‍👧", "red"}, {"\r\n", "green"}, {"ש", "blue"}}));
    ASSERT_EQ(found.size(), 4u);
    EXPECT_EQ(found[0], styled({{"e\u0301", "red"}}));
    EXPECT_EQ(found[1], styled({{"👨‍👩‍👧", "red"}}));
    EXPECT_EQ(found[2], styled({{"\r\n", "green"}}));
    EXPECT_EQ(found[3], styled({{"ש", "blue"}}));
    // A character of two styles is one piece of two runs.
    EXPECT_EQ(characters(styled({{"e", "red"}, {"\u0301", "green"}})).size(), 1u);
    EXPECT_TRUE(characters({}).empty());
}

TEST(StyledText, Separators_look_like_what_stands_before_them)
{
    std::vector<NSAttributedString> texts{
        {}, styled({{"a", "red"}, {"😀", "green"}}), {}, styled({{"b", "blue"}})};
    NSMutableAttributedString expected(NSAttributedString(", "));
    expected.append(styled({{"a", "red"}, {"😀, , ", "green"}, {"b", "blue"}}));
    EXPECT_EQ(joined(texts, ", "), expected);
    EXPECT_EQ(joined(texts), styled({{"a", "red"}, {"😀", "green"}, {"b", "blue"}}));
    EXPECT_TRUE(joined({}, ", ").isEmpty());
    // What was taken apart comes together again.
    auto text = styled({{"one,two", "red"}, {",", "green"}, {"three", "blue"}});
    EXPECT_EQ(joined(components(text, ","), ",").string(), text.string());
    EXPECT_EQ(joined(characters(text)), text);
}
