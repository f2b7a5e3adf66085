// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Calendar.h"
#include "platform/foundation/NSCalendarUnit.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace platform {

// How many of one unit a length of time has, after all larger ones.
struct UnitCount {
    NSCalendarUnit unit;
    std::int64_t count;
};

// Splits `seconds` into `units`, the largest first; all counts of a negative length are negative or zero. `units` is one
// or several. Absent as DateComponentsFormatter says, but for its styles.
std::optional<std::vector<UnitCount>> countUnits(double seconds, NSCalendarUnit units,
                                                 const Calendar& calendar);

} // namespace platform
