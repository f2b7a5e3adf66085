// SPDX-License-Identifier: MIT
#include "platform/avfoundation/CMTime.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <numeric>
#include <optional>

namespace platform {

namespace {

// Wide enough for every sum of two times over their common denominator, times a timescale.
__extension__ using Wide = __int128;

constexpr double twoToThe63 = 9223372036854775808.0;

struct Rounded {
    Wide quotient;
    bool exact;
};

// `divisor` is positive.
Rounded divide(Wide dividend, Wide divisor, CMTimeRoundingMethod method)
{
    Wide quotient = dividend / divisor;
    Wide rest = dividend % divisor;
    if (rest == 0)
        return {quotient, true};
    Wide away = rest < 0 ? -1 : 1;
    bool grows = false;
    switch (method) {
    case CMTimeRoundingMethod::roundHalfAwayFromZero:
        grows = rest * away >= divisor - rest * away;
        break;
    case CMTimeRoundingMethod::roundAwayFromZero:
        grows = true;
        break;
    case CMTimeRoundingMethod::roundTowardPositiveInfinity:
        grows = away > 0;
        break;
    case CMTimeRoundingMethod::roundTowardNegativeInfinity:
        grows = away < 0;
        break;
    case CMTimeRoundingMethod::roundTowardZero:
    case CMTimeRoundingMethod::quickTime: // resolved by the caller, who knows the scales
        break;
    }
    return {grows ? quotient + away : quotient, false};
}

Rounded divide(Wide dividend, Wide divisor)
{
    return divide(dividend, divisor, CMTimeRoundingMethod::roundHalfAwayFromZero);
}

bool fits(Wide value)
{
    return value >= std::numeric_limits<std::int64_t>::min()
        && value <= std::numeric_limits<std::int64_t>::max();
}

CMTime infinity(bool negative)
{
    return negative ? CMTime::negativeInfinity() : CMTime::positiveInfinity();
}

CMTime numeric(Wide value, std::int32_t timescale, bool rounded, std::int64_t epoch)
{
    CMTime time(static_cast<std::int64_t>(value), timescale, epoch);
    if (rounded)
        time.flags = time.flags | CMTimeFlags::hasBeenRounded;
    return time;
}

// numerator / denominator seconds at `timescale`, or at the first of its halves at which the value fits.
CMTime fraction(Wide numerator, Wide denominator, Wide timescale, bool rounded, std::int64_t epoch)
{
    for (; timescale > 0; timescale /= 2) {
        auto [quotient, exact] = divide(numerator * timescale, denominator);
        if (fits(quotient))
            return numeric(quotient, static_cast<std::int32_t>(timescale), rounded || !exact, epoch);
    }
    return infinity(numerator < 0);
}

// The largest multiple of `timescale` that `factor` has need of and that a time can have.
Wide refined(std::int32_t timescale, Wide factor)
{
    return timescale * std::min<Wide>(factor, CMTime::maxTimescale / timescale);
}

CMTime signedInfinity(const CMTime& time, double factor)
{
    if (factor == 0 || std::isnan(factor))
        return CMTime::invalid();
    return infinity(time.isNegativeInfinity() != (factor < 0));
}

// The sum, `sign` being that of the second operand, when one of the two is not a number.
CMTime impliedSum(const CMTime& a, const CMTime& b, int sign)
{
    if (!a.isValid() || !b.isValid())
        return CMTime::invalid();
    auto direction = [](const CMTime& time) { return time.isPositiveInfinity() - time.isNegativeInfinity(); };
    int first = direction(a);
    int second = direction(b) * sign;
    if (first == 0 && second == 0)
        return CMTime::indefinite();
    if (first + second == 0)
        return CMTime::invalid();
    return infinity(first + second < 0);
}

CMTime sum(const CMTime& a, const CMTime& b, int sign)
{
    if (!a.isNumeric() || !b.isNumeric())
        return impliedSum(a, b, sign);
    if (a.epoch != b.epoch && a.epoch != 0 && b.epoch != 0)
        return CMTime::invalid();
    std::int64_t epoch = a.epoch != 0 ? a.epoch : b.epoch;
    if (sign < 0 && a.epoch == b.epoch)
        epoch = 0;
    bool rounded = a.hasBeenRounded() || b.hasBeenRounded();
    Wide common = std::lcm<std::int64_t>(a.timescale, b.timescale);
    Wide numerator = a.value * (common / a.timescale) + sign * (b.value * (common / b.timescale));
    return fraction(numerator, common, std::min<Wide>(common, CMTime::maxTimescale), rounded, epoch);
}

int rank(const CMTime& time)
{
    if (!time.isValid())
        return 4;
    if (time.isPositiveInfinity())
        return 3;
    if (time.isIndefinite())
        return 2;
    return time.isNegativeInfinity() ? 0 : 1;
}

} // namespace

CMTime CMTime::makeWithSeconds(double seconds, std::int32_t preferredTimescale)
{
    if (std::isnan(seconds) || preferredTimescale <= 0)
        return invalid();
    for (std::int32_t timescale = preferredTimescale; timescale > 0; timescale /= 2) {
        double ticks = std::round(seconds * timescale);
        if (ticks < -twoToThe63 || ticks >= twoToThe63)
            continue;
        CMTime time(static_cast<std::int64_t>(ticks), timescale);
        if (time.seconds() != seconds)
            time.flags = time.flags | CMTimeFlags::hasBeenRounded;
        return time;
    }
    return infinity(seconds < 0);
}

double CMTime::seconds() const
{
    if (isPositiveInfinity())
        return std::numeric_limits<double>::infinity();
    if (isNegativeInfinity())
        return -std::numeric_limits<double>::infinity();
    if (!isNumeric())
        return std::numeric_limits<double>::quiet_NaN();
    return static_cast<double>(value) / timescale;
}

CMTime CMTime::convertScale(std::int32_t newTimescale, CMTimeRoundingMethod method) const
{
    if (!isNumeric())
        return *this;
    if (newTimescale <= 0)
        return invalid();
    bool isQuickTime = method == CMTimeRoundingMethod::quickTime;
    if (isQuickTime)
        method = newTimescale > timescale ? CMTimeRoundingMethod::roundAwayFromZero
                                          : CMTimeRoundingMethod::roundTowardZero;
    auto [ticks, exact] = divide(static_cast<Wide>(value) * newTimescale, timescale, method);
    if (isQuickTime && value < 0 && ticks == 0)
        ticks = -1;
    if (!fits(ticks))
        return infinity(ticks < 0);
    return numeric(ticks, newTimescale, hasBeenRounded() || !exact, epoch);
}

CMTime CMTime::absoluteValue() const
{
    if (isNegativeInfinity())
        return positiveInfinity();
    return isNumeric() && value < 0 ? multiplied(-1) : *this;
}

CMTime CMTime::multiplied(std::int32_t factor) const
{
    return multipliedByRatio(factor, 1);
}

CMTime CMTime::multipliedByRatio(std::int32_t factor, std::int32_t divisor) const
{
    if (!isValid() || divisor == 0)
        return invalid();
    if (isIndefinite())
        return *this;
    double ratio = static_cast<double>(factor) / divisor;
    if (!isNumeric())
        return signedInfinity(*this, ratio);
    Wide numerator = static_cast<Wide>(value) * factor * (divisor < 0 ? -1 : 1);
    std::int64_t denominator = std::abs(static_cast<std::int64_t>(divisor));
    // Ticks are split only as far as the result needs: a third of 6/30 s is 2/30 s.
    Wide needed = denominator / std::gcd(static_cast<std::int64_t>(numerator % denominator), denominator);
    return fraction(numerator, static_cast<Wide>(timescale) * denominator, refined(timescale, needed),
                    hasBeenRounded(), epoch);
}

CMTime CMTime::multipliedByFloat(double factor) const
{
    if (!isValid() || std::isnan(factor))
        return invalid();
    if (isIndefinite())
        return *this;
    if (!isNumeric())
        return signedInfinity(*this, factor);
    if (std::isinf(factor))
        return value == 0 ? invalid() : infinity((value < 0) != (factor < 0));
    // A double is an integer of 53 bits times a power of two, exactly.
    int exponent = 0;
    auto mantissa = static_cast<std::int64_t>(std::ldexp(std::frexp(factor, &exponent), 53));
    exponent -= 53;
    Wide product = static_cast<Wide>(value) * mantissa;
    if (product == 0)
        return numeric(0, timescale, hasBeenRounded(), epoch);
    for (; product % 2 == 0; product /= 2)
        exponent += 1;
    std::int32_t scale = timescale;
    for (; exponent < 0 && scale <= maxTimescale / 2; scale *= 2)
        exponent += 1;
    for (; exponent > 0 && fits(product); product *= 2)
        exponent -= 1;
    constexpr int widestShift = 120; // beyond it nothing of the product is left
    // Finer timescales are given back while the value does not fit.
    for (; exponent <= 0; scale /= 2, exponent -= 1) {
        auto [ticks, exact] = divide(product, static_cast<Wide>(1) << std::min(-exponent, widestShift));
        if (fits(ticks))
            return numeric(ticks, scale, hasBeenRounded() || !exact, epoch);
        if (scale == timescale)
            break;
    }
    auto time = makeWithSeconds(seconds() * factor, timescale);
    return time.isNumeric() ? numeric(time.value, time.timescale, true, epoch) : time;
}

std::string CMTime::debugDescription() const
{
    if (!isValid())
        return "{INVALID}";
    if (isIndefinite())
        return "{INDEFINITE}";
    if (isPositiveInfinity())
        return "{+INFINITY}";
    if (isNegativeInfinity())
        return "{-INFINITY}";
    char seconds[400];
    std::snprintf(seconds, sizeof seconds, " = %.3f", this->seconds());
    std::string text = "{" + std::to_string(value) + "/" + std::to_string(timescale) + seconds;
    if (hasBeenRounded())
        text += ", rounded";
    if (epoch != 0)
        text += ", epoch " + std::to_string(epoch);
    return text + "}";
}

CMTime operator+(const CMTime& a, const CMTime& b)
{
    return sum(a, b, 1);
}

CMTime operator-(const CMTime& a, const CMTime& b)
{
    return sum(a, b, -1);
}

std::weak_ordering operator<=>(const CMTime& a, const CMTime& b)
{
    if (auto order = rank(a) <=> rank(b); order != 0 || !a.isNumeric())
        return order;
    if (auto order = a.epoch <=> b.epoch; order != 0)
        return order;
    Wide left = static_cast<Wide>(a.value) * b.timescale;
    Wide right = static_cast<Wide>(b.value) * a.timescale;
    return left < right ? std::weak_ordering::less
        : left > right  ? std::weak_ordering::greater
                        : std::weak_ordering::equivalent;
}

CMTime CMTimeMinimum(const CMTime& a, const CMTime& b)
{
    return b < a ? b : a;
}

CMTime CMTimeMaximum(const CMTime& a, const CMTime& b)
{
    return b > a ? b : a;
}

} // namespace platform

std::size_t std::hash<platform::CMTime>::operator()(const platform::CMTime& time) const noexcept
{
    if (!time.isNumeric())
        return static_cast<std::size_t>(platform::rank(time));
    // Equal times have the same reduced fraction.
    auto divisor = std::gcd<std::int64_t>(time.value % time.timescale, time.timescale);
    std::size_t result = 0;
    for (auto part : {time.value / divisor, time.timescale / divisor, time.epoch})
        result = result * 1099511628211u ^ static_cast<std::size_t>(part);
    return result;
}
