// SPDX-License-Identifier: MIT
#include "kit/foundation/flagEmoji.h"

#include "platform/foundation/Locale.h"
#include "platform/foundation/appendUTF8.h"
#include "platform/foundation/uppercased.h"

#include <algorithm>

namespace zelk {

using namespace platform;

namespace {

// From a letter to the regional indicator symbol of that letter: U+1F1E6 - 'A'.
constexpr char32_t indicatorOffset = 127397;

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
        appendUTF8(flag, static_cast<unsigned char>(letter) + indicatorOffset);
    return flag;
}

} // namespace zelk
