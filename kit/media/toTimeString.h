// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/DateComponentsFormatter.h"

#include <string>

namespace zelk {

struct TimeStringOptions {
    platform::NSCalendarUnit allowedUnits = platform::NSCalendarUnit::none;
    platform::DateComponentsFormatter::UnitsStyle unitsStyle =
        platform::DateComponentsFormatter::UnitsStyle::positional;
    platform::DateComponentsFormatter::ZeroFormattingBehavior zeroFormattingBehavior =
        platform::DateComponentsFormatter::ZeroFormattingBehavior::default_;
};

// `seconds` as a length of time in the user's language ("1 hour, 5 minutes"), by a formatter with these three settings.
// Requires: the formatter can write it, which it cannot when it is not finite (see DateComponentsFormatter). Any thread.
std::string toTimeString(double seconds, const TimeStringOptions& options);

} // namespace zelk
