// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

namespace platform {

enum class MemoryPressureLevel {
    warning, // some work waits for memory: give back what is least useful
    critical // all work waits for memory: give back what can be made again
};

class MemoryPressureObserver {
public:
    virtual ~MemoryPressureObserver() = default;
    // Comes on any thread, possibly on several at once.
    virtual void handleMemoryPressure(MemoryPressureLevel level) = 0;
};

// Tells the observer, for as long as it lives, when memory runs short. The first call starts one thread for the whole
// process, which sleeps until the kernel reports stalls; where the kernel cannot, only reportMemoryPressure is heard.
// Any thread.
void observeMemoryPressure(std::weak_ptr<MemoryPressureObserver> observer);

// Tells all observers, before it returns: for programs that learn of pressure in another way. Any thread.
void reportMemoryPressure(MemoryPressureLevel level);

} // namespace platform
