// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/MemoryPressure.h"
#include "platform/foundation/NSCacheEntry.h"
#include "platform/foundation/NSCacheIndex.h"
#include "platform/foundation/NSObject.h"
#include "platform/foundation/ReadSection.h"

#include <memory>
#include <string>

namespace platform {

class NSCache;

// Is told which objects leave a cache.
class NSCacheDelegate {
public:
    virtual ~NSCacheDelegate() = default;

    // Comes once for each entry, before it leaves: a lookup still finds it. Reasons are the limits, memory pressure,
    // removeObject and removeAllObjects. Replacing an entry's object is none, nor is the end of the cache. Runs on the
    // thread that made the entry leave, with no lock held: any call of the cache is allowed, and what it does to the
    // leaving entry holds (one that is set again stays). The object is lent for the call.
    virtual void cacheWillEvictObject(NSCache& cache, NSObject& object) = 0;
};

// Objects under keys, as many as the limits and the system's memory allow. Which entry goes first is decided by how
// often and how lately it was looked up (docs/decisions/006-cache-policy.md); the entry set last goes last. The limits
// hold whenever no call is under way. An object that left is released soon: no more of them wait for the readers of other
// threads than a sixteenth of the entries. Trims itself when the system runs short of memory, if it was made by
// std::make_shared. Any thread, any mix of calls; a lookup waits for nobody.
class NSCache : public NSObject, public MemoryPressureObserver {
public:
    NSCache();
    ~NSCache() override;

    // Names the cache to people; empty at first.
    std::string name() const;
    void setName(std::string name);

    // How many entries, and how much cost in all; 0 (the default) or less is no limit. A lower limit trims at once.
    long countLimit() const;
    void setCountLimit(long limit);
    long totalCostLimit() const;
    void setTotalCostLimit(long limit);

    std::shared_ptr<NSCacheDelegate> delegate() const;
    void setDelegate(std::weak_ptr<NSCacheDelegate> delegate);

    // The object under a key that is equal to this one; null when there is none, or when it cannot be shared (see
    // NSCacheEntry). The key is not kept.
    std::shared_ptr<NSObject> object(const NSObject& key) const;
    // Calls `read` with the entry that has this hash and that `matches` says yes to, which is cheaper than sharing the
    // object; gives false when there is none. No lock is held. What leaves meanwhile is destroyed later: `read` should be
    // brief, as a copy is.
    template <class Matches, class Read>
    bool readEntry(std::size_t hash, const Matches& matches, const Read& read) const
    {
        ReadSection section;
        auto* entry = index_.find(mixedHash(hash), matches);
        if (!entry)
            return false;
        entry->noteVisit();
        read(*entry);
        return true;
    }
    // Keeps both, in the place of the object under an equal key and of that key, if there is one. The key must not change
    // its hash. A negative cost counts as 0; an object that costs more than the whole limit leaves at once and takes
    // nothing else with it. Requires: neither is null.
    void setObject(std::shared_ptr<NSObject> object, std::shared_ptr<NSObject> key, long cost = 0);
    // The same with a key and an object that are in one piece; `key` is equal to the entry's and lent for the call.
    void setEntry(std::unique_ptr<NSCacheEntry> entry, const NSObject& key, long cost = 0);
    // When it returns, the object that was there is found no more.
    void removeObject(const NSObject& key);
    void removeAllObjects();

    // A warning takes the less useful half of the entries, a critical one all.
    void handleMemoryPressure(MemoryPressureLevel level) override;

private:
    struct State;
    struct Departure;

    void change(const auto& work);

    NSCacheIndex index_;                 // readers: without a lock
    const std::unique_ptr<State> state_; // its own lock
};

} // namespace platform
