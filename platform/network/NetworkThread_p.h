// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Token.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace platform {

class DispatchQueue;
class HTTPConnections;

// A descriptor that the network thread looks after besides its connections. Network thread only.
class NetworkDescriptor {
public:
    virtual ~NetworkDescriptor();

    // Negative: there is no more to look after.
    virtual int descriptor() = 0;
    // What to wait for, as poll() calls it.
    virtual short events() = 0;
    // When handle() is called at the latest.
    virtual std::optional<std::chrono::steady_clock::time_point> deadline() = 0;
    virtual void handle() = 0;
};

// The thread on which everything is loaded: one in the process, made at the first need. It sleeps until work, a timer or a
// connection wants it. It is stopped when the process leaves main; work given after that never runs.
class NetworkThread {
public:
    using Work = std::move_only_function<void()>;
    using Clock = std::chrono::steady_clock;

    static NetworkThread& shared();

    NetworkThread(const NetworkThread&) = delete; // others hold its address
    NetworkThread& operator=(const NetworkThread&) = delete;

    // Runs `work` on the thread, in the order given. Any thread.
    void perform(Work work);

    void assertIsCurrent() const;

    // The rest is for the thread itself.
    HTTPConnections& connections();
    // Runs `work` once, `delay` from now, unless the token is cancelled first.
    [[nodiscard]] Token after(Clock::duration delay, Work work);
    void lookAfter(std::shared_ptr<NetworkDescriptor> descriptor);
    // Gives `work` to the queue when all that is to be done now is done: what many connections bring at once wakes it once.
    void tell(const std::shared_ptr<DispatchQueue>& queue, Work work);

private:
    struct State;
    struct StopAtExit;

    NetworkThread();
    ~NetworkThread() = delete;
    void run();
    void stop();

    std::unique_ptr<State> state_;
};

} // namespace platform
