// SPDX-License-Identifier: MIT
#include "platform/foundation/NSCache.h"

#include "platform/foundation/BriefMutex_p.h"
#include "platform/foundation/NSCacheQueue_p.h"
#include "platform/foundation/NSCacheWaste_p.h"
#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>
#include <vector>

namespace platform {

namespace {

// No sum of costs overflows it.
__extension__ typedef unsigned __int128 TotalCost;

// Finding out who reads takes some microseconds when other threads do: large caches do it for many objects at a time. With
// one thread it takes little, and memory that is used again soon is still in the processor's cache.
constexpr std::size_t wasteShare = 16;
constexpr std::size_t largestWaste = 256;
constexpr std::size_t largestWasteOfOneThread = 16;

// An object and a key that others may share.
class SharedEntry final : public NSCacheEntry {
public:
    SharedEntry(std::shared_ptr<NSObject> itsObject, std::shared_ptr<NSObject> itsKey)
        : ownKey_(std::move(itsKey))
        , ownObject_(std::move(itsObject))
    {
    }

    bool hasKey(const NSObject& key) const override { return ownKey_->isEqual(key); }
    void report(NSCacheDelegate& delegate, NSCache& cache) const override
    {
        delegate.cacheWillEvictObject(cache, *ownObject_);
    }
    std::shared_ptr<NSObject> object() const override { return ownObject_; }

private:
    const std::shared_ptr<NSObject> ownKey_;
    const std::shared_ptr<NSObject> ownObject_;
};

} // namespace

// Entries that were taken from the queue and are still in the index, and who is to be told of them.
struct NSCache::Departure {
    std::vector<std::unique_ptr<NSCacheEntry>> entries;
    std::shared_ptr<NSCacheDelegate> delegate;
};

struct NSCache::State {
    explicit State(NSCacheIndex& itsIndex)
        : index(itsIndex)
    {
    }

    NSCacheIndex& index; // the cache's: with the mutex
    std::atomic<bool> isObservingPressure = false;

    mutable BriefMutex mutex;
    // guarded by mutex; the queue and the cost are of entries that are not leaving
    std::string name;
    NSCacheQueue queue;
    NSCacheWaste waste;
    NSCacheWaste readWaste; // what somebody was reading when it was to be destroyed
    TotalCost totalCost = 0;
    long countLimit = 0;
    long totalCostLimit = 0;
    std::weak_ptr<NSCacheDelegate> delegate;

