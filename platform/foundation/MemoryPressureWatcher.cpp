// SPDX-License-Identifier: MIT
#include "platform/foundation/MemoryPressureWatcher_p.h"

#include "platform/foundation/Logger.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace platform {

namespace {

// A window of two seconds is the shortest that the kernel grants to everybody.
constexpr std::string_view warningTrigger = "some 200000 2000000";
constexpr std::string_view criticalTrigger = "full 100000 2000000";

Descriptor openTrigger(std::string_view trigger)
{
    Descriptor file(::open("/proc/pressure/memory", O_RDWR | O_NONBLOCK | O_CLOEXEC));
    if (!file.isOpen())
        return file;
    std::string command(trigger); // the kernel wants its zero byte too
    auto written = ::write(file.number(), command.c_str(), command.size() + 1);
    return written == static_cast<ssize_t>(command.size() + 1) ? std::move(file) : Descriptor();
}

// Signals are for the program's own threads.
class SignalsBlocked {
public:
    SignalsBlocked()
    {
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &previous_);
    }
    ~SignalsBlocked() { ::pthread_sigmask(SIG_SETMASK, &previous_, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete; // its lifetime is its meaning
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t previous_;
};

} // namespace

Descriptor::Descriptor(Descriptor&& other) noexcept
    : number_(std::exchange(other.number_, -1))
{
}

Descriptor::~Descriptor()
{
    if (number_ >= 0)
        ::close(number_);
}

MemoryPressureEvents openMemoryPressureEvents()
{
    return {openTrigger(warningTrigger), openTrigger(criticalTrigger)};
}

MemoryPressureWatcher::MemoryPressureWatcher(MemoryPressureEvents events,
                                             std::function<void(MemoryPressureLevel)> report)
    : events_(std::move(events))
    , report_(std::move(report))
    , stop_(::eventfd(0, EFD_CLOEXEC))
{
    if (!stop_.isOpen() || (!events_.warning.isOpen() && !events_.critical.isOpen()))
        return;
    SignalsBlocked blocked; // inherited by the thread
    try {
        thread_ = std::thread([this] { watch(); });
    } catch (const std::system_error& error) {
        Logger("org.zelk.platform", "memory").info("Memory pressure goes unheard: " + error.code().message());
    }
}

MemoryPressureWatcher::~MemoryPressureWatcher()
{
    if (!thread_.joinable())
        return;
    std::uint64_t one = 1;
    // An eventfd that nobody wrote to has room for one.
    [[maybe_unused]] auto written = ::write(stop_.number(), &one, sizeof one);
    thread_.join();
}

void MemoryPressureWatcher::watch() const
{
    std::array<pollfd, 3> waited{pollfd{stop_.number(), POLLIN, 0},
                                 pollfd{events_.critical.number(), POLLPRI, 0},
                                 pollfd{events_.warning.number(), POLLPRI, 0}};
    auto& [stop, critical, warning] = waited;
    while (critical.fd >= 0 || warning.fd >= 0) {
        if (::poll(waited.data(), waited.size(), -1) < 0) {
            if (errno == EINTR)
                continue;
            return;
        }
        if (stop.revents)
            return;
        // Urgent news count even beside an end; one report a turn, the worse one.
        if (critical.revents & POLLPRI)
            report_(MemoryPressureLevel::critical);
        else if (warning.revents & POLLPRI)
            report_(MemoryPressureLevel::warning);
        for (auto* event : {&critical, &warning}) {
            if (event->revents & (POLLERR | POLLHUP | POLLNVAL))
                event->fd = -1; // the source is gone; poll skips it
        }
    }
}

} // namespace platform
