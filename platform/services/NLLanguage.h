// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace platform {

// The code of a language as the platform spells it: two or three lower-case letters, in Chinese with the
// script. Names a text that lives as long as the program.
using NLLanguage = std::string_view;

// The languages that are told apart by name; the recognizer knows some fifty more by their codes.
inline constexpr NLLanguage NLLanguageArabic = "ar";
inline constexpr NLLanguage NLLanguageEnglish = "en";
inline constexpr NLLanguage NLLanguageFrench = "fr";
inline constexpr NLLanguage NLLanguageGerman = "de";
inline constexpr NLLanguage NLLanguageHebrew = "he";
inline constexpr NLLanguage NLLanguageKurdish = "ckb"; // in Arabic script
inline constexpr NLLanguage NLLanguagePashto = "ps";
inline constexpr NLLanguage NLLanguagePersian = "fa";
inline constexpr NLLanguage NLLanguageRussian = "ru";
inline constexpr NLLanguage NLLanguageSimplifiedChinese = "zh-Hans";
inline constexpr NLLanguage NLLanguageSindhi = "sd";
inline constexpr NLLanguage NLLanguageTraditionalChinese = "zh-Hant";
inline constexpr NLLanguage NLLanguageUrdu = "ur";
inline constexpr NLLanguage NLLanguageUyghur = "ug";
inline constexpr NLLanguage NLLanguageYiddish = "yi";

} // namespace platform
