// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace platform {

// How code below the run loop reaches the main thread. Any thread.
using MainThreadWork = std::move_only_function<void()>;

// Said once, by the main thread's loop when it is made: it takes work from any thread and runs it later.
void setMainThreadExecutor(void (*execute)(MainThreadWork));

// Gives `work` to the main thread's loop. False while the process has no such loop: `work` is untouched then.
bool performOnMainThread(MainThreadWork& work);

} // namespace platform
