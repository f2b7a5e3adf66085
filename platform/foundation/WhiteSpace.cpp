// SPDX-License-Identifier: MIT
#include "platform/foundation/WhiteSpace.h"

#include <algorithm>
#include <iterator>
#include <span>

namespace platform {

namespace {

// The spaces first, the line breaks last.
constexpr std::string_view characters[] = {
    " ",      "\t",     "\u00a0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004",
    "\u2005", "\u2006", "\u2007", "\u2008", "\u2009", "\u200a", "\u202f", "\u205f", "\u3000",
    "\n",     "\v",     "\f",     "\r",     "\u0085", "\u2028", "\u2029",
};
constexpr std::size_t lineBreakCount = 7;

std::span<const std::string_view> charactersWith(LineBreaks lineBreaks)
{
    auto left = lineBreaks == LineBreaks::included ? 0 : lineBreakCount;
    return std::span(characters).first(std::size(characters) - left);
}

} // namespace

std::string_view withoutLeadingWhiteSpace(std::string_view text, LineBreaks lineBreaks)
{
    auto spaces = charactersWith(lineBreaks);
    auto isNext = [&](std::string_view space) { return text.starts_with(space); };
    for (auto space = std::ranges::find_if(spaces, isNext); space != spaces.end();
         space = std::ranges::find_if(spaces, isNext))
        text.remove_prefix(space->size());
    return text;
}

std::string_view withoutTrailingWhiteSpace(std::string_view text, LineBreaks lineBreaks)
{
    auto spaces = charactersWith(lineBreaks);
    auto isLast = [&](std::string_view space) { return text.ends_with(space); };
    for (auto space = std::ranges::find_if(spaces, isLast); space != spaces.end();
         space = std::ranges::find_if(spaces, isLast))
        text.remove_suffix(space->size());
    return text;
}

} // namespace platform
