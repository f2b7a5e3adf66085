// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/DateComponentsFormatter.h"
#include "platform/foundation/DurationCount_p.h"

#include <span>

#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace platform {

// Puts counted units into words and clocks of one language.
class DurationWriter {
public:
    using Style = DateComponentsFormatter::UnitsStyle;
    enum class Minus { no, yes };
    enum class Padded { no, yes };

    // `style` is not the positional one.
    DurationWriter(icu::Locale locale, Style style, Padded padded)
        : locale_(std::move(locale))
        , style_(style)
        , padded_(padded)
    {
    }

    // "3 days". The sign of the count is not looked at.
    icu::UnicodeString measure(const UnitCount& unit, Minus minus) const;
    // "1:05:00": numbers of two digits behind the first, with the language's separators.
    icu::UnicodeString clock(std::span<const UnitCount> units, Minus minus) const;
    // "3 days, 1 hour".
    icu::UnicodeString list(std::span<const icu::UnicodeString> measures) const;

private:
    icu::Locale locale_;
    Style style_;
    Padded padded_;
};

} // namespace platform
