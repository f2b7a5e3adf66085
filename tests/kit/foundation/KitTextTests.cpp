// SPDX-License-Identifier: MIT
#include "kit/foundation/CommonLocalizations.h"
#include "kit/foundation/ZelkKitBundle.h"
#include "kit/foundation/localized.h"
#include "kit/foundation/zelkKitLocalized.h"

#include "platform/foundation/PreferredLanguagesOverride.h"
#include "platform/foundation/StringTableComparison.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <set>

namespace zelk {

using ::platform::Bundle;
using ::platform::PreferredLanguagesOverride;
using ::platform::StringTable;
using ::tests::TemporaryDirectory;

namespace {

// Beside the common terms.
constexpr std::string_view otherKeys[] = {
    "APPEARANCE_SYSTEM",
    "APPEARANCE_LIGHT",
    "APPEARANCE_DARK",
    "AVASSET_ERROR_ASSET_NOT_EXPORTABLE",
    "AVASSET_ERROR_ASSET_MISSING_AUDIO_TRACK",
    "AVASSET_ERROR_ASSET_COULD_NOT_ADD_MUTABLE_AUDIO_TRACK",
    "AVASSET_ERROR_ASSET_COULD_NOT_CREATE_EXPORT_SESSION",
    "AVASSET_ERROR_UNSUPPORTED_FILE_FORMAT",
    "EXPORT_FAILURE_DISK_IS_FULL_MESSAGE",
    "EXPORT_FAILURE_PHOTOS_UNAUTHORIZED_ALERT_TITLE",
    "EXPORT_FAILURE_PHOTOS_UNAUTHORIZED_ALERT_MESSAGE",
    "FEEDBACK_ACTION_SHEET_EMAIL_BUTTON_TITLE",
    "FEEDBACK_ACTION_SHEET_IMESSAGE_BUTTON_TITLE",
    "FEEDBACK_ACTION_SHEET_WHATSAPP_BUTTON_TITLE",
    "FEEDBACK_EMAIL_NO_ACCOUNT_CONFIGURED_ALERT_TITLE",
    "FEEDBACK_EMAIL_NO_ACCOUNT_CONFIGURED_ALERT_MESSAGE",
    "INSTAGRAM_ERROR_CANNOT_OPEN_INSTAGRAM_URL",
    "PLAYER_BACKWARD_5",
    "PLAYER_FORWARD_5",
    "PLAYER_PAUSE",
    "PLAYER_PLAY",
    "PLAYER_POSITION",
    "URL_ERROR_NOT_CONNECTED_TO_INTERNET",
};
constexpr int commonTermCount = static_cast<int>(CommonLocalizations::goBack) + 1;

StringTable kitTable(const std::string& language)
{
    auto file = zelkKitBundle()->urlForResource(language + ".lproj/Zelk-Localizable", "strings");
    if (!file)
        return {};
    auto parsed = StringTable::read(*file);
    EXPECT_TRUE(parsed && parsed->diagnostics.empty()) << language;
    return parsed ? std::move(parsed->table) : StringTable();
}

} // namespace

TEST(KitTextTests, Every_language_has_a_text_for_every_key)
{
    const std::vector<std::string> languages = {"ar", "de", "en", "es", "fa",      "fr",     "he",
                                                "hi", "it", "ja", "ko", "nl",      "pl",     "pt",
                                                "ru", "tr", "uk", "ur", "zh-Hans", "zh-Hant"};
    EXPECT_EQ(zelkKitBundle()->localizations(), languages);
    auto english = kitTable("en");
    ASSERT_EQ(english.entries().size(), std::size(otherKeys) + commonTermCount);
    for (auto& language : languages) {
        auto table = kitTable(language);
        for (auto& fault : compareStringTables(table, english))
            ADD_FAILURE() << language << ": " << fault.message;
        std::set<std::string_view> untranslated;
        for (auto& [key, text, line] : table.entries()) {
            EXPECT_NE(text, key) << language;
            EXPECT_EQ(text.find_first_of("\n\t%<"), std::string::npos) << language << ": " << text;
            if (text == *english.find(key))
                untranslated.insert(key);
        }
        // Names, and words that a neighbour writes as English does ("System", "E-mail").
        EXPECT_TRUE(language == "en" || untranslated.size() <= 3) << language << ": " << untranslated.size();
    }
    for (auto key : otherKeys)
        EXPECT_TRUE(english.find(key)) << key;
    for (int term = 0; term < commonTermCount; ++term)
        EXPECT_TRUE(english.find(key(CommonLocalizations{term}))) << term;
}

TEST(KitTextTests, The_kit_speaks_the_users_language)
{
    const struct {
        std::vector<std::string> languages;
        std::string_view save;
    } cases[] = {
        {{"ar-EG"}, "حفظ"},      {{"de-AT"}, "Speichern"}, {{"en-GB"}, "Save"},
        {{"es-419"}, "Guardar"}, {{"fa"}, "ذخیره"},        {{"fr-CA"}, "Enregistrer"},
        {{"he"}, "שמירה"},       {{"hi"}, "सहेजें"},          {{"it-CH"}, "Salva"},
        {{"ja"}, "保存"},        {{"ko"}, "저장"},         {{"nl-BE"}, "Bewaar"},
        {{"pl"}, "Zapisz"},      {{"pt-PT"}, "Salvar"},    {{"ru"}, "Сохранить"},
        {{"tr"}, "Kaydet"},      {{"uk"}, "Зберегти"},     {{"ur-PK"}, "محفوظ کریں"},
        {{"zh-SG"}, "保存"},     {{"zh-HK"}, "儲存"},      {{"eu", "nb-NO", "fr"}, "Enregistrer"},
        {{"eu"}, "Save"},
    };
    for (auto& [languages, save] : cases) {
        PreferredLanguagesOverride override(languages);
        EXPECT_EQ(zelkKitLocalized("COMMON_TERMS_SAVE"), save) << languages.front();
        EXPECT_EQ(zelkKitLocalized("NO_SUCH_KEY"), "NO_SUCH_KEY");
    }
}

TEST(KitTextTests, A_missing_text_is_its_key_and_so_is_the_marker)
{
    TemporaryDirectory directory;
    directory.write("en.lproj/Localizable.strings",
                    "\"LEFT\" = \"%2$@: %1$d left\"; \"MARKER\" = \"<null>\"; \"EMPTY\" = \"\";");
    auto bundle = *Bundle::open(directory.url());
    PreferredLanguagesOverride languages({"en"});
    EXPECT_EQ(localized("LEFT", *bundle), "%2$@: %1$d left");
    EXPECT_EQ(localized("MARKER", *bundle), "MARKER");
    EXPECT_EQ(localized("EMPTY", *bundle), "");
    EXPECT_EQ(localized("NONE", *bundle), "NONE");
    EXPECT_EQ(localizedFormat("LEFT", *bundle, 3, "Files"), "Files: 3 left");
    EXPECT_EQ(localizedFormat("%d %% of %@", *bundle, 5, std::string("all")), "5 % of all");
    EXPECT_EQ(localizedFormat("EMPTY", *bundle), "");
}

TEST(KitTextTests, A_common_term_keeps_the_language_of_its_first_use)
{
    {
        PreferredLanguagesOverride languages({"fr"});
        EXPECT_EQ(value(CommonLocalizations::submit), "Envoyer");
    }
    PreferredLanguagesOverride languages({"de"});
    EXPECT_EQ(value(CommonLocalizations::submit), "Envoyer");
    EXPECT_EQ(value(CommonLocalizations::goBack), "Zurückgehen") << "another term has its own first use";
    EXPECT_DEATH(value(CommonLocalizations{commonTermCount}), "there is no such common term");
}

TEST(KitTextTests, The_bundle_is_the_first_that_opens_and_without_any_the_process_stops)
{
    TemporaryDirectory directory;
    directory.write("file/ZelkKit_ZelkKit.bundle", "not a directory");
    directory.write("one/ZelkKit_ZelkKit.bundle/x", "");
    directory.write("two/ZelkKit_ZelkKit.bundle/x", "");
    std::vector directories{directory.url("none"), directory.url("file"), directory.url("two"),
                            directory.url("one")};
    EXPECT_EQ(openZelkKitBundle(directories)->bundleURL(), directory.url("two/ZelkKit_ZelkKit.bundle"));
    directories.erase(directories.begin() + 2, directories.end());
    EXPECT_DEATH(openZelkKitBundle(directories), "unable to find bundle named ZelkKit_ZelkKit");
    EXPECT_DEATH(openZelkKitBundle({}), "unable to find bundle named ZelkKit_ZelkKit");
}

} // namespace zelk
