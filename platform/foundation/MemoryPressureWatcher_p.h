// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/MemoryPressure.h"

#include <functional>
#include <optional>
#include <thread>

namespace platform {

// An open descriptor; -1 is none.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number)
        : number_(number)
    {
    }
    Descriptor(Descriptor&& other) noexcept;
    Descriptor& operator=(Descriptor&&) = delete; // nothing needs it
    ~Descriptor();

    int number() const { return number_; }
    bool isOpen() const { return number_ >= 0; }

private:
    int number_ = -1;
};

// What the kernel says urgently (POLLPRI) when work stalls for want of memory.
struct MemoryPressureEvents {
    Descriptor warning;
    Descriptor critical;
};

// The kernel's pressure stall information: a warning when some work stalled for a tenth of two seconds, critical when all
// did for a twentieth. A descriptor is not open where the kernel has no such thing or does not let us.
MemoryPressureEvents openMemoryPressureEvents();

// Sleeps on a thread of its own until an event comes, and reports it there. Destroying it ends the thread.
class MemoryPressureWatcher {
public:
    MemoryPressureWatcher(MemoryPressureEvents events, std::function<void(MemoryPressureLevel)> report);
    ~MemoryPressureWatcher();

    bool isWatching() const { return thread_.joinable(); }

private:
    void watch() const;

    // fixed after construction
    MemoryPressureEvents events_;
    std::function<void(MemoryPressureLevel)> report_;
    Descriptor stop_;
    std::thread thread_;
};

} // namespace platform
