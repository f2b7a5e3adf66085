// SPDX-License-Identifier: MIT
#pragma once

#include "kit/media/Resolution.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zelk {

struct PositionalStringOptions {
    Resolution resolution = Resolution::seconds;
    // The longest time that will stand in the same place, in seconds. It alone decides the layout, so that all times of one
    // medium look alike; the time itself when absent.
    std::optional<double> maxDisplayedTime;
    // One character, for the resolution of milliseconds. It becomes part of a date pattern as it is: letters have their
    // meaning there ("h" is an hour), and an apostrophe makes text of what follows.
    std::string_view millisecondsSeparator = ".";
    // How many digits of the second's fraction are shown, for the resolution of milliseconds.
    std::int64_t millisecondsCharCount = 2;
};

// What a clock shows beside a player's slider: "01:15", "00:05.50", "01:02:05". From an hour on there are hours; under a
// minute the resolution of milliseconds shows seconds alone ("42.67").
//
// The parts are those of the time of day so long after midnight: they wrap after 24 hours, a negative time counts back
// from midnight (-30 shows 59:30), and parts that the layout has no place for are left out. Digits are cut off, not
// rounded; they are those of the shortest decimal that names the double. Empty when `seconds` is no number, or the
// separator is a letter without meaning in patterns.
//
// Some hundred nanoseconds, and no allocation beyond the result, with separator "." and two digits or the resolution of
// seconds; other settings build a formatter each time. Requires: the time that decides the layout is finite and within
// 64 bits, and the number of digits shown is not negative. Any thread.
std::string positionalString(double seconds, const PositionalStringOptions& options);

} // namespace zelk
