// SPDX-License-Identifier: MIT
#include "platform/uikit/text/TextSearch.h"

#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <utility>

namespace platform {

TextSearch::TextSearch(const TextBuffer& text, TextPattern pattern, std::int64_t blockSize)
    : text_(text)
    , pattern_(std::move(pattern))
    , blockSize_(blockSize)
{
    if (pattern_.isEmpty())
        countedTo_ = text_.end();
}

bool TextSearch::countOn()
{
    if (isComplete())
        return false;
    auto blockEnd = std::min(countedTo_ + blockSize_, text_.end());
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
    auto index = std::min(static_cast<std::size_t>(offset.value / blockSize_), blocks_.size() - 1);
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
    for (auto start = range.start; start < range.end; start = start + blockSize_) {
        auto limit =
            std::min(start + blockSize_ + static_cast<std::int64_t>(pattern_.longestMatch()), range.end);
        if (auto match = pattern_.find(text_.view({start, limit}, scratch))) {
            auto begin = start + static_cast<std::int64_t>(match->begin);
            return TextRange{begin, begin + static_cast<std::int64_t>(match->size)};
        }
    }
    return std::nullopt;
}

std::optional<TextRange> TextSearch::lastBefore(Utf8Offset end) const
{
    std::string scratch;
    // From where to scan: the blocks know, as far as they were counted, where matches can begin.
    auto index = end.value / blockSize_;
    for (auto limit = end; index >= 0; --index) {
        Utf8Offset start{index * blockSize_};
        if (static_cast<std::size_t>(index) < blocks_.size())
            start = blocks_[static_cast<std::size_t>(index)].resume;
        if (start < limit) {
            std::optional<TextRange> found;
            std::size_t at = 0;
            auto bytes = text_.view({start, limit}, scratch);
            while (auto match = pattern_.find(bytes, at)) {
                auto begin = start + static_cast<std::int64_t>(match->begin);
                found = TextRange{begin, begin + static_cast<std::int64_t>(match->size)};
                at = match->begin + match->size;
            }
            if (found)
                return found;
        }
        // A match may begin in the block before and end in this one.
        limit = std::min(start + static_cast<std::int64_t>(pattern_.longestMatch()), end);
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
