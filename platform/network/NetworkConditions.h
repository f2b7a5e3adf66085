// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Token.h"

#include <functional>
#include <memory>

namespace platform {

// What the desktop's network service says about the connection. Asked for at the first need; a desktop without such a
// service has a connection that is not metered. Any thread.
class NetworkConditions {
public:
    static NetworkConditions& shared();

    NetworkConditions(const NetworkConditions&) = delete; // others hold its address
    NetworkConditions& operator=(const NetworkConditions&) = delete;

    // Calls back once, on the network thread or at once, as soon as it is known whether what is loaded now is paid for by its
    // amount.
    void whenKnown(std::function<void(bool isMetered)> receive);
    // Calls back at each change, on any thread, until the token is cancelled; a call may be under way then.
    [[nodiscard]] Token observe(std::function<void(bool isMetered)> onChange);

private:
    friend class NetworkConditionsOverride;
    friend struct NetworkServiceWatcher;
    struct State;

    NetworkConditions();
    ~NetworkConditions() = delete;
    void set(bool isMetered, bool isOverride);

    std::unique_ptr<State> state_;
};

// Says what the network service would say, while it lives. One at a time.
class NetworkConditionsOverride {
public:
    explicit NetworkConditionsOverride(bool isMetered);
    ~NetworkConditionsOverride();
    NetworkConditionsOverride(const NetworkConditionsOverride&) = delete; // its lifetime is its meaning
    NetworkConditionsOverride& operator=(const NetworkConditionsOverride&) = delete;

    void setMetered(bool isMetered);
};

} // namespace platform
