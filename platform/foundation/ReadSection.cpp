// SPDX-License-Identifier: MIT
#include "platform/foundation/ReadSection.h"

#include "platform/foundation/Precondition.h"

#include <linux/membarrier.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace platform {

// A reader says that it reads by a store of its own, and then loads what it reads. The processor may do the load first;
// then a writer that looks for readers after taking things away could miss one. Ordering the two costs a reader as much
// as a lock, so the writer, who comes seldom, has the kernel order them on all processors at once (membarrier). Where the
// kernel does not, readers pay.
constinit std::atomic<ReadEpoch> ReadSection::currentEpoch = 1;
constinit std::atomic<bool> ReadSection::readersPay = true;
constinit thread_local Reader* ReadSection::own = nullptr;

namespace {

constinit std::atomic<Reader*> firstReader =
    nullptr; // readers stay for the life of the process; threads reuse them

int membarrier(int command)
{
    return static_cast<int>(::syscall(SYS_membarrier, command, 0U, 0));
}

Reader& takeReader()
{
    for (auto* reader = firstReader.load(std::memory_order_acquire); reader; reader = reader->next) {
        if (!reader->isTaken.load(std::memory_order_relaxed)
            && !reader->isTaken.exchange(true, std::memory_order_acquire))
            return *reader;
    }
    auto* reader = new Reader; // never deleted
    reader->next = firstReader.load(std::memory_order_relaxed);
    while (!firstReader.compare_exchange_weak(reader->next, reader, std::memory_order_acq_rel,
                                              std::memory_order_acquire)) { }
    return *reader;
}

// Settles who pays, before the first reader and before the first writer.
void prepare(std::atomic<bool>& readersPay)
{
    static const bool kernelOrders = [&] {
        bool does = membarrier(MEMBARRIER_CMD_REGISTER_PRIVATE_EXPEDITED) == 0;
        readersPay.store(!does, std::memory_order_relaxed);
        return does;
    }();
    static_cast<void>(kernelOrders);
}

} // namespace

void ReadSection::orderMemory()
{
#ifdef __SANITIZE_THREAD__
    // The sanitizer knows no fences; this is one on the processors it runs on.
    static std::atomic<int> dummy = 0;
    dummy.exchange(1, std::memory_order_seq_cst);
#else
    std::atomic_thread_fence(std::memory_order_seq_cst);
#endif
}

void ReadSection::leave(void* reader)
{
    own = nullptr;
    static_cast<Reader*>(reader)->isTaken.store(false, std::memory_order_release);
}

Reader& ReadSection::become()
{
    prepare(readersPay);
    // A thread-specific value is let go after all thread-local objects, whose ends may read too.
    static const pthread_key_t key = [] {
        pthread_key_t made;
        precondition(::pthread_key_create(&made, leave) == 0, "no thread-specific value is left");
        return made;
    }();
    own = &takeReader();
    orderMemory(); // a writer that does not see this reader yet is seen whole by it
    ::pthread_setspecific(key, own);
    return *own;
}

std::optional<ReadEpoch> endReadEpoch()
{
    prepare(ReadSection::readersPay);
    auto ended = ReadSection::currentEpoch.fetch_add(1, std::memory_order_acq_rel);
    ReadSection::orderMemory();
    if (ReadSection::readersPay.load(std::memory_order_relaxed) || !hasOtherReaders())
        return ended;
    if (membarrier(MEMBARRIER_CMD_PRIVATE_EXPEDITED) == 0)
        return ended;
    // A sandbox that was put up later forbids it: the readers of today are unordered, those of the next epoch pay.
    ReadSection::readersPay.store(true, std::memory_order_seq_cst);
    return std::nullopt;
}

bool hasOtherReaders()
{
    for (auto* reader = firstReader.load(std::memory_order_acquire); reader; reader = reader->next) {
        if (reader != ReadSection::own && reader->isTaken.load(std::memory_order_acquire))
            return true;
    }
    return false;
}

bool hasNoReadersSince(ReadEpoch epoch)
{
    for (auto* reader = firstReader.load(std::memory_order_acquire); reader; reader = reader->next) {
        auto began = reader->epoch.load(std::memory_order_acquire);
        if (began != 0 && began <= epoch)
            return false;
    }
    return true;
}

} // namespace platform
