// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/TextEncoding.h"

#include <string_view>

namespace platform {

struct TextEncodingRow {
    TextEncoding encoding;
    const char* converter; // what ICU calls it; null where we have our own
    std::string_view charset;
    std::string_view name;
    // The languages that were written in it, as CLDR names them, separated by blanks. Empty for encodings of several
    // bytes a character.
    std::string_view languages;
};

const TextEncodingRow& textEncodingRow(TextEncoding encoding);

} // namespace platform
