// SPDX-License-Identifier: MIT
#include "platform/foundation/ProcessInfo.h"

#include "platform/foundation/Logger.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace platform {

TEST(OperatingSystemVersionTests, Versions_are_read_strictly)
{
    struct Case {
        std::string_view text;
        std::optional<OperatingSystemVersion> expected;
    };
    constexpr Case cases[] = {
        {"17", OperatingSystemVersion{17, 0, 0}},
        {"15.4", OperatingSystemVersion{15, 4, 0}},
        {"16.10.2", OperatingSystemVersion{16, 10, 2}},
        {"", std::nullopt},
        {"17.", std::nullopt},
        {".17", std::nullopt},
        {"17.0.0.0", std::nullopt},
        {"-17", std::nullopt},
        {"+17", std::nullopt},
        {" 17", std::nullopt},
        {"17 ", std::nullopt},
        {"17.x", std::nullopt},
        {"99999999999", std::nullopt},
    };
    for (auto& [text, expected] : cases)
        EXPECT_EQ(OperatingSystemVersion::parse(text), expected) << text;
}

TEST(OperatingSystemVersionTests, Parts_are_compared_as_numbers)
{
    EXPECT_LT((OperatingSystemVersion{15, 4}), (OperatingSystemVersion{15, 10}));
    EXPECT_LT((OperatingSystemVersion{15, 10, 9}), (OperatingSystemVersion{16}));
    EXPECT_EQ((OperatingSystemVersion{17, 4, 1}.string()), "17.4.1");
    EXPECT_EQ((OperatingSystemVersion{17}.string()), "17.0");
}

// The version is read once a process: each case runs in a process of its own and reports through its exit status.
class SystemVersionDeathTest : public testing::TestWithParam<std::pair<const char*, int>> { };

TEST_P(SystemVersionDeathTest, The_environment_sets_the_system_version)
{
    auto [wanted, major] = GetParam();
    EXPECT_EXIT(
        {
            wanted ? ::setenv("ZELK_SYSTEM_VERSION", wanted, 1) : ::unsetenv("ZELK_SYSTEM_VERSION");
            std::exit(ProcessInfo::processInfo().operatingSystemVersion().major);
        },
        testing::ExitedWithCode(major), wanted && major == 17 && *wanted ? "is not a version" : "");
}

INSTANTIATE_TEST_SUITE_P(Values, SystemVersionDeathTest,
                         testing::Values(std::pair(nullptr, 17), std::pair("18.0", 18),
                                         std::pair("15.4.1", 15), std::pair("", 17),
                                         std::pair("sequoia", 17)));

TEST(ProcessInfoTests, An_override_holds_for_its_lifetime_and_nests)
{
    auto& process = ProcessInfo::processInfo();
    auto own = process.operatingSystemVersion();
    {
        SystemVersionOverride older({15, 4, 0});
        EXPECT_TRUE(process.isOperatingSystemAtLeast({15, 4, 0}));
        EXPECT_FALSE(process.isOperatingSystemAtLeast({15, 4, 1}));
        {
            SystemVersionOverride newer({18, 0, 0});
            EXPECT_TRUE(process.isOperatingSystemAtLeast({17, 9, 9}));
        }
        EXPECT_EQ(process.operatingSystemVersion(), (OperatingSystemVersion{15, 4, 0}));
    }
    EXPECT_EQ(process.operatingSystemVersion(), own);
}

TEST(LoggerTests, A_capture_sees_every_level_until_it_ends)
{
    std::vector<std::string> seen;
    Logger logger("org.zelk.tests", "main");
    {
        LogCapture capture([&](const LogRecord& record) {
            seen.push_back(std::string(record.subsystem) + "/" + std::string(record.category) + ": "
                           + std::string(record.message));
        });
        logger.debug("one");
        {
            LogCapture inner([](const LogRecord&) { });
            logger.error("unseen");
        }
        logger.error("two");
    }
    testing::internal::CaptureStderr();
    logger.debug("silent");
    logger.error("a\nb\x1B[31m");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "org.zelk.tests [main] a b [31m\n");
    EXPECT_EQ(seen, (std::vector<std::string>{"org.zelk.tests/main: one", "org.zelk.tests/main: two"}));
}

} // namespace platform
