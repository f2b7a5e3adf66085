// SPDX-License-Identifier: MIT
#include "platform/foundation/FormatString.h"

#include <algorithm>

namespace platform {

namespace {

constexpr int largestArgumentPlace = 1000;

// Reads one conversion behind its "%".
class ConversionReader {
public:
    ConversionReader(std::string_view format, std::size_t at, std::size_t& nextArgument)
        : format_(format)
        , at_(at)
        , nextArgument_(nextArgument)
    {
    }

    std::size_t end() const { return at_; }

    std::optional<FormatConversion> read()
    {
        auto taken = nextArgument_; // given back when this is no conversion
        FormatConversion result;
        auto place = explicitPlace();
        readFlags(result);
        result.width = count();
        if (accept('.'))
            result.precision = count().value_or(FormatCount());
        skipLengthModifiers();
        if (at_ == format_.size() || !readLetter(result)) {
            nextArgument_ = taken;
            return std::nullopt;
        }
        result.argument = place ? *place : nextArgument_++;
        return result;
    }

private:
    bool accept(char unit)
    {
        bool found = at_ < format_.size() && format_[at_] == unit;
        at_ += found;
        return found;
    }

    // Digits; nothing when there are none. Greater numbers count as `largest`.
    std::optional<int> number(int largest)
    {
        std::optional<int> result;
        for (; at_ < format_.size() && format_[at_] >= '0' && format_[at_] <= '9'; ++at_)
            result = std::min(result.value_or(0) * 10 + (format_[at_] - '0'), largest);
        return result;
    }

    // "2$", from 1. Nothing, and nothing read, when there is none.
    std::optional<std::size_t> explicitPlace()
    {
        auto begin = at_;
        auto place = number(largestArgumentPlace);
        if (place && *place > 0 && accept('$'))
            return static_cast<std::size_t>(*place - 1);
        at_ = begin;
        return std::nullopt;
    }

    void readFlags(FormatConversion& result)
    {
        while (true) {
            if (accept('-'))
                result.isLeftAligned = true;
            else if (accept('+'))
                result.hasSign = true;
            else if (accept(' '))
                result.hasSpace = true;
            else if (accept('#'))
                result.isAlternate = true;
            else if (accept('0'))
                result.hasZeros = true;
            else if (!accept('\'')) // groups digits as the C locale does: not at all
                return;
        }
    }

    std::optional<FormatCount> count()
    {
        if (accept('*')) {
            auto place = explicitPlace();
            return FormatCount{.argument = place ? *place : nextArgument_++};
        }
        auto value = number(largestFormatCount);
        if (!value)
            return std::nullopt;
        return FormatCount{.value = *value};
    }

    void skipLengthModifiers() { at_ = std::min(format_.find_first_not_of("hlqztjL", at_), format_.size()); }

    bool readLetter(FormatConversion& result)
    {
        constexpr std::string_view letters = "@sSdiuoxXfFeEgGaAcCDUO";
        auto letter = format_[at_];
        if (!letters.contains(letter))
            return false;
        ++at_;
        constexpr std::string_view older = "DUO", newer = "duo";
        auto place = older.find(letter);
        result.letter = place == std::string_view::npos ? letter : newer[place];
        return true;
    }

    std::string_view format_;
    std::size_t at_;
    std::size_t& nextArgument_;
};

} // namespace

FormatArgumentType FormatConversion::type() const
{
    if (std::string_view("@sS").contains(letter))
        return FormatArgumentType::text;
    if (std::string_view("cC").contains(letter))
        return FormatArgumentType::character;
    return std::string_view("diuoxX").contains(letter) ? FormatArgumentType::integer
                                                       : FormatArgumentType::number;
}

std::vector<FormatPiece> parseFormat(std::string_view format)
{
    std::vector<FormatPiece> pieces;
    std::size_t nextArgument = 0;
    std::size_t begin = 0; // of the text that is not among the pieces yet
    auto finishText = [&](std::size_t end) {
        if (end > begin)
            pieces.emplace_back(format.substr(begin, end - begin));
    };
    for (auto at = format.find('%'); at != std::string_view::npos;) {
        auto next = at + 1;
        if (next < format.size() && format[next] == '%') {
            finishText(next); // with one of the two
            begin = ++next;
        } else {
            ConversionReader reader(format, next, nextArgument);
            if (auto conversion = reader.read()) {
                finishText(at);
                pieces.emplace_back(*conversion);
                begin = next = reader.end();
            }
        }
        at = format.find('%', next);
    }
    finishText(format.size());
    return pieces;
}

std::map<std::size_t, FormatArgumentType> formatArguments(std::string_view format)
{
    std::map<std::size_t, FormatArgumentType> types;
    for (auto& piece : parseFormat(format)) {
        auto* conversion = std::get_if<FormatConversion>(&piece);
        if (!conversion)
            continue;
        for (auto& count : {conversion->width, conversion->precision}) {
            if (count && count->argument)
                types.try_emplace(*count->argument, FormatArgumentType::integer);
        }
        types.try_emplace(conversion->argument, conversion->type());
    }
    return types;
}

} // namespace platform
