// SPDX-License-Identifier: MIT
#include "tests/introspect/Reruns.h"

#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace introspect {

bool passesOnSystem(const std::string& version, const std::string& filter)
{
    std::string program = "/proc/self/exe";
    std::string filterArgument = "--gtest_filter=" + filter;
    std::string strict = "--gtest_fail_fast";
    std::string variable = "ZELK_SYSTEM_VERSION=" + version;
    std::vector<char*> arguments{program.data(), filterArgument.data(), strict.data(), nullptr};
    std::vector<char*> surroundings;
    for (char** entry = environ; *entry; ++entry) {
        if (!std::string_view(*entry).starts_with("ZELK_SYSTEM_VERSION="))
            surroundings.push_back(*entry);
    }
    surroundings.push_back(variable.data());
    surroundings.push_back(nullptr);
    pid_t child = 0;
    if (posix_spawn(&child, program.c_str(), nullptr, nullptr, arguments.data(), surroundings.data()) != 0)
        return false;
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) { }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace introspect
