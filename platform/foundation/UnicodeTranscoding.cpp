// SPDX-License-Identifier: MIT
#include "platform/foundation/UnicodeTranscoding_p.h"

#include "platform/foundation/Precondition.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace platform {

namespace {

template <class Unit, std::endian Order>
Unit loadUnit(const char* at)
{
    Unit unit;
    std::memcpy(&unit, at, sizeof unit);
    if constexpr (Order == std::endian::native)
        return unit;
    else
        return std::byteswap(unit);
}

char* appendCharacter(char* output, std::uint32_t character)
{
    auto byte = [&](std::uint32_t value) { *output++ = static_cast<char>(value); };
    if (character < 0x80) {
        byte(character);
    } else if (character < 0x800) {
        byte(0xC0 | character >> 6);
        byte(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        byte(0xE0 | character >> 12);
        byte(0x80 | (character >> 6 & 0x3F));
        byte(0x80 | (character & 0x3F));
    } else {
        byte(0xF0 | character >> 18);
        byte(0x80 | (character >> 12 & 0x3F));
        byte(0x80 | (character >> 6 & 0x3F));
        byte(0x80 | (character & 0x3F));
    }
    return output;
}

bool isHighSurrogate(std::uint32_t unit)
{
    return (unit & 0xFC00) == 0xD800;
}

bool isLowSurrogate(std::uint32_t unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

template <std::endian Order>
std::optional<std::size_t> transcodeUTF16(std::string_view bytes, char* output)
{
    if (bytes.size() % 2 != 0)
        return std::nullopt;
    auto* begin = output;
    auto* at = bytes.data();
    auto* end = at + bytes.size();
    while (at != end) {
        // Four ASCII units at a time: a line of a subtitle is often nothing else.
        if (end - at >= 8) {
            auto four = loadUnit<std::uint64_t, std::endian::native>(at);
            constexpr std::uint64_t beyondASCII =
                Order == std::endian::native ? 0xFF80FF80FF80FF80u : 0x80FF80FF80FF80FFu;
            if ((four & beyondASCII) == 0) {
                for (int i = 0; i < 4; ++i)
                    *output++ = static_cast<char>(loadUnit<std::uint16_t, Order>(at + i * 2));
                at += 8;
                continue;
            }
        }
        std::uint32_t unit = loadUnit<std::uint16_t, Order>(at);
        at += 2;
        if (isLowSurrogate(unit))
            return std::nullopt;
        if (isHighSurrogate(unit)) {
            if (at == end)
                return std::nullopt;
            std::uint32_t low = loadUnit<std::uint16_t, Order>(at);
            at += 2;
            if (!isLowSurrogate(low))
                return std::nullopt;
            unit = 0x10000 + ((unit & 0x3FF) << 10 | (low & 0x3FF));
        }
        output = appendCharacter(output, unit);
    }
    return static_cast<std::size_t>(output - begin);
}

template <std::endian Order>
std::optional<std::size_t> transcodeUTF32(std::string_view bytes, char* output)
{
    if (bytes.size() % 4 != 0)
        return std::nullopt;
    auto* begin = output;
    for (std::size_t at = 0; at < bytes.size(); at += 4) {
        auto unit = loadUnit<std::uint32_t, Order>(bytes.data() + at);
        if (unit > 0x10FFFF || (unit & 0xFFFFF800) == 0xD800)
            return std::nullopt;
        output = appendCharacter(output, unit);
    }
    return static_cast<std::size_t>(output - begin);
}

} // namespace

std::size_t transcodedCapacity(TextEncoding encoding, std::size_t size)
{
    bool is16 = encoding == TextEncoding::utf16LittleEndian || encoding == TextEncoding::utf16BigEndian;
    return is16 ? size / 2 * 3 : size; // three bytes for a unit of two, four for one of four
}

std::optional<std::size_t> transcodeToUTF8(TextEncoding encoding, std::string_view bytes, char* output)
{
    switch (encoding) {
    case TextEncoding::utf16LittleEndian:
        return transcodeUTF16<std::endian::little>(bytes, output);
    case TextEncoding::utf16BigEndian:
        return transcodeUTF16<std::endian::big>(bytes, output);
    case TextEncoding::utf32LittleEndian:
        return transcodeUTF32<std::endian::little>(bytes, output);
    case TextEncoding::utf32BigEndian:
        return transcodeUTF32<std::endian::big>(bytes, output);
    default:
        preconditionFailure("only UTF-16 and UTF-32 are transcoded here");
    }
}

} // namespace platform
