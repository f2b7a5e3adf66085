// SPDX-License-Identifier: MIT
#include "platform/foundation/appendUTF8.h"

namespace platform {

bool appendUTF8(std::string& text, char32_t scalar)
{
    if (scalar > 0x10FFFF || (scalar >= 0xD800 && scalar <= 0xDFFF))
        return false;
    auto append = [&](char32_t unit) { text += static_cast<char>(unit); };
    auto continuation = [&](int shift) { append(0x80 | ((scalar >> shift) & 0x3F)); };
    if (scalar < 0x80) {
        append(scalar);
    } else if (scalar < 0x800) {
        append(0xC0 | (scalar >> 6));
        continuation(0);
    } else if (scalar < 0x10000) {
        append(0xE0 | (scalar >> 12));
        continuation(6);
        continuation(0);
    } else {
        append(0xF0 | (scalar >> 18));
        continuation(12);
        continuation(6);
        continuation(0);
    }
    return true;
}

} // namespace platform
