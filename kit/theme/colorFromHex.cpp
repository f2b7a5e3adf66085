// SPDX-License-Identifier: MIT
#include "kit/theme/colorFromHex.h"

#include "platform/foundation/NSScanner.h"
#include "platform/graphics/TextBoundaries.h"

#include <cstdint>
#include <string>

namespace zelk {

namespace {

constexpr int withAlpha = 8;
constexpr int withoutAlpha = 6;

// As a person counts them, up to one more than any colour has.
int characterCount(std::string_view text)
{
    int count = 0;
    for (std::size_t offset = 0; offset < text.size() && count <= withAlpha; ++count)
        offset = platform::nextGrapheme(text, offset);
    return count;
}

} // namespace

template <>
std::optional<platform::UIColor> colorFromHex(std::string_view hex)
{
    if (hex.starts_with('#'))
        hex.remove_prefix(1);
    auto count = characterCount(hex);
    if (count != withAlpha && count != withoutAlpha)
        return std::nullopt;
    std::uint64_t scanned = 0;
    if (!platform::NSScanner(std::string(hex)).scanHexLongLong(&scanned))
        return std::nullopt;
    auto value = static_cast<std::uint32_t>(scanned);
    auto component = [value](int lowestBit) { return (value >> lowestBit & 0xFF) / 255.0; };
    if (count == withAlpha)
        return platform::UIColor(component(24), component(16), component(8), component(0));
    return platform::UIColor(component(16), component(8), component(0), 1.0);
}

template <>
std::optional<platform::Color> colorFromHex(std::string_view hex)
{
    auto color = colorFromHex<platform::UIColor>(hex);
    return color ? std::optional(platform::Color{*color}) : std::nullopt;
}

} // namespace zelk
