// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Calendar.h"
#include "platform/foundation/DateComponentsFormatter.h"

#include <cstdint>
#include <string>

namespace zelk {

// The word for `unit` as the calendar's language writes it next to `value`, without the value: "days" for 3 days. The
// number stays where the language writes it otherwise than as plain digits (1,000 days). Empty for units that measure
// no length of time, for several at once, and where the calendar ends. Any thread.
std::string unitTitle(const platform::Calendar& calendar, platform::NSCalendarUnit unit, std::int64_t value,
                      platform::DateComponentsFormatter::UnitsStyle unitsStyle);

} // namespace zelk
