// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace platform {

struct NastyText {
    const char* name;
    std::string text;
};

inline std::string repeated(std::string_view piece, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += piece;
    return result;
}

// Texts that break layouts, one symptom each. Some are not well-formed.
inline const std::vector<NastyText>& nastyTexts()
{
    using namespace std::string_literals;
    static const std::vector<NastyText> texts{
        {"empty", ""},
        {"one letter", "a"},
        {"plain", "Hello, world 123"},
        {"spaces at both ends", "  a b  "},
        {"tabs", "\ta\t\tb\t"},
        {"control characters", "a\x01\x02\x1B[0m\x7F b"},
        {"nul inside", "a\0b\0"s},
        {"line ends inside", "a\r\nb\rc\nd"},
        {"next line, line and paragraph separators",
         "a\xC2\x85"
         "b\u2028c\u2029d"},
        {"marks of byte order", "\uFEFFa\uFEFFb"},
        {"object replacement", "a\uFFFC\uFFFC b"},
        {"Hebrew", "שלום עולם"},
        {"Arabic with ligature and vowels", "لا إله مُحَمَّد"},
        {"Latin with Hebrew inside", "abc שלום (1) def"},
        {"Hebrew with Latin and digits inside", "שלום world, עברית 42!"},
        {"Hebrew and Latin between tabs", "שלום\tעולם\t\tabc 1\t"},
        {"vowelled Hebrew", "בְּרֵאשִׁית x"},
        {"directional controls", "a\u202Eb\u202Cc\u2067d\u2069\u200Fe"},
        {"composed and decomposed accents", "\u00E9e\u0301o\u0302\u0303"},
        {"a hundred combining marks", "x" + repeated("\u0301", 100) + "y"},
        {"marks without a base", "\u0301\u0302a"},
        {"emoji joined", "\U0001F469\u200D\U0001F469\u200D\U0001F467x"},
        {"emoji with skin and selector", "\U0001F44D\U0001F3FD\u2764\uFE0F"},
        {"flags", "\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7"},
        {"Hangul jamo", "\u1112\u1161\u11ABa"},
        {"Thai and Devanagari", "กำ क्षि"},
        {"wide characters", "漢字かな"},
        {"outside of the first plane", "\U00010348\U0001D11E!"},
        {"zero width", "a\u200Bb\u200Dc\u00ADd"},
        {"stray continuation bytes",
         "a\x80\xBF"
         "b"},
        {"truncated sequences", "\xE2\x82|\xF0\x9F\x98"},
        {"overlong and surrogate sequences", "\xC0\xAF|\xED\xA0\x80|\xF4\x90\x80\x80"},
    };
    return texts;
}

// Every text, whole and cut at each byte.
template <class Check>
void forEachNastyText(Check check)
{
    for (auto& [name, text] : nastyTexts()) {
        for (std::size_t length = 0; length <= text.size(); ++length) {
            SCOPED_TRACE(std::string(name) + ", first " + std::to_string(length) + " bytes");
            check(std::string_view(text).substr(0, length));
            if (testing::Test::HasFailure())
                return;
        }
    }
}

} // namespace platform
