// SPDX-License-Identifier: MIT
#include "kit/foundation/appIcon.h"
#include "kit/foundation/applicationPages.h"
#include "kit/foundation/bundleFacts.h"
#include "kit/foundation/isTestFlight.h"
#include "kit/foundation/modelName.h"
#include "kit/foundation/modelNames.h"

#include "platform/foundation/BundleReceipt.h"
#include "tests/support/RecordingURLOpener.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <set>

namespace zelk {

namespace {

using namespace platform;

std::string plist(std::string_view dictionary)
{
    return "<plist version=\"1.0\"><dict>" + std::string(dictionary) + "</dict></plist>";
}

std::string picture(int width)
{
    std::vector<std::byte> pixels(static_cast<std::size_t>(4 * width), std::byte(255));
    return UIImage::fromPixels(pixels, width, 1).pngData();
}

std::string block(std::string_view type, std::string_view contents)
{
    auto size = contents.size() + 8;
    std::string bytes(type);
    for (int shift : {24, 16, 8, 0})
        bytes += static_cast<char>(size >> shift);
    return bytes + std::string(contents);
}

} // namespace

TEST(BundleFactsTests, Facts_come_from_the_dictionary_and_what_is_missing_reads_so)
{
    struct Case {
        const char *dictionary, *version, *build, *name;
        std::optional<std::string> identifier, both;
    };
    const Case cases[] = {
        {"", "<null>", "<null>", "fallback", {}, {}},
        {"<key>CFBundleShortVersionString</key><string>1.4</string><key>CFBundleVersion</key><string>83</"
         "string>"
         "<key>CFBundleDisplayName</key><string>Blick</string><key>CFBundleIdentifier</key><string>a.b</"
         "string>",
         "1.4", "83", "Blick", "a.b", "1.4 (83)"},
        {"<key>CFBundleShortVersionString</key><string>1.4</string>",
         "1.4",
         "<null>",
         "fallback",
         {},
         "1.4 (<null>)"},
        {"<key>CFBundleShortVersionString</key><real>1.4</real><key>CFBundleVersion</key><integer>83</"
         "integer>"
         "<key>CFBundleDisplayName</key><true/>",
         "<null>",
         "<null>",
         "fallback",
         {},
         {}},
    };
    for (auto& [dictionary, version, build, name, identifier, both] : cases) {
        tests::TemporaryDirectory directory;
        directory.write("Info.plist", plist(dictionary));
        auto bundle = Bundle::open(directory.url()).value();
        EXPECT_EQ(appVersion(*bundle), version) << dictionary;
        EXPECT_EQ(bundleVersion(*bundle), build) << dictionary;
        EXPECT_EQ(displayName(*bundle, "fallback"), name) << dictionary;
        EXPECT_EQ(bundleID(*bundle), identifier) << dictionary;
        EXPECT_EQ(versionIdentifier(*bundle), both) << dictionary;
    }
}

TEST(BundleFactsTests, A_testing_build_is_known_by_its_receipt)
{
    tests::TemporaryDirectory directory;
    auto bundle = Bundle::open(directory.url()).value();
    EXPECT_FALSE(isTestFlightReceipt(appStoreReceiptURL(*bundle)));
    directory.write("StoreKit/receipt", "");
    EXPECT_FALSE(isTestFlightReceipt(appStoreReceiptURL(*bundle)));
    directory.write("StoreKit/sandboxReceipt", "");
    EXPECT_TRUE(isTestFlightReceipt(appStoreReceiptURL(*bundle)));
    EXPECT_FALSE(isTestFlight()); // this program has none
}

TEST(AppIconTests, The_last_listed_file_counts_and_else_what_has_the_icons_name)
{
    constexpr std::string_view listed = "<key>CFBundleIcons</key><dict><key>CFBundlePrimaryIcon</key><dict>"
                                        "<key>CFBundleIconFiles</key><array><string>Small</string>"
                                        "<string>Large</string></array></dict></dict>";
    constexpr std::string_view broken =
        "<key>CFBundleIcons</key><dict><key>CFBundlePrimaryIcon</key><array/></dict>";
    auto icons = block("icns", block("ic07", picture(6)) + block("it32", "old") + block("ic08", picture(12)));
    struct Case {
        const char* name;
        std::string_view dictionary;
        std::vector<std::pair<std::string, std::string>> files;
        int width; // pixels; 0: no icon
    };
    const Case cases[] = {
        {"listed",
         listed,
         {{"Small.png", picture(2)}, {"Large@2x.png", picture(8)}, {"Large.png", picture(4)}},
         8},
        {"listed, damaged at one scale", listed, {{"Large@2x.png", "damaged"}, {"Large.png", picture(4)}}, 4},
        {"listed and missing", listed, {{"AppIcon.png", picture(3)}}, 0},
        {"a list of another form", broken, {{"AppIcon.png", picture(3)}}, 3},
        {"by name before the icon file", "", {{"AppIcon.png", picture(3)}, {"AppIcon.icns", icons}}, 3},
        {"the largest of the icon file", "", {{"AppIcon.icns", icons}}, 12},
        {"an icon file cut off", "", {{"AppIcon.icns", icons.substr(0, icons.size() - 1)}}, 0},
        {"an icon file with a part of no size",
         "",
         {{"AppIcon.icns", block("icns", std::string("ic07\0\0\0\0", 8))}},
         0},
        {"an icon file of old pictures", "", {{"AppIcon.icns", block("icns", block("it32", "old"))}}, 0},
        {"nothing", "", {}, 0},
    };
    for (auto& [name, dictionary, files, width] : cases) {
        tests::TemporaryDirectory directory;
        directory.write("Info.plist", plist(dictionary));
        for (auto& [file, contents] : files)
            directory.write(file, contents);
        auto icon = appIcon(*Bundle::open(directory.url()).value());
        EXPECT_EQ(icon ? icon->pixelWidth() : 0, width) << name;
    }
}

TEST(ModelNameTests, Machines_have_their_marketing_names_and_simulators_that_of_what_they_simulate)
{
    struct Case {
        const char *machine, *simulated, *name;
    };
    constexpr Case cases[] = {
        {"iPod5,1", nullptr, "iPod touch (5th generation)"},
        {"iPod9,1", nullptr, "iPod touch (7th generation)"},
        {"iPhone3,2", nullptr, "iPhone 4"},
        {"iPhone10,6", nullptr, "iPhone X"},
        {"iPhone12,8", nullptr, "iPhone SE (2nd generation)"},
        {"iPhone14,3", nullptr, "iPhone 13 Pro Max"},
        {"iPhone14,5", nullptr, "iPhone 13"},
        {"iPad2,4", nullptr, "iPad 2"},
        {"iPad12,2", nullptr, "iPad (9th generation)"},
        {"iPad13,1", nullptr, "iPad Air (4th generation)"},
        {"iPad14,2", nullptr, "iPad mini (6th generation)"},
        {"iPad13,11", nullptr, "iPad Pro (12.9-inch) (5th generation)"},
        {"iPad8,10", nullptr, "iPad Pro (11-inch) (2nd generation)"},
        {"AppleTV5,3", nullptr, "Apple TV"},
        {"AppleTV6,2", nullptr, "Apple TV 4K"},
        {"AudioAccessory1,1", nullptr, "HomePod"},
        {"AudioAccessory5,1", nullptr, "HomePod mini"},
        {"iPhone99,1", nullptr, "iPhone99,1"},
        {"aarch64", "iPhone3,1", "aarch64"},
        {"", nullptr, ""},
        {"x86_64", "iPad13,2", "Simulator iPad Air (4th generation)"},
        {"arm64", "Unknown1,1", "Simulator Unknown1,1"},
        {"i386", nullptr, "Simulator "},
        {"x86_64", "x86_64", "Simulator x86_64"},
    };
    for (auto [machine, simulated, name] : cases) {
        auto environment = [simulated = simulated](const char* variable) {
            EXPECT_STREQ(variable, "SIMULATOR_MODEL_IDENTIFIER");
            return simulated ? std::optional<std::string>(simulated) : std::nullopt;
        };
        EXPECT_EQ(modelName(machine, environment), name);
    }
    std::set<std::string_view> identifiers;
    for (auto& row : modelNames())
        EXPECT_TRUE(identifiers.insert(row.identifier).second) << row.identifier;
    EXPECT_EQ(&modelName(), &modelName());
}

TEST(ApplicationPagesTests, Every_page_is_opened_through_the_desktop)
{
    auto& application = UIApplication::shared();
    auto recorder = std::make_shared<tests::RecordingURLOpener>(std::set<std::string>{});
    application.setURLOpener(recorder);
    for (auto open : {openSettingsPage, openCameraPrivacyPage, openMicrophonePrivacyPage,
                      openSpeechRecognitionPrivacyPage, openNotificationSettingsPage})
        open(application);
    EXPECT_EQ(recorder->opened, std::vector<std::string>(5, "app-settings:"));
    recorder->schemes = {"app-settings"};
    openNotificationSettingsPage(application);
    EXPECT_EQ(recorder->opened.back(), "app-settings:notifications");
    application.setURLOpener(nullptr);
}

} // namespace zelk
