// SPDX-License-Identifier: MIT
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace platform {

using CMTimeValue = std::int64_t;
using CMTimeScale = std::int32_t;
using CMTimeEpoch = std::int64_t;

// What a CMTime is besides its fraction, combined with |. The raw values are the platform's.
enum class CMTimeFlags : std::uint32_t {
    none = 0,
    valid = 1,
    hasBeenRounded = 2,
    positiveInfinity = 4,
    negativeInfinity = 8,
    indefinite = 16,
    impliedValue = 28, // any of the three before
};

constexpr CMTimeFlags operator|(CMTimeFlags a, CMTimeFlags b)
{
    return static_cast<CMTimeFlags>(static_cast<std::uint32_t>(a) | static_cast<std::uint32_t>(b));
}
constexpr CMTimeFlags operator&(CMTimeFlags a, CMTimeFlags b)
{
    return static_cast<CMTimeFlags>(static_cast<std::uint32_t>(a) & static_cast<std::uint32_t>(b));
}

// What becomes of the part of a tick that a conversion cannot keep.
enum class CMTimeRoundingMethod {
    roundHalfAwayFromZero = 1,
    roundTowardZero = 2,
    roundAwayFromZero = 3,
    // Toward zero when the new scale is the coarser, away from zero when it is the finer; a negative time never
    // becomes zero.
    quickTime = 4,
    roundTowardPositiveInfinity = 5,
    roundTowardNegativeInfinity = 6,
};

// A moment of a medium, or a span of it: value / timescale seconds, exactly. A value. Any thread.
//
// A time is numeric, or invalid (so is one made by default), or one of the infinities, or indefinite (there is a time,
// but nobody knows it yet: the length of a live stream). Times of different epochs lie on different timelines, the
// greater epoch later; epoch 0 is also that of spans.
//
// Arithmetic is exact while the result has a timescale of 31 bits and a value of 64; otherwise the result is rounded,
// half away from zero, and says so in its flags, as does every time computed from it. A value too great for any
// timescale becomes an infinity.
struct CMTime {
    CMTimeValue value = 0;
    CMTimeScale timescale = 0; // ticks per second
    CMTimeFlags flags = CMTimeFlags::none;
    CMTimeEpoch epoch = 0;

    static constexpr CMTimeScale maxTimescale = 0x7fffffff;

    constexpr CMTime() = default;
    // Invalid when `timescale` is not positive.
    constexpr CMTime(CMTimeValue ticks, CMTimeScale ticksPerSecond, CMTimeEpoch timelineEpoch = 0)
        : value(ticks)
        , timescale(ticksPerSecond)
        , flags(ticksPerSecond > 0 ? CMTimeFlags::valid : CMTimeFlags::none)
        , epoch(timelineEpoch)
    {
    }
    // The tick nearest to `seconds`, half away from zero; flagged as rounded when its seconds are not exactly
    // `seconds`. The timescale is halved until the value fits 64 bits; an infinity when it never does. Not-a-number
    // and a timescale that is not positive give the invalid time.
    static CMTime makeWithSeconds(double seconds, CMTimeScale preferredTimescale);

    static constexpr CMTime invalid() { return {}; }
    static constexpr CMTime zero() { return {0, 1}; }
    static constexpr CMTime indefinite() { return implied(CMTimeFlags::indefinite); }
    static constexpr CMTime positiveInfinity() { return implied(CMTimeFlags::positiveInfinity); }
    static constexpr CMTime negativeInfinity() { return implied(CMTimeFlags::negativeInfinity); }

    // Invalid is also what claims to be a number and has no positive timescale.
    constexpr bool isValid() const
    {
        return has(CMTimeFlags::valid) && (has(CMTimeFlags::impliedValue) || timescale > 0);
    }
    constexpr bool isNumeric() const { return isValid() && !has(CMTimeFlags::impliedValue); }
    constexpr bool isIndefinite() const { return isValid() && has(CMTimeFlags::indefinite); }
    constexpr bool isPositiveInfinity() const { return isValid() && has(CMTimeFlags::positiveInfinity); }
    constexpr bool isNegativeInfinity() const { return isValid() && has(CMTimeFlags::negativeInfinity); }
    constexpr bool hasBeenRounded() const { return isNumeric() && has(CMTimeFlags::hasBeenRounded); }

    // The nearest double, whatever the epoch; an infinity of an infinity; not-a-number when invalid or indefinite.
    double seconds() const;

    // The same time at another timescale; an infinity when the value does not fit, invalid when `newTimescale` is not
    // positive. A time that is not numeric stays as it is.
    CMTime convertScale(CMTimeScale newTimescale,
                        CMTimeRoundingMethod method = CMTimeRoundingMethod::roundHalfAwayFromZero) const;
    CMTime absoluteValue() const;

    // The three keep the value rational as long as it fits (half of a frame of 1/30 s is 1/60 s). Infinities change
    // their sign with the factor's; an infinity times zero, a not-a-number factor and a zero divisor give invalid.
    CMTime multiplied(std::int32_t factor) const;
    CMTime multipliedByFloat(double factor) const;
    CMTime multipliedByRatio(std::int32_t factor, std::int32_t divisor) const;

    // For people who debug: "{1/30 = 0.033}", "{+INFINITY}", with "rounded" and the epoch when there is one.
    std::string debugDescription() const;

    // The sum at the least common timescale, at the largest there is when that is too large. An invalid operand, opposite
    // infinities and two different epochs that are not 0 give invalid; then infinities win, then indefinite.
    friend CMTime operator+(const CMTime& a, const CMTime& b);
    // As the sum, but two times of one epoch are a span apart: epoch 0.
    friend CMTime operator-(const CMTime& a, const CMTime& b);
    CMTime& operator+=(const CMTime& other) { return *this = *this + other; }
    CMTime& operator-=(const CMTime& other) { return *this = *this - other; }

    // One order of all times: negative infinity, numbers by epoch and then by exact value, indefinite, positive
    // infinity, invalid. 1/2 equals 300/600; being rounded makes no difference.
    friend std::weak_ordering operator<=>(const CMTime& a, const CMTime& b);
    friend bool operator==(const CMTime& a, const CMTime& b) { return (a <=> b) == 0; }

private:
    constexpr bool has(CMTimeFlags flag) const { return (flags & flag) != CMTimeFlags::none; }
    static constexpr CMTime implied(CMTimeFlags flag)
    {
        CMTime time;
        time.flags = CMTimeFlags::valid | flag;
        return time;
    }
};

// The earlier and the later in the order above; the first when they are equal.
CMTime CMTimeMinimum(const CMTime& a, const CMTime& b);
CMTime CMTimeMaximum(const CMTime& a, const CMTime& b);

} // namespace platform

template <>
struct std::hash<platform::CMTime> {
    std::size_t operator()(const platform::CMTime& time) const noexcept;
};
