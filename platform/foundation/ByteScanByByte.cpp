// SPDX-License-Identifier: MIT
#include "platform/foundation/ByteScan_p.h"
#include "platform/foundation/UTF8.h"

#include <algorithm>

namespace platform {

std::size_t sequenceLength(std::string_view bytes, std::size_t& wrong)
{
    auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    wrong = 1;
    unsigned lead = byte(0);
    if (lead < 0x80)
        return 1;
    if (lead < 0xC2 || lead > 0xF4)
        return 0;
    std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    // The second byte's range rules out long forms, surrogates and what is beyond Unicode.
    unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    for (std::size_t i = 1; i < length; ++i) {
        if (i >= bytes.size() || byte(i) < lowest || byte(i) > highest)
            return 0;
        wrong = i + 1;
        lowest = 0x80;
        highest = 0xBF;
    }
    return length;
}

BlockCounts countBlockByByte(std::string_view block, NextByte next)
{
    BlockCounts counts;
    for (std::size_t i = 0; i < block.size(); ++i) {
        auto byte = static_cast<unsigned char>(block[i]);
        bool lineFeedFollows = i + 1 < block.size() ? block[i + 1] == '\n' : next == NextByte::lineFeed;
        counts.lineEnds += byte == '\n' || (byte == '\r' && !lineFeedFollows);
        counts.characters += (byte & 0xC0) != 0x80;
        counts.isASCII = counts.isASCII && byte < 0x80;
    }
    return counts;
}

std::size_t wellFormedPrefixByByte(std::string_view bytes)
{
    std::size_t at = 0, wrong = 0;
    while (at < bytes.size()) {
        auto length = sequenceLength(bytes.substr(at), wrong);
        if (length == 0)
            break;
        at += length;
    }
    return at;
}

std::size_t openSequenceSize(std::string_view text)
{
    for (std::size_t back = 1; back <= std::min<std::size_t>(3, text.size()); ++back) {
        auto byte = static_cast<unsigned char>(text[text.size() - back]);
        if (byte < 0x80)
            return 0;
        if (byte >= 0xC0)
            return (byte >= 0xF0 ? 4u : byte >= 0xE0 ? 3u : 2u) > back ? back : 0;
    }
    return 0;
}

std::string repairedUTF8(std::string_view bytes)
{
    std::string result;
    std::size_t wrong = 0;
    while (!bytes.empty()) {
        auto length = sequenceLength(bytes, wrong);
        result += length > 0 ? bytes.substr(0, length) : "\uFFFD";
        bytes.remove_prefix(length > 0 ? length : wrong);
    }
    return result;
}

} // namespace platform
