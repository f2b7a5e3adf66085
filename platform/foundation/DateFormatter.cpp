// SPDX-License-Identifier: MIT
#include "platform/foundation/DateFormatter.h"

#include "platform/foundation/Calendar_p.h"
#include "platform/foundation/ClockPattern_p.h"
#include "platform/foundation/Locale_p.h"
#include "platform/foundation/SplitSeconds_p.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include <unicode/dcfmtsym.h>
#include <unicode/decimfmt.h>
#include <unicode/smpdtfmt.h>

namespace platform {

class DateFormatter::Format {
public:
    virtual ~Format() = default;
    virtual std::string string(double seconds) const = 0;
};

class DateFormatter::ClockFormat final : public Format {
public:
    ClockFormat(ClockPattern pattern, int offset)
        : pattern_(std::move(pattern))
        , offset_(offset)
    {
    }
    std::string string(double seconds) const override { return pattern_.format(seconds, offset_); }

private:
    ClockPattern pattern_;
    int offset_;
};

namespace {

// ICU knows milliseconds and fills up with zeros: longer runs of S are cut out of the pattern and written here.
constexpr std::size_t longestFractionOfICU = 3;

struct PatternPart {
    std::string_view pattern; // empty for a fraction
    std::size_t fractionDigits;
};

std::vector<PatternPart> partsOf(std::string_view pattern)
{
    std::vector<PatternPart> parts;
    bool isQuoted = false;
    std::size_t begin = 0;
    auto addUpTo = [&](std::size_t end) {
        if (end > begin)
            parts.push_back({pattern.substr(begin, end - begin), 0});
    };
    for (std::size_t place = 0; place < pattern.size();) {
        if (isQuoted || pattern[place] != 'S') {
            isQuoted ^= pattern[place] == '\'';
            ++place;
            continue;
        }
        auto end = std::min(pattern.find_first_not_of('S', place), pattern.size());
        if (end - place > longestFractionOfICU) {
            addUpTo(place);
            parts.push_back({{}, end - place});
            begin = end;
        }
        place = end;
    }
    addUpTo(pattern.size());
    return parts;
}

bool writesPlainEnglish(const Calendar& calendar)
{
    auto locale = icuLocale(calendar.locale());
    auto kind = calendar.identifier();
    bool isEnglish = std::string_view(locale.getLanguage()) == "en";
    bool isPlain = std::string_view(locale.getName()).find('@') == std::string_view::npos;
    return isEnglish && isPlain
        && (kind == Calendar::Identifier::gregorian || kind == Calendar::Identifier::iso8601);
}

} // namespace

class DateFormatter::CalendarFormat final : public Format {
public:
    CalendarFormat(std::string_view pattern, const Calendar& calendar)
    {
        auto locale = icuLocale(calendar);
        auto counting = icuCalendar(calendar);
        for (const auto& part : partsOf(pattern)) {
            UErrorCode status = U_ZERO_ERROR;
            auto text = icu::UnicodeString::fromUTF8(
                icu::StringPiece(part.pattern.data(), static_cast<int>(part.pattern.size())));
            pieces_.push_back(
                {std::make_unique<icu::SimpleDateFormat>(text, locale, status), part.fractionDigits});
            if (counting)
                pieces_.back().format->setCalendar(*counting);
            isUsable_ = isUsable_ && counting && U_SUCCESS(status);
        }
    }

    std::string string(double seconds) const override
    {
        SplitSeconds split(seconds);
        icu::UnicodeString text;
        UErrorCode status = isUsable_ ? U_ZERO_ERROR : U_INVALID_STATE_ERROR;
        for (const auto& piece : pieces_) {
            if (U_FAILURE(status))
                return {};
            if (piece.fractionDigits > 0)
                appendFraction(text, piece, split.fraction());
            else
                piece.format->format(milliseconds(split), text, nullptr, status);
        }
        std::string result;
        return U_SUCCESS(status) ? text.toUTF8String(result) : result;
    }

private:
    struct Piece {
        std::unique_ptr<icu::SimpleDateFormat> format;
        std::size_t fractionDigits;
    };

    static UDate milliseconds(const SplitSeconds& split)
    {
        double thousandths = 0;
        for (std::size_t index = 0; index < longestFractionOfICU; ++index)
            thousandths =
                thousandths * 10 + (index < split.fraction().size() ? split.fraction()[index] - '0' : 0);
        return static_cast<double>(split.whole()) * 1000 + thousandths;
    }

    static void appendFraction(icu::UnicodeString& text, const Piece& piece, std::string_view digits)
    {
        UChar32 zero = '0';
        if (auto* numbers = dynamic_cast<const icu::DecimalFormat*>(piece.format->getNumberFormat()))
            zero = numbers->getDecimalFormatSymbols()
                       ->getConstSymbol(icu::DecimalFormatSymbols::kZeroDigitSymbol)
                       .char32At(0);
        for (std::size_t index = 0; index < piece.fractionDigits; ++index)
            text.append(zero + (index < digits.size() ? digits[index] - '0' : 0));
    }

    std::vector<Piece> pieces_;
    bool isUsable_ = true;
};

DateFormatter::DateFormatter(std::string_view dateFormat, const Calendar& calendar)
{
    if (auto offset = calendar.timeZone().fixedSecondsFromGMT(); offset && writesPlainEnglish(calendar))
        if (auto pattern = ClockPattern::parse(dateFormat)) {
            format_ = std::make_shared<ClockFormat>(std::move(*pattern), *offset);
            return;
        }
    format_ = std::make_shared<CalendarFormat>(dateFormat, calendar);
}

std::string DateFormatter::string(Date date) const
{
    if (std::isnan(date.timeIntervalSince1970))
        return {};
    return format_->string(date.timeIntervalSince1970);
}

} // namespace platform
