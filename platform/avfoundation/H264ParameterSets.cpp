// SPDX-License-Identifier: MIT
#include "platform/avfoundation/H264ParameterSets_p.h"

#include <algorithm>

namespace platform {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr int sliceIDR = 5, sequenceParameterSet = 7, pictureParameterSet = 8;

int unitType(Bytes unit)
{
    return unit.empty() ? 0 : unit[0] & 0x1F;
}

// The units between start codes.
template <class Take>
void forEachUnit(Bytes bytes, Take take)
{
    auto startCode = [&](std::size_t at) {
        for (; at + 3 <= bytes.size(); ++at) {
            if (bytes[at] == 0 && bytes[at + 1] == 0 && bytes[at + 2] == 1)
                return at;
        }
        return bytes.size();
    };
    for (auto at = startCode(0); at < bytes.size();) {
        auto begin = at + 3;
        auto end = startCode(begin);
        at = end;
        while (end > begin && bytes[end - 1] == 0) // of a longer start code, or padding
            --end;
        take(bytes.subspan(begin, end - begin));
    }
}

// An unsigned Exp-Golomb number at the bit `at`, which moves behind it. The sets begin with small ones, so no
// emulation prevention stands before or within them.
int golomb(Bytes bytes, std::size_t& at)
{
    auto bit = [&] {
        auto value = at / 8 < bytes.size() ? bytes[at / 8] >> (7 - at % 8) & 1 : 1;
        ++at;
        return value;
    };
    int zeroes = 0;
    while (bit() == 0 && zeroes < 16)
        ++zeroes;
    int value = 0;
    for (int i = 0; i < zeroes; ++i)
        value = value << 1 | bit();
    return (1 << zeroes) - 1 + value;
}

Bytes bytesOf(const std::string& text)
{
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::string textOf(Bytes bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// Reads `count` sets with two bytes of length each. False when the record ends before.
bool readSets(Bytes& rest, int count, std::vector<std::string>& sets)
{
    for (; count > 0; --count) {
        if (rest.size() < 2)
            return false;
        auto size = static_cast<std::size_t>(rest[0] << 8 | rest[1]);
        if (rest.size() - 2 < size || size < 4 - 2)
            return false;
        sets.push_back(textOf(rest.subspan(2, size)));
        rest = rest.subspan(2 + size);
    }
    return true;
}

void append(std::vector<std::uint8_t>& record, const std::vector<std::string>& sets)
{
    for (auto& set : sets) {
        record.push_back(static_cast<std::uint8_t>(set.size() >> 8));
        record.push_back(static_cast<std::uint8_t>(set.size()));
        record.insert(record.end(), set.begin(), set.end());
    }
}

void addNew(std::vector<std::string>& sets, const std::vector<std::string>& others)
{
    for (auto& set : others) {
        if (std::ranges::find(sets, set) == sets.end())
            sets.push_back(set);
    }
}

} // namespace

std::optional<H264ParameterSets> H264ParameterSets::parse(Bytes record)
{
    if (record.size() < 7 || record[0] != 1)
        return std::nullopt;
    H264ParameterSets result{.profile = record[1],
                             .compatibility = record[2],
                             .level = record[3],
                             .lengthSize = (record[4] & 3) + 1,
                             .sequence = {},
                             .picture = {}};
    auto rest = record.subspan(6);
    if (!readSets(rest, record[5] & 0x1F, result.sequence) || rest.empty())
        return std::nullopt;
    int pictures = rest[0];
    rest = rest.subspan(1);
    if (!readSets(rest, pictures, result.picture) || result.sequence.empty() || result.picture.empty())
        return std::nullopt;
    return result;
}

std::optional<H264ParameterSets> H264ParameterSets::fromByteStream(Bytes bytes)
{
    H264ParameterSets result;
    forEachUnit(bytes, [&](Bytes unit) {
        if (unitType(unit) == sequenceParameterSet)
            result.sequence.push_back(textOf(unit));
        else if (unitType(unit) == pictureParameterSet)
            result.picture.push_back(textOf(unit));
    });
    if (result.sequence.empty() || result.picture.empty() || result.sequence[0].size() < 4)
        return std::nullopt;
    auto first = bytesOf(result.sequence[0]);
    result.profile = first[1];
    result.compatibility = first[2];
    result.level = first[3];
    return result;
}

std::vector<std::uint8_t> H264ParameterSets::record() const
{
    std::vector<std::uint8_t> bytes{1,
                                    profile,
                                    compatibility,
                                    level,
                                    static_cast<std::uint8_t>(0xFC | (lengthSize - 1)),
                                    static_cast<std::uint8_t>(0xE0 | sequence.size())};
    append(bytes, sequence);
    bytes.push_back(static_cast<std::uint8_t>(picture.size()));
    append(bytes, picture);
    if (profile == 100 || profile == 110 || profile == 122 || profile == 144)
        bytes.insert(bytes.end(), {0xFC | 1, 0xF8, 0xF8, 0}); // 4:2:0, 8 bits, no extensions
    return bytes;
}

bool H264ParameterSets::usesID(int id) const
{
    auto isSequence = [&](const std::string& set) {
        std::size_t at = 32; // behind type, profile, compatibility and level
        return golomb(bytesOf(set), at) == id;
    };
    auto isPicture = [&](const std::string& set) {
        std::size_t at = 8;
        return golomb(bytesOf(set), at) == id;
    };
    return std::ranges::any_of(sequence, isSequence) || std::ranges::any_of(picture, isPicture);
}

H264ParameterSets H264ParameterSets::merged(const H264ParameterSets& other) const
{
    auto result = *this;
    result.profile = std::max(profile, other.profile);
    result.compatibility = compatibility & other.compatibility;
    result.level = std::max(level, other.level);
    addNew(result.sequence, other.sequence);
    addNew(result.picture, other.picture);
    return result;
}

std::vector<std::uint8_t> sliceUnits(Bytes byteStream, int lengthSize)
{
    std::vector<std::uint8_t> sample;
    forEachUnit(byteStream, [&](Bytes unit) {
        if (unitType(unit) < 1 || unitType(unit) > sliceIDR)
            return;
        for (int i = lengthSize - 1; i >= 0; --i)
            sample.push_back(static_cast<std::uint8_t>(unit.size() >> (8 * i)));
        sample.insert(sample.end(), unit.begin(), unit.end());
    });
    return sample;
}

bool isInstantaneousRefresh(Bytes sample, int lengthSize)
{
    auto prefix = static_cast<std::size_t>(lengthSize);
    while (sample.size() > prefix) {
        std::size_t size = 0;
        for (std::size_t i = 0; i < prefix; ++i)
            size = size << 8 | sample[i];
        auto unit = sample.subspan(prefix, std::min(size, sample.size() - prefix));
        if (unitType(unit) == sliceIDR)
            return true;
        sample = sample.subspan(prefix + unit.size());
    }
    return false;
}

} // namespace platform
