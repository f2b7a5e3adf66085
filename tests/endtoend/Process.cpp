// SPDX-License-Identifier: MIT
#include "tests/endtoend/Process.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace endtoend {

namespace {

using Clock = std::chrono::steady_clock;

std::vector<std::string> mergedEnvironment(const Environment& changes)
{
    std::vector<std::string> merged;
    for (char** entry = environ; *entry; ++entry) {
        std::string text = *entry;
        if (!changes.contains(text.substr(0, text.find('='))))
            merged.push_back(std::move(text));
    }
    for (auto& [name, value] : changes) {
        if (!value.empty())
            merged.push_back(name + "=" + value);
    }
    return merged;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (auto& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// False at the end of the pipe.
bool readInto(int pipe, std::string& text)
{
    char buffer[65536];
    auto count = read(pipe, buffer, sizeof buffer);
    if (count > 0)
        text.append(buffer, static_cast<std::size_t>(count));
    return count > 0 || (count < 0 && (errno == EAGAIN || errno == EINTR));
}

} // namespace

Process::Process(std::vector<std::string> arguments, const Environment& environment)
{
    int output[2], errors[2];
    if (pipe2(output, O_CLOEXEC) != 0 || pipe2(errors, O_CLOEXEC) != 0) {
        ADD_FAILURE() << "no pipes: " << std::strerror(errno);
        return;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, output[1], 1);
    posix_spawn_file_actions_adddup2(&actions, errors[1], 2);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);

    auto merged = mergedEnvironment(environment);
    auto fault = posix_spawnp(&pid_, arguments.front().c_str(), &actions, &attributes,
                              pointersTo(arguments).data(), pointersTo(merged).data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    close(output[1]);
    close(errors[1]);
    outputPipe_ = output[0];
    errorPipe_ = errors[0];
    fcntl(outputPipe_, F_SETFL, O_NONBLOCK);
    fcntl(errorPipe_, F_SETFL, O_NONBLOCK);
    if (fault != 0) {
        pid_ = -1;
        status_ = 127;
        ADD_FAILURE() << arguments.front() << " could not be started: " << std::strerror(fault);
    }
}

Process::~Process()
{
    if (pid_ > 0 && !status_) {
        kill(-pid_, SIGKILL);
        reap(0);
    }
    if (outputPipe_ >= 0)
        close(outputPipe_);
    if (errorPipe_ >= 0)
        close(errorPipe_);
}

bool Process::isRunning()
{
    reap(WNOHANG);
    return !status_;
}

void Process::reap(int options)
{
    int status = 0;
    if (status_ || pid_ <= 0 || waitpid(pid_, &status, options) != pid_)
        return;
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

bool Process::pump(std::chrono::milliseconds limit)
{
    pollfd pipes[] = {{outputPipe_, POLLIN, 0}, {errorPipe_, POLLIN, 0}};
    poll(pipes, 2, static_cast<int>(limit.count()));
    bool outputOpen = pipes[0].revents == 0 || readInto(outputPipe_, output_);
    bool errorsOpen = pipes[1].revents == 0 || readInto(errorPipe_, errors_);
    return outputOpen || errorsOpen;
}

std::optional<Outcome> Process::wait(std::chrono::milliseconds limit)
{
    auto deadline = Clock::now() + limit;
    bool open = true;
    while (open || !status_) {
        if (Clock::now() > deadline)
            return std::nullopt;
        if (open)
            open = pump(std::chrono::milliseconds(10));
        else
            pauseBriefly();
        reap(WNOHANG);
        if (status_ && open) { // a grandchild may keep the pipes: what the program itself printed is in them
            while (pump(std::chrono::milliseconds(0)) && Clock::now() < deadline) {
                pollfd more[] = {{outputPipe_, POLLIN, 0}, {errorPipe_, POLLIN, 0}};
                if (poll(more, 2, 0) <= 0)
                    break;
            }
            open = false;
        }
    }
    return Outcome{*status_, output_, errors_};
}

std::optional<std::string> Process::readLine(std::chrono::milliseconds limit)
{
    auto deadline = Clock::now() + limit;
    while (true) {
        if (auto end = output_.find('\n'); end != std::string::npos) {
            auto line = output_.substr(0, end);
            output_.erase(0, end + 1);
            return line;
        }
        if (Clock::now() > deadline || !pump(std::chrono::milliseconds(10)))
            return std::nullopt;
    }
}

void Process::terminate(int signal)
{
    if (pid_ > 0 && !status_)
        kill(-pid_, signal);
}

Outcome run(std::vector<std::string> arguments, const Environment& environment,
            std::chrono::milliseconds limit)
{
    Process process(std::move(arguments), environment);
    auto outcome = process.wait(limit);
    return outcome ? *outcome : Outcome{-1, {}, "did not end in time"};
}

void pauseBriefly()
{
    poll(nullptr, 0, 5); // another process is waited for: there is no clock of ours to advance
}

} // namespace endtoend
