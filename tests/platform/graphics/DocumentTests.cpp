// SPDX-License-Identifier: MIT
#include "platform/graphics/NSAttributedStringDocuments.h"

#include "platform/graphics/UIColor.h"
#include "platform/graphics/UIFont.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace platform;

namespace {

const std::string fixtures = ZELK_SOURCE_DIR "/tests/fixtures/documents/";

std::string hex(const UIColor& color)
{
    char text[8];
    auto byte = [](double component) { return static_cast<unsigned>(std::lround(component * 255)) & 0xFF; };
    auto& of = color.components();
    std::snprintf(text, sizeof text, "#%02x%02x%02x", byte(of.red), byte(of.green), byte(of.blue));
    return text;
}

// "text{b 18 Georgia #ff0000}": each run with what is not ordinary about it, and none for ordinary ones.
std::string dump(const NSAttributedString& text)
{
    std::string all;
    text.enumerateAttributes([&](const TextAttributes& attributes, NSRange range, bool&) {
        std::string marks;
        auto mark = [&](bool isThere, const std::string& what) {
            if (isThere)
                marks += (marks.empty() ? "" : " ") + what;
        };
        if (auto* font = attributes.get<UIFont>(NSFontAttributeName)) {
            mark(font->weight() == FontWeight::bold, "b");
            mark(font->isItalic(), "i");
            mark(font->design() == FontDesign::monospaced, "mono");
            mark(font->pointSize() != 12, std::to_string(std::lround(font->pointSize())));
            mark(!font->familyName().empty(), std::string(font->familyName()));
        }
        if (auto* style = attributes.get<NSUnderlineStyle>(NSUnderlineStyleAttributeName))
            mark(true, "u" + std::to_string(static_cast<int>(*style)));
        if (auto* style = attributes.get<NSUnderlineStyle>(NSStrikethroughStyleAttributeName))
            mark(true, "s" + std::to_string(static_cast<int>(*style)));
        if (auto* raised = attributes.get<int>(NSSuperscriptAttributeName))
            mark(true, "^" + std::to_string(*raised));
        if (auto* color = attributes.get<UIColor>(NSForegroundColorAttributeName))
            mark(true, hex(*color));
        if (auto* color = attributes.get<UIColor>(NSBackgroundColorAttributeName))
            mark(true, "on " + hex(*color));
        if (auto* url = attributes.get<URL>(NSLinkAttributeName))
            mark(true, "<" + url->absoluteString() + ">");
        if (auto* link = attributes.get<std::string>(NSLinkAttributeName))
            mark(true, "<<" + *link + ">>");
        all += std::string(text.string(range)) + (marks.empty() ? "|" : "{" + marks + "}");
    });
    return all;
}

std::string read(std::string_view bytes, NSDocumentType type)
{
    auto text = readAttributedString(bytes, type);
    return text ? dump(*text) : "refused: " + text.error().bridged().localizedFailureReason();
}

std::string readFixture(const char* name, NSDocumentType type)
{
    auto text = readAttributedString(URL::fileURL(fixtures + name), type);
    return text ? dump(*text) : "refused: " + text.error().bridged().localizedFailureReason();
}

std::string repeated(std::string_view piece, int count)
{
    std::string all;
    for (; count > 0; --count)
        all += piece;
    return all;
}

struct Case {
    const char* name;
    std::string document;
    std::string expected;
};

} // namespace

TEST(Documents, Rich_text_files_keep_text_and_look)
{
    EXPECT_EQ(
        readFixture("every-feature.rtf", NSDocumentType::rtf),
        "Title{b 18 Helvetica}\nplain {Helvetica}bold {b Helvetica}both{b i Helvetica} italic{i Helvetica}"
        ", {Helvetica}under{Helvetica u1} {Helvetica}struck{Helvetica s1} x{Helvetica}2{Helvetica ^1}"
        "y{Helvetica}1{Helvetica ^-1}\u2028{Helvetica}red{Helvetica #ff0000} {Helvetica}"
        "marked{Helvetica on #ffff00} {Helvetica}code{mono Courier New}\ncafé של😀 {Helvetica}"
        "שלום{Arial (Hebrew)} {Helvetica}日本{Gothic}\n{Helvetica}"
        "link{Helvetica u1 #0000ff <https://example.org/a?b=1#part>}"
        "\t—•\u00A0end\n\uFFFC{braces\\} done\n{Helvetica}");
    EXPECT_EQ(readFixture("macintosh-hebrew.rtf", NSDocumentType::rtf),
              "naïve {Geneva}سلام{Nazanin} \uFFFD☃—–ok{Geneva}");
}

