// SPDX-License-Identifier: MIT
#include "platform/foundation/Bundle.h"

#include "platform/foundation/Logger.h"
#include "tests/platform/foundation/TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace platform {

using tests::TemporaryDirectory;

namespace {

constexpr std::string_view information =
    "<plist><dict><key>CFBundleIdentifier</key><string>org.zelk.sample</string>"
    "<key>Count</key><integer>3</integer></dict></plist>";

} // namespace

TEST(BundleTests, A_program_finds_its_bundle_in_share_beside_bin)
{
    TemporaryDirectory prefix;
    prefix.write("bin/sample", "");
    prefix.write("bin/Info.plist", "<plist><dict/></plist>");
    prefix.write("share/sample/Info.plist", information);
    auto bundle = Bundle::forExecutable(prefix.url("bin/sample"));
    EXPECT_EQ(bundle->bundleURL(), prefix.url("share/sample"));
    EXPECT_EQ(bundle->bundleIdentifier(), "org.zelk.sample");
    EXPECT_FALSE(bundle->informationError());
    EXPECT_EQ(bundle->stringForInfoDictionaryKey("Count"), std::nullopt);
    ASSERT_TRUE(bundle->objectForInfoDictionaryKey("Count"));
    EXPECT_EQ(*bundle->objectForInfoDictionaryKey("Count")->as<std::int64_t>(), 3);
    EXPECT_EQ(bundle->objectForInfoDictionaryKey("Missing"), nullptr);
}

TEST(BundleTests, Else_the_directory_of_the_program_is_its_bundle)
{
    TemporaryDirectory directory;
    auto bundle = Bundle::forExecutable(directory.write("sample", ""));
    EXPECT_EQ(bundle->bundleURL(), directory.url());
    EXPECT_TRUE(bundle->infoDictionary().empty());
    EXPECT_FALSE(bundle->informationError());
    directory.write("Info.plist", information);
    EXPECT_EQ(Bundle::forExecutable(directory.url("sample"))->bundleIdentifier(), "org.zelk.sample");
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

TEST(BundleTests, The_main_bundle_is_that_of_the_running_program)
{
    auto executable = std::filesystem::read_symlink("/proc/self/exe").string();
    EXPECT_EQ(Bundle::main()->bundleURL(), URL::fileURL(executable).deletingLastPathComponent());
    EXPECT_EQ(Bundle::main(), Bundle::main());
}

TEST(BundleTests, Opening_needs_a_directory_and_a_manifest_that_is_whole_if_it_exists)
{
    TemporaryDirectory directory;
    auto code = [](const Result<std::shared_ptr<Bundle>>& bundle) {
        return bundle ? 0 : bundle.error().bridged().code();
    };
    EXPECT_EQ(code(Bundle::open(directory.url("missing.bundle"))),
              static_cast<long>(NSCocoaError::fileReadNoSuchFile));
    EXPECT_EQ(code(Bundle::open(directory.write("file.bundle", ""))),
              static_cast<long>(NSCocoaError::fileReadUnknown));
    EXPECT_EQ(code(Bundle::open(*URL::parse("http://host/x.bundle"))),
              static_cast<long>(NSCocoaError::fileReadUnsupportedScheme));
    EXPECT_EQ(code(Bundle::open(directory.url())), 0);
    directory.write("Info.plist", "<plist><true/></plist>");
    EXPECT_EQ(code(Bundle::open(directory.url())), static_cast<long>(NSCocoaError::propertyListReadCorrupt));
    directory.write("Info.plist", information);
    EXPECT_EQ(code(Bundle::open(directory.url())), 0);
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
