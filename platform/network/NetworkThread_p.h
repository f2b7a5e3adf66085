// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

class QNetworkAccessManager;

namespace platform {

// The thread on which everything is loaded: one in the process, made at the first need, with an event loop of the network
// library's. It is stopped when the process leaves main; work given after that never runs.
class NetworkThread {
public:
    using Work = std::move_only_function<void()>;

    static NetworkThread& shared();

    NetworkThread(const NetworkThread&) = delete; // others hold its address
    NetworkThread& operator=(const NetworkThread&) = delete;

    // Runs `work` on the thread, in the order given. Any thread.
    void perform(Work work);

    void assertIsCurrent() const;

private:
    struct State;
    struct StopAtExit;

    NetworkThread();
    ~NetworkThread() = delete;
    void stop();

    std::unique_ptr<State> state_;
};

// Loads over connections of its own, with no cache and the environment's proxies.
// The network thread only.
std::shared_ptr<QNetworkAccessManager> makeNetworkAccess();

} // namespace platform
