// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>

namespace platform {

// A point in time. What was taken out of reach before it may be destroyed once no reader from before it is left.
using ReadEpoch = std::uint64_t;

struct alignas(64) Reader {
    std::atomic<ReadEpoch> epoch = 0; // in which its section began; 0: it does not read
    std::atomic<bool> isTaken = true; // by a thread
    unsigned depth = 0;               // that thread's
    Reader* next = nullptr;           // fixed once it is in the list
};

// While one lives, nothing that its thread can reach through shared pointers is destroyed, provided that whoever takes
// things out of reach asks the two functions below before destroying them. Takes no lock and writes to no memory that
// another thread reads often, so readers on many processors do not slow each other. Nests. Bound to its thread.
class ReadSection {
public:
    ReadSection()
        : reader_(own ? *own : become())
    {
        if (reader_.depth++ > 0)
            return;
        reader_.epoch.store(currentEpoch.load(std::memory_order_acquire), std::memory_order_release);
        if (readersPay.load(std::memory_order_relaxed))
            orderMemory();
        else
            std::atomic_signal_fence(std::memory_order_seq_cst);
    }
    ~ReadSection()
    {
        if (--reader_.depth == 0)
            reader_.epoch.store(0, std::memory_order_release);
    }
    ReadSection(const ReadSection&) = delete; // counts its thread in and out
    ReadSection& operator=(const ReadSection&) = delete;

private:
    friend std::optional<ReadEpoch> endReadEpoch();
    friend bool hasOtherReaders();

    static Reader& become();
    static void orderMemory();
    static void leave(void* reader);

    static std::atomic<ReadEpoch> currentEpoch;
    static std::atomic<bool> readersPay;
    static constinit thread_local Reader* own;

    Reader& reader_;
};

// Begins a new epoch and gives the one that ended; nothing when its readers cannot be told apart, which the next call
// makes good. Costs the readers little and the caller, when there are other readers, a call into the kernel.
std::optional<ReadEpoch> endReadEpoch();
// Whether another living thread has ever read.
bool hasOtherReaders();
// Whether all read sections that began in `epoch` or before have ended; the calling thread's own count too.
bool hasNoReadersSince(ReadEpoch epoch);

} // namespace platform