TEST(Documents, Rich_text_signs_mean_what_the_format_says)
{
    const Case cases[] = {
        {"nothing", "{\\rtf1}", ""},
        {"line ends in the source are none", "{\\rtf1 a\r\nb\n\\\nc}", "ab\nc|"},
        {"one blank belongs to a word", "{\\rtf1 a\\tab  b\tc}", "a\t b\tc|"},
        {"optional hyphens and blanks that hold", "{\\rtf1 a\\-b\\~c\\_d\\:e}", "a\u00ADb\u00A0c\u2011de|"},
        {"a word that nobody knows", "{\\rtf1\\whatever12 a\\b0\\zzz}", "a|"},
        {"styles end with their group", "{\\rtf1 a{\\b b{\\i c}}d}", "a|b{b}c{b i}d|"},
        {"plain ends all but the group", "{\\rtf1{\\b\\i\\fs48 a\\plain b}}", "a{b i 24}b|"},
        {"half points", "{\\rtf1\\fs25 a\\fs b\\fs-3 c}", "a{13}bc|"},
        {"lines of two kinds", "{\\rtf1\\uldb a\\ulnone\\striked1 b\\striked0 c}", "a{u9}b{s9}c|"},
        {"raised and lowered by points", "{\\rtf1\\up6 a\\up0\\dn2 b}", "a{^1}b{^-1}"},
        {"colour numbers out of the table", "{\\rtf1{\\colortbl;\\red9;}\\cf7 a\\cf-1 b\\cf0 c}", "abc|"},
        {"components beyond a byte", "{\\rtf1{\\colortbl;\\red999\\green-1;}\\cf1 a}", "a{#ff0000}"},
        {"tables become tabs and lines", "{\\rtf1 a\\cell b\\cell\\row c}", "a\tb\t\nc|"},
        {"stand-ins are left out", "{\\rtf1\\u233eX\\u233\\'e9Y\\uc2\\u233abZ\\uc0\\u233W}", "éXéYéZéW|"},
        {"a stand-in ends with its group", "{\\rtf1{\\uc3\\u233a}bcd}", "ébcd|"},
        {"a paragraph is no stand-in, a dash is", "{\\rtf1\\u233\\par\\u8212\\emdash x}", "é\n—x|"},
        {"halves of characters", "{\\rtf1\\u-10179?x\\u-8704?{\\u-10179?}\\u55357?\\u56832?}",
         "\uFFFDx\uFFFD\uFFFD😀|"},
        {"bytes of two numbers", "{\\rtf1\\ansicpg932\\'83A\\'83\\'40 a}", "アァ a|"},
        {"raw bytes", "{\\rtf1\\ansicpg1251 \xCF\xF0\xE8}", "При|"},
        {"UTF-8 as a code page", "{\\rtf1\\ansicpg65001 \xD7\xA9\\'d7\\'9c\\'ff}", "של\uFFFD|"},
        {"a code page that nobody knows", "{\\rtf1\\ansicpg31337 a\\'e9b}", "a\uFFFDb|"},
        {"the page of a font, not of the document",
         "{\\rtf1\\ansicpg1252{\\fonttbl{\\f5\\fcharset161 X;}}\\'e1{\\f5\\'e1}\\'e1}", "á|α{X}á|"},
        {"fonts without groups", "{\\rtf1{\\fonttbl\\f0 A;\\f1\\fmodern B;}\\f1 x\\f0 y}", "x{mono B}y{A}"},
        {"a local link", "{\\rtf1{\\field{\\*\\fldinst HYPERLINK \\\\l \"here\"}{\\fldrslt x}}}",
         "x{<<#here>>}"},
        {"a field that is no link", "{\\rtf1{\\field{\\*\\fldinst PAGE}{\\fldrslt 7}}}", "7|"},
        {"a link around a field",
         "{\\rtf1{\\field{\\*\\fldinst HYPERLINK \"http://a/\"}{\\fldrslt x{\\field{\\*\\fldinst "
         "PAGE}{\\fldrslt "
         "7}}}}}",
         "x{<http://a/>}7|"},
        {"parts of a field with no field", "{\\rtf1{\\*\\fldinst HYPERLINK \"http://a/\"}{\\fldrslt x}}",
         "x|"},
        {"notes, heads and feet", "{\\rtf1 a{\\footnote b}{\\header c{\\b d}}{\\*\\annotation e}f}", "af|"},
        {"one picture in two forms", "{\\rtf1{\\*\\shppict{\\pict 00}}{\\nonshppict{\\pict 11}}}", "\uFFFC|"},
        {"what follows the last brace", "{\\rtf1 a}}}{\\b b", "a|"},
        {"a group that never ends", "{\\rtf1 a", "refused: It ends inside a group"},
        {"a lone backslash at the end", "{\\rtf1 a\\", "refused: It ends with a lone backslash"},
        {"a word of no end", "{\\rtf1\\" + repeated("a", 40), "refused: A control word is too long"},
        {"text", "hello", "refused: It does not begin as Rich Text Format does"},
        {"groups too deep", "{\\rtf1" + repeated("{", 300) + repeated("}", 301),
         "refused: Its groups are nested more than 256 deep"},
        {"no bytes", "", "refused: It does not begin as Rich Text Format does"},
    };
    for (auto& row : cases) {
        auto expected = row.expected;
        // The reason of nameless bytes begins as a clause does.
        if (expected.starts_with("refused: "))
            expected[9] = static_cast<char>(expected[9] - 'A' + 'a');
        EXPECT_EQ(read(row.document, NSDocumentType::rtf), expected) << row.name;
    }
}

