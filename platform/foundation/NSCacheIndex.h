// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSCacheEntry.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace platform {

// What a place of the table holds: an entry with sixteen bits of its hash, so that a search looks at few entries that it
// does not want; nothing; or the mark of an entry that went, where a search has to go on and a new entry may come.
class NSCachePlace {
public:
    NSCachePlace() = default;
    explicit NSCachePlace(NSCacheEntry& entry)
        : bits_(reinterpret_cast<std::uint64_t>(&entry) | (entry.hash_ & tagMask))
    {
    }
    static NSCachePlace abandoned() { return NSCachePlace(1); }

    bool isEmpty() const { return bits_ == 0; }
    bool isAbandoned() const { return bits_ == 1; }
    bool holdsEntry() const { return bits_ > 1; }
    bool mayHold(std::size_t hash) const { return ((bits_ ^ hash) & tagMask) == 0 && holdsEntry(); }
    NSCacheEntry& entry() const { return *reinterpret_cast<NSCacheEntry*>(bits_ & ~tagMask); }

    bool operator==(const NSCachePlace&) const = default;

private:
    // Addresses of a program have 48 bits unless it asks for more.
    static constexpr std::uint64_t tagMask = 0xFFFF'0000'0000'0000U;

    explicit NSCachePlace(std::uint64_t bits)
        : bits_(bits)
    {
    }

    std::uint64_t bits_ = 0;
};

// Places for entries, probed one after the other; one piece of memory, to be found with one load less.
class NSCacheTable {
public:
    using Place = std::atomic<NSCachePlace>;

    static std::unique_ptr<NSCacheTable> make(std::size_t capacity); // a power of two
    static void operator delete(void* memory);

    std::size_t capacity() const { return mask_ + 1; }
    Place& place(std::size_t number) { return places()[number & mask_]; }

private:
    explicit NSCacheTable(std::size_t capacity)
        : mask_(capacity - 1)
    {
        std::uninitialized_value_construct_n(places(), capacity);
    }
    Place* places() { return reinterpret_cast<Place*>(this + 1); }

    const std::size_t mask_;
    // the places follow
};

// The entries of a cache by key. Entries belong to the queue or to who takes them from it. `find` is for readers in a
// ReadSection and for the holder of the cache's mutex; all else is for the latter. A reader sees an entry that is there
// all the time, and may or may not see one that comes or goes meanwhile.
class NSCacheIndex {
public:
    NSCacheIndex();

    // Null when there is none. `matches` compares the key of an entry whose hash may be this one.
    template <class Matches>
    NSCacheEntry* find(std::size_t hash, const Matches& matches) const
    {
        auto place = findPlace(hash, matches).second;
        return place.isEmpty() ? nullptr : &place.entry();
    }
    NSCacheEntry* find(std::size_t hash, const NSObject& key) const
    {
        return find(hash, [&](const NSCacheEntry& entry) { return entry.hasKey(key); });
    }
    // Gives the table that was outgrown, which readers may still be in; mostly null. Requires: no entry under an equal
    // key.
    [[nodiscard]] std::unique_ptr<NSCacheTable> add(NSCacheEntry& entry);
    // Does nothing when it is gone already.
    void remove(NSCacheEntry& entry);
    // Puts one in the place of the entry under an equal key, and gives that; does nothing and gives null when there is
    // none.
    NSCacheEntry* replace(NSCacheEntry& successor, const NSObject& key);
    void removeLeaving();

private:
    // The place with its entry; one that is empty when there is none.
    template <class Matches>
    std::pair<NSCacheTable::Place*, NSCachePlace> findPlace(std::size_t hash, const Matches& matches) const
    {
        auto& table = *visibleTable_.load(std::memory_order_acquire);
        for (auto number = hash;; ++number) {
            auto& atomic = table.place(number);
            auto place = atomic.load(std::memory_order_acquire);
            if (place.isEmpty() || (place.mayHold(hash) && matches(place.entry())))
                return {&atomic, place};
        }
    }
    NSCacheTable::Place& placeOf(NSCacheEntry& entry, std::size_t& number) const;
    void put(NSCacheEntry& entry);
    std::unique_ptr<NSCacheTable> rebuild();

    std::unique_ptr<NSCacheTable> table_;
    std::atomic<NSCacheTable*> visibleTable_; // table_, for readers
    // apart from what readers look at
    alignas(64) std::size_t entryCount_ = 0;
    std::size_t usedCount_ = 0; // places that are not empty: with entries, or abandoned
};

// A hash whose bits are all as good as random. Hashes of numbers often are the numbers.
inline std::size_t mixedHash(std::size_t hash)
{
    std::uint64_t bits = hash + 0x9E3779B97F4A7C15U;
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9U;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBU;
    return bits ^ (bits >> 31);
}

} // namespace platform
