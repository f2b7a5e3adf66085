// SPDX-License-Identifier: MIT
#include "kit/foundation/flagEmoji.h"

#include "platform/foundation/Locale.h"
#include "platform/foundation/uppercased.h"

#include <algorithm>

namespace zelk {

using namespace platform;

namespace {

// From a letter to the regional indicator symbol of that letter: U+1F1E6 - 'A'.
constexpr char32_t indicatorOffset = 127397;

// The characters from U+10000 on, which all regional indicators are.
void append(std::string& utf8, char32_t character)
{
    utf8 += static_cast<char>(0xF0 | character >> 18);
    utf8 += static_cast<char>(0x80 | (character >> 12 & 0x3F));
    utf8 += static_cast<char>(0x80 | (character >> 6 & 0x3F));
    utf8 += static_cast<char>(0x80 | (character & 0x3F));
}

} // namespace

std::optional<std::string> flagEmoji(std::string_view regionCode)
{
    // Full capitals: "ß" is a spelling of "SS" here, as on the platform.
    auto code = uppercased(regionCode);
    auto& regions = Locale::isoRegionCodes();
    if (std::ranges::find(regions, code) == regions.end())
        return std::nullopt;
    std::string flag;
    for (auto letter : code)
        append(flag, static_cast<unsigned char>(letter) + indicatorOffset);
    return flag;
}

} // namespace zelk
