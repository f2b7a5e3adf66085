// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Calendar.h"
#include "platform/foundation/NSCalendarUnit.h"

#include <optional>
#include <string>
#include <utility>

namespace platform {

// Writes lengths of time for people, in the language of its calendar: "1 hour, 30 minutes", "1:30:00". Not to be changed
// while another thread uses it.
class DateComponentsFormatter {
public:
    enum class UnitsStyle {
        positional,  // "1:30:05"; units above the hour are written as in `abbreviated`, before the clock
        abbreviated, // "1h 30m 5s"
        short_,      // "1 hr, 30 min, 5 sec"
        full,        // "1 hour, 30 minutes, 5 seconds"
        spellOut,    // "one hour, thirty minutes, five seconds"
        brief,       // "1hr 30min 5sec"
    };

    // What becomes of units that are zero, combined with |. The raw values are the platform's. One unit stays always.
    enum class ZeroFormattingBehavior : unsigned {
        none = 0,     // "0h 1m 0s": all are written
        default_ = 1, // dropLeading of the positional style, dropAll of the others
        dropLeading = 2,
        dropMiddle =
            4, // not of the clock in the positional style, which would read as another time; neither is
        dropTrailing = 8, // this
        dropAll = 14,
        pad = 1u << 16, // numbers have two digits at least: "01:00:10"
    };

    UnitsStyle unitsStyle() const { return unitsStyle_; }
    void setUnitsStyle(UnitsStyle style) { unitsStyle_ = style; }

    // Default: none, which means year, month, weekOfMonth, day, hour, minute and second.
    NSCalendarUnit allowedUnits() const { return allowedUnits_; }
    void setAllowedUnits(NSCalendarUnit units) { allowedUnits_ = units; }

    ZeroFormattingBehavior zeroFormattingBehavior() const { return zeroFormattingBehavior_; }
    void setZeroFormattingBehavior(ZeroFormattingBehavior behavior) { zeroFormattingBehavior_ = behavior; }

    // Its locale is the language, and its months and days are counted from the beginning of 1970 in its time zone.
    // Default: the user's.
    const Calendar& calendar() const { return calendar_; }
    void setCalendar(Calendar calendar) { calendar_ = std::move(calendar); }

    // `timeInterval` is in seconds. It is cut to whole ones of the smallest unit; a negative one has its minus sign
    // once, in front.
    //
    // Absent for what cannot be written: an interval that is no number or infinite, of 2^63 seconds or more, or of more
    // than a million years where units above the hour are allowed; era, weekday, weekdayOrdinal, calendar and timeZone,
    // which measure nothing; in the positional style a clock with a gap (hours and seconds), or nanoseconds beside others.
    std::optional<std::string> string(double timeInterval) const;

private:
    UnitsStyle unitsStyle_ = UnitsStyle::positional;
    NSCalendarUnit allowedUnits_ = NSCalendarUnit::none;
    ZeroFormattingBehavior zeroFormattingBehavior_ = ZeroFormattingBehavior::default_;
    Calendar calendar_ = Calendar::current();
};

constexpr DateComponentsFormatter::ZeroFormattingBehavior
operator|(DateComponentsFormatter::ZeroFormattingBehavior a,
          DateComponentsFormatter::ZeroFormattingBehavior b)
{
    return static_cast<DateComponentsFormatter::ZeroFormattingBehavior>(static_cast<unsigned>(a)
                                                                        | static_cast<unsigned>(b));
}
// Whether `behaviors` has one of `some`.
constexpr bool hasAny(DateComponentsFormatter::ZeroFormattingBehavior behaviors,
                      DateComponentsFormatter::ZeroFormattingBehavior some)
{
    return (static_cast<unsigned>(behaviors) & static_cast<unsigned>(some)) != 0;
}

} // namespace platform
