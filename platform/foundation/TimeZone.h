// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Date.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace platform {

// How far the clocks of a place are from UTC, and when that changes. A value. Any thread.
class TimeZone {
public:
    static TimeZone utc() { return TimeZone("GMT", 0); }
    // Where the user is, as the environment variable TZ or the system's settings said when first asked. Rules in place of
    // a name ("CET-1CEST,M3.5.0,M10.5.0/3") count as the distance that they give now.
    static TimeZone current();
    // "Europe/Berlin", "GMT+5:30"; absent when the time zone data does not know it.
    static std::optional<TimeZone> withIdentifier(std::string_view identifier);
    // Always the same distance; absent beyond 18 hours.
    static std::optional<TimeZone> withSecondsFromGMT(int seconds);

    const std::string& identifier() const { return identifier_; }
    // What to add to UTC at that moment, in seconds.
    int secondsFromGMT(Date date) const;
    // The same where it never changes and was made so; formatters are quicker then.
    std::optional<int> fixedSecondsFromGMT() const { return fixedSeconds_; }

    // By identifier.
    bool operator==(const TimeZone& other) const { return identifier_ == other.identifier_; }

private:
    TimeZone(std::string identifier, std::optional<int> fixedSeconds)
        : identifier_(std::move(identifier))
        , fixedSeconds_(fixedSeconds)
    {
    }

    std::string identifier_;
    std::optional<int> fixedSeconds_;
};

} // namespace platform