    // These require the mutex.
    bool isOverLimits() const
    {
        return (countLimit > 0 && queue.size() > static_cast<std::size_t>(countLimit))
            || (totalCostLimit > 0 && totalCost > static_cast<TotalCost>(totalCostLimit));
    }
    void discard(std::unique_ptr<NSCacheEntry> entry)
    {
        index.remove(*entry);
        waste.add(std::move(entry));
    }
    void depart(std::unique_ptr<NSCacheEntry> entry, Departure& departure)
    {
        if (departure.entries.empty())
            departure.delegate = delegate.lock();
        totalCost -= entry->cost_;
        entry->isLeaving_ = true;
        if (departure.delegate)
            departure.entries.push_back(std::move(entry));
        else
            discard(std::move(entry));
    }
    void trimToLimits(const NSCacheEntry* spared, Departure& departure)
    {
        while (isOverLimits())
            depart(queue.takeVictim(spared), departure);
    }
    void trimToCount(std::size_t count, Departure& departure)
    {
        while (queue.size() > count)
            depart(queue.takeVictim(nullptr), departure);
        if (count == 0)
            queue.forgetHistory();
    }
    void set(std::unique_ptr<NSCacheEntry> added, const NSObject& key, Departure& departure)
    {
        auto& entry = *added;
        totalCost += entry.cost_;
        auto* previous = index.replace(entry, key);
        if (!previous)
            waste.add(index.add(entry));
        if (previous && !previous->isLeaving_) {
            totalCost -= previous->cost_;
            waste.add(queue.replace(*previous, std::move(added)));
        } else {
            // One that is leaving made room: its owner will find it gone.
            queue.add(std::move(added));
        }
        // One that is too dear for the cache must not push the others out first.
        if (totalCostLimit > 0 && entry.cost_ > static_cast<std::uint64_t>(totalCostLimit))
            depart(queue.take(entry), departure);
        trimToLimits(&entry, departure);
    }
    bool isWasteDue() const
    {
        auto share = queue.size() / wasteShare;
        return waste.isMoreThan(std::min(share, largestWasteOfOneThread))
            && (waste.isMoreThan(std::min(share, largestWaste)) || !hasOtherReaders());
    }
    // Gives what is to be destroyed now, with no lock held.
    void takeWaste(NSCacheWaste& taken)
    {
        if (readWaste.isUnread())
            taken.add(readWaste);
        else if (isWasteDue())
            taken.swap(waste);
    }
    void putBack(NSCacheWaste& taken, bool isDestroyed)
    {
        // Empty, it has memory that was reserved.
        (isDestroyed ? waste : readWaste).add(taken);
    }
};

// Does the work with the mutex held, and then without it: reports what departs, and destroys what nobody reads any more.
// This cache may be released meanwhile.
void NSCache::change(const auto& work)
{
    std::unique_lock lock(state_->mutex);
    Departure departure;
    work(*state_, departure);
    std::shared_ptr<NSObject> self;
    if (!departure.entries.empty()) {
        self = weak_from_this().lock();
        for (auto& entry : departure.entries) {
            lock.unlock();
            entry->report(*departure.delegate, *this);
            lock.lock();
            state_->discard(std::move(entry));
        }
    }
    NSCacheWaste waste;
    state_->takeWaste(waste);
    if (waste.isEmpty())
        return lock.unlock(); // before `self`
    if (!self)
        self = weak_from_this().lock(); // the objects may release it too
    lock.unlock();
    bool isDestroyed = waste.destroy();
    lock.lock();
    state_->putBack(waste, isDestroyed);
    lock.unlock();
}

NSCache::NSCache()
    : state_(std::make_unique<State>(index_))
{
}

NSCache::~NSCache() = default;

std::string NSCache::name() const
{
    std::lock_guard lock(state_->mutex);
    return state_->name;
}

void NSCache::setName(std::string name)
{
    std::lock_guard lock(state_->mutex);
    state_->name = std::move(name);
}

long NSCache::countLimit() const
{
    std::lock_guard lock(state_->mutex);
    return state_->countLimit;
}

void NSCache::setCountLimit(long limit)
{
    change([&](State& state, Departure& departure) {
        state.countLimit = limit;
        state.trimToLimits(nullptr, departure);
    });
}

long NSCache::totalCostLimit() const
{
    std::lock_guard lock(state_->mutex);
    return state_->totalCostLimit;
}

void NSCache::setTotalCostLimit(long limit)
{
    change([&](State& state, Departure& departure) {
        state.totalCostLimit = limit;
        state.trimToLimits(nullptr, departure);
    });
}

std::shared_ptr<NSCacheDelegate> NSCache::delegate() const
{
    std::lock_guard lock(state_->mutex);
    return state_->delegate.lock();
}

void NSCache::setDelegate(std::weak_ptr<NSCacheDelegate> delegate)
{
    std::lock_guard lock(state_->mutex);
    state_->delegate.swap(delegate);
}

std::shared_ptr<NSObject> NSCache::object(const NSObject& key) const
{
    std::shared_ptr<NSObject> object;
    readEntry(
        key.hash(), [&](const NSCacheEntry& entry) { return entry.hasKey(key); },
        [&](const NSCacheEntry& entry) { object = entry.object(); });
    return object;
}

void NSCache::setObject(std::shared_ptr<NSObject> object, std::shared_ptr<NSObject> key, long cost)
{
    precondition(object && key, "a cache holds objects under keys, and was given none");
    auto& keyOfEntry = *key;
    setEntry(std::make_unique<SharedEntry>(std::move(object), std::move(key)), keyOfEntry, cost);
}

void NSCache::setEntry(std::unique_ptr<NSCacheEntry> entry, const NSObject& key, long cost)
{
    precondition(entry != nullptr, "a cache holds entries, and was given none");
    if (!state_->isObservingPressure.load(std::memory_order_relaxed)
        && !state_->isObservingPressure.exchange(true, std::memory_order_relaxed)) {
        if (auto self = std::static_pointer_cast<NSCache>(weak_from_this().lock()))
            observeMemoryPressure(self);
    }
    entry->hash_ = mixedHash(key.hash());
    entry->cost_ = cost > 0 ? static_cast<std::uint64_t>(cost) : 0;
    change([&](State& state, Departure& departure) { state.set(std::move(entry), key, departure); });
}

void NSCache::removeObject(const NSObject& key)
{
    auto hash = mixedHash(key.hash());
    change([&](State& state, Departure& departure) {
        auto* entry = state.index.find(hash, key);
        if (entry && entry->isLeaving_)
            state.index.remove(*entry); // reported by its owner
        else if (entry)
            state.depart(state.queue.take(*entry), departure);
    });
}

void NSCache::removeAllObjects()
{
    auto self = weak_from_this().lock(); // a report may release this cache
    change([](State& state, Departure& departure) { state.trimToCount(0, departure); });
    // Entries that another call, or this one's caller, is just seeing off must not be found any more either.
    std::lock_guard lock(state_->mutex);
    state_->index.removeLeaving();
}

void NSCache::handleMemoryPressure(MemoryPressureLevel level)
{
    change([&](State& state, Departure& departure) {
        state.trimToCount(level == MemoryPressureLevel::critical ? 0 : state.queue.size() / 2, departure);
    });
}

} // namespace platform
