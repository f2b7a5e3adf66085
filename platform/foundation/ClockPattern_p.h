// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// A date pattern of nothing but the time of day in ASCII digits (H, m, s, S) and what stands between them, ready to be
// written without ICU. Immutable.
class ClockPattern {
public:
    // Absent when the pattern has other letters, quotes or malformed text: those need a whole date format.
    static std::optional<ClockPattern> parse(std::string_view pattern);

    // The clock that is `offset` seconds ahead of UTC, `seconds` after 1970. Allocates only when the result is longer
    // than a std::string holds in itself. Requires: `seconds` is a number.
    std::string format(double seconds, int offset) const;

private:
    struct Piece {
        char field; // H, m, s, S, or ' ' for text of the pattern
        std::size_t begin;
        std::size_t count; // of letters, or of the bytes of the text
    };

    std::string pattern_;
    std::vector<Piece> pieces_;
};

} // namespace platform
