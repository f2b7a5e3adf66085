// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <functional>
#include <memory>

namespace platform {

// Work that can be called off until it starts. Given to a queue it runs there once per time given.
// Any thread; two runs at the same time only if it is given to two queues.
class DispatchWorkItem {
public:
    explicit DispatchWorkItem(std::function<void()> work);
    DispatchWorkItem(const DispatchWorkItem&) = delete; // cancelling a copy would cancel nothing
    DispatchWorkItem& operator=(const DispatchWorkItem&) = delete;

    // Runs the work on the calling thread, unless it is cancelled.
    void perform();

    // Runs that have not started will do nothing; a run in progress may look at isCancelled(). The work
    // itself is released with the item.
    void cancel();
    bool isCancelled() const;

private:
    // fixed after construction
    std::function<void()> work_;
    std::atomic<bool> isCancelled_ = false;
};

} // namespace platform
