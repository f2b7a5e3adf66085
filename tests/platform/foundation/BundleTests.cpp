// SPDX-License-Identifier: MIT
#include "platform/foundation/Bundle.h"

#include "platform/foundation/Logger.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

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

} // namespace platform
