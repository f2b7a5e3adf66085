// SPDX-License-Identifier: MIT
#include "platform/foundation/Calendar.h"

#include "platform/foundation/Calendar_p.h"
#include "platform/foundation/Locale_p.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

namespace platform {

namespace {

using Component = Calendar::Component;
using Identifier = Calendar::Identifier;

struct Kind {
    Identifier identifier;
    std::string_view keyword; // what ICU calls it
};
constexpr Kind kinds[] = {
    {Identifier::gregorian, "gregorian"},
    {Identifier::buddhist, "buddhist"},
    {Identifier::chinese, "chinese"},
    {Identifier::coptic, "coptic"},
    {Identifier::ethiopicAmeteMihret, "ethiopic"},
    {Identifier::ethiopicAmeteAlem, "ethiopic-amete-alem"},
    {Identifier::hebrew, "hebrew"},
    {Identifier::iso8601, "iso8601"},
    {Identifier::indian, "indian"},
    {Identifier::islamic, "islamic"},
    {Identifier::islamicCivil, "islamic-civil"},
    {Identifier::japanese, "japanese"},
    {Identifier::persian, "persian"},
    {Identifier::republicOfChina, "roc"},
    {Identifier::islamicTabular, "islamic-tbla"},
    {Identifier::islamicUmmAlQura, "islamic-umalqura"},
};

// A component that ICU adds, and about how many days one is.
struct Step {
    Component component;
    UCalendarDateFields field;
    int factor;
    double days;
};
constexpr Step steps[] = {
    {Component::era, UCAL_ERA, 1, 0},
    {Component::year, UCAL_YEAR, 1, 365},
    {Component::month, UCAL_MONTH, 1, 30},
    {Component::day, UCAL_DAY_OF_MONTH, 1, 1},
    {Component::weekday, UCAL_DAY_OF_WEEK, 1, 1},
    {Component::weekdayOrdinal, UCAL_DAY_OF_WEEK_IN_MONTH, 1, 7},
    {Component::quarter, UCAL_MONTH, 3, 91},
    {Component::weekOfMonth, UCAL_WEEK_OF_MONTH, 1, 7},
    {Component::weekOfYear, UCAL_WEEK_OF_YEAR, 1, 7},
    {Component::yearForWeekOfYear, UCAL_YEAR_WOY, 1, 365},
};
constexpr double secondsOfDay = 86400;

// Whether ICU's counters can hold that many of the component.
bool canBeCounted(const Step& step, std::int64_t value)
{
    auto size = std::abs(static_cast<double>(value));
    return size * step.factor <= std::numeric_limits<int32_t>::max()
        && size * step.days * secondsOfDay < 2 * farthestSecond && (step.days > 0 || size <= 1000);
}

// Near the end of the calendar ICU's sums wrap around or stick without a word: then they are not where they should be.
bool isPlausible(const Step& step, std::int64_t value, double shift)
{
    constexpr double tolerance = 0.15; // of months and years that are shorter in one calendar than in another
    constexpr double slack = 70 * secondsOfDay; // of leap months
    auto expected = static_cast<double>(value) * step.days * secondsOfDay;
    return step.days == 0 || std::abs(shift - expected) <= std::abs(expected) * tolerance + slack;
}

struct Reading {
    Component component;
    UCalendarDateFields field;
    int first; // what ICU's zero is here
};
constexpr Reading readings[] = {
    {Component::era, UCAL_ERA, 0},
    {Component::year, UCAL_YEAR, 0},
    {Component::month, UCAL_MONTH, 1},
    {Component::day, UCAL_DAY_OF_MONTH, 0},
    {Component::hour, UCAL_HOUR_OF_DAY, 0},
    {Component::minute, UCAL_MINUTE, 0},
    {Component::second, UCAL_SECOND, 0},
    {Component::weekday, UCAL_DAY_OF_WEEK, 0},
    {Component::weekdayOrdinal, UCAL_DAY_OF_WEEK_IN_MONTH, 0},
    {Component::weekOfMonth, UCAL_WEEK_OF_MONTH, 0},
    {Component::weekOfYear, UCAL_WEEK_OF_YEAR, 0},
    {Component::yearForWeekOfYear, UCAL_YEAR_WOY, 0},
};

// How long a component is that is equally long always, in seconds; 0 for the others.
double fixedLength(Component component)
{
    switch (component) {
    case Component::hour:
        return 3600;
    case Component::minute:
        return 60;
    case Component::second:
        return 1;
    case Component::nanosecond:
        return 1e-9;
    default:
        return 0;
    }
}

bool isWithinReach(double seconds)
{
    return std::abs(seconds) < farthestSecond; // false of not-a-number too
}

} // namespace

std::optional<UDate> icuDate(Date date)
{
    if (!isWithinReach(date.timeIntervalSince1970))
        return std::nullopt;
    return std::floor(date.timeIntervalSince1970 * 1000);
}

icu::Locale icuLocale(const Calendar& calendar)
{
    auto locale = icuLocale(calendar.locale());
    auto kind = std::ranges::find(kinds, calendar.identifier(), &Kind::identifier);
    UErrorCode status = U_ZERO_ERROR;
    locale.setKeywordValue(
        "calendar", icu::StringPiece(kind->keyword.data(), static_cast<int>(kind->keyword.size())), status);
    return locale;
}

std::unique_ptr<icu::Calendar> icuCalendar(const Calendar& calendar)
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Calendar> result(icu::Calendar::createInstance(
        icuTimeZone(calendar.timeZone()).release(), icuLocale(calendar), status));
    return U_SUCCESS(status) ? std::move(result) : nullptr;
}

