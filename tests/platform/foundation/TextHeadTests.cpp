// SPDX-License-Identifier: MIT
#include "platform/foundation/TextHead.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using namespace std::string_literals;

TEST(TextHeadTests, aBeginningIsDecodedByWholeLinesOrElseWholeCharacters)
{
    struct Case {
        const char* name;
        std::string bytes;
        std::size_t limit;
        std::string text;
        bool isWhole;
    };
    const Case cases[] = {
        {"all of it", "one\ntwo", 7, "one\ntwo", true},
        {"a byte less", "one\ntwo", 6, "one\n", false},
        {"nothing", "", 8, "", true},
        {"no line end: up to a word", "one two", 6, "one ", false},
        {"neither: up to a character", "öööö", 5, "öö", false},
        {"line ends of one carriage return", "one\rtwo\r", 6, "one\r", false},
        {"UTF-16, where a line feed's byte is half of a letter",
         "\xFF\xFE"
         "h\0\n\0\x0A\x04\x0A\x04\x0A\x04"s,
         9, "h\n", false},
        {"UTF-16, big-endian", "\xFE\xFF\0h\0\n\0i\0j"s, 9, "h\n", false},
        {"UTF-16, between the halves of a character", "\xFF\xFE\x3D\xD8\x00\xDE\x3D\xD8\x00\xDE"s, 8,
         "\U0001F600", false},
        {"UTF-32", "\xFF\xFE\0\0h\0\0\0\n\0\0\0i\0\0\0j\0\0\0"s, 18, "h\n", false},
        {"UTF-8 whose next character is cut stays UTF-8", "Grüße\n\xE6\xBC\xA2\xE5\xAD\x97\n", 11, "Grüße\n",
         false},
    };
    ::tests::TemporaryDirectory folder;
    for (auto& each : cases) {
        SCOPED_TRACE(each.name);
        auto head = readTextHead(folder.write("a.srt", each.bytes), each.limit);
        ASSERT_TRUE(head);
        EXPECT_EQ(head->decoded.text.utf8(), each.text);
        EXPECT_EQ(head->isWhole, each.isWhole);
    }
    EXPECT_FALSE(readTextHead(folder.write("b.srt",
                                           "\x7F"
                                           "ELF\2\1\1\0\0\0\xFF\xC0\0\0\1"s),
                              64));
    EXPECT_FALSE(readTextHead(folder.url("none.srt"), 64));
}

} // namespace
} // namespace platform
