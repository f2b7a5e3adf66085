// SPDX-License-Identifier: MIT
#include "platform/graphics/rtf/RTFCodePages_p.h"

#include <algorithm>

namespace platform {

namespace {

struct Pair {
    std::int32_t number;
    std::int32_t codePage;
};
constexpr Pair fontCharsets[] = {
    {77, 10000}, {128, 932},  {129, 949},  {130, 1361}, {134, 936},  {136, 950},
    {161, 1253}, {162, 1254}, {163, 1258}, {177, 1255}, {178, 1256}, {186, 1257},
    {204, 1251}, {222, 874},  {238, 1250}, {254, 437},  {255, 850},
};

struct NamedPage {
    std::int32_t codePage;
    std::string_view name;
};
// Those whose name does not follow from the number, or where several sets share it.
constexpr NamedPage namedPages[] = {
    {437, "ibm-437"},          {708, "ISO-8859-6"},
    {850, "ibm-850"},          {932, "windows-31j"},
    {936, "windows-936-2000"}, {949, "windows-949-2000"},
    {950, "windows-950-2000"}, {1361, "johab"},
    {10000, "macintosh"},      {10004, "x-mac-arabic"},
    {10005, "x-mac-hebrew"},   {10006, "x-mac-greek"},
    {10007, "x-mac-cyrillic"}, {10029, "x-mac-centraleurroman"},
    {10081, "x-mac-turkish"},  {20866, "KOI8-R"},
    {21866, "KOI8-U"},         {28591, "ISO-8859-1"},
    {28592, "ISO-8859-2"},     {28595, "ISO-8859-5"},
    {28597, "ISO-8859-7"},     {28598, "ISO-8859-8"},
    {28599, "ISO-8859-9"},     {51949, "EUC-KR"},
    {54936, "gb18030"},        {65001, "UTF-8"},
};

std::optional<CharsetDecoder> openPage(std::int32_t codePage)
{
    auto found = std::ranges::find(namedPages, codePage, &NamedPage::codePage);
    if (found != std::end(namedPages))
        return CharsetDecoder::open(found->name);
    auto number = std::to_string(codePage);
    if (auto decoder = CharsetDecoder::open("windows-" + number))
        return decoder;
    return CharsetDecoder::open("ibm-" + number);
}

bool isASCII(char byte)
{
    return static_cast<unsigned char>(byte) < 0x80;
}

} // namespace

std::optional<std::int32_t> codePageOfFontCharset(std::int32_t charset)
{
    auto found = std::ranges::find(fontCharsets, charset, &Pair::number);
    return found == std::end(fontCharsets) ? std::nullopt : std::optional(found->codePage);
}

std::string RTFCodePages::decode(std::string_view bytes, std::int32_t codePage)
{
    if (std::ranges::all_of(bytes, isASCII))
        return std::string(bytes);
    auto found = decoders_.find(codePage);
    if (found == decoders_.end()) {
        if (decoders_.size() > 64) // no honest document has more
            decoders_.clear();
        found = decoders_.emplace(codePage, openPage(codePage)).first;
    }
    if (found->second)
        return found->second->decode(bytes);
    std::string text;
    for (auto byte : bytes)
        isASCII(byte) ? text += byte : text += "\uFFFD";
    return text;
}

} // namespace platform
