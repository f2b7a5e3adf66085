// SPDX-License-Identifier: MIT
#include "platform/uikit/SpawnedProgram.h"

#include "platform/dispatch/RunLoop.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace platform {

namespace {

// A program that hands a URL on to another one is done by then; one that shows it itself goes on.
constexpr int patience = 3000; // milliseconds

void tell(const std::function<void(bool)>& completion, bool isWell)
{
    if (completion)
        RunLoop::main().perform([completion, isWell] { completion(isWell); });
}

bool endedWell(pid_t child)
{
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR)
            return false;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// Whether the child is over within the time given; without a descriptor for it nobody can say, and it counts as going on.
bool isOverSoon(pid_t child)
{
    auto descriptor = static_cast<int>(syscall(SYS_pidfd_open, child, 0));
    if (descriptor < 0)
        return false;
    pollfd waiting{descriptor, POLLIN, 0};
    auto isOver = poll(&waiting, 1, patience) > 0;
    close(descriptor);
    return isOver;
}

} // namespace

void SpawnedProgram::start(std::vector<std::string> command, std::function<void(bool)> completion)
{
    assertOnMainThread();
    std::vector<char*> arguments;
    for (auto& argument : command)
        arguments.push_back(argument.data());
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    // Not all libraries keep theirs to themselves.
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    // A group of its own: an interrupt from the terminal is for this program.
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    pid_t child = 0;
    auto fault = posix_spawnp(&child, arguments[0], &files, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    if (fault != 0)
        return tell(completion, false);

    // Waits for as long as the child lives, so that it leaves no zombie.
    std::thread([child, completion = std::move(completion)] {
        if (isOverSoon(child))
            return tell(completion, endedWell(child));
        tell(completion, true);
        endedWell(child);
    }).detach();
}

bool SpawnedProgram::isInstalled(std::string_view program)
{
    const char* path = std::getenv("PATH");
    std::string_view folders = path ? path : "/usr/local/bin:/usr/bin:/bin";
    while (!folders.empty()) {
        auto end = folders.find(':');
        auto candidate = std::string(folders.substr(0, end)).append("/").append(program);
        if (access(candidate.c_str(), X_OK) == 0)
            return true;
        folders.remove_prefix(end == folders.npos ? folders.size() : end + 1);
    }
    return false;
}

} // namespace platform
