// SPDX-License-Identifier: MIT
#include "platform/foundation/TimeZone.h"

#include "platform/foundation/Calendar_p.h"

#include <cstdio>
#include <cstdlib>

namespace platform {

namespace {

std::string identifierOf(const icu::TimeZone& zone)
{
    icu::UnicodeString name;
    zone.getID(name);
    std::string identifier;
    return name.toUTF8String(identifier);
}

} // namespace

std::unique_ptr<icu::TimeZone> icuTimeZone(const TimeZone& zone)
{
    return std::unique_ptr<icu::TimeZone>(
        icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(zone.identifier())));
}

TimeZone TimeZone::current()
{
    static const std::string identifier =
        identifierOf(*std::unique_ptr<icu::TimeZone>(icu::TimeZone::createDefault()));
    return TimeZone(identifier, std::nullopt);
}

std::optional<TimeZone> TimeZone::withIdentifier(std::string_view identifier)
{
    TimeZone zone{std::string(identifier), std::nullopt};
    auto known = icuTimeZone(zone);
    if (!known || *known == icu::TimeZone::getUnknown())
        return std::nullopt;
    return zone;
}

std::optional<TimeZone> TimeZone::withSecondsFromGMT(int seconds)
{
    constexpr int limit = 18 * 3600;
    if (seconds < -limit || seconds > limit)
        return std::nullopt;
    if (seconds == 0)
        return utc();
    int distance = std::abs(seconds);
    char identifier[32];
    std::snprintf(identifier, sizeof identifier, "GMT%c%02d:%02d:%02d", seconds < 0 ? '-' : '+',
                  distance / 3600, distance / 60 % 60, distance % 60);
    return TimeZone(identifier, seconds);
}

int TimeZone::secondsFromGMT(Date date) const
{
    if (fixedSeconds_)
        return *fixedSeconds_;
    int32_t raw = 0;
    int32_t summer = 0;
    UErrorCode status = U_ZERO_ERROR;
    icuTimeZone(*this)->getOffset(icuDate(date).value_or(0), false, raw, summer, status);
    return (raw + summer) / 1000;
}

} // namespace platform
