// SPDX-License-Identifier: MIT
#include "platform/network/HTTPCachingFields_p.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>
#include <string>

namespace platform::httpcaching {

namespace {

constexpr std::int64_t greatestDelta = std::int64_t(1) << 31;

char lowered(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

std::string_view trimmed(std::string_view text)
{
    auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string_view unquoted(std::string_view text)
{
    return text.size() >= 2 && text.front() == '"' && text.back() == '"' ? text.substr(1, text.size() - 2)
                                                                         : text;
}

// --- Dates -----------------------------------------------------------------------------------------

// Takes a date apart from left to right; the first thing that is missing spoils all that follows.
class DateReader {
public:
    explicit DateReader(std::string_view text)
        : rest_(text)
    {
    }

    bool isGood() const { return isGood_; }
    bool isAtEnd() const { return rest_.empty(); }
    bool skip(std::string_view text)
    {
        if (!rest_.starts_with(text))
            return isGood_ = false;
        rest_.remove_prefix(text.size());
        return true;
    }
    int number(std::size_t digits)
    {
        int value = 0;
        auto text = rest_.substr(0, digits);
        if (text.size() != digits
            || !std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })) {
            isGood_ = false;
            return 0;
        }
        std::from_chars(text.data(), text.data() + digits, value);
        rest_.remove_prefix(digits);
        return value;
    }
    // The place of the next word in a list of names; names are as they are, case and all.
    template <std::size_t count>
    unsigned name(const std::array<std::string_view, count>& names)
    {
        for (unsigned i = 0; i < count; ++i)
            if (rest_.starts_with(names[i])) {
                rest_.remove_prefix(names[i].size());
                return i;
            }
        isGood_ = false;
        return 0;
    }

private:
    std::string_view rest_;
    bool isGood_ = true;
};

constexpr std::array<std::string_view, 12> months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr std::array<std::string_view, 7> shortDays{"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};
constexpr std::array<std::string_view, 7> longDays{"Monday", "Tuesday",  "Wednesday", "Thursday",
                                                   "Friday", "Saturday", "Sunday"};

struct DateFields {
    int year = 0;
    unsigned month = 0; // from 0
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
};

void readTime(DateReader& reader, DateFields& fields)
{
    fields.hour = reader.number(2);
    reader.skip(":");
    fields.minute = reader.number(2);
    reader.skip(":");
    fields.second = reader.number(2);
}

std::optional<Date> dateOf(const DateReader& reader, const DateFields& fields)
{
    using namespace std::chrono;
    auto day =
        year(fields.year) / month(fields.month + 1) / std::chrono::day(static_cast<unsigned>(fields.day));
    // A leap second is allowed and means the next one.
    if (!reader.isGood() || !reader.isAtEnd() || !day.ok() || fields.hour > 23 || fields.minute > 59
        || fields.second > 60)
        return std::nullopt;
    auto days = static_cast<double>(sys_days(day).time_since_epoch().count());
    return Date{days * 86'400 + fields.hour * 3600 + fields.minute * 60 + fields.second};
}

// Sun, 06 Nov 1994 08:49:37 GMT
std::optional<Date> parseFixedDate(std::string_view text)
{
    DateReader reader(text);
    DateFields fields;
    reader.name(shortDays);
    reader.skip(", ");
    fields.day = reader.number(2);
    reader.skip(" ");
    fields.month = reader.name(months);
    reader.skip(" ");
    fields.year = reader.number(4);
    reader.skip(" ");
    readTime(reader, fields);
    reader.skip(" GMT");
    return dateOf(reader, fields);
}

// Sunday, 06-Nov-94 08:49:37 GMT
std::optional<Date> parseShortYearDate(std::string_view text, Date now)
{
    using namespace std::chrono;
    DateReader reader(text);
    DateFields fields;
    reader.name(longDays);
    reader.skip(", ");
    fields.day = reader.number(2);
    reader.skip("-");
    fields.month = reader.name(months);
    reader.skip("-");
    auto presentDay =
        sys_days(days(static_cast<std::int64_t>(std::floor(now.timeIntervalSince1970 / 86'400))));
    auto presentYear = static_cast<int>(year_month_day(presentDay).year());
    fields.year = presentYear - presentYear % 100 + reader.number(2);
    if (fields.year > presentYear + 50)
        fields.year -= 100;
    reader.skip(" ");
    readTime(reader, fields);
    reader.skip(" GMT");
    return dateOf(reader, fields);
}

// Sun Nov  6 08:49:37 1994
std::optional<Date> parseYearLastDate(std::string_view text)
{
    DateReader reader(text);
    DateFields fields;
    reader.name(shortDays);
    reader.skip(" ");
    fields.month = reader.name(months);
    reader.skip(" ");
    auto isOneDigit = text.size() > 8 && text[8] == ' ';
    if (isOneDigit)
        reader.skip(" ");
    fields.day = reader.number(isOneDigit ? 1 : 2);
    reader.skip(" ");
    readTime(reader, fields);
    reader.skip(" ");
    fields.year = reader.number(4);
    return dateOf(reader, fields);
}

// --- Directives ------------------------------------------------------------------------------------

// What a directive allows, at its strictest: unreadable is `strictest`, and of two the stricter one counts.
void readDelta(std::optional<std::int64_t>& value, std::string_view argument, std::int64_t strictest)
{
    auto seconds = parseDeltaSeconds(unquoted(argument)).value_or(strictest);
    if (!value)
        value = seconds;
    else
        value = strictest == 0 ? std::min(*value, seconds) : std::max(*value, seconds);
}

} // namespace

bool equalsIgnoringCase(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowered(x) == lowered(y); });
}

std::optional<std::int64_t> parseDeltaSeconds(std::string_view text)
{
    text = trimmed(text);
    if (text.empty() || !std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return std::nullopt;
    std::int64_t value = 0;
    auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() ? std::min(value, greatestDelta) : greatestDelta;
}

std::optional<Date> parseDate(std::string_view text, Date now)
{
    text = trimmed(text);
    if (auto date = parseFixedDate(text))
        return date;
    if (auto date = parseShortYearDate(text, now))
        return date;
    return parseYearLastDate(text);
}

void forEachElement(std::string_view list, const std::function<void(std::string_view)>& body)
{
    std::size_t begin = 0;
    bool isQuoted = false;
    auto give = [&](std::size_t end) {
        if (auto element = trimmed(list.substr(begin, end - begin)); !element.empty())
            body(element);
        begin = end + 1;
    };
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (isQuoted && list[i] == '\\')
            ++i; // whatever comes, it ends nothing
        else if (list[i] == '"')
            isQuoted = !isQuoted;
        else if (list[i] == ',' && !isQuoted)
            give(i);
    }
    if (begin < list.size())
        give(list.size());
}

Directives parseDirectives(std::string_view text)
{
    Directives directives;
    forEachElement(text, [&directives](std::string_view element) {
        auto equals = element.find('=');
        auto name = trimmed(element.substr(0, equals));
        auto argument =
            equals == std::string_view::npos ? std::string_view() : trimmed(element.substr(equals + 1));
        auto is = [name](std::string_view word) { return equalsIgnoringCase(name, word); };
        if (is("no-store"))
            directives.isNoStore = true;
        else if (is("no-cache"))
            directives.isNoCache = true;
        else if (is("must-revalidate"))
            directives.mustRevalidate = true;
        else if (is("public"))
            directives.isPublic = true;
        else if (is("only-if-cached"))
            directives.isOnlyIfCached = true;
        else if (is("max-age"))
            readDelta(directives.maxAge, argument, 0);
        else if (is("min-fresh"))
            readDelta(directives.minFresh, argument, greatestDelta);
        else if (is("max-stale") && equals == std::string_view::npos)
            directives.maxStale = directives.maxStale.value_or(std::numeric_limits<std::int64_t>::max());
        else if (is("max-stale"))
            readDelta(directives.maxStale, argument, 0);
    });
    return directives;
}

} // namespace platform::httpcaching
