// SPDX-License-Identifier: MIT
#pragma once

#include "platform/services/NLLanguage.h"

#include <string_view>

namespace platform {

// Whether what was found out about a text is sure, or the best guess at a short one.
enum class LanguageEvidence { reliable, guess };

// The language of a text in Arabic script, given what its letter sequences say: `found` is Arabic, Persian or
// Urdu, `score` how usual the sequences are in it (1000 in ordinary prose). The letters that only some
// languages have correct a guess, and tell the languages apart that the library does not know.
NLLanguage languageInArabicScript(std::string_view text, NLLanguage found, LanguageEvidence evidence,
                                  double score);

} // namespace platform
