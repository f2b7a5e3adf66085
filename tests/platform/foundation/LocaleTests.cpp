// SPDX-License-Identifier: MIT
#include "platform/foundation/Locale.h"

#include <gtest/gtest.h>

namespace platform {

namespace {

using Variables = std::map<std::string, std::string>;
using Tags = std::vector<std::string>;

Locale::Environment environment(const Variables& variables)
{
    return [&variables](const char* name) {
        auto found = variables.find(name);
        return found == variables.end() ? std::nullopt : std::optional(found->second);
    };
}

} // namespace

TEST(LocaleTests, Languages_come_from_the_desktop_s_list_and_then_from_its_locale)
{
    struct Case {
        Variables variables;
        Tags languages;
    };
    const Case cases[] = {
        {{}, {"en"}},
        {{{"LANG", "pt_BR.UTF-8"}}, {"pt-BR"}},
        {{{"LANG", "de_DE"}, {"LC_MESSAGES", "fr_FR@euro"}}, {"fr-FR"}},
        {{{"LANG", "de_DE"}, {"LC_MESSAGES", "fr_FR"}, {"LC_ALL", "it_IT"}}, {"it-IT"}},
        {{{"LANG", "de_DE"}, {"LC_ALL", ""}}, {"de-DE"}},
        {{{"LANG", "de_DE"}, {"LANGUAGE", "pt_BR:::de_DE:fr"}}, {"pt-BR", "de-DE", "fr"}},
        {{{"LANG", "de_DE"}, {"LANGUAGE", "../a:x:C:french:en_"}}, {"en", "de-DE"}},
        {{{"LANG", "C"}, {"LANGUAGE", "de"}}, {"en"}},
        {{{"LANG", "C.UTF-8"}, {"LANGUAGE", "de"}}, {"de", "en"}},
        {{{"LANG", "zh_TW.Big5"}}, {"zh-Hant-TW"}},
        {{{"LANG", "zh_CN"}}, {"zh-Hans-CN"}},
        {{{"LANG", "sr_RS@latin"}}, {"sr-Latn-RS"}},
        {{{"LANG", "sr_RS"}}, {"sr-RS"}},
        {{{"LANG", "iw_IL"}}, {"he-IL"}},
        {{{"LANG", "zh-Hant-HK"}}, {"zh-Hant-HK"}},
        {{{"LANG", std::string(100'000, 'a')}}, {"en"}},
    };
    for (const auto& [variables, languages] : cases)
        EXPECT_EQ(Locale::preferredLanguages(environment(variables)), languages) << languages.front();
    EXPECT_EQ(Locale::current(environment({{"LC_TIME", "de_AT.UTF-8"}, {"LANG", "en_US"}})), Locale("de_AT"));
    EXPECT_EQ(Locale::current(environment({{"LANG", "no locale"}})), Locale("en"));
}

TEST(LocaleTests, Identifiers_and_tags_name_language_script_and_region)
{
    struct Case {
        std::string_view identifier, tag, language, script, region;
    };
    constexpr Case cases[] = {
        {"zh_Hant_TW", "zh-Hant-TW", "zh", "Hant", "TW"},
        {"zh-Hant-TW", "zh-Hant-TW", "zh", "Hant", "TW"},
        {"ar@numbers=latn", "ar-u-nu-latn", "ar", "-", "-"},
        {"", "und", "-", "-", "-"},
        {"garbage in", "und", "-", "-", "-"},
    };
    for (const auto& [identifier, tag, language, script, region] : cases) {
        Locale locale(identifier);
        EXPECT_EQ(locale.languageTag(), tag);
        EXPECT_EQ(locale.languageCode().value_or("-"), language) << identifier;
        EXPECT_EQ(locale.scriptCode().value_or("-"), script) << identifier;
        EXPECT_EQ(locale.regionCode().value_or("-"), region) << identifier;
    }
    const auto& regions = Locale::isoRegionCodes();
    EXPECT_TRUE(std::ranges::binary_search(regions, "DE") && std::ranges::binary_search(regions, "ZW"));
    EXPECT_FALSE(std::ranges::binary_search(regions, "XX"));
}

} // namespace platform
