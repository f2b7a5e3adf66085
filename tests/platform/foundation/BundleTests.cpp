// SPDX-License-Identifier: MIT
#include "platform/foundation/Bundle.h"

#include "platform/foundation/LocalizationMatching.h"
#include "platform/foundation/Logger.h"
#include "platform/foundation/PreferredLanguagesOverride.h"
#include "tests/support/TemporaryDirectory.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <thread>

namespace platform {

using ::tests::TemporaryDirectory;

namespace {

constexpr std::string_view information =
    "<plist><dict><key>CFBundleIdentifier</key><string>org.zelk.sample</string>"
    "<key>Count</key><integer>3</integer></dict></plist>";

} // namespace

TEST(BundleTests, A_program_finds_its_bundle_in_share_beside_bin_else_in_its_own_directory)
{
    TemporaryDirectory prefix;
    prefix.write("bin/Info.plist", information);
    auto bundle = Bundle::forExecutable(prefix.write("bin/sample", ""));
    EXPECT_EQ(bundle->bundleURL(), prefix.url("bin"));
    EXPECT_EQ(bundle->bundleIdentifier(), "org.zelk.sample");
    EXPECT_EQ(bundle->stringForInfoDictionaryKey("Count"), std::nullopt) << "a number is no text";
    prefix.write("share/sample/Info.plist", "<plist><dict/></plist>");
    bundle = Bundle::forExecutable(prefix.url("bin/sample"));
    EXPECT_EQ(bundle->bundleURL(), prefix.url("share/sample"));
    EXPECT_TRUE(bundle->infoDictionary().empty());
    EXPECT_FALSE(bundle->informationError());
}

TEST(BundleTests, A_program_with_a_broken_manifest_runs_and_can_tell)
{
    TemporaryDirectory directory;
    directory.write("Info.plist", "<plist>");
    int logged = 0;
    LogCapture capture([&](const LogRecord& record) { logged += record.level == LogLevel::error; });
    auto bundle = Bundle::forExecutable(directory.url("sample"));
    EXPECT_TRUE(bundle->infoDictionary().empty());
    ASSERT_TRUE(bundle->informationError());
    EXPECT_EQ(*bundle->informationError(), Error(NSError(NSCocoaError::propertyListReadCorrupt)));
    EXPECT_EQ(logged, 1);
}

TEST(BundleTests, Opening_needs_a_directory_and_a_manifest_that_is_whole_if_it_exists)
{
    TemporaryDirectory directory;
    auto expectCode = [](const URL& url, std::optional<NSCocoaError> code) {
        auto bundle = Bundle::open(url);
        ASSERT_EQ(bundle.has_value(), !code);
        EXPECT_TRUE(!code || bundle.error() == Error(NSError(*code))) << bundle.error().bridged().code();
    };
    expectCode(directory.url("missing.bundle"), NSCocoaError::fileReadNoSuchFile);
    expectCode(directory.write("file.bundle", ""), NSCocoaError::fileReadUnknown);
    expectCode(*URL::parse("http://host/x.bundle"), NSCocoaError::fileReadUnsupportedScheme);
    expectCode(directory.url(), std::nullopt);
    directory.write("Info.plist", "<plist><true/></plist>");
    expectCode(directory.url(), NSCocoaError::propertyListReadCorrupt);
    directory.write("Info.plist", information);
    expectCode(directory.url(), std::nullopt);
}

TEST(BundleTests, Resources_are_found_inside_and_never_outside)
{
    TemporaryDirectory directory;
    directory.write("secret.txt", "");
    directory.write("my.bundle/en.lproj/Zelk.strings", "");
    auto bundle = Bundle::open(directory.url("my.bundle"));
    ASSERT_TRUE(bundle);
    EXPECT_EQ((*bundle)->urlForResource("en.lproj/Zelk", "strings"),
              directory.url("my.bundle/en.lproj/Zelk.strings"));
    EXPECT_EQ((*bundle)->urlForResource("en.lproj"), directory.url("my.bundle/en.lproj"));
    for (std::string_view name :
         {"", "missing", "../secret.txt", "en.lproj/../../secret.txt", "/etc/passwd", ".."})
        EXPECT_EQ((*bundle)->urlForResource(name), std::nullopt) << name;
}

namespace {

using Names = std::vector<std::string>;

std::shared_ptr<Bundle> open(const TemporaryDirectory& directory)
{
    auto bundle = Bundle::open(directory.url());
    EXPECT_TRUE(bundle);
    return bundle.value_or(nullptr);
}

} // namespace

TEST(BundleLocalizationTests, The_nearest_localizations_of_the_first_readable_language_are_chosen)
{
    const struct {
        std::string_view name;
        Names localizations, languages, expected;
    } cases[] = {
        {"nothing", {}, {"de"}, {}},
        {"the first language that is there", {"de", "en", "fr"}, {"nl", "fr-CA", "de"}, {"fr"}},
        {"a region's own first", {"pt", "pt-BR", "pt-PT"}, {"pt-PT"}, {"pt-PT", "pt", "pt-BR"}},
        {"a region falls back to its language", {"en", "pt"}, {"pt-BR"}, {"pt"}},
        {"another region is better than another language", {"en", "pt-PT"}, {"pt-BR", "en"}, {"pt-PT"}},
        {"Latin America's Spanish before Spain's", {"es", "es-419"}, {"es-MX"}, {"es-419", "es"}},
        {"Latin America's falls back", {"en", "es"}, {"es-419"}, {"es"}},
        {"Taiwan reads traditional characters", {"zh-Hans", "zh-Hant"}, {"zh-TW"}, {"zh-Hant"}},
        {"so does Hong Kong", {"zh-Hans", "zh-Hant"}, {"zh-HK"}, {"zh-Hant"}},
        {"China and Singapore read simplified ones", {"zh-Hans", "zh-Hant"}, {"zh-SG"}, {"zh-Hans"}},
        {"a script overrules a region", {"zh-Hans", "zh-Hant"}, {"zh-Hans-TW"}, {"zh-Hans"}},
        {"old names of folders", {"zh_CN", "zh_TW"}, {"zh-Hant-HK"}, {"zh_TW"}},
        {"not in a script that was not asked for", {"sr", "zh-Hans"}, {"sr-Latn", "zh-Hant"}, {}},
        {"Norwegian is Bokmål", {"en", "nb"}, {"no"}, {"nb"}},
        {"and Bokmål Norwegian", {"en", "no"}, {"nb-NO"}, {"no"}},
        {"codes that changed", {"he", "id"}, {"iw"}, {"he"}},
        {"case does not count", {"PT-br"}, {"pt-BR"}, {"PT-br"}},
        {"a neighbour is no substitute", {"es", "ru"}, {"ca", "uk"}, {}},
        {"names that are no languages", {"Base", "x!"}, {"-", "", "x!"}, {"x!"}},
    };
    for (auto& [name, localizations, languages, expected] : cases)
        EXPECT_EQ(matchLocalizations(localizations, languages), expected) << name;
}

TEST(BundleLocalizationTests, A_text_comes_from_the_best_table_and_never_from_another_for_a_missing_key)
{
    TemporaryDirectory directory;
    directory.write("pt.lproj/Localizable.strings", "\"a\" = \"um\";");
    directory.write("en.lproj/Localizable.strings", "\"a\" = \"one\"; \"b\" = \"two\";");
    directory.write("en.lproj/Other.strings", "\"a\" = \"other\";");
    directory.write("de.lproj/Only.strings", "\"a\" = \"nur\";");
    directory.write("All.strings", "\"a\" = \"all\";");
    directory.write("pt.lproj/All.strings", "\"a\" = \"todos\";");
    directory.write("fr.lproj", "not a directory");
    auto bundle = open(directory);
    EXPECT_EQ(bundle->localizations(), (Names{"de", "en", "pt"}));

    PreferredLanguagesOverride languages({"pt-BR", "en"});
    EXPECT_EQ(bundle->preferredLocalizations(), Names{"pt"});
    EXPECT_EQ(bundle->localizedString("a"), "um");
    EXPECT_EQ(bundle->localizedString("b"), "b") << "a missing key is its own text";
    EXPECT_EQ(bundle->localizedString("b", "value"), "value");
    EXPECT_EQ(bundle->localizedString("a", "", "Other"), "other")
        << "a missing table: the development language's";
    EXPECT_EQ(bundle->localizedString("a", "", "Only"), "a") << "of no language that counts";
    EXPECT_EQ(bundle->localizedString("a", "", "All"), "all") << "outside of all languages goes first";
    EXPECT_EQ(bundle->localizedString("", "", "../pt.lproj/All"), "") << "tables are never outside";
    EXPECT_EQ(bundle->localizedString("a", "", "pt.lproj/All"), "a");
    {
        PreferredLanguagesOverride inner({"xx"});
        EXPECT_EQ(bundle->localizedString("a"), "one") << "the development language when nothing fits";
    }
    EXPECT_EQ(bundle->localizedString("a"), "um");
}

TEST(BundleLocalizationTests, Base_stands_for_the_development_language)
{
    TemporaryDirectory directory;
    directory.write("Info.plist",
                    "<plist><dict><key>CFBundleDevelopmentRegion</key><string>fr</string></dict></plist>");
    directory.write("Base.lproj/Localizable.strings", "\"a\" = \"base\";");
    directory.write("de.lproj/Localizable.strings", "\"a\" = \"eins\";");
    auto bundle = open(directory);
    const struct {
        std::string_view name;
        Names languages, preferred;
        std::string_view text;
    } cases[] = {
        {"a reader of that language", {"fr-CH", "de"}, {"fr"}, "base"},
        {"a reader of another", {"de", "fr"}, {"de"}, "eins"},
        {"a reader of neither", {"ja"}, {"fr"}, "base"},
    };
    for (auto& [name, languages, preferred, text] : cases) {
        PreferredLanguagesOverride override(languages);
        EXPECT_EQ(bundle->preferredLocalizations(), preferred) << name;
        EXPECT_EQ(bundle->localizedString("a"), text) << name;
    }
    directory.write("fr.lproj/Localizable.strings", "\"a\" = \"un\";");
    PreferredLanguagesOverride french({"fr"});
    EXPECT_EQ(bundle->localizedString("a"), "un") << "its own folder goes before Base";
}

TEST(BundleLocalizationTests, Without_the_development_language_the_first_localization_is_shown)
{
    TemporaryDirectory directory;
    PreferredLanguagesOverride languages({"ja"});
    EXPECT_EQ(open(directory)->preferredLocalizations(), Names{});
    directory.write("nl.lproj/Localizable.strings", "\"a\" = \"een\";");
    directory.write("pl.lproj/Localizable.strings", "\"a\" = \"jeden\";");
    EXPECT_EQ(open(directory)->preferredLocalizations(), Names{"nl"});
    EXPECT_EQ(open(directory)->localizedString("a"), "een");
}

TEST(BundleLocalizationTests, The_environment_names_the_languages)
{
    TemporaryDirectory directory;
    directory.write("ar.lproj/Localizable.strings", "\"a\" = \"واحد\";");
    directory.write("en.lproj/Localizable.strings", "\"a\" = \"one\";");
    // In a process of its own: the environment is everybody's.
    auto text = [&] {
        ::setenv("LANG", "en_US.UTF-8", 1);
        ::unsetenv("LC_ALL");
        ::setenv("LANGUAGE", "ar_EG:en", 1);
        std::fputs(open(directory)->localizedString("a").c_str(), stderr);
        std::exit(0);
    };
    EXPECT_EXIT(text(), testing::ExitedWithCode(0), "واحد");
}

TEST(BundleLocalizationTests, A_broken_table_shows_its_whole_entries_and_is_complained_of_once)
{
    TemporaryDirectory directory;
    directory.write("en.lproj/Localizable.strings", "\"a\" = \"one\";\nbroken\n?\n\"c\" = \"three\";");
    auto bundle = open(directory);
    std::vector<std::string> said;
    LogCapture capture([&](const LogRecord& record) { said.emplace_back(record.message); });
    PreferredLanguagesOverride languages({"en"});
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(bundle->localizedString("a"), "one");
        EXPECT_EQ(bundle->localizedString("c"), "three");
        EXPECT_EQ(bundle->localizedString("a", "", "None"), "a");
    }
    EXPECT_EQ(said, Names{"en.lproj/Localizable.strings:3: \"=\" is missing after the key \"broken\""});
}

