// SPDX-License-Identifier: MIT
#include "platform/foundation/DurationCount_p.h"

#include "platform/foundation/Calendar_p.h"

#include <cmath>

namespace platform {

namespace {

struct CalendarUnit {
    NSCalendarUnit unit;
    UCalendarDateFields field;
    int fieldsPerUnit;
};
constexpr CalendarUnit calendarUnits[] = {
    {NSCalendarUnit::year, UCAL_YEAR, 1},
    {NSCalendarUnit::yearForWeekOfYear, UCAL_YEAR_WOY, 1},
    {NSCalendarUnit::quarter, UCAL_MONTH, 3},
    {NSCalendarUnit::month, UCAL_MONTH, 1},
    {NSCalendarUnit::weekOfMonth, UCAL_WEEK_OF_MONTH, 1},
    {NSCalendarUnit::weekOfYear, UCAL_WEEK_OF_YEAR, 1},
    {NSCalendarUnit::day, UCAL_DAY_OF_MONTH, 1},
};

struct ClockUnit {
    NSCalendarUnit unit;
    std::int64_t seconds;
};
constexpr ClockUnit clockUnits[] = {
    {NSCalendarUnit::hour, 3600},
    {NSCalendarUnit::minute, 60},
    {NSCalendarUnit::second, 1},
};

// ICU finds a difference by steps that double, which must not leave its range.
constexpr double longestOnCalendar = farthestSecond / 4;

// The units above the hour; what they leave over goes to `seconds`.
bool countOnCalendar(std::int64_t& seconds, NSCalendarUnit units, const Calendar& calendar,
                     std::vector<UnitCount>& counts)
{
    std::unique_ptr<icu::Calendar> page;
    UErrorCode status = U_ZERO_ERROR;
    auto target = static_cast<UDate>(seconds) * 1000;
    for (const auto& [unit, field, fieldsPerUnit] : calendarUnits) {
        if (!contains(units, unit))
            continue;
        if (!page) {
            page = icuCalendar(calendar);
            if (!page || std::abs(static_cast<double>(seconds)) > longestOnCalendar)
                return false;
            page->setTime(0, status);
        }
        auto start = page->getTime(status);
        auto count = page->fieldDifference(target, field, status) / fieldsPerUnit;
        page->setTime(start, status);
        page->add(field, count * fieldsPerUnit, status);
        counts.push_back({unit, count});
    }
    if (page)
        seconds = static_cast<std::int64_t>((target - page->getTime(status)) / 1000);
    return U_SUCCESS(status);
}

} // namespace

std::optional<std::vector<UnitCount>> countUnits(double seconds, NSCalendarUnit units,
                                                 const Calendar& calendar)
{
    constexpr double twoToThe63 = 9223372036854775808.0;
    constexpr auto measureNothing = NSCalendarUnit::era | NSCalendarUnit::weekday
        | NSCalendarUnit::weekdayOrdinal | NSCalendarUnit::calendar | NSCalendarUnit::timeZone;
    if (!(std::abs(seconds) < twoToThe63) || (units & measureNothing) != NSCalendarUnit::none)
        return std::nullopt;
    auto rest = static_cast<std::int64_t>(seconds);
    double fraction = seconds - std::trunc(seconds);
    std::vector<UnitCount> counts;
    if (!countOnCalendar(rest, units, calendar, counts))
        return std::nullopt;
    for (const auto& [unit, length] : clockUnits)
        if (contains(units, unit)) {
            counts.push_back({unit, rest / length});
            rest %= length;
        }
    if (contains(units, NSCalendarUnit::nanosecond)) {
        constexpr std::int64_t perSecond = 1'000'000'000;
        auto nanoseconds = std::llround(fraction * perSecond);
        if (__builtin_mul_overflow(rest, perSecond, &rest)
            || __builtin_add_overflow(rest, nanoseconds, &rest))
            return std::nullopt;
        counts.push_back({NSCalendarUnit::nanosecond, rest});
    }
    return counts;
}

} // namespace platform
