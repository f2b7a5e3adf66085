// SPDX-License-Identifier: MIT
#include "platform/foundation/StringTable.h"

#include "platform/foundation/StringTableComparison.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fstream>

namespace platform {

using namespace std::string_literals;

namespace {

std::string described(const ParsedStringTable& parsed)
{
    std::string text;
    for (auto& [key, value, line] : parsed.table.entries())
        text += "[" + key + "|" + value + "|" + std::to_string(line) + "]";
    for (auto& [line, column, message] : parsed.diagnostics)
        text += " " + std::to_string(line) + ":" + std::to_string(column) + " " + message;
    return text;
}

std::string utf16(std::u16string_view text, bool isBigEndian)
{
    std::string bytes;
    for (auto unit : text) {
        char low = static_cast<char>(unit & 0xFF), high = static_cast<char>(unit >> 8);
        bytes += isBigEndian ? high : low;
        bytes += isBigEndian ? low : high;
    }
    return bytes;
}

struct Case {
    std::string_view name;
    std::string bytes;
    std::string_view expected; // [key|value|line]... line:column message...
};

const Case wholeTables[] = {
    {"nothing", "", ""},
    {"white space and comments alone", " /* \"a\" = \"b\"; */\r\n\t// \"c\";", ""},
    {"an entry to a line, and several", "\"a\"=\"1\";\n\"b\" = \"2\" ; \"c\"\n=\n\"3\";",
     "[a|1|1][b|2|2][c|3|2]"},
    {"a key alone stands for itself", "\"Done\"; word;", "[Done|Done|1][word|word|1]"},
    {"bare words", "a.b-c_d = $1/2:3;//x\n", "[a.b-c_d|$1/2:3|1]"},
    {"either quote, the other inside", "'a\"b' = \"c'd\";", "[a\"b|c'd|1]"},
    {"comments between the parts", "\"a\"/**/=//=\n\"1\"/*;*/;", "[a|1|1]"},
    {"comments are not inside of texts", "\"//\" = \"/* */\";", "[//|/* */|1]"},
    {"text over lines counts lines", "\"a\" = \"1\r\n2\r3\n4\";\"b\";", "[a|1\r\n2\r3\n4|1][b|b|4]"},
    {"letters", R"("a" = "\"\'\\\n\t\r\a\b\f\v\?";)", "[a|\"'\\\n\t\r\a\b\f\v?|1]"},
    {"octal, of one to three digits", R"("a" = "\101\7x\0128\200\341";)", "[a|A\ax\n8\u00A0Æ|1]"},
    {"hexadecimal", R"("a" = "\U00e9\u20AC5";)", "[a|é€5|1]"},
    {"a surrogate pair", R"("a" = "\UD83D\uDE00";)", "[a|😀|1]"},
    {"an escaped zero", R"("a" = "x\0y";)", std::string_view("[a|x\0y|1]", 9)},
    {"an escaped line end", "\"a\" = \"x\\\ny\";", "[a|x\ny|1]"},
    {"UTF-8 with its mark", "\xEF\xBB\xBF\"ä\" = \"ö\";", "[ä|ö|1]"},
    {"UTF-16, little-endian", utf16(u"\uFEFF\"ä\" = \"😀\";", false), "[ä|😀|1]"},
    {"UTF-16, big-endian", utf16(u"\uFEFF\"ä\" = \"😀\";", true), "[ä|😀|1]"},
    {"a property list",
     "<?xml version=\"1.0\"?><plist><dict><key>a</key><string>&lt;1></string></dict></plist>", "[a|<1>|1]"},
};

const Case brokenTables[] = {
    {"the last of a key twice counts", "\"a\" = \"1\";\n\"a\" = \"2\";",
     "[a|2|2] 2:1 the key \"a\" was given before, in line 1"},
    {"no semicolon", "\"a\" = \"1\"\n\"b\" = \"2\";", "[b|2|2] 1:1 \";\" is missing after the entry \"a\""},
    {"no semicolon at the end", "b;\n\"a\"", "[b|b|1] 2:1 \";\" is missing after the entry \"a\""},
    {"no equals sign", "\"a\" \"1\";\n\"b\";", "[b|b|2] 1:5 \"=\" is missing after the key \"a\""},
    {"no value", "\"a\" = ;\n\"b\";", "[b|b|2] 1:7 the value of \"a\" is missing"},
    {"no key", "= \"1\";\n;\"b\";",
     "[b|b|2] 1:1 a key is expected here 2:1 there is a \";\" without an entry"},
    {"no closing quote", "\"a\" = \"é;\n\n// x", " 1:7 the text has no closing quote"},
    {"entries after an open quote", "a;\n'b = \"2\";\n\"c\" = \"3\";",
     "[a|a|1][c|3|3] 2:1 the text has no closing quote"},
    {"columns count characters", "/*😀é*/ ?", " 1:8 a key is expected here"},
    {"an open comment", "\"a\";\n /* \"b\";", "[a|a|1] 2:2 the comment has no end"},
    {"an unknown escape costs its entry", R"("a" = "\q"; "b";)", "[b|b|1] 1:8 the escape means nothing"},
    {"too few digits", R"("a" = "\U12"; "b";)", "[b|b|1] 1:8 the escape needs four hexadecimal digits"},
    {"half a pair", R"("a" = "\uD83D\"x"; "b" = "\uDE00";)",
     " 1:8 the escape is half of a surrogate pair 1:27 the escape is half of a surrogate pair"},
    {"an octal number of no character", R"("a" = "\376";)", " 1:8 the escape stands for no character"},
    {"a list that is not of texts", "<plist><dict><key>a</key><true/><key>b</key><string/></dict></plist>",
     "[b||1] 1:1 the value of \"a\" is not text"},
    {"a list that is no dictionary", "<plist><array/></plist>",
     " 1:1 the root of the property list is not a dictionary"},
    {"bytes of no encoding", "\"a\" = \"\xFF\";",
     " 1:1 the text encoding of its contents can’t be determined"},
};

} // namespace

