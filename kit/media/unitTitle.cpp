// SPDX-License-Identifier: MIT
#include "kit/media/unitTitle.h"

#include <algorithm>
#include <string_view>

namespace zelk {

namespace {

using Component = platform::Calendar::Component;
using platform::NSCalendarUnit;

Component componentOf(NSCalendarUnit unit)
{
    struct Pair {
        NSCalendarUnit unit;
        Component component;
    };
    static constexpr Pair pairs[] = {
        {NSCalendarUnit::era, Component::era},
        {NSCalendarUnit::year, Component::year},
        {NSCalendarUnit::month, Component::month},
        {NSCalendarUnit::day, Component::day},
        {NSCalendarUnit::hour, Component::hour},
        {NSCalendarUnit::minute, Component::minute},
        {NSCalendarUnit::second, Component::second},
        {NSCalendarUnit::weekday, Component::weekday},
        {NSCalendarUnit::weekdayOrdinal, Component::weekdayOrdinal},
        {NSCalendarUnit::quarter, Component::quarter},
        {NSCalendarUnit::weekOfMonth, Component::weekOfMonth},
        {NSCalendarUnit::weekOfYear, Component::weekOfYear},
        {NSCalendarUnit::yearForWeekOfYear, Component::yearForWeekOfYear},
        {NSCalendarUnit::nanosecond, Component::nanosecond},
        {NSCalendarUnit::timeZone, Component::timeZone},
    };
    auto pair = std::ranges::find(pairs, unit, &Pair::unit);
    return pair == std::end(pairs) ? Component::calendar : pair->component;
}

void removeAll(std::string& text, std::string_view part)
{
    for (auto place = text.find(part); place != std::string::npos; place = text.find(part, place))
        text.erase(place, part.size());
}

// The tab and the spaces of Unicode, line breaks not among them: languages put spaces of all widths beside numbers.
constexpr std::string_view spaces[] = {
    " ",      "\t",     "\u00a0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004",
    "\u2005", "\u2006", "\u2007", "\u2008", "\u2009", "\u200a", "\u202f", "\u205f", "\u3000",
};

std::string_view trimmed(std::string_view text)
{
    auto isAtFront = [&](std::string_view space) { return text.starts_with(space); };
    auto isAtBack = [&](std::string_view space) { return text.ends_with(space); };
    for (auto space = std::ranges::find_if(spaces, isAtFront); space != std::end(spaces);
         space = std::ranges::find_if(spaces, isAtFront))
        text.remove_prefix(space->size());
    for (auto space = std::ranges::find_if(spaces, isAtBack); space != std::end(spaces);
         space = std::ranges::find_if(spaces, isAtBack))
        text.remove_suffix(space->size());
    return text;
}

} // namespace

std::string unitTitle(const platform::Calendar& calendar, platform::NSCalendarUnit unit, std::int64_t value,
                      platform::DateComponentsFormatter::UnitsStyle unitsStyle)
{
    auto date = calendar.dateByAdding(componentOf(unit), value, {0});
    if (!date)
        return {};
    platform::DateComponentsFormatter formatter;
    formatter.setCalendar(calendar);
    formatter.setAllowedUnits(unit);
    formatter.setUnitsStyle(unitsStyle);
    auto text = formatter.string(date->timeIntervalSince1970);
    if (!text)
        return {};
    removeAll(*text, std::to_string(value));
    return std::string(trimmed(*text));
}

} // namespace zelk
