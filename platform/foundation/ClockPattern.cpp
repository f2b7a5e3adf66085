// SPDX-License-Identifier: MIT
#include "platform/foundation/ClockPattern_p.h"

#include "platform/foundation/SplitSeconds_p.h"
#include "platform/foundation/UTF8.h"

#include <algorithm>

namespace platform {

namespace {

bool isLetter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

void appendPadded(std::string& text, std::int64_t number, std::size_t digits)
{
    char reversed[2] = {static_cast<char>('0' + number % 10), static_cast<char>('0' + number / 10)};
    std::size_t needed = number < 10 ? 1 : 2;
    text.append(std::max(digits, needed) - needed, '0');
    for (auto index = needed; index > 0; --index)
        text += reversed[index - 1];
}

} // namespace

std::optional<ClockPattern> ClockPattern::parse(std::string_view pattern)
{
    if (!isWellFormedUTF8(pattern))
        return std::nullopt;
    ClockPattern result;
    result.pattern_ = pattern;
    for (std::size_t place = 0; place < pattern.size();) {
        char field = pattern[place];
        auto begin = place;
        if (isLetter(field)) {
            if (std::string_view("HmsS").find(field) == std::string_view::npos)
                return std::nullopt;
            place = std::min(pattern.find_first_not_of(field, place), pattern.size());
        } else {
            for (; place < pattern.size() && !isLetter(pattern[place]); ++place)
                if (pattern[place] == '\'')
                    return std::nullopt;
            field = ' ';
        }
        result.pieces_.push_back({field, begin, place - begin});
    }
    return result;
}

std::string ClockPattern::format(double seconds, int offset) const
{
    constexpr std::int64_t day = 86400;
    SplitSeconds split(seconds);
    auto time = ((split.whole() + offset) % day + day) % day;
    std::string text;
    for (const auto& piece : pieces_) {
        switch (piece.field) {
        case 'H':
            appendPadded(text, time / 3600, piece.count);
            break;
        case 'm':
            appendPadded(text, time / 60 % 60, piece.count);
            break;
        case 's':
            appendPadded(text, time % 60, piece.count);
            break;
        case 'S':
            text += split.fraction().substr(0, piece.count);
            text.append(piece.count - std::min(piece.count, split.fraction().size()), '0');
            break;
        default:
            text.append(pattern_, piece.begin, piece.count);
        }
    }
    return text;
}

} // namespace platform
