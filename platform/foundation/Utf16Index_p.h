// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/TextOffset.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace platform {

// The way between the bytes and the UTF-16 units of a text: how many units stand before every 256th byte. The
// text itself stays with its owner, who says what changed and hands it in again with each question. Where all
// is ASCII there is no table. Questions take about as long wherever in the text they ask. Any thread may ask.
class Utf16Index {
public:
    Utf16Index() = default;
    explicit Utf16Index(std::string_view text) { update(text, 0); }

    std::int64_t unitCount() const { return unitCount_; }

    // The first byte of the character at `offset`; nothing is known of what is past the end. An offset between
    // the two units of a character gives that character and false in `isBoundary`.
    struct Place {
        std::size_t byte = 0;
        bool isBoundary = true;
    };
    Place place(std::string_view text, Utf16Offset offset) const;
    // Requires: `byte` is where a character begins, or the end.
    Utf16Offset offsetOf(std::string_view text, std::size_t byte) const;

    // `text` is as it was up to `at`, where `inserted` stands now in place of what was there, if anything.
    // Costs a look at what follows, unless all is ASCII.
    void noteReplacement(std::string_view text, std::size_t at, std::string_view inserted);

private:
    bool isASCII() const { return unitCount_ == byteCount_; }
    void update(std::string_view text, std::size_t firstChanged);

    std::int64_t unitCount_ = 0;
    std::int64_t byteCount_ = 0;
    std::vector<std::int64_t> unitsBefore_; // of each block of bytes; empty while all is ASCII
};

} // namespace platform
