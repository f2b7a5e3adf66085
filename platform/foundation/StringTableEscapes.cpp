// SPDX-License-Identifier: MIT
#include "platform/foundation/StringTableEscapes_p.h"

namespace platform {

namespace {

// 0x80 to 0xFD of the NeXTSTEP character set.
constexpr std::u16string_view nextStepUpperHalf = u"\u00A0ÀÁÂÃÄÅÇÈÉÊËÌÍÎÏ"
                                                  u"ÐÑÒÓÔÕÖÙÚÛÜÝÞµ×÷"
                                                  u"©¡¢£⁄¥ƒ§¤’“«‹›ﬁﬂ"
                                                  u"®–†‡·¦¶•‚„”»…‰¬¿"
                                                  u"¹ˋ´ˆ˜¯˘˙¨²˚¸³˝˛ˇ"
                                                  u"—±¼½¾àáâãäåçèéêë"
                                                  u"ìÆíªîïðñŁØŒºòóôõ"
                                                  u"öæùúûıüýłøœßþÿ";
static_assert(nextStepUpperHalf.size() == 0x7E);

} // namespace

std::optional<char32_t> parseDigits(std::string_view digits, unsigned base)
{
    char32_t number = 0;
    for (char digit : digits) {
        unsigned value = digit >= '0' && digit <= '9' ? static_cast<unsigned>(digit - '0')
            : digit >= 'a' && digit <= 'f'            ? static_cast<unsigned>(digit - 'a' + 10)
            : digit >= 'A' && digit <= 'F'            ? static_cast<unsigned>(digit - 'A' + 10)
                                                      : base;
        if (value >= base)
            return std::nullopt;
        number = number * base + value;
    }
    return number;
}

bool isLeadingSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

std::optional<char32_t> combinedSurrogates(char32_t leading, char32_t trailing)
{
    if (trailing < 0xDC00 || trailing > 0xDFFF)
        return std::nullopt;
    return 0x10000 + ((leading - 0xD800) << 10) + (trailing - 0xDC00);
}

std::optional<char32_t> nextStepCharacter(char32_t number)
{
    if (number < 0x80)
        return number;
    auto place = number - 0x80;
    return place < nextStepUpperHalf.size() ? std::optional<char32_t>(nextStepUpperHalf[place])
                                            : std::nullopt;
}

} // namespace platform