Calendar Calendar::current()
{
    auto locale = Locale::current();
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Calendar> usual(icu::Calendar::createInstance(icuLocale(locale), status));
    auto kind = U_SUCCESS(status)
        ? std::ranges::find(kinds, std::string_view(usual->getType()), &Kind::keyword)
        : std::begin(kinds);
    return Calendar(kind == std::end(kinds) ? Identifier::gregorian : kind->identifier, locale);
}

std::optional<std::int64_t> Calendar::component(Component component, Date date) const
{
    auto moment = icuDate(date);
    if (!moment || component == Component::calendar || component == Component::timeZone)
        return std::nullopt;
    double seconds = date.timeIntervalSince1970;
    if (component == Component::nanosecond)
        return static_cast<std::int64_t>((seconds - std::floor(seconds)) * 1e9);
    if (component == Component::quarter) {
        auto month = this->component(Component::month, date);
        return month ? std::optional((*month - 1) / 3 + 1) : std::nullopt;
    }
    auto calendar = icuCalendar(*this);
    if (!calendar)
        return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    calendar->setTime(*moment, status);
    auto reading = std::ranges::find(readings, component, &Reading::component);
    auto value = calendar->get(reading->field, status);
    return U_SUCCESS(status) ? std::optional<std::int64_t>(value + reading->first) : std::nullopt;
}

std::optional<Date> Calendar::dateByAdding(Component component, std::int64_t value, Date date) const
{
    double start = date.timeIntervalSince1970;
    auto moment = icuDate(date);
    if (!moment || component == Component::calendar || component == Component::timeZone)
        return std::nullopt;
    if (double length = fixedLength(component); length > 0) {
        double result = start + static_cast<double>(value) * length;
        return isWithinReach(result) ? std::optional(Date{result}) : std::nullopt;
    }
    auto step = std::ranges::find(steps, component, &Step::component);
    auto calendar = icuCalendar(*this);
    if (!calendar || !canBeCounted(*step, value))
        return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    calendar->setTime(*moment, status);
    calendar->add(step->field, static_cast<int32_t>(value) * step->factor, status);
    double milliseconds = calendar->getTime(status);
    // What the milliseconds cut off comes back.
    double result = milliseconds / 1000 + (start - *moment / 1000);
    bool isThere = U_SUCCESS(status) && isWithinReach(result) && isPlausible(*step, value, result - start);
    return isThere ? std::optional(Date{result}) : std::nullopt;
}

} // namespace platform
