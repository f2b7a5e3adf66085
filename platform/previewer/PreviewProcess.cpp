// SPDX-License-Identifier: MIT
#include "platform/previewer/PreviewProcess_p.h"

#include <csignal>

#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr std::uint64_t closingTime = 2'000'000; // microseconds

// Shown and closed, or not shown and said so.
bool endedByItself(int status)
{
    return WIFEXITED(status) && WEXITSTATUS(status) <= 1;
}

} // namespace

PreviewProcess::PreviewProcess(sd_event* loop)
    : loop_(loop)
    , patience_(loop, [this] { kill(); })
{
}

PreviewProcess::~PreviewProcess()
{
    input_.reset();
    if (socket_ >= 0)
        ::close(socket_);
}

std::unique_ptr<PreviewProcess> PreviewProcess::start(sd_event* loop, const std::string& program,
                                                      Handlers handlers)
{
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0)
        return nullptr;
    std::unique_ptr<PreviewProcess> process(new PreviewProcess(loop));
    process->handlers_ = std::move(handlers);
    process->socket_ = ends[0];
    process->program_ = ChildProgram::start(
        loop, {.command = {program, "--preview-socket", "3"}, .environment = {}, .passedDescriptor = ends[1]},
        [self = process.get()](int status) {
            auto onEnd = self->handlers_.onEnd;
            onEnd(*self, !endedByItself(status));
        });
    ::close(ends[1]);
    sd_event_source* source = nullptr;
    if (!process->program_
        || sd_event_add_io(loop, &source, ends[0], EPOLLIN, &PreviewProcess::readable, process.get()) < 0)
        return nullptr;
    process->input_.reset(source);
    return process;
}

void PreviewProcess::close()
{
    if (send({previewClose}))
        patience_.set(closingTime);
    else
        kill();
}

void PreviewProcess::kill()
{
    program_->signal(SIGKILL);
}

int PreviewProcess::readable(sd_event_source*, int socket, std::uint32_t, void* self)
{
    auto& process = *static_cast<PreviewProcess*>(self);
    auto message = receivePreviewMessage(socket);
    if (!message) { // it is about to end, and is made to
        process.input_.reset();
        process.patience_.set(closingTime);
    } else if (!message->empty()) {
        auto onMessage = process.handlers_.onMessage;
        onMessage(process, *message);
    }
    return 0;
}

} // namespace platform
