// SPDX-License-Identifier: MIT
#include "platform/foundation/DateComponentsFormatter.h"

#include "platform/foundation/DurationCount_p.h"
#include "platform/foundation/DurationWriter_p.h"
#include "platform/foundation/Locale_p.h"

#include <algorithm>
#include <vector>

namespace platform {

namespace {

using Style = DateComponentsFormatter::UnitsStyle;
using Zeros = DateComponentsFormatter::ZeroFormattingBehavior;
using Minus = DurationWriter::Minus;

constexpr auto clockUnits = NSCalendarUnit::hour | NSCalendarUnit::minute | NSCalendarUnit::second;
constexpr auto unitsByDefault = NSCalendarUnit::year | NSCalendarUnit::month | NSCalendarUnit::weekOfMonth
    | NSCalendarUnit::day | clockUnits;

bool isZero(const UnitCount& unit)
{
    return unit.count == 0;
}

// Nothing that a clock could not show without being misread.
bool canBePositional(NSCalendarUnit units)
{
    auto clock = units & clockUnits;
    bool hasGap = clock == (NSCalendarUnit::hour | NSCalendarUnit::second);
    return !hasGap && (!contains(units, NSCalendarUnit::nanosecond) || units == NSCalendarUnit::nanosecond);
}

void dropZeros(std::vector<UnitCount>& units, Zeros zeros)
{
    auto first = std::ranges::find_if_not(units, isZero);
    if (first == units.end()) {
        if (hasAny(zeros, Zeros::dropLeading))
            units.erase(units.begin(), units.end() - 1);
        else if (hasAny(zeros, Zeros::dropTrailing))
            units.resize(1);
        return;
    }
    auto afterLast = std::find_if_not(units.rbegin(), units.rend(), isZero).base();
    std::vector<UnitCount> kept;
    for (auto unit = units.begin(); unit != units.end(); ++unit) {
        auto place = unit < first ? Zeros::dropLeading
            : unit >= afterLast   ? Zeros::dropTrailing
                                  : Zeros::dropMiddle;
        if (!isZero(*unit) || !hasAny(zeros, place))
            kept.push_back(*unit);
    }
    units = std::move(kept);
}

// The units from `unit` on, after which the minus sign is used up.
std::vector<icu::UnicodeString> measures(const DurationWriter& writer, std::span<const UnitCount> units,
                                         Minus& minus)
{
    std::vector<icu::UnicodeString> texts;
    for (const auto& unit : units) {
        texts.push_back(writer.measure(unit, isZero(unit) ? Minus::no : minus));
        if (!isZero(unit))
            minus = Minus::no;
    }
    return texts;
}

icu::UnicodeString positional(const icu::Locale& locale, std::vector<UnitCount> units, Zeros zeros,
                              Minus minus)
{
    auto padded = hasAny(zeros, Zeros::pad) ? DurationWriter::Padded::yes : DurationWriter::Padded::no;
    DurationWriter date(locale, Style::abbreviated, DurationWriter::Padded::no);
    DurationWriter clock(locale, Style::abbreviated, padded);
    if (hasAny(zeros, Zeros::dropLeading)) {
        auto first = std::ranges::find_if_not(units, isZero);
        units.erase(units.begin(), std::min(first, units.end() - 1));
    }
    auto isOnClock = [](const UnitCount& unit) {
        return contains(clockUnits | NSCalendarUnit::nanosecond, unit.unit);
    };
    auto firstOnClock = std::ranges::find_if(units, isOnClock);
    auto texts = measures(date, {units.begin(), firstOnClock}, minus);
    if (firstOnClock != units.end())
        texts.push_back(clock.clock({firstOnClock, units.end()}, minus));
    return date.list(texts);
}

} // namespace

std::optional<std::string> DateComponentsFormatter::string(double timeInterval) const
{
    auto allowed = allowedUnits_ == NSCalendarUnit::none ? unitsByDefault : allowedUnits_;
    bool isPositional = unitsStyle_ == UnitsStyle::positional;
    if (isPositional && !canBePositional(allowed))
        return std::nullopt;
    auto units = countUnits(timeInterval, allowed, calendar_);
    if (!units || units->empty())
        return std::nullopt;
    auto zeros = zeroFormattingBehavior_;
    if (hasAny(zeros, Zeros::default_))
        zeros = zeros | (isPositional ? Zeros::dropLeading : Zeros::dropAll);
    // Minus nothing is nothing.
    auto minus = timeInterval < 0 && !std::ranges::all_of(*units, isZero) ? Minus::yes : Minus::no;
    auto locale = icuLocale(calendar_.locale());
    icu::UnicodeString text;
    if (isPositional) {
        text = positional(locale, std::move(*units), zeros, minus);
    } else {
        dropZeros(*units, zeros);
        auto padded = hasAny(zeros, Zeros::pad) ? DurationWriter::Padded::yes : DurationWriter::Padded::no;
        DurationWriter writer(locale, unitsStyle_, padded);
        text = writer.list(measures(writer, *units, minus));
    }
    if (text.isEmpty())
        return std::nullopt;
    std::string result;
    return text.toUTF8String(result);
}

} // namespace platform
