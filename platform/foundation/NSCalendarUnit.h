// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// A set of the units that a calendar counts in, combined with |. The raw values are the platform's.
enum class NSCalendarUnit : unsigned long {
    none = 0,
    era = 1ul << 1,
    year = 1ul << 2,
    month = 1ul << 3,
    day = 1ul << 4,
    hour = 1ul << 5,
    minute = 1ul << 6,
    second = 1ul << 7,
    weekday = 1ul << 9,
    weekdayOrdinal = 1ul << 10,
    quarter = 1ul << 11,
    weekOfMonth = 1ul << 12,
    weekOfYear = 1ul << 13,
    yearForWeekOfYear = 1ul << 14,
    nanosecond = 1ul << 15,
    calendar = 1ul << 20,
    timeZone = 1ul << 21,
};

constexpr NSCalendarUnit operator|(NSCalendarUnit a, NSCalendarUnit b)
{
    return static_cast<NSCalendarUnit>(static_cast<unsigned long>(a) | static_cast<unsigned long>(b));
}
constexpr NSCalendarUnit operator&(NSCalendarUnit a, NSCalendarUnit b)
{
    return static_cast<NSCalendarUnit>(static_cast<unsigned long>(a) & static_cast<unsigned long>(b));
}
constexpr bool contains(NSCalendarUnit set, NSCalendarUnit unit)
{
    return (set & unit) == unit;
}

} // namespace platform
