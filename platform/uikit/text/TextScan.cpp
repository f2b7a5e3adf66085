// SPDX-License-Identifier: MIT
#include "platform/uikit/text/TextScan.h"

#include <algorithm>
#include <cstring>

namespace platform {

namespace {

// Sixteen bytes that the compiler turns into one register; a comparison gives 0xFF where it holds.
using Block = unsigned char __attribute__((vector_size(16)));
constexpr std::size_t blockSize = sizeof(Block);
// Lanes count to 255 before they are added up.
constexpr std::size_t blocksPerSum = 255;

Block load(const char* bytes)
{
    Block block;
    std::memcpy(&block, bytes, blockSize);
    return block;
}

std::int64_t sumOfLanes(Block lanes)
{
    std::int64_t sum = 0;
    for (std::size_t lane = 0; lane < blockSize; ++lane)
        sum += lanes[lane];
    return sum;
}

bool isAnyLaneSet(Block lanes)
{
    std::uint64_t halves[2];
    std::memcpy(halves, &lanes, sizeof halves);
    return (halves[0] | halves[1]) != 0;
}

// Adds up what `matches` finds in the whole blocks before `limit`; gives where it stopped.
template <class Matches>
std::size_t countBlocks(const char* bytes, std::size_t limit, std::int64_t& count, Matches matches)
{
    std::size_t at = 0;
    while (at + blockSize <= limit) {
        Block lanes{};
        auto blocks = std::min(blocksPerSum, (limit - at) / blockSize);
        for (std::size_t block = 0; block < blocks; ++block, at += blockSize)
            lanes -= matches(bytes + at);
        count += sumOfLanes(lanes);
    }
    return at;
}

bool endsLine(std::string_view text, std::size_t at)
{
    return text[at] == '\n' || (text[at] == '\r' && (at + 1 == text.size() || text[at + 1] != '\n'));
}

} // namespace

std::size_t findLineEnd(std::string_view text, std::size_t from)
{
    auto at = from;
    for (; at + blockSize <= text.size(); at += blockSize) {
        auto block = load(text.data() + at);
        if (isAnyLaneSet((Block)(block == '\n') | (Block)(block == '\r')))
            break;
    }
    while (at < text.size() && text[at] != '\n' && text[at] != '\r')
        ++at;
    return at;
}

std::int64_t countLineEnds(std::string_view text, std::size_t limit)
{
    limit = std::min(limit, text.size());
    if (limit == 0)
        return 0;
    std::int64_t count = 0;
    // The byte after each lane is read too, so the blocks stop one byte early.
    auto at = countBlocks(text.data(), std::min(limit, text.size() - 1), count, [](const char* bytes) {
        auto block = load(bytes);
        auto next = load(bytes + 1);
        return (Block)(block == '\n') | ((Block)(block == '\r') & ~(Block)(next == '\n'));
    });
    for (; at < limit; ++at)
        count += endsLine(text, at);
    return count;
}

std::size_t afterLineEnd(std::string_view text, std::int64_t ordinal)
{
    // Whole stretches are counted until the one that holds the line end; that one is walked.
    constexpr std::size_t stretch = 1024;
    std::size_t at = 0;
    while (at + stretch < text.size()) {
        auto found = countLineEnds(text.substr(at, stretch + 1), stretch);
        if (found >= ordinal)
            break;
        ordinal -= found;
        at += stretch;
    }
    for (at = findLineEnd(text, at); at < text.size(); at = findLineEnd(text, at)) {
        ordinal -= endsLine(text, at);
        ++at;
        if (ordinal == 0)
            return at;
    }
    return std::string_view::npos;
}

bool isASCII(std::string_view text)
{
    std::size_t at = 0;
    Block high{};
    for (; at + blockSize <= text.size(); at += blockSize)
        high |= load(text.data() + at);
    auto rest = 0;
    for (; at < text.size(); ++at)
        rest |= static_cast<unsigned char>(text[at]);
    return rest < 0x80 && !isAnyLaneSet(high & 0x80);
}

std::int64_t countUtf16Units(std::string_view text)
{
    std::int64_t count = 0;
    // One for each byte that begins a character, one more for each that begins one beyond U+FFFF.
    auto at = countBlocks(text.data(), text.size(), count,
                          [](const char* bytes) { return (Block)((load(bytes) & 0xC0) != 0x80); });
    countBlocks(text.data(), text.size(), count,
                [](const char* bytes) { return (Block)(load(bytes) >= 0xF0); });
    for (; at < text.size(); ++at)
        count += !isUtf8Continuation(text[at]) + (static_cast<unsigned char>(text[at]) >= 0xF0);
    return count;
}

std::size_t offsetOfUtf16Unit(std::string_view text, std::int64_t unit)
{
    constexpr std::size_t stretch = 1024;
    std::size_t at = 0;
    while (at + stretch < text.size()) {
        auto units = countUtf16Units(text.substr(at, stretch));
        if (units > unit)
            break;
        unit -= units;
        at += stretch;
    }
    for (; at < text.size(); ++at) {
        if (isUtf8Continuation(text[at]))
            continue;
        auto units = 1 + (static_cast<unsigned char>(text[at]) >= 0xF0);
        if (unit < units)
            return at;
        unit -= units;
    }
    return text.size();
}

std::u16string toUtf16(std::string_view text)
{
    std::u16string units;
    units.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        auto lead = static_cast<unsigned char>(text[at]);
        std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        if (isUtf8Continuation(text[at])) {
            ++at;
            continue;
        }
        if (at + length > text.size())
            break;
        char32_t character = length == 1 ? lead : lead & (0x7F >> length);
        for (std::size_t i = 1; i < length; ++i)
            character = character << 6 | (static_cast<unsigned char>(text[at + i]) & 0x3F);
        if (character >= 0x10000) {
            units += static_cast<char16_t>(0xD7C0 + (character >> 10));
            units += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
        } else {
            units += static_cast<char16_t>(character);
        }
        at += length;
    }
    return units;
}

} // namespace platform
