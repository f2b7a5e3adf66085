// SPDX-License-Identifier: MIT
#include "platform/uikit/text/TextFragment.h"
#include "tests/platform/uikit/TextTestSupport.h"

#include <gtest/gtest.h>

using namespace platform;
using namespace texttests;

namespace {

const std::vector<std::pair<std::string_view, std::string>>& hostileTexts()
{
    static const std::vector<std::pair<std::string_view, std::string>> cases = {
        {"empty", ""},
        {"only newlines", std::string(20'000, '\n')},
        {"lines of all ends", repeated("one\r\ntwo\rthree\n", 1300) + "last"},
        {"one long line of words", repeated("seven ", 20'000)},
        {"one long line without spaces", std::string(100'000, 'x')},
        {"one long line of three-byte characters", repeated("語", 40'000)},
        {"one character of thousands of marks", "e" + repeated("\xCC\x81", 20'000) + "\nx"},
        {"joined emoji", repeated("👨‍👩‍👧", 3000)},
        {"a long line that is just not cut", std::string(fragmentSize + fragmentSize / 4, 'x') + "\n"},
        {"a long line that is just cut", std::string(fragmentSize + fragmentSize / 4 + 1, 'x') + "\r\n"},
        {"spaces only", std::string(50'000, ' ')},
        {"long lines between short ones", repeated("short\n" + std::string(9000, 'y') + "\r\n\r\n", 10)},
    };
    return cases;
}

bool isInsideSequence(std::string_view text, Utf8Offset at)
{
    auto offset = static_cast<std::size_t>(at.value);
    return offset < text.size() && (static_cast<unsigned char>(text[offset]) & 0xC0) == 0x80;
}

} // namespace

TEST(TextFragment, CoversTheTextWithoutGapsInBothDirections)
{
    for (auto& [name, text] : hostileTexts()) {
        SCOPED_TRACE(name);
        TextBuffer buffer{String(text)};
        std::vector<TextFragment> fragments;
        for (std::optional fragment = firstFragment(buffer); fragment;
             fragment = fragmentAfter(buffer, *fragment)) {
            ASSERT_EQ(fragment->range.start, fragments.empty() ? Utf8Offset{0} : fragments.back().range.end);
            ASSERT_LE(fragment->range.size(), fragmentSizeLimit);
            ASSERT_FALSE(isInsideSequence(text, fragment->range.start));
            fragments.push_back(*fragment);
        }
        EXPECT_EQ(fragments.back().range.end, buffer.end());
        EXPECT_EQ(fragments.back(), lastFragment(buffer));
        auto lines = std::ranges::count_if(fragments, &TextFragment::endsLine);
        EXPECT_EQ(lines, buffer.lineCount());
        std::optional fragment = fragments.back();
        for (auto expected = fragments.rbegin(); expected != fragments.rend(); ++expected) {
            ASSERT_TRUE(fragment);
            ASSERT_EQ(*fragment, *expected);
            fragment = fragmentBefore(buffer, *fragment);
        }
        EXPECT_FALSE(fragment);
    }
}

TEST(TextFragment, IsTheSameFromEveryByteOfIt)
{
    for (auto& [name, text] : hostileTexts()) {
        SCOPED_TRACE(name);
        TextBuffer buffer{String(text)};
        auto step = std::max<std::int64_t>(1, buffer.size() / 211);
        for (Utf8Offset at{0}; at < buffer.end(); at = at + step) {
            auto fragment = fragmentAt(buffer, at);
            ASSERT_TRUE(fragment.range.contains(at)) << at.value;
            ASSERT_EQ(fragmentAt(buffer, fragment.range.start), fragment);
            ASSERT_EQ(fragmentAt(buffer, fragment.range.end - 1), fragment);
        }
    }
}

TEST(TextFragment, CutsLongLinesAfterSpacesAndBetweenCharacters)
{
    TextBuffer words{String(repeated("seven ", 20'000))};
    for (auto fragment = fragmentAfter(words, firstFragment(words)); fragment;
         fragment = fragmentAfter(words, *fragment))
        ASSERT_EQ(fragment->range.start.value % 6, 0);
    auto family = std::string("👨‍👩‍👧");
    TextBuffer families{String(repeated(family, 3000))};
    for (auto fragment = fragmentAfter(families, firstFragment(families)); fragment;
         fragment = fragmentAfter(families, *fragment))
        ASSERT_EQ(fragment->range.start.value % std::ssize(family), 0);
}
