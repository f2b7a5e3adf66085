// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Date.h"
#include "platform/foundation/Locale.h"
#include "platform/foundation/TimeZone.h"

#include <cstdint>
#include <optional>
#include <utility>

namespace platform {

// A way of counting days, weeks, months and years, in one time zone, with the names and the first weekday of one
// locale. A value. Any thread.
class Calendar {
public:
    enum class Identifier {
        gregorian,
        buddhist,
        chinese,
        coptic,
        ethiopicAmeteMihret,
        ethiopicAmeteAlem,
        hebrew,
        iso8601,
        indian,
        islamic,
        islamicCivil,
        japanese,
        persian,
        republicOfChina,
        islamicTabular,
        islamicUmmAlQura,
    };

    enum class Component {
        era,
        year,
        month,
        day,
        hour,
        minute,
        second,
        weekday,
        weekdayOrdinal,
        quarter,
        weekOfMonth,
        weekOfYear,
        yearForWeekOfYear,
        nanosecond,
        calendar,
        timeZone,
    };

    explicit Calendar(Identifier identifier, Locale locale = Locale::current(),
                      TimeZone timeZone = TimeZone::current())
        : identifier_(identifier)
        , locale_(std::move(locale))
        , timeZone_(std::move(timeZone))
    {
    }
    // The one of the user's locale, in the user's time zone.
    static Calendar current();

    Identifier identifier() const { return identifier_; }
    const Locale& locale() const { return locale_; }
    const TimeZone& timeZone() const { return timeZone_; }

    // What the calendar's page and the clock show at `date`: months, weekdays (Sunday) and quarters count from 1.
    // Absent for the two components that are no numbers, and for a date that is none or beyond the calendar.
    std::optional<std::int64_t> component(Component component, Date date) const;

    // The date that many of `component` later (earlier when negative), the larger components following along. A day
    // that the month does not have becomes its last, a quarter is three months, weekdays are days, weekday ordinals weeks.
    // Absent for the two components that are no spans, for a date that is none, and beyond the calendar, which ends
    // some five million years from now.
    std::optional<Date> dateByAdding(Component component, std::int64_t value, Date date) const;

    bool operator==(const Calendar&) const = default;

private:
    Identifier identifier_;
    Locale locale_;
    TimeZone timeZone_;
};

} // namespace platform
