// SPDX-License-Identifier: MIT
#include "platform/foundation/TimeZone.h"

#include "platform/foundation/Calendar_p.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace platform {

namespace {

std::string identifierOf(const icu::TimeZone& zone)
{
    icu::UnicodeString name;
    zone.getID(name);
    std::string identifier;
    return name.toUTF8String(identifier);
}

// The name that a file of the system's time zone data stands for, itself or at the end of its links.
std::string nameOfZoneFile(const char* file)
{
    constexpr std::string_view data = "/zoneinfo/";
    char canonical[PATH_MAX];
    std::string_view path = ::realpath(file, canonical) ? canonical : "";
    auto place = path.rfind(data);
    return std::string(place == path.npos ? "" : path.substr(place + data.size()));
}

// What TZ names, or the system's settings where it is not set. Empty for "GMT-3", which is behind GMT as a name of
// ICU's and ahead of it as a rule of TZ's.
std::string identifierOfTheUser()
{
    const char* variable = std::getenv("TZ");
    if (!variable)
        return identifierOf(*std::unique_ptr<icu::TimeZone>(icu::TimeZone::createDefault()));
    variable += *variable == ':';
    std::string_view text(variable);
    if (text.starts_with('/'))
        return nameOfZoneFile(variable);
    return std::string(text.starts_with("GMT+") || text.starts_with("GMT-") ? "" : text);
}

int presentSecondsFromGMT()
{
    ::tzset();
    auto now = std::time(nullptr);
    std::tm local{};
    return ::localtime_r(&now, &local) ? static_cast<int>(local.tm_gmtoff) : 0;
}

} // namespace

std::unique_ptr<icu::TimeZone> icuTimeZone(const TimeZone& zone)
{
    return std::unique_ptr<icu::TimeZone>(
        icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(zone.identifier())));
}

TimeZone TimeZone::current()
{
    static const TimeZone zone = [] {
        auto named = withIdentifier(identifierOfTheUser());
        return named ? *named : withSecondsFromGMT(presentSecondsFromGMT()).value_or(utc());
    }();
    return zone;
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
