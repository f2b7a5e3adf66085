// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/TextDecoding.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace platform::tests {

// Text in UTF-16 or UTF-32, written the plain way.
inline std::string encoded(std::u32string_view text, TextEncoding encoding)
{
    std::string bytes;
    auto put = [&](std::uint32_t unit, int size, bool isLittle) {
        for (int i = 0; i < size; ++i)
            bytes += static_cast<char>(unit >> 8 * (isLittle ? i : size - 1 - i) & 0xFF);
    };
    bool isLittle =
        encoding == TextEncoding::utf16LittleEndian || encoding == TextEncoding::utf32LittleEndian;
    bool is32 = encoding == TextEncoding::utf32LittleEndian || encoding == TextEncoding::utf32BigEndian;
    for (std::uint32_t character : text) {
        if (is32 || character < 0x10000) {
            put(character, is32 ? 4 : 2, isLittle);
        } else {
            put(0xD800 + ((character - 0x10000) >> 10), 2, isLittle);
            put(0xDC00 + ((character - 0x10000) & 0x3FF), 2, isLittle);
        }
    }
    return bytes;
}

inline std::string mark(TextEncoding encoding)
{
    return encoding == TextEncoding::utf8 ? "\xEF\xBB\xBF" : encoded(U"\uFEFF", encoding);
}

// The same subtitle in several scripts: what a file of that language looks like.
struct ScriptSample {
    std::string_view name, utf8;
    std::u32string_view characters;
};
#define ZELK_SAMPLE(name, text)                                                                              \
    ScriptSample                                                                                             \
    {                                                                                                        \
        name, text, U##text                                                                                  \
    }
inline constexpr ScriptSample scriptSamples[] = {
    ZELK_SAMPLE("English", "1\n00:00:01,000 --> 00:00:02,500\nShe stayed.\n\n"),
    ZELK_SAMPLE("French", "1\r\n00:00:01,000 --> 00:00:02,500\r\n« Où est-il passé ? »\r\n\r\n"),
    ZELK_SAMPLE("Russian", "1\n00:00:01,000 --> 00:00:02,500\nНИКТО НЕ СПРОСИЛ\nПочему она осталась?\n\n"),
    ZELK_SAMPLE("Hebrew", "1\n00:00:01,000 --> 00:00:02,500\nאיש לא שאל אותה למה.\n\n"),
    ZELK_SAMPLE("Arabic", "1\n00:00:01,000 --> 00:00:02,500\nلم يسألها أحد قط.\n\n"),
    ZELK_SAMPLE("Hindi", "1\n00:00:01,000 --> 00:00:02,500\nकिसी ने नहीं पूछा।\n\n"),
    ZELK_SAMPLE("Chinese", "1\n00:00:01,000 --> 00:00:02,500\n从来没有人问过她\u3000为什么留下来\n\n"),
    ZELK_SAMPLE("Japanese", "1\n00:00:01,000 --> 00:00:02,500\n彼女はなぜ残ったのか。\n\n"),
    ZELK_SAMPLE("emoji", "1\n00:00:01,000 --> 00:00:02,500\n👩‍👩‍👧 😀 e\u0301\n\n"),
};
#undef ZELK_SAMPLE

inline constexpr TextEncoding allEncodings[] = {TextEncoding::utf8, TextEncoding::utf16LittleEndian,
                                                TextEncoding::utf16BigEndian, TextEncoding::utf32LittleEndian,
                                                TextEncoding::utf32BigEndian};

} // namespace platform::tests
