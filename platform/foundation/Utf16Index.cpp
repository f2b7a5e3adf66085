// SPDX-License-Identifier: MIT
#include "platform/foundation/Utf16Index_p.h"

#include "platform/foundation/Utf16Count.h"

#include <algorithm>
#include <cstring>

namespace platform {

namespace {

constexpr std::size_t blockSize = 256;

bool continues(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// Of the character that begins with `lead`.
std::int64_t unitsOf(char lead)
{
    return static_cast<unsigned char>(lead) >= 0xF0 ? 2 : 1;
}

bool isAllASCII(std::string_view text)
{
    unsigned char all = 0;
    for (auto byte : text)
        all |= static_cast<unsigned char>(byte);
    return all < 0x80;
}

} // namespace

// A unit for each byte that begins a character, and one more for those of four bytes. Eight bytes at a time, since
// every edit counts what follows. A piece that is cut inside a character counts it where it begins.
std::int64_t utf16Count(std::string_view utf8)
{
    constexpr std::uint64_t tops = 0x8080808080808080;
    auto countTops = [](std::uint64_t marked) {
        return static_cast<std::int64_t>((marked >> 7) * 0x0101010101010101 >> 56);
    };
    std::int64_t count = 0;
    std::size_t at = 0;
    for (; at + 8 <= utf8.size(); at += 8) {
        std::uint64_t eight;
        std::memcpy(&eight, utf8.data() + at, 8);
        auto continuing = eight & ~(eight << 1) & tops;
        auto ofFour = eight & eight << 1 & eight << 2 & eight << 3 & tops;
        count += 8 - countTops(continuing) + countTops(ofFour);
    }
    for (auto byte : utf8.substr(at))
        count += continues(byte) ? 0 : unitsOf(byte);
    return count;
}

void Utf16Index::update(std::string_view text, std::size_t firstChanged)
{
    auto block = firstChanged / blockSize;
    if (unitsBefore_.empty()) {
        // What stands before was ASCII: as many units as bytes.
        for (std::size_t known = 0; known <= block; ++known)
            unitsBefore_.push_back(static_cast<std::int64_t>(known * blockSize));
    }
    // A text that ended with a block has no entry for the next one.
    block = std::min(block, unitsBefore_.size() - 1);
    unitsBefore_.resize(block + 1);
    auto at = block * blockSize;
    auto units = unitsBefore_.back();
    while (at < text.size()) {
        units += utf16Count(text.substr(at, blockSize));
        at += blockSize;
        if (at < text.size())
            unitsBefore_.push_back(units);
    }
    unitCount_ = units;
    byteCount_ = static_cast<std::int64_t>(text.size());
    if (isASCII())
        unitsBefore_.clear();
}

void Utf16Index::noteReplacement(std::string_view text, std::size_t at, std::string_view inserted)
{
    if (isASCII() && isAllASCII(inserted))
        unitCount_ = byteCount_ = static_cast<std::int64_t>(text.size());
    else
        update(text, at);
}

Utf16Index::Place Utf16Index::place(std::string_view text, Utf16Offset offset) const
{
    if (isASCII())
        return {static_cast<std::size_t>(offset.value)};
    auto block = std::ranges::upper_bound(unitsBefore_, offset.value) - unitsBefore_.begin() - 1;
    auto units = unitsBefore_[static_cast<std::size_t>(block)];
    auto byte = static_cast<std::size_t>(block) * blockSize;
    // A character that the block cuts was counted before it.
    while (byte < text.size() && continues(text[byte]))
        ++byte;
    while (byte < text.size() && units < offset.value) {
        auto next = units + unitsOf(text[byte]);
        if (next > offset.value)
            return {byte, false};
        units = next;
        do
            ++byte;
        while (byte < text.size() && continues(text[byte]));
    }
    return {byte};
}

Utf16Offset Utf16Index::offsetOf(std::string_view text, std::size_t byte) const
{
    if (isASCII())
        return {static_cast<std::int64_t>(byte)};
    auto block = std::min(byte / blockSize, unitsBefore_.size() - 1);
    auto start = block * blockSize;
    return {unitsBefore_[block] + utf16Count(text.substr(start, byte - start))};
}

} // namespace platform
