// SPDX-License-Identifier: MIT
#include "platform/foundation/TextEncoding.h"

#include "platform/foundation/Precondition.h"
#include "platform/foundation/TextEncodingTable_p.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>

namespace platform {

namespace {

using enum TextEncoding;

#define CENTRAL "pl cs sk hu sl hr bs_Latn sr_Latn ro sq de"
#define CYRILLIC "ru uk be bg sr mk"
#define WESTERN "en fr de es pt it nl sv da nb nn fi is ca gl eu ga af sq id et br oc"
#define BALTIC "lt lv et pl de"
#define TURKISH "tr az ku"

constexpr TextEncodingRow rows[] = {
    {utf8, nullptr, "UTF-8", "Unicode (UTF-8)", ""},
    {utf16LittleEndian, nullptr, "UTF-16LE", "Unicode (UTF-16LE)", ""},
    {utf16BigEndian, nullptr, "UTF-16BE", "Unicode (UTF-16BE)", ""},
    {utf32LittleEndian, nullptr, "UTF-32LE", "Unicode (UTF-32LE)", ""},
    {utf32BigEndian, nullptr, "UTF-32BE", "Unicode (UTF-32BE)", ""},
    {windows1250, "windows-1250", "windows-1250", "Central European (Windows-1250)", CENTRAL},
    {windows1251, "windows-1251", "windows-1251", "Cyrillic (Windows-1251)", CYRILLIC},
    {windows1252, "windows-1252", "windows-1252", "Western (Windows-1252)", WESTERN},
    {windows1253, "windows-1253", "windows-1253", "Greek (Windows-1253)", "el"},
    {windows1254, "windows-1254", "windows-1254", "Turkish (Windows-1254)", TURKISH},
    {windows1255, "windows-1255", "windows-1255", "Hebrew (Windows-1255)", "he yi"},
    {windows1256, "windows-1256", "windows-1256", "Arabic (Windows-1256)", "ar fa ur"},
    {windows1257, "windows-1257", "windows-1257", "Baltic (Windows-1257)", BALTIC},
    {windows1258, "windows-1258", "windows-1258", "Vietnamese (Windows-1258)", "vi"},
    {windows874, "windows-874", "windows-874", "Thai (Windows-874)", "th"},
    {iso8859_2, "ISO-8859-2", "ISO-8859-2", "Central European (ISO 8859-2)", CENTRAL},
    {iso8859_3, "ISO-8859-3", "ISO-8859-3", "South European (ISO 8859-3)", "mt eo"},
    {iso8859_4, "ISO-8859-4", "ISO-8859-4", "Baltic (ISO 8859-4)", BALTIC},
    {iso8859_5, "ISO-8859-5", "ISO-8859-5", "Cyrillic (ISO 8859-5)", CYRILLIC},
    {iso8859_6, "ISO-8859-6", "ISO-8859-6", "Arabic (ISO 8859-6)", "ar"},
    {iso8859_7, "ISO-8859-7", "ISO-8859-7", "Greek (ISO 8859-7)", "el"},
    {iso8859_8, "ISO-8859-8", "ISO-8859-8", "Hebrew (ISO 8859-8)", "he yi"},
    {iso8859_10, "ISO-8859-10", "ISO-8859-10", "Nordic (ISO 8859-10)", "se is"},
    {iso8859_13, "ISO-8859-13", "ISO-8859-13", "Baltic (ISO 8859-13)", BALTIC},
    {iso8859_14, "ISO-8859-14", "ISO-8859-14", "Celtic (ISO 8859-14)", "cy ga gd"},
    {iso8859_15, "ISO-8859-15", "ISO-8859-15", "Western (ISO 8859-15)", WESTERN},
    {iso8859_16, nullptr, "ISO-8859-16", "Romanian (ISO 8859-16)", "ro"},
    {koi8R, "KOI8-R", "KOI8-R", "Cyrillic (KOI8-R)", "ru bg"},
    {koi8U, "KOI8-U", "KOI8-U", "Cyrillic (KOI8-U)", "uk ru"},
    {ibm437, "ibm-437", "IBM437", "Western (DOS 437)", "en de fr es it nl sv fi"},
    {ibm737, "ibm-737", "IBM737", "Greek (DOS 737)", "el"},
    {ibm775, "ibm-775", "IBM775", "Baltic (DOS 775)", BALTIC},
    {ibm850, "ibm-850", "IBM850", "Western (DOS 850)", WESTERN},
    {ibm852, "ibm-852", "IBM852", "Central European (DOS 852)", CENTRAL},
    {ibm855, "ibm-855", "IBM855", "Cyrillic (DOS 855)", CYRILLIC},
    {ibm857, "ibm-857", "IBM857", "Turkish (DOS 857)", TURKISH},
    {ibm862, "ibm-862", "IBM862", "Hebrew (DOS 862)", "he"},
    {ibm866, "ibm-866", "IBM866", "Cyrillic (DOS 866)", CYRILLIC},
    {macRoman, "macintosh", "macintosh", "Western (Mac)", WESTERN},
    {macCentralEurope, "x-mac-centraleurroman", "x-mac-centraleurroman", "Central European (Mac)",
     CENTRAL " " BALTIC},
    {macCyrillic, "x-mac-cyrillic", "x-mac-cyrillic", "Cyrillic (Mac)", CYRILLIC},
    {macGreek, "x-mac-greek", "x-mac-greek", "Greek (Mac)", "el"},
    {macTurkish, "x-mac-turkish", "x-mac-turkish", "Turkish (Mac)", TURKISH},
    {shiftJIS, "windows-31j", "Shift_JIS", "Japanese (Shift JIS)", ""},
    {eucJP, "EUC-JP", "EUC-JP", "Japanese (EUC)", ""},
    {iso2022JP, "ISO-2022-JP", "ISO-2022-JP", "Japanese (ISO 2022-JP)", ""},
    {iso2022KR, "ISO-2022-KR", "ISO-2022-KR", "Korean (ISO 2022-KR)", ""},
    {gb18030, "GB18030", "GB18030", "Chinese (GB 18030)", ""},
    {big5, "Big5-HKSCS", "Big5", "Chinese (Big5)", ""},
    {eucKR, "windows-949", "EUC-KR", "Korean (EUC)", ""},
};

// Names of charsets that are contained in one of ours, and other names for ours.
struct Alias {
    std::string_view charset; // lower case, letters and digits only
    TextEncoding encoding;
};
constexpr Alias aliases[] = {
    {"utf16", utf16LittleEndian},
    {"utf32", utf32LittleEndian},
    {"usascii", windows1252},
    {"ascii", windows1252},
    {"iso88591", windows1252},
    {"latin1", windows1252},
    {"iso88599", windows1254},
    {"latin5", windows1254},
    {"iso885911", windows874},
    {"tis620", windows874},
    {"cp874", windows874},
    {"iso88598i", iso8859_8},
    {"cp1250", windows1250},
    {"cp1251", windows1251},
    {"cp1252", windows1252},
    {"cp1253", windows1253},
    {"cp1254", windows1254},
    {"cp1255", windows1255},
    {"cp1256", windows1256},
    {"cp1257", windows1257},
    {"cp1258", windows1258},
    {"cp437", ibm437},
    {"cp737", ibm737},
    {"cp775", ibm775},
    {"cp850", ibm850},
    {"cp852", ibm852},
    {"cp855", ibm855},
    {"cp857", ibm857},
    {"cp862", ibm862},
    {"cp866", ibm866},
    {"maccentraleurope", macCentralEurope},
    {"xmaccentraleurope", macCentralEurope},
    {"maccyrillic", macCyrillic},
    {"xmacroman", macRoman},
    {"gb2312", gb18030},
    {"gbk", gb18030},
    {"cp936", gb18030},
    {"big5hkscs", big5},
    {"cp950", big5},
    {"uhc", eucKR},
    {"cp949", eucKR},
    {"windows949", eucKR},
    {"ksc56011987", eucKR},
    {"sjis", shiftJIS},
    {"windows31j", shiftJIS},
    {"cp932", shiftJIS},
};

std::string folded(std::string_view charset)
{
    std::string result;
    for (char c : charset) {
        if (c >= 'A' && c <= 'Z')
            result += static_cast<char>(c - 'A' + 'a');
        else if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'))
            result += c;
    }
    return result;
}

constexpr std::size_t legacyBegin = static_cast<std::size_t>(windows1250);

} // namespace

const TextEncodingRow& textEncodingRow(TextEncoding encoding)
{
    auto& row = rows[static_cast<std::size_t>(encoding)];
    precondition(row.encoding == encoding, "the table of encodings follows the enumeration");
    return row;
}

std::string_view localizedName(TextEncoding encoding)
{
    return textEncodingRow(encoding).name;
}

std::string_view charsetName(TextEncoding encoding)
{
    return textEncodingRow(encoding).charset;
}

std::optional<TextEncoding> textEncodingNamed(std::string_view charset)
{
    auto name = folded(charset);
    for (auto& row : rows) {
        if (folded(row.charset) == name)
            return row.encoding;
    }
    for (auto& alias : aliases) {
        if (alias.charset == name)
            return alias.encoding;
    }
    return std::nullopt;
}

bool isUnicode(TextEncoding encoding)
{
    return encoding <= utf32BigEndian;
}

std::span<const TextEncoding> legacyTextEncodings()
{
    static constexpr auto all = [] {
        std::array<TextEncoding, std::size(rows) - legacyBegin> result{};
        std::transform(std::begin(rows) + legacyBegin, std::end(rows), result.begin(),
                       [](const TextEncodingRow& row) { return row.encoding; });
        return result;
    }();
    return all;
}

} // namespace platform
