// SPDX-License-Identifier: MIT
#pragma once

#include "platform/services/NLLanguage.h"

#include <optional>
#include <string_view>

namespace platform {

class NLLanguageRecognizer {
public:
    // The language that most of `text` is in; nothing when it has no letters, is no language that is known, or
    // is not UTF-8. One word is enough in Hebrew, Yiddish and the languages of the Arabic script; a word that
    // Arabic, Persian and Urdu spell alike is any of them. Elsewhere a word or two may tell nothing. Of a long
    // text samples from all parts are read, so it takes some milliseconds at most. Any thread.
    static std::optional<NLLanguage> dominantLanguage(std::string_view text);
};

} // namespace platform
