// SPDX-License-Identifier: MIT
#include "platform/previewer/ChildProgram_p.h"

#include <algorithm>
#include <csignal>

#include <cerrno>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace platform {

namespace {

std::vector<std::string> environmentWith(const std::vector<std::string>& changes)
{
    auto nameOf = [](std::string_view entry) { return entry.substr(0, entry.find('=')); };
    std::vector<std::string> result;
    for (char** entry = environ; *entry; ++entry) {
        bool isChanged =
            std::ranges::any_of(changes, [&](auto& change) { return nameOf(change) == nameOf(*entry); });
        if (!isChanged)
            result.emplace_back(*entry);
    }
    std::ranges::copy_if(changes, std::back_inserter(result),
                         [](auto& change) { return change.find('=') != std::string::npos; });
    return result;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (auto& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// Everything the new process does before the program: only what may be done after a fork.
[[noreturn]] void become(const ProgramStart& start, char* const* arguments, char* const* environment,
                         pid_t parent)
{
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent)
        ::_exit(127);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    // Away from the numbers that are to be used, in both orders.
    int passed = start.passedDescriptor < 0 ? -1 : ::fcntl(start.passedDescriptor, F_DUPFD_CLOEXEC, 10);
    int second = start.secondDescriptor < 0 ? -1 : ::fcntl(start.secondDescriptor, F_DUPFD_CLOEXEC, 10);
    if (passed >= 0)
        ::dup2(passed, 3);
    if (second >= 0)
        ::dup2(second, 4);
    int nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (nothing >= 0)
        ::dup2(nothing, 0);
    ::execvpe(arguments[0], arguments, environment);
    ::_exit(127);
}

} // namespace

std::unique_ptr<ChildProgram> ChildProgram::start(sd_event* loop, const ProgramStart& start, EndHandler onEnd)
{
    auto words = start.command;
    auto variables = environmentWith(start.environment);
    auto arguments = pointersTo(words), environment = pointersTo(variables);
    auto parent = ::getpid();
    auto id = ::fork();
    if (id == 0)
        become(start, arguments.data(), environment.data(), parent);
    if (id < 0)
        return nullptr;

    std::unique_ptr<ChildProgram> program(new ChildProgram);
    program->id_ = id;
    program->onEnd_ = std::move(onEnd);
    sd_event_source* source = nullptr;
    if (sd_event_add_child(loop, &source, id, WEXITED, &ChildProgram::ended, program.get()) < 0)
        return nullptr;
    program->source_.reset(source);
    // What it said last is heard before its end.
    sd_event_source_set_priority(source, SD_EVENT_PRIORITY_IDLE);
    return program;
}

ChildProgram::~ChildProgram()
{
    if (id_ <= 0)
        return;
    source_.reset();
    ::kill(id_, SIGKILL);
    while (::waitpid(id_, nullptr, 0) < 0 && errno == EINTR) { }
}

void ChildProgram::signal(int number)
{
    if (id_ > 0)
        ::kill(id_, number);
}

int ChildProgram::ended(sd_event_source*, const siginfo_t* information, void* self)
{
    auto& program = *static_cast<ChildProgram*>(self);
    program.source_.reset();
    auto id = std::exchange(program.id_, -1);
    int status = information->si_code == CLD_EXITED ? information->si_status << 8 : information->si_status;
    // The loop collects it after this call, unless its source is gone: then nobody would.
    while (::waitpid(id, nullptr, 0) < 0 && errno == EINTR) { }
    auto onEnd = std::move(program.onEnd_);
    onEnd(status);
    return 0;
}

} // namespace platform
