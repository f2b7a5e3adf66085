// SPDX-License-Identifier: MIT
#include "platform/foundation/ProcessInfo.h"

#include "platform/foundation/Logger.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace platform {

TEST(OperatingSystemVersionTests, Versions_are_read_strictly_and_compared_as_numbers)
{
    using Version = OperatingSystemVersion;
    EXPECT_EQ(Version::parse("17"), (Version{17, 0, 0}));
    EXPECT_EQ(Version::parse("16.10.2"), (Version{16, 10, 2}));
    EXPECT_LT(Version::parse("15.4"), Version::parse("15.10"));
    EXPECT_LT(Version::parse("15.10.9"), Version::parse("16"));
    EXPECT_EQ((Version{17, 4, 1}.string()), "17.4.1");
    EXPECT_EQ(Version{17}.string(), "17.0");
    for (auto text : {"", "17.", ".17", "17.0.0.0", "-17", "+17", " 17", "17 ", "17.x", "99999999999"})
        EXPECT_EQ(Version::parse(text), std::nullopt) << text;
}

// The version is read once a process: each case runs in a process of its own and reports through its exit status.
TEST(SystemVersionDeathTest, The_environment_sets_the_system_version)
{
    struct Case {
        const char *wanted, *message;
        int major;
    };
    for (auto [wanted, message, major] : {Case{nullptr, "", 17}, Case{"18.0", "", 18}, Case{"15.4.1", "", 15},
                                          Case{"", "", 17}, Case{"sequoia", "is not a version", 17}}) {
        auto answer = [&] {
            wanted ? ::setenv("ZELK_SYSTEM_VERSION", wanted, 1) : ::unsetenv("ZELK_SYSTEM_VERSION");
            std::exit(ProcessInfo::processInfo().operatingSystemVersion().major);
        };
        EXPECT_EXIT(answer(), testing::ExitedWithCode(major), message);
    }
}

TEST(ProcessInfoTests, An_override_holds_for_its_lifetime_and_nests)
{
    auto& process = ProcessInfo::processInfo();
    auto own = process.operatingSystemVersion();
    {
        SystemVersionOverride older({15, 4, 0});
        {
            SystemVersionOverride newer({18, 0, 0});
            EXPECT_TRUE(process.isOperatingSystemAtLeast({17, 9, 9}));
        }
        EXPECT_TRUE(process.isOperatingSystemAtLeast({15, 4, 0}));
        EXPECT_FALSE(process.isOperatingSystemAtLeast({15, 4, 1}));
    }
    EXPECT_EQ(process.operatingSystemVersion(), own);
}

TEST(LoggerTests, A_capture_sees_every_level_until_it_ends)
{
    std::string seen;
    Logger logger("org.zelk.tests", "main");
    {
        LogCapture capture([&](const LogRecord& record) { seen += record.message; });
        logger.debug("one ");
        {
            LogCapture inner([](const LogRecord&) { });
            logger.error("unseen ");
        }
        logger.debug([] { return std::string("two"); });
    }
    EXPECT_EQ(seen, "one two");
    testing::internal::CaptureStderr();
    logger.debug("silent");
    logger.debug([]() -> std::string {
        ADD_FAILURE() << "a message is made that nobody hears";
        return {};
    });
    logger.error("a\nb\x1B[31m");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "org.zelk.tests [main] a b [31m\n");
}

} // namespace platform
