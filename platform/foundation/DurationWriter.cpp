// SPDX-License-Identifier: MIT
#include "platform/foundation/DurationWriter_p.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

#include <unicode/dcfmtsym.h>
#include <unicode/listformatter.h>
#include <unicode/measfmt.h>
#include <unicode/measure.h>
#include <unicode/numberformatter.h>
#include <unicode/rbnf.h>
#include <unicode/uchar.h>

namespace platform {

namespace {

using Style = DateComponentsFormatter::UnitsStyle;

icu::MeasureUnit measureUnit(NSCalendarUnit unit)
{
    switch (unit) {
    case NSCalendarUnit::year:
    case NSCalendarUnit::yearForWeekOfYear:
        return icu::MeasureUnit::getYear();
    case NSCalendarUnit::quarter:
        return icu::MeasureUnit::getQuarter();
    case NSCalendarUnit::month:
        return icu::MeasureUnit::getMonth();
    case NSCalendarUnit::weekOfMonth:
    case NSCalendarUnit::weekOfYear:
        return icu::MeasureUnit::getWeek();
    case NSCalendarUnit::day:
        return icu::MeasureUnit::getDay();
    case NSCalendarUnit::hour:
        return icu::MeasureUnit::getHour();
    case NSCalendarUnit::minute:
        return icu::MeasureUnit::getMinute();
    case NSCalendarUnit::nanosecond:
        return icu::MeasureUnit::getNanosecond();
    default:
        return icu::MeasureUnit::getSecond();
    }
}

UNumberUnitWidth widthOf(Style style)
{
    switch (style) {
    case Style::positional:
    case Style::abbreviated:
        return UNUM_UNIT_WIDTH_NARROW;
    case Style::short_:
    case Style::brief:
        return UNUM_UNIT_WIDTH_SHORT;
    case Style::full:
    case Style::spellOut:
        break;
    }
    return UNUM_UNIT_WIDTH_FULL_NAME;
}

// A double, because only it has a negative zero, which "-0:05" begins with.
double signedCount(const UnitCount& unit, DurationWriter::Minus minus)
{
    double count = std::abs(static_cast<double>(unit.count));
    return minus == DurationWriter::Minus::yes ? -count : count;
}

// A number with its unit, and where in the text the number is (nowhere where the language has words like "two-hours").
struct NumberInText {
    icu::UnicodeString text;
    int32_t begin = 0;
    int32_t end = 0;
    UDisplayOptionsNounClass nounClass = UDISPOPT_NOUN_CLASS_UNDEFINED;
};

icu::number::LocalizedNumberFormatter numberFormat(const icu::Locale& locale, int digits)
{
    return icu::number::NumberFormatter::withLocale(locale)
        .precision(icu::number::Precision::integer())
        .integerWidth(icu::number::IntegerWidth::zeroFillTo(digits));
}

icu::UnicodeString minusSign(const icu::Locale& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    icu::DecimalFormatSymbols symbols(locale, status);
    return symbols.getConstSymbol(icu::DecimalFormatSymbols::kMinusSignSymbol);
}

NumberInText write(const icu::number::LocalizedNumberFormatter& format, const UnitCount& unit,
                   DurationWriter::Minus minus, const icu::Locale& locale)
{
    NumberInText result;
    UErrorCode status = U_ZERO_ERROR;
    // Beyond 2^53 the integer is the more exact; its zero has no sign, but it is none.
    bool isLarge = std::abs(static_cast<double>(unit.count)) > 9007199254740992.0;
    auto magnitude = unit.count < 0 ? -unit.count : unit.count;
    auto number = isLarge
        ? format.formatInt(minus == DurationWriter::Minus::yes ? -magnitude : magnitude, status)
        : format.formatDouble(signedCount(unit, minus), status);
    result.text = number.toString(status);
    result.nounClass = number.getNounClass(status);
    icu::ConstrainedFieldPosition field;
    field.constrainCategory(UFIELD_CATEGORY_NUMBER);
    while (number.nextPosition(field, status))
        if (field.getField() == UNUM_SIGN_FIELD || field.getField() == UNUM_INTEGER_FIELD) {
            bool isFirst = result.end == 0;
            result.begin = isFirst ? field.getStart() : std::min(result.begin, field.getStart());
            result.end = std::max(result.end, field.getLimit());
        }
    // A word that holds its number has no place for the sign either.
    if (result.end == 0 && minus == DurationWriter::Minus::yes)
        result.text.insert(0, minusSign(locale));
    return result;
}

// The rules that count things of that gender, where the language tells them apart.
icu::UnicodeString ruleSet(const icu::RuleBasedNumberFormat& rules, UDisplayOptionsNounClass nounClass)
{
    std::vector<std::string_view> wanted;
    if (nounClass == UDISPOPT_NOUN_CLASS_FEMININE)
        wanted.emplace_back("%spellout-cardinal-feminine");
    if (nounClass == UDISPOPT_NOUN_CLASS_NEUTER)
        wanted.emplace_back("%spellout-cardinal-neuter");
    wanted.insert(wanted.end(), {"%spellout-cardinal-masculine", "%spellout-cardinal"});
    for (auto name : wanted) {
        auto text =
            icu::UnicodeString::fromUTF8(icu::StringPiece(name.data(), static_cast<int>(name.size())));
        for (int index = 0; index < rules.getNumberOfRuleSetNames(); ++index)
            if (rules.getRuleSetName(index) == text)
                return text;
    }
    return rules.getDefaultRuleSetName();
}

void spellOut(NumberInText& number, const UnitCount& unit, DurationWriter::Minus minus,
              const icu::Locale& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    icu::RuleBasedNumberFormat rules(icu::URBNF_SPELLOUT, locale, status);
    if (number.end == 0 || U_FAILURE(status))
        return;
    icu::UnicodeString words;
    icu::FieldPosition ignored;
    rules.format(static_cast<int64_t>(signedCount(unit, minus)), ruleSet(rules, number.nounClass), words,
                 ignored, status);
    if (U_SUCCESS(status))
        number.text.replaceBetween(number.begin, number.end, words);
}

bool hasWhiteSpace(const icu::UnicodeString& text)
{
    for (int32_t index = 0; index < text.length(); ++index)
        if (u_isUWhiteSpace(text[index]))
            return true;
    return false;
}

void removeSpaceAround(NumberInText& number)
{
    while (number.end < number.text.length() && u_isUWhiteSpace(number.text[number.end]))
        number.text.remove(number.end, 1);
    for (; number.begin > 0 && u_isUWhiteSpace(number.text[number.begin - 1]); --number.begin)
        number.text.remove(number.begin - 1, 1);
}

// What stands between the numbers of a clock.
icu::UnicodeString clockSeparator(const icu::Locale& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    icu::MeasureFormat format(locale, UMEASFMT_WIDTH_NUMERIC, status);
    icu::Measure measures[] = {icu::Measure(1, icu::MeasureUnit::createHour(status), status),
                               icu::Measure(1, icu::MeasureUnit::createMinute(status), status)};
    icu::UnicodeString clock;
    icu::FieldPosition ignored;
    format.formatMeasures(measures, 2, clock, ignored, status);
    icu::UnicodeString separator;
    for (int32_t index = 0, numbers = 0; U_SUCCESS(status) && index < clock.length(); ++index) {
        bool isDigit = u_isdigit(clock[index]);
        numbers += isDigit && (index == 0 || !u_isdigit(clock[index - 1]));
        if (!isDigit && numbers == 1)
            separator.append(clock[index]);
    }
    return separator.isEmpty() ? icu::UnicodeString(u':') : separator;
}

} // namespace

icu::UnicodeString DurationWriter::measure(const UnitCount& unit, Minus minus) const
{
    auto format = numberFormat(locale_, padded_ == Padded::yes ? 2 : 1).unit(measureUnit(unit.unit));
    auto number = write(format.unitWidth(widthOf(style_)), unit, minus, locale_);
    if (style_ == Style::spellOut)
        spellOut(number, unit, minus, locale_);
    // The brief style writes number and unit as close as the language ever does.
    if (style_ == Style::brief
        && !hasWhiteSpace(write(format.unitWidth(UNUM_UNIT_WIDTH_NARROW), unit, minus, locale_).text))
        removeSpaceAround(number);
    return number.text;
}

icu::UnicodeString DurationWriter::clock(std::span<const UnitCount> units, Minus minus) const
{
    auto separator = clockSeparator(locale_);
    icu::UnicodeString text;
    for (std::size_t index = 0; index < units.size(); ++index) {
        bool isPadded = index > 0 || padded_ == Padded::yes;
        auto format = numberFormat(locale_, isPadded ? 2 : 1).grouping(UNUM_GROUPING_OFF);
        if (index > 0)
            text.append(separator);
        text.append(write(format, units[index], index == 0 ? minus : Minus::no, locale_).text);
    }
    return text;
}

icu::UnicodeString DurationWriter::list(std::span<const icu::UnicodeString> measures) const
{
    auto width = widthOf(style_);
    bool isTight = width == UNUM_UNIT_WIDTH_NARROW || style_ == Style::brief;
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::ListFormatter> format(
        icu::ListFormatter::createInstance(locale_, ULISTFMT_TYPE_UNITS,
                                           isTight                              ? ULISTFMT_WIDTH_NARROW
                                               : width == UNUM_UNIT_WIDTH_SHORT ? ULISTFMT_WIDTH_SHORT
                                                                                : ULISTFMT_WIDTH_WIDE,
                                           status));
    icu::UnicodeString text;
    if (U_SUCCESS(status))
        format->format(measures.data(), static_cast<int32_t>(measures.size()), text, status);
    return text;
}

} // namespace platform
