// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/text/TextBuffer.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// What is looked for, prepared: a text without regard to upper and lower case. Finds it at the speed of memory.
class TextPattern {
public:
    TextPattern() = default;
    // Requires: well-formed UTF-8. Case is that of single characters: "ß" is not found by "SS".
    explicit TextPattern(std::string_view text);

    bool isEmpty() const { return characters_.empty(); }
    // No match is longer; bytes.
    std::size_t longestMatch() const { return longest_; }
    struct Match {
        std::size_t begin = 0;
        std::size_t size = 0;
    };
    // The first match that begins at `from` or later and ends inside of `bytes`. `bytes` may begin and end anywhere.
    std::optional<Match> find(std::string_view bytes, std::size_t from = 0) const;

private:
    // One character in all of its cases, as UTF-8.
    struct Character {
        std::vector<std::string> variants;
    };
    // What a byte at a fixed distance from a match's beginning can be.
    struct Probe {
        std::size_t distance = 0;
        unsigned char values[2] = {};
    };
    static std::optional<Probe> probeFor(const Character& character, std::size_t end);
    std::size_t matchAt(std::string_view bytes, std::size_t at) const;
    std::optional<Match> findSlowly(std::string_view bytes, std::size_t from) const;

    std::vector<Character> characters_;
    std::size_t longest_ = 0, shortest_ = 0;
    // Two probes when every case of every character is as long as the others and has at most two bytes there.
    std::optional<Probe> first_, second_;
};

// Counts the matches of a pattern in a text, a slice at a time, and finds them. Matches do not overlap; from the text's
// beginning, each begins at the first place where it can. The text outlives this and does not change. Main thread only.
class TextSearch {
public:
    static constexpr std::int64_t usualBlockSize = std::int64_t{1} << 20; // bytes
    TextSearch(const TextBuffer& text, TextPattern pattern, std::int64_t blockSize = usualBlockSize);

    const TextPattern& pattern() const { return pattern_; }
    // Counts on through one block. False when all was counted.
    bool countOn();
    bool isComplete() const { return countedTo_ >= text_.end(); }
    std::int64_t count() const { return count_; } // so far
    // How many matches begin before `offset`. Requires: isComplete().
    std::int64_t countBefore(Utf8Offset offset) const;

    // The first match in `range`, wholly inside of it.
    std::optional<TextRange> first(TextRange range) const;
    // The last match that ends at `end` or before.
    std::optional<TextRange> lastBefore(Utf8Offset end) const;
    // All that meet `range`, which is some screens long.
    std::vector<TextRange> all(TextRange range) const;

private:
    struct Block {
        Utf8Offset resume; // where its first match may begin
        std::int64_t countBefore = 0;
    };

    const TextBuffer& text_;
    const TextPattern pattern_;
    const std::int64_t blockSize_;
    Utf8Offset countedTo_;
    Utf8Offset lastEnd_; // of the last match that was counted
    std::int64_t count_ = 0;
    std::vector<Block> blocks_;
};

} // namespace platform
