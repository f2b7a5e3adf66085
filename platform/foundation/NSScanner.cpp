// SPDX-License-Identifier: MIT
#include "platform/foundation/NSScanner.h"

#include <limits>
#include <string_view>

namespace platform {

namespace {

// White space and line breaks: the separators of Unicode, and what controls the paper. In UTF-8.
constexpr std::string_view spaces[]{
    " ",
    "\t",
    "\n",
    "\v",
    "\f",
    "\r",
    "\xC2\x85",
    "\xC2\xA0",
    "\xE1\x9A\x80",
    "\xE2\x80\x80",
    "\xE2\x80\x81",
    "\xE2\x80\x82",
    "\xE2\x80\x83",
    "\xE2\x80\x84",
    "\xE2\x80\x85",
    "\xE2\x80\x86",
    "\xE2\x80\x87",
    "\xE2\x80\x88",
    "\xE2\x80\x89",
    "\xE2\x80\x8A",
    "\xE2\x80\xA8",
    "\xE2\x80\xA9",
    "\xE2\x80\xAF",
    "\xE2\x81\x9F",
    "\xE3\x80\x80",
};

std::string_view withoutSpaces(std::string_view text)
{
    for (;;) {
        std::size_t skipped = 0;
        for (auto space : spaces) {
            if (text.starts_with(space))
                skipped = space.size();
        }
        if (skipped == 0)
            return text;
        text.remove_prefix(skipped);
    }
}

int hexDigit(char character)
{
    if (character >= '0' && character <= '9')
        return character - '0';
    auto letter = character | 0x20;
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

bool beginsWithDigit(std::string_view text)
{
    return !text.empty() && hexDigit(text.front()) >= 0;
}

} // namespace

bool NSScanner::scanHexLongLong(std::uint64_t* value)
{
    auto rest = withoutSpaces(std::string_view(text_).substr(location_));
    if ((rest.starts_with("0x") || rest.starts_with("0X")) && beginsWithDigit(rest.substr(2)))
        rest.remove_prefix(2);
    if (!beginsWithDigit(rest))
        return false;
    constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t number = 0;
    bool overflows = false;
    for (; beginsWithDigit(rest); rest.remove_prefix(1)) {
        overflows = overflows || number > largest >> 4;
        number = number << 4 | static_cast<std::uint64_t>(hexDigit(rest.front()));
    }
    if (value)
        *value = overflows ? largest : number;
    location_ = text_.size() - rest.size();
    return true;
}

bool NSScanner::isAtEnd() const
{
    return withoutSpaces(std::string_view(text_).substr(location_)).empty();
}

} // namespace platform
