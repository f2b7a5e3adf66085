// SPDX-License-Identifier: MIT
#include "kit/foundation/isRTL.h"

#include "platform/services/NLLanguageRecognizer.h"

#include <algorithm>

namespace zelk {

using namespace platform;

bool isRTL(std::string_view text)
{
    static constexpr NLLanguage rightToLeft[] = {NLLanguageArabic, NLLanguageHebrew, NLLanguagePersian,
                                                 NLLanguageUrdu};
    auto language = NLLanguageRecognizer::dominantLanguage(text);
    return language && std::ranges::find(rightToLeft, *language) != std::end(rightToLeft);
}

} // namespace zelk