TEST(Documents, Web_pages_keep_text_and_look)
{
    EXPECT_EQ(
        readFixture("every-feature.html", NSDocumentType::html),
        "Title{b 24}\nplain |bold {b}both{b i} |italic{i}, |under{u1} |struck{s1} x|2{^1}y|1{^-1}\u2028|"
        "red{#ff0000} |marked{on #ffff00} |code{mono} |serif{20 Georgia}\ncafé של 😀 1 < 2 & 3 < 4\n|"
        "link{u1 <https://example.org/a?b=1>}\uFFFC\u00A0end\n\t•\tone\n\t•\ttwo\n\t\t•\tinner\n"
        "\t1.\tfirst\n\t2.\tsecond\na\nb |");
}

TEST(Documents, Web_pages_are_read_in_their_own_character_set)
{
    EXPECT_EQ(readFixture("windows-1255-meta.html", NSDocumentType::html), "שלום |עולם{b}");
    EXPECT_EQ(readFixture("utf16-mark.html", NSDocumentType::html), "Grüße |日本{b}");
    EXPECT_EQ(readFixture("no-charset-latin1.html", NSDocumentType::html), "café “quoted”|");
    const Case cases[] = {
        {"UTF-8 with nothing said", "é", "é|"},
        {"a mark speaks before the meta element", "\xEF\xBB\xBF<meta charset=windows-1255>é", "é|"},
        {"Latin 1 is Windows-1252", "<META CHARSET='ISO-8859-1'>\x80", "€|"},
        {"a set that nobody knows", "<meta charset=klingon>é", "é|"},
        {"a set of two bytes named in ASCII", "<meta charset=utf-16>é", "é|"},
        {"bytes that are not the set they say", "<meta charset=utf-8>a\xFFz", "a\uFFFDz|"},
        {"half a character by number", "a&#xD800;b", "a\uFFFDb|"},
    };
    for (auto& row : cases)
        EXPECT_EQ(read(row.document, NSDocumentType::html), row.expected) << row.name;
}

TEST(Documents, Web_pages_open_nothing_that_they_name)
{
    tests::TemporaryDirectory directory;
    auto sheet = directory.write("sheet.css", "b { color: #ff0000 }").absoluteString();
    for (auto& page : {"<link rel=stylesheet href='" + sheet + "'><b>x</b>",
                       "<style>@import url('" + sheet + "');</style><b>x</b>",
                       "<style>@import '" + sheet + "';</style><b>x</b>"})
        EXPECT_EQ(read(page, NSDocumentType::html), "x{b}") << page;
}

