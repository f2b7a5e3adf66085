// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>

namespace platform {

// A mutex for work of some dozens of nanoseconds: who finds it taken looks again for a while, since sleeping and being
// woken takes a hundred times as long as the work, and sleeps only when its holder was suspended.
class BriefMutex {
public:
    BriefMutex() = default;
    BriefMutex(const BriefMutex&) = delete; // threads wait at its address
    BriefMutex& operator=(const BriefMutex&) = delete;

    void lock()
    {
        int expected = free;
        if (!state_.compare_exchange_strong(expected, taken, std::memory_order_acquire,
                                            std::memory_order_relaxed))
            wait();
    }
    void unlock()
    {
        if (state_.exchange(free, std::memory_order_release) == awaited)
            state_.notify_one();
    }

private:
    static constexpr int free = 0;
    static constexpr int taken = 1;
    static constexpr int awaited = 2; // taken, and somebody may sleep
    static constexpr int patience = 200;

    [[gnu::noinline]] void wait()
    {
        for (int i = 0; i < patience; ++i) {
            relax();
            int expected = free;
            if (state_.load(std::memory_order_relaxed) == free
                && state_.compare_exchange_strong(expected, taken, std::memory_order_acquire,
                                                  std::memory_order_relaxed))
                return;
        }
        while (state_.exchange(awaited, std::memory_order_acquire) != free)
            state_.wait(awaited, std::memory_order_relaxed);
    }

    static void relax()
    {
#if defined(__x86_64__)
        __builtin_ia32_pause();
#elif defined(__aarch64__)
        asm volatile("yield");
#endif
    }

    std::atomic<int> state_ = free;
};

} // namespace platform
