// SPDX-License-Identifier: MIT
// The time strings of the kit: clock-times SECONDS [LOCALE] writes a length of time in all of them.
#include "kit/media/highResolution.h"
#include "kit/media/positionalString.h"
#include "kit/media/unitTitle.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

using Formatter = platform::DateComponentsFormatter;
using Unit = platform::NSCalendarUnit;

// What a player draws at both ends of its slider: of one shape, because the medium's length decides it.
void showPlayer(double position, double length)
{
    auto left = zelk::positionalString(position, {.maxDisplayedTime = length});
    auto right = zelk::positionalString(length, {.maxDisplayedTime = length});
    std::printf("%s --o------ %s\n", left.c_str(), right.c_str());
}

// Editors show hundredths; a comma and three digits suit subtitles.
void showFractions(double seconds)
{
    auto editor = zelk::positionalString(seconds, {.resolution = zelk::Resolution::milliseconds});
    auto subtitle = zelk::positionalString(seconds,
                                           {.resolution = zelk::Resolution::milliseconds,
                                            .maxDisplayedTime = 3600,
                                            .millisecondsSeparator = ",",
                                            .millisecondsCharCount = 3});
    std::printf("%s   %s\n", editor.c_str(), subtitle.c_str());
}

void showWords(double seconds, const platform::Calendar& calendar)
{
    Formatter formatter;
    formatter.setCalendar(calendar);
    formatter.setAllowedUnits(Unit::day | Unit::hour | Unit::minute | Unit::second);
    for (auto style : {Formatter::UnitsStyle::positional, Formatter::UnitsStyle::abbreviated,
                       Formatter::UnitsStyle::short_, Formatter::UnitsStyle::full,
                       Formatter::UnitsStyle::spellOut, Formatter::UnitsStyle::brief}) {
        formatter.setUnitsStyle(style);
        std::printf("%s\n", formatter.string(seconds).value_or("(too long for words)").c_str());
    }
}

} // namespace

int main(int argumentCount, char** arguments)
{
    char* end = nullptr;
    double seconds = argumentCount > 1 ? std::strtod(arguments[1], &end) : 5025.678;
    if (argumentCount > 3 || (end && (end == arguments[1] || *end != '\0')) || !(std::abs(seconds) < 1e15)) {
        std::fprintf(stderr, "usage: clock-times [SECONDS [LOCALE]], of less than 1e15 seconds\n");
        return 2;
    }
    auto locale = argumentCount > 2 ? platform::Locale(arguments[2]) : platform::Locale::current();
    platform::Calendar calendar(platform::Calendar::Identifier::gregorian, locale);

    std::printf("%s\n", zelk::highResolution(seconds).debugDescription().c_str());
    showPlayer(seconds / 3, seconds);
    showFractions(seconds);
    showWords(seconds, calendar);
    for (auto count : {1, 2, 5})
        std::printf("%d [%s]  ", count,
                    zelk::unitTitle(calendar, Unit::day, count, Formatter::UnitsStyle::full).c_str());
    std::printf("\n");
    return 0;
}
