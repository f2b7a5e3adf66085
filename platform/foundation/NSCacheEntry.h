// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSObject.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace platform {

class NSCache;
class NSCacheDelegate;

// An object under its key, as a cache keeps them. A typed face of a cache derives its own, with key and value as members,
// and so has all in one piece of memory. The cache owns it and destroys it when nobody can be reading it; key and object
// never change while it lives.
class NSCacheEntry {
public:
    NSCacheEntry() = default;
    NSCacheEntry(const NSCacheEntry&) = delete; // the cache knows it by its address
    NSCacheEntry& operator=(const NSCacheEntry&) = delete;
    virtual ~NSCacheEntry() = default;

    virtual bool hasKey(const NSObject& key) const = 0;
    // Tells the delegate that its object is about to leave.
    virtual void report(NSCacheDelegate& delegate, NSCache& cache) const = 0;
    // The object for somebody who wants to keep it; null when it cannot outlive the entry.
    virtual std::shared_ptr<NSObject> object() const { return nullptr; }

private:
    friend class NSCache;
    friend class NSCacheIndex;
    friend class NSCachePlace;
    friend class NSCacheQueue;
    friend class NSCacheRow;

    static constexpr std::uint8_t maximumVisits = 3;
    enum class Segment : std::uint8_t { none, probation, main };

    void noteVisit()
    {
        // Visits of two threads at once may count as one. A count that is full is not written, so that entries in
        // great demand stay in every processor's cache.
        if (auto count = visits_.load(std::memory_order_relaxed); count < maximumVisits)
            visits_.store(count + 1, std::memory_order_relaxed);
    }

    std::atomic<std::uint8_t> visits_ = 0; // any thread

    // guarded by the cache's mutex
    bool isIndexed_ = false;
    bool isLeaving_ = false; // no longer in the queue; belongs to whoever sees it off
    Segment segment_ = Segment::none;
    std::uint32_t place_ = 0; // in its row
    std::size_t hash_ = 0;    // mixed; fixed once it is in the cache
    std::uint64_t cost_ = 0;
};

} // namespace platform
