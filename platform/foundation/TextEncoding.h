// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace platform {

// The encodings that texts are read in. Where one charset contains another, only the larger is here: what was
// written in the smaller reads the same in it (GB18030 for GB2312 and GBK).
enum class TextEncoding {
    utf8,
    utf16LittleEndian,
    utf16BigEndian,
    utf32LittleEndian,
    utf32BigEndian,
    // one byte a character
    windows1250, // Central Europe
    windows1251, // Cyrillic
    windows1252, // Western Europe
    windows1253, // Greek
    windows1254, // Turkish
    windows1255, // Hebrew
    windows1256, // Arabic
    windows1257, // Baltic
    windows1258, // Vietnamese
    windows874,  // Thai
    iso8859_2,
    iso8859_3,
    iso8859_4,
    iso8859_5,
    iso8859_6,
    iso8859_7,
    iso8859_8,
    iso8859_10,
    iso8859_13,
    iso8859_14,
    iso8859_15,
    iso8859_16,
    koi8R,
    koi8U,
    ibm437,
    ibm737,
    ibm775,
    ibm850,
    ibm852,
    ibm855,
    ibm857,
    ibm862,
    ibm866,
    macRoman,
    macCentralEurope,
    macCyrillic,
    macGreek,
    macTurkish,
    // several bytes a character
    shiftJIS,
    eucJP,
    iso2022JP,
    iso2022KR,
    gb18030,
    big5,
    eucKR,
};

// "Unicode (UTF-8)", "Cyrillic (Windows-1251)": for people.
std::string_view localizedName(TextEncoding encoding);

// The name that the Internet's register of charsets gives it: "windows-1251".
std::string_view charsetName(TextEncoding encoding);

// The encoding of that name in the register, case and punctuation not counting; names of contained charsets give the
// larger one ("ISO-8859-1" gives windows-1252, "gb2312" gives GB18030).
std::optional<TextEncoding> textEncodingNamed(std::string_view charset);

bool isUnicode(TextEncoding encoding);

// All that are not Unicode, in the order of the enumeration.
std::span<const TextEncoding> legacyTextEncodings();

} // namespace platform
