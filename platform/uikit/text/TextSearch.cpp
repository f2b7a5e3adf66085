// SPDX-License-Identifier: MIT
#include "platform/uikit/text/TextSearch.h"

#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <utility>

namespace platform {

TextSearch::TextSearch(const TextBuffer& text, TextPattern pattern)
    : text_(text)
    , pattern_(std::move(pattern))
{
    if (pattern_.isEmpty())
        countedTo_ = text_.end();
}

bool TextSearch::countOn()
{
    if (isComplete())
        return false;
    auto blockEnd = std::min(countedTo_ + blockSize, text_.end());
    auto resume = std::max(countedTo_, lastEnd_);
    blocks_.push_back({resume, count_});
    // A match that begins in this block may end in the next one.
    auto limit = std::min(blockEnd + static_cast<std::int64_t>(pattern_.longestMatch()), text_.end());
    std::string scratch;
    auto bytes = text_.view({resume, std::max(resume, limit)}, scratch);
    std::size_t at = 0;
    while (auto match = pattern_.find(bytes, at)) {
        if (resume + static_cast<std::int64_t>(match->begin) >= blockEnd)
            break;
        ++count_;
        at = match->begin + match->size;
    }
    lastEnd_ = resume + static_cast<std::int64_t>(at);
    countedTo_ = blockEnd;
    return true;
}

std::int64_t TextSearch::countBefore(Utf8Offset offset) const
{
    precondition(isComplete(), "matches are counted before they are numbered");
    if (blocks_.empty())
        return 0;
    auto index = std::min(static_cast<std::size_t>(offset.value / blockSize), blocks_.size() - 1);
    auto& block = blocks_[index];
    std::string scratch;
    auto limit = std::min(offset + static_cast<std::int64_t>(pattern_.longestMatch()), text_.end());
    auto bytes = text_.view({block.resume, std::max(block.resume, limit)}, scratch);
    auto count = block.countBefore;
    std::size_t at = 0;
    while (auto match = pattern_.find(bytes, at)) {
        if (block.resume + static_cast<std::int64_t>(match->begin) >= offset)
            break;
        ++count;
        at = match->begin + match->size;
    }
    return count;
}

std::optional<TextRange> TextSearch::first(TextRange range) const
{
    std::string scratch;
    for (auto start = range.start; start < range.end; start = start + blockSize) {
        auto limit =
            std::min(start + blockSize + static_cast<std::int64_t>(pattern_.longestMatch()), range.end);
        if (auto match = pattern_.find(text_.view({start, limit}, scratch))) {
            auto begin = start + static_cast<std::int64_t>(match->begin);
            return TextRange{begin, begin + static_cast<std::int64_t>(match->size)};
        }
    }
    return std::nullopt;
}

std::optional<TextRange> TextSearch::last(TextRange range) const
{
    constexpr std::int64_t step = 64 * 1024;
    std::string scratch;
    for (auto end = range.end; end > range.start;) {
        auto start = std::max(range.start, end - step);
        auto limit = std::min(end + static_cast<std::int64_t>(pattern_.longestMatch()), range.end);
        auto bytes = text_.view({start, limit}, scratch);
        std::optional<TextRange> found;
        for (std::size_t at = 0; auto match = pattern_.find(bytes, at);) {
            auto begin = start + static_cast<std::int64_t>(match->begin);
            found = TextRange{begin, begin + static_cast<std::int64_t>(match->size)};
            at = match->begin + match->size;
        }
        if (found)
            return found;
        end = start;
    }
    return std::nullopt;
}

std::vector<TextRange> TextSearch::all(TextRange range) const
{
    std::vector<TextRange> found;
    auto reach = static_cast<std::int64_t>(pattern_.longestMatch());
    auto start = std::max(Utf8Offset{0}, range.start + -reach);
    auto limit = std::min(range.end + reach, text_.end());
    std::string scratch;
    auto bytes = text_.view({start, limit}, scratch);
    for (std::size_t at = 0; auto match = pattern_.find(bytes, at);) {
        auto begin = start + static_cast<std::int64_t>(match->begin);
        found.push_back({begin, begin + static_cast<std::int64_t>(match->size)});
        at = match->begin + match->size;
    }
    return found;
}

} // namespace platform