TEST(Documents, Hostile_web_pages_take_neither_time_nor_memory)
{
    auto rules = "<style>" + repeated("p{color:red}", 4000) + "</style>" + repeated("<p>x</p>", 1000);
    const Case cases[] = {
        {"cells of a billion columns", repeated("<table><tr><td colspan=1000000000 rowspan=1000000000>a", 2),
         "a\na|"},
        {"the same in disguise", "<t&#97;ble><tr><&#116;d colspan=1000000000>a</table>",
         "<td colspan=1000000000>a|"},
        {"elements too deep", repeated("<div>", 300), "refused: its elements are nested more than 256 deep"},
        {"ends that close nothing", repeated("<b></i>", 300),
         "refused: its elements are nested more than 256 deep"},
        {"elements that have no end", repeated("<input>x<wbr><img>", 300), repeated("x\uFFFC", 300) + "|"},
        {"more rules than the elements can bear", rules, repeated("x\n", 999) + "x|"},
        {"too many elements", repeated("<br>", 200'001), "refused: it has more than 200000 elements"},
    };
    for (auto& row : cases)
        EXPECT_EQ(read(row.document, NSDocumentType::html).substr(0, 4000), row.expected.substr(0, 4000))
            << row.name;
}

TEST(Documents, Every_beginning_of_a_document_is_read_or_refused)
{
    tests::TemporaryDirectory directory;
    for (auto* name : {"every-feature.rtf", "macintosh-hebrew.rtf"}) {
        std::ifstream stream(fixtures + name, std::ios::binary);
        std::string whole{std::istreambuf_iterator<char>(stream), {}};
        auto end = whole.rfind('}');
        for (std::size_t size = 0; size < end; ++size)
            ASSERT_FALSE(readAttributedString(whole.substr(0, size), NSDocumentType::rtf)) << name << size;
    }
    std::ifstream stream(fixtures + "every-feature.html", std::ios::binary);
    std::string whole{std::istreambuf_iterator<char>(stream), {}};
    for (std::size_t size = 0; size < whole.size(); size += 11)
        ASSERT_TRUE(readAttributedString(whole.substr(0, size), NSDocumentType::html)) << size;
}

TEST(Documents, Errors_name_the_file_and_the_reason)
{
    struct Row {
        const char* name;
        NSDocumentType type;
        NSCocoaError code;
        const char* reason;
    };
    constexpr Row rows[] = {
        {"not-closed.rtf", NSDocumentType::rtf, NSCocoaError::fileReadCorruptFile, "inside a group"},
        {"bad-hexadecimal.rtf", NSDocumentType::rtf, NSCocoaError::fileReadCorruptFile,
         "two hexadecimal digits"},
        {"binary-past-the-end.rtf", NSDocumentType::rtf, NSCocoaError::fileReadCorruptFile,
         "inside binary data"},
        {"huge-number.rtf", NSDocumentType::rtf, NSCocoaError::fileReadCorruptFile, "too large"},
        {"not-rich-text.rtf", NSDocumentType::rtf, NSCocoaError::fileReadCorruptFile, "does not begin"},
        {"missing.html", NSDocumentType::html, NSCocoaError::fileReadNoSuchFile, ""},
        {"missing.txt", NSDocumentType::plain, NSCocoaError::fileReadNoSuchFile, ""},
    };
    for (auto& row : rows) {
        auto text = readAttributedString(URL::fileURL(fixtures + row.name), row.type);
        ASSERT_FALSE(text) << row.name;
        auto& error = text.error().bridged();
        EXPECT_EQ(error, NSError(row.code)) << row.name;
        EXPECT_NE(error.localizedDescription().find(row.name), std::string::npos)
            << error.localizedDescription();
        EXPECT_NE(error.localizedFailureReason().find(row.reason), std::string::npos)
            << error.localizedFailureReason();
    }
    EXPECT_EQ(readAttributedString(std::string(largestHTMLDocument + 1, 'a'), NSDocumentType::html)
                  .error()
                  .bridged(),
              NSError(NSCocoaError::fileReadTooLarge));
}

TEST(Documents, Plain_text_has_no_attributes)
{
    auto file = URL::fileURL(ZELK_SOURCE_DIR "/tests/fixtures/text/utf8-mark-crlf.srt");
    auto text = readAttributedString(file, NSDocumentType::plain);
    ASSERT_TRUE(text);
    EXPECT_EQ(text->string(), String::contentsOf(file)->utf8());
    EXPECT_TRUE(text->attributes({0}).attributes.isEmpty());
}
