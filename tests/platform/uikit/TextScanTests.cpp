// SPDX-License-Identifier: MIT
#include "platform/uikit/text/TextScan.h"
#include "tests/platform/uikit/TextTestSupport.h"

#include <gtest/gtest.h>

using namespace platform;
using namespace texttests;

// Line ends at every distance from the borders of the blocks that the passes work in.
TEST(TextScan, CountsAndFindsLineEndsWhereverBlocksBegin)
{
    for (std::string_view end : {"\n", "\r", "\r\n"}) {
        for (std::size_t lead = 0; lead < 40; ++lead) {
            auto text = std::string(lead, 'x') + repeated("ab" + std::string(end), 600);
            auto starts = lineStarts(text);
            ASSERT_EQ(countLineEnds(text), std::ssize(starts) - 1) << lead;
            for (std::int64_t ordinal : {std::int64_t{1}, std::int64_t{300}, std::ssize(starts) - 1})
                ASSERT_EQ(afterLineEnd(text, ordinal), static_cast<std::size_t>(starts[ordinal])) << lead;
            ASSERT_EQ(afterLineEnd(text, std::ssize(starts)), std::string_view::npos);
            ASSERT_EQ(findLineEnd(text, 0), lead + 2);
        }
    }
}

TEST(TextScan, KnowsASCIIByEveryByte)
{
    for (std::size_t at = 0; at < 40; ++at) {
        std::string text(40, 'x');
        EXPECT_TRUE(isASCII(text));
        text[at] = '\xC3';
        EXPECT_FALSE(isASCII(text)) << at;
    }
}
