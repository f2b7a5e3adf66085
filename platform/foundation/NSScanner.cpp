// SPDX-License-Identifier: MIT
#include "platform/foundation/NSScanner.h"

#include "platform/foundation/WhiteSpace.h"

#include <limits>
#include <string_view>

namespace platform {

namespace {

std::string_view withoutSpaces(std::string_view text)
{
    return withoutLeadingWhiteSpace(text, LineBreaks::included);
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
