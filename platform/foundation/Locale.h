// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// The language and the conventions of a region, by which texts are chosen and values are written for people. A value.
// Any thread.
class Locale {
public:
    // Answers for the environment variable `name`; absent when it is not set.
    using Environment = std::function<std::optional<std::string>(const char* name)>;

    // Takes identifiers ("pt_BR", "sr_Latn_RS", "ar@numbers=latn") and language tags ("zh-Hant-TW"). What is neither is
    // a locale without language, by the conventions of nobody in particular.
    explicit Locale(std::string_view identifier);

    // By whose conventions the user reads dates and numbers: the first that is set of LC_ALL, LC_TIME and LANG; English
    // of no region for C, POSIX and for what is no locale.
    static Locale current();
    static Locale current(const Environment& environment);

    // The languages that the user reads, the most preferred first, as tags of language, script and region ("pt-BR").
    // Never empty. They are the list LANGUAGE and then the first that is set of LC_ALL, LC_MESSAGES and LANG; as for
    // every program of the desktop, LANGUAGE means nothing when that is plain C or POSIX, which stand for English.
    // Entries that are no language are left out. The script is there where the region alone does not tell it: always
    // in Chinese ("zh-Hant-TW"), and where it is not what the language is mostly written in ("sr-Latn-RS").
    static std::vector<std::string> preferredLanguages();
    static std::vector<std::string> preferredLanguages(const Environment& environment);

    // The two-letter codes of ISO 3166, upper case, in alphabetical order.
    static const std::vector<std::string>& isoRegionCodes();

    // As it was given.
    const std::string& identifier() const { return identifier_; }
    // "zh-Hant-TW" of "zh_Hant_TW"; "und" when there is no language.
    std::string languageTag() const;

    // What the identifier names, nothing that could be guessed from it.
    std::optional<std::string> languageCode() const;
    std::optional<std::string> scriptCode() const;
    std::optional<std::string> regionCode() const;

    // By identifier.
    bool operator==(const Locale&) const = default;

private:
    std::string identifier_;
};

} // namespace platform
