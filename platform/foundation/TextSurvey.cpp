// SPDX-License-Identifier: MIT
#include "platform/foundation/TextSurvey.h"

#include "platform/foundation/ByteScan_p.h"
#include "platform/foundation/Precondition.h"
#include "platform/foundation/TextScan_p.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

NextByte nextByte(std::string_view text, std::size_t offset)
{
    return offset < text.size() && text[offset] == '\n' ? NextByte::lineFeed : NextByte::other;
}

} // namespace

std::size_t TextSurvey::blockWhereLineBegins(std::uint64_t line) const
{
    precondition(line < lineCount(), "the text has fewer lines; ask for one below lineCount()");
    if (line == 0)
        return 0;
    // the last block with fewer than `line` line ends before it
    auto after =
        std::ranges::partition_point(blocks, [&](auto& block) { return block.lineEndsBefore < line; });
    return static_cast<std::size_t>(after - blocks.begin()) - 1;
}

TextSurvey surveyText(std::string_view text, const TextScanOptions& options)
{
    return scanText(text.data(), text.size(), TextScanKind::survey, nullptr, options).survey;
}

std::size_t lineStart(std::string_view text, const TextSurvey& survey, std::uint64_t line)
{
    auto block = survey.blockWhereLineBegins(line);
    if (line == 0)
        return 0;
    auto at = block * survey.blockSize;
    for (auto missing = line - survey.blocks[block].lineEndsBefore; missing > 0; ++at) {
        precondition(at < text.size(), "the survey is of another text");
        if (text[at] == '\n' || (text[at] == '\r' && nextByte(text, at + 1) == NextByte::other))
            --missing;
    }
    return at;
}

std::uint64_t lineAtOffset(std::string_view text, const TextSurvey& survey, std::size_t offset)
{
    precondition(offset <= text.size(), "the offset is beyond the text");
    if (survey.blocks.empty())
        return 0;
    auto block = std::min(offset / survey.blockSize, survey.blocks.size() - 1);
    auto begin = block * survey.blockSize;
    auto before = countBlock(text.substr(begin, offset - begin), nextByte(text, offset));
    return survey.blocks[block].lineEndsBefore + before.lineEnds;
}

} // namespace platform
