// SPDX-License-Identifier: MIT
// Settings under several processes that are killed. Each is this program again, running the same test, which a variable
// turns into a writer.
#include "platform/foundation/NSUserDefaults.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr const char* nameVariable = "ZELK_TEST_WRITER";
constexpr int reportDescriptor = 3;

std::string key(const std::string& writer, int number)
{
    return writer + "/" + std::to_string(number);
}

// A process that writes settings and reports, on a pipe, each that it was told is safe.
class Writer {
public:
    explicit Writer(std::string givenName)
        : name(std::move(givenName))
    {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0)
            std::abort();
        reports = ends[0];
        ::setenv(nameVariable, name.c_str(), 1);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], reportDescriptor);
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        std::array<std::string, 2> arguments{"writer", "--gtest_filter=SharedDefaultsTests.*"};
        char* pointers[] = {arguments[0].data(), arguments[1].data(), nullptr};
        if (::posix_spawn(&process, "/proc/self/exe", &actions, nullptr, pointers, environ) != 0)
            std::abort();
        posix_spawn_file_actions_destroy(&actions);
        ::close(ends[1]);
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    ~Writer() { ::close(reports); }

    // The last number reported; 0 when the process ended instead.
    int nextReport() const
    {
        int number = 0;
        return ::read(reports, &number, sizeof number) == sizeof number ? number : 0;
    }
    int wait() const
    {
        int status = 0;
        ::waitpid(process, &status, 0);
        return status;
    }

    std::string name;
    pid_t process = -1;
    int reports = -1;
};

// What such a process does.
void write(const std::string& name)
{
    NSUserDefaults defaults("shared");
    if (name == "leaves") {
        defaults.setObject("not lost", "at exit");
        std::exit(0);
    }
    for (int number = 1;; ++number) {
        // two keys, of which the second alone must never be seen
        defaults.setInteger(number, key(name, number));
        defaults.setInteger(number, name);
        int report = defaults.synchronize() ? number : -1;
        if (::write(reportDescriptor, &report, sizeof report) != sizeof report)
            return; // the reader is gone
    }
}

} // namespace

TEST(SharedDefaultsTests, No_write_that_was_reported_is_lost_whoever_is_killed_when)
{
    if (const char* name = std::getenv(nameVariable))
        return write(name);
    tests::TemporaryDirectory directory;
    ::setenv("XDG_CONFIG_HOME", directory.path().c_str(), 1);
    std::map<std::string, int> reported;
    int round = 0;
    // The writers of a round run at once; each is killed in the middle of its next write, at another moment.
    for (int lives : {1, 3, 7}) {
        std::vector<std::unique_ptr<Writer>> writers;
        for (int i = 0; i < 3; ++i)
            writers.push_back(std::make_unique<Writer>("writer" + std::to_string(3 * round + i)));
        ++round;
        for (auto& writer : writers) {
            for (int i = 0; i < lives; ++i) {
                reported[writer->name] = writer->nextReport();
                ASSERT_GT(reported[writer->name], 0);
            }
            ::kill(writer->process, SIGKILL);
            EXPECT_TRUE(WIFSIGNALED(writer->wait()));
            for (int last; (last = writer->nextReport()) > 0;) // sent, but not read before the end
                reported[writer->name] = last;
        }
    }
    Writer leaving("leaves");
    EXPECT_EQ(leaving.wait(), 0);

    auto defaults = NSUserDefaults("shared");
    std::int64_t expected = 0;
    EXPECT_EQ(defaults.stringForKey("at exit"), "not lost");
    for (auto& [writer, last] : reported) {
        auto held = defaults.integerForKey(writer);
        // one more may have arrived than could be reported
        EXPECT_TRUE(held == last || held == last + 1) << writer << ": " << held << ", " << last;
        for (int number = 1; number <= held; ++number)
            EXPECT_EQ(defaults.integerForKey(key(writer, number)), number) << writer;
        bool isAhead = defaults.objectForKey(key(writer, static_cast<int>(held) + 1)).has_value();
        expected += 1 + held + (isAhead ? 1 : 0);
    }
    EXPECT_EQ(std::ranges::count_if(defaults.dictionaryRepresentation(),
                                    [](auto& entry) { return entry.first.starts_with("writer"); }),
              expected);
    ASSERT_TRUE(defaults.synchronize());
    for (auto& entry : std::filesystem::directory_iterator(directory.path("shared")))
        EXPECT_EQ(entry.path().filename().native().find("damaged"), std::string::npos) << entry.path();
    ::unsetenv("XDG_CONFIG_HOME");
}

} // namespace platform
