// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Calendar.h"

#include <memory>
#include <optional>

#include <unicode/calendar.h>
#include <unicode/timezone.h>

namespace platform {

std::unique_ptr<icu::TimeZone> icuTimeZone(const TimeZone& zone);

// The locale of the calendar with the calendar's kind in it, from which calendars and date formats are made.
icu::Locale icuLocale(const Calendar& calendar);

// Null when ICU's data lacks it.
std::unique_ptr<icu::Calendar> icuCalendar(const Calendar& calendar);

// Milliseconds, cut to whole ones. Absent when `date` is no number or beyond what ICU counts.
std::optional<UDate> icuDate(Date date);

// The seconds that ICU's calendars count to, before and after 1970.
inline constexpr double farthestSecond = 183882168921600.0;

} // namespace platform