TEST(BundleLocalizationTests, Tables_are_asked_by_many_threads_while_the_languages_change)
{
    TemporaryDirectory directory;
    directory.write("en.lproj/Localizable.strings", "\"a\" = \"one\";");
    directory.write("de.lproj/Localizable.strings", "\"a\" = \"eins\";");
    auto bundle = open(directory);
    std::vector<std::jthread> readers;
    for (int reader = 0; reader < 3; ++reader) {
        readers.emplace_back([&](std::stop_token stop) {
            while (!stop.stop_requested()) {
                auto text = bundle->localizedString("a");
                EXPECT_TRUE(text == "one" || text == "eins") << text;
            }
        });
    }
    for (int turn = 0; turn < 100; ++turn) {
        PreferredLanguagesOverride german({"de"});
        EXPECT_EQ(bundle->localizedString("a"), "eins");
    }
}

TEST(BundleLocalizationTests, The_resources_of_code_are_found_beside_its_program)
{
    static const char here = 0;
    auto bundle = Bundle::forCode(&here);
    ASSERT_TRUE(bundle);
    // The kit's resources are there when the kit was built.
    std::string shared = ZELK_BINARY_DIR "/share/zelk";
    EXPECT_EQ(bundle->bundleURL().path(),
              std::filesystem::exists(shared) ? shared : ZELK_BINARY_DIR "/tests");
    auto library = Bundle::forCode(reinterpret_cast<const void*>(&std::getenv));
    ASSERT_TRUE(library);
    EXPECT_NE(library->bundleURL(), bundle->bundleURL()) << "the C library lies elsewhere";
    int local = 0;
    EXPECT_EQ(Bundle::forCode(&local), nullptr) << "no file holds the stack";
}

} // namespace platform