TEST(StringTableTests, Whole_tables_are_read_without_a_complaint)
{
    for (auto& [name, bytes, expected] : wholeTables)
        EXPECT_EQ(described(StringTable::parse(bytes)), expected) << name;
}

TEST(StringTableTests, Broken_entries_are_told_with_their_place_and_cost_no_others)
{
    for (auto& [name, bytes, expected] : brokenTables)
        EXPECT_EQ(described(StringTable::parse(bytes)), expected) << name;
}

TEST(StringTableTests, A_table_cut_anywhere_keeps_the_entries_before_the_cut)
{
    auto whole = "\"a\" = \"1\"; /* x */\n'b' = \"\\U00e9\";\nc;\n"s;
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        auto [table, diagnostics] = StringTable::parse(std::string_view(whole).substr(0, size));
        EXPECT_EQ(table.find("a") != nullptr, size >= 10) << size;
        EXPECT_EQ(table.find("b") != nullptr, size >= 34) << size;
        EXPECT_EQ(table.find("c") != nullptr, size >= 37) << size;
    }
}

TEST(StringTableTests, Limits_end_the_reading_and_are_told)
{
    StringTableLimits limits{.bytes = 100, .entries = 2, .diagnostics = 2};
    EXPECT_EQ(described(StringTable::parse(std::string(101, ' '), limits)),
              " 1:1 the table is larger than 100 bytes");
    EXPECT_EQ(described(StringTable::parse("a;b;\nc;d;", limits)),
              "[a|a|1][b|b|1] 2:1 the table has more than 2 entries");
    EXPECT_EQ(described(StringTable::parse("?\n?\n?\n?\na;", limits)),
              "[a|a|5] 1:1 a key is expected here 2:1 a key is expected here 1:1 2 more faults");
    tests::TemporaryDirectory directory;
    auto read = StringTable::read(directory.write("Long.strings", std::string(1000, ' ')), limits);
    ASSERT_TRUE(read);
    EXPECT_EQ(described(*read), " 1:1 the table is larger than 100 bytes");
    EXPECT_EQ(StringTable::read(directory.url("none")).error(),
              Error(NSError(NSCocoaError::fileReadNoSuchFile)));
}

TEST(StringTableTests, A_translation_must_have_the_keys_and_the_format_arguments_of_its_reference)
{
    auto reference =
        StringTable::parse("\"a\" = \"%d of %@\"; \"b\" = \"100%%\"; \"c\" = \"%*d\"; d; \"e\" = \"\";")
            .table;
    auto compare = [&](std::string_view translation) {
        ParsedStringTable parsed{.table = {},
                                 .diagnostics =
                                     compareStringTables(StringTable::parse(translation).table, reference)};
        return described(parsed);
    };
    EXPECT_EQ(compare("\"a\" = \"%2$@: %1$i\"; \"b\" = \"100 %%\"; \"c\" = \"%1$d%2$u\"; d; \"e\" = \"x\";"),
              "");
    EXPECT_EQ(compare("\"a\" = \"%@ of %d\";\n\"d\"=\"\";\nx; \"b\" = \"%@\"; \"c\" = \"%f\";"),
              " 1:1 the key \"e\" is missing"
              " 1:1 the format of \"a\" takes the arguments (1 text, 2 whole number), the reference's (1 "
              "whole number, 2 text)"
              " 2:1 the text of \"d\" is empty 3:1 the key \"x\" is not in the reference"
              " 3:1 the format of \"b\" takes the arguments (1 text), the reference's ()"
              " 3:1 the format of \"c\" takes the arguments (1 number), the reference's (1 whole number, 2 "
              "whole number)");
}

} // namespace platform
