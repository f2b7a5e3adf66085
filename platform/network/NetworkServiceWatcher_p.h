// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace platform {

// Asks NetworkManager, on the system bus, whether the connection is metered.
struct NetworkServiceWatcher {
    // Calls back on the network thread: once soon, with false when there is no service or it does not answer in a second,
    // and again at each change.
    static void start(std::function<void(bool isMetered)> receive);
};

} // namespace platform
