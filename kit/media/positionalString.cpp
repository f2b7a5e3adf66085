// SPDX-License-Identifier: MIT
#include "kit/media/positionalString.h"

#include "platform/foundation/DateFormatter.h"
#include "platform/foundation/Precondition.h"

namespace zelk {

namespace {

enum class Layout { seconds, minutes, hours };

// The whole seconds that the layout is chosen by.
std::int64_t wholeSeconds(double seconds)
{
    constexpr double twoToThe63 = 9223372036854775808.0;
    platform::precondition(
        seconds >= -twoToThe63 && seconds < twoToThe63,
        "a positional time string needs a finite reference time within 64 bits of seconds");
    return static_cast<std::int64_t>(seconds);
}

Layout layoutFor(std::int64_t seconds)
{
    if (seconds / 3600 != 0)
        return Layout::hours;
    return seconds / 60 % 60 == 0 ? Layout::seconds : Layout::minutes;
}

platform::DateFormatter makeFormatter(std::string_view pattern)
{
    using platform::Calendar;
    return platform::DateFormatter(
        pattern, Calendar(Calendar::Identifier::iso8601, platform::Locale("en"), platform::TimeZone::utc()));
}

const platform::DateFormatter& wholeSecondFormatter(Layout layout)
{
    if (layout == Layout::hours) {
        static const auto hours = makeFormatter("HH:mm:ss");
        return hours;
    }
    static const auto minutes = makeFormatter("mm:ss");
    return minutes;
}

const platform::DateFormatter& hundredthsFormatter(Layout layout)
{
    if (layout == Layout::hours) {
        static const auto hours = makeFormatter("HH:mm:ss.SS");
        return hours;
    }
    if (layout == Layout::minutes) {
        static const auto minutes = makeFormatter("mm:ss.SS");
        return minutes;
    }
    static const auto seconds = makeFormatter("ss.SS");
    return seconds;
}

std::string patternOf(Layout layout, std::string_view separator, std::int64_t digits)
{
    std::string pattern = layout == Layout::hours ? "HH:mm:ss" : layout == Layout::minutes ? "mm:ss" : "ss";
    pattern += separator;
    pattern.append(static_cast<std::size_t>(digits), 'S');
    return pattern;
}

} // namespace

std::string positionalString(double seconds, const PositionalStringOptions& options)
{
    auto layout = layoutFor(wholeSeconds(options.maxDisplayedTime.value_or(seconds)));
    platform::Date instant{seconds};
    if (options.resolution == Resolution::seconds)
        return wholeSecondFormatter(layout).string(instant);
    auto separator = options.millisecondsSeparator;
    auto digits = options.millisecondsCharCount;
    platform::precondition(digits >= 0, "a positional time string cannot have a negative number of digits");
    if (separator == "." && digits == 2)
        return hundredthsFormatter(layout).string(instant);
    return makeFormatter(patternOf(layout, separator, digits)).string(instant);
}

} // namespace zelk
