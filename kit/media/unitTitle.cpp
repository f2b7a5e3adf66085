// SPDX-License-Identifier: MIT
#include "kit/media/unitTitle.h"

#include "platform/foundation/WhiteSpace.h"

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
    // Languages put spaces of all widths beside numbers.
    auto title = platform::withoutLeadingWhiteSpace(*text, platform::LineBreaks::excluded);
    return std::string(platform::withoutTrailingWhiteSpace(title, platform::LineBreaks::excluded));
}

} // namespace zelk
