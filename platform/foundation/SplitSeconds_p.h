// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace platform {

// A number of seconds as a clock shows it: the whole second that it lies in (the one before for a negative number with a
// fraction) and the decimal digits of what has passed of it.
//
// The digits are those of the shortest decimal that names the double, so that 0.29 has 2 and 9 although the double lies
// a little below; formatters cut them off where they need no more. Dates beyond the calendars count as their end.
class SplitSeconds {
public:
    // Requires: `seconds` is a number. Allocates nothing.
    explicit SplitSeconds(double seconds);

    std::int64_t whole() const { return whole_; }
    // Without trailing zeros; empty for a whole number.
    std::string_view fraction() const { return {digits_.data(), size_}; }

private:
    // The smallest double has 324 places before its first digit.
    static constexpr std::size_t mostDigits = 352;

    std::int64_t whole_;
    std::array<char, mostDigits> digits_; // the first `size_` of them
    std::size_t size_ = 0;
};

} // namespace platform
