// SPDX-License-Identifier: MIT
#include "platform/quicklook/Confinement.h"

#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <thread>

#include <csignal>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace platform {

namespace {

// Runs `work` in a child and gives the status it returns; -1 when it died.
int inChild(const std::function<int()>& work)
{
    auto child = ::fork();
    if (child == 0)
        ::_exit(work());
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

struct Attempt {
    std::string_view name;
    std::function<bool()> escapes;
};

// Which of `attempts` gets out; all of them must, with the door open, or they prove nothing.
std::string escapesOf(const std::vector<Attempt>& attempts, bool useLandlock)
{
    std::string names;
    for (auto& attempt : attempts) {
        int status = inChild([&] {
            int version = useLandlock ? confineFiles("") : 0;
            if (!confineCalls(version))
                return 2;
            return attempt.escapes() ? 1 : 0;
        });
        if (status != 0)
            names += std::string(attempt.name) + (status == 1 ? " escapes; " : " could not be tried; ");
        int open = inChild([&] { return attempt.escapes() ? 1 : 0; });
        if (open != 1)
            names += std::string(attempt.name) + " fails by itself; ";
    }
    return names;
}

} // namespace

TEST(ConfinementTests, Nothing_gets_out_of_a_process_behind_the_closed_door)
{
    if (!availableConfinement().filtersCalls)
        GTEST_SKIP() << "this kernel filters no calls";
    tests::TemporaryDirectory directory;
    directory.write("file", "x");
    auto file = directory.path("file");
    auto newFile = directory.path("new");
    auto parent = ::getpid();
    const std::vector<Attempt> attempts = {
        {"a new program",
         [] {
             char name[] = "/bin/true";
             char* arguments[] = {name, nullptr};
             auto child = ::vfork();
             if (child == 0) {
                 ::execv(name, arguments);
                 ::_exit(9);
             }
             int status = 9;
             return child > 0 && ::waitpid(child, &status, 0) == child && status == 0;
         }},
        {"a program in memory",
         [] {
             int memory = ::memfd_create("program", 0);
             int source = ::open("/bin/true", O_RDONLY);
             char bytes[65536];
             for (ssize_t n; (n = ::read(source, bytes, sizeof bytes)) > 0;) {
                 if (::write(memory, bytes, static_cast<std::size_t>(n)) != n)
                     return false;
             }
             char name[] = "true";
             char* arguments[] = {name, nullptr};
             char* environment[] = {nullptr};
             auto child = ::syscall(SYS_fork);
             if (child == 0) {
                 ::fexecve(memory, arguments, environment);
                 ::_exit(9);
             }
             int status = 9;
             return child > 0 && ::waitpid(static_cast<pid_t>(child), &status, 0) == child && status == 0;
         }},
        {"the network", [] { return ::socket(AF_INET, SOCK_STREAM, 0) >= 0; }},
        {"a file written", [&] { return ::open(file.c_str(), O_WRONLY) >= 0; }},
        {"a file made",
         [&] {
             return ::open(newFile.c_str(), O_RDWR | O_CREAT, 0600) >= 0 && ::unlink(newFile.c_str()) == 0;
         }},
        {"a file renamed",
         [&] {
             return ::rename(file.c_str(), newFile.c_str()) == 0
                 && ::rename(newFile.c_str(), file.c_str()) == 0;
         }},
        {"a file cut off", [&] { return ::truncate(file.c_str(), 1) == 0; }},
        {"a folder made",
         [&] { return ::mkdir(newFile.c_str(), 0700) == 0 && ::rmdir(newFile.c_str()) == 0; }},
        {"a mode changed", [&] { return ::chmod(file.c_str(), 0644) == 0; }},
        {"an attribute set", [&] { return ::setxattr(file.c_str(), "user.a", "b", 1, 0) == 0; }},
        {"a signal sent", [&] { return ::kill(parent, 0) == 0; }},
        {"a namespace of its own", [] { return ::unshare(CLONE_FILES) == 0; }},
    };
    EXPECT_EQ(escapesOf(attempts, false), "") << "by the filter alone";
    if (availableConfinement().landlockVersion > 0) {
        EXPECT_EQ(escapesOf(attempts, true), "") << "by both steps";
    }
}

TEST(ConfinementTests, Threads_that_ran_before_are_behind_the_door_too_and_what_a_preview_needs_goes_on)
{
    if (!availableConfinement().filtersCalls)
        GTEST_SKIP() << "this kernel filters no calls";
    tests::TemporaryDirectory directory;
    directory.write("file", "x");
    auto file = directory.path("file");
    int status = inChild([&] {
        std::atomic<int> step = 0;
        bool threadEscaped = true;
        std::thread earlier([&] {
            step = 1;
            step.notify_all();
            step.wait(1);
            threadEscaped = ::socket(AF_INET, SOCK_STREAM, 0) >= 0;
        });
        step.wait(0);
        int version = confineFiles(directory.path());
        if (!confineCalls(version))
            return 9;
        step = 2;
        step.notify_all();
        earlier.join();
        if (threadEscaped)
            return 1;
        if (::open(file.c_str(), O_RDONLY) < 0 || ::socket(AF_UNIX, SOCK_STREAM, 0) < 0
            || ::memfd_create("picture", 0) < 0)
            return 2;
        bool starts = false;
        std::thread([&] { starts = true; }).join();
        if (!starts || ::kill(::getpid(), 0) != 0)
            return 3;
        // The runtime folder is open where there are rules for files.
        if (version > 0 && ::open(directory.path("state").c_str(), O_WRONLY | O_CREAT, 0600) < 0)
            return 4;
        rlimit files{};
        ::getrlimit(RLIMIT_NOFILE, &files);
        return files.rlim_max <= 256 ? 0 : 5;
    });
    EXPECT_EQ(status, 0);
}

TEST(ConfinementTests, The_environment_leaves_the_door_open)
{
    int status = inChild([] {
        ::setenv("ZELK_CONFINEMENT", "off", 1);
        bool isOff = availableConfinement() == Confinement() && confineFiles("") == 0 && !confineCalls(0);
        return isOff && ::socket(AF_INET, SOCK_STREAM, 0) >= 0 ? 0 : 1;
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(describe({}), "off");
    EXPECT_EQ(describe({.landlockVersion = 3, .filtersCalls = true}), "Landlock 3, seccomp");
}

} // namespace platform
