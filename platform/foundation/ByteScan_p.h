// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/TextSurvey.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace platform {

struct BlockCounts {
    std::uint32_t lineEnds = 0;
    std::uint32_t characters = 0; // bytes that begin one
    bool isASCII = true;

    bool operator==(const BlockCounts&) const = default;
};

enum class NextByte { lineFeed, other };

// Counts in at most 4 GiB; isWellFormedUTF8 is the other half of the scan. A CR at the end counts unless a line feed is `next`.
BlockCounts countBlock(std::string_view block, NextByte next);

// What the two use: one pair for each instruction set that the machine has, the best first.
struct ByteScanKernels {
    std::string_view name;
    BlockCounts (*count)(std::string_view block, NextByte next);
    bool (*isWellFormed)(std::string_view bytes);
};
const std::vector<ByteScanKernels>& byteScanKernels();

// The same, and isWellFormedUTF8, one byte at a time: for the ends of what the wide versions do, and to test
// them against.
BlockCounts countBlockByByte(std::string_view block, NextByte next);
// The length of the longest prefix of `bytes` that is well-formed.
std::size_t wellFormedPrefixByByte(std::string_view bytes);

// The length of the sequence at the beginning of `bytes`, or 0 when it is ill-formed. Sets `wrong` to how many
// bytes then count as one fault: the part that could have become a character, at least one. Requires: not empty.
std::size_t sequenceLength(std::string_view bytes, std::size_t& wrong);

// How many bytes at the end of `text`, three at most, begin a sequence that needs more.
std::size_t openSequenceSize(std::string_view text);

} // namespace platform
