// SPDX-License-Identifier: MIT
#include "platform/foundation/NSCacheIndex.h"

#include <algorithm>
#include <bit>
#include <new>
#include <utility>

namespace platform {

namespace {

constexpr std::size_t smallestCapacity = 16;

static_assert(sizeof(void*) == 8 && NSCacheTable::Place::is_always_lock_free
              && sizeof(NSCacheTable) % alignof(NSCacheTable::Place) == 0);

} // namespace

std::unique_ptr<NSCacheTable> NSCacheTable::make(std::size_t capacity)
{
    auto* memory = ::operator new(sizeof(NSCacheTable) + capacity * sizeof(Place));
    return std::unique_ptr<NSCacheTable>(new (memory) NSCacheTable(capacity));
}

void NSCacheTable::operator delete(void* memory)
{
    ::operator delete(memory);
}

NSCacheIndex::NSCacheIndex()
    : table_(NSCacheTable::make(smallestCapacity))
    , visibleTable_(table_.get())
{
}

std::unique_ptr<NSCacheTable> NSCacheIndex::add(NSCacheEntry& entry)
{
    std::unique_ptr<NSCacheTable> outgrown;
    if ((usedCount_ + 1) * 10 > table_->capacity() * 7) // searches must end, and soon
        outgrown = rebuild();
    put(entry);
    entry.isIndexed_ = true;
    ++entryCount_;
    return outgrown;
}

void NSCacheIndex::put(NSCacheEntry& entry)
{
    auto number = entry.hash_;
    auto there = table_->place(number).load(std::memory_order_relaxed);
    while (there.holdsEntry())
        there = table_->place(++number).load(std::memory_order_relaxed);
    usedCount_ += there.isEmpty() ? 1 : 0;
    table_->place(number).store(NSCachePlace(entry), std::memory_order_release);
}

NSCacheTable::Place& NSCacheIndex::placeOf(NSCacheEntry& entry, std::size_t& number) const
{
    NSCachePlace wanted(entry);
    number = entry.hash_;
    while (table_->place(number).load(std::memory_order_relaxed) != wanted)
        ++number;
    return table_->place(number);
}

void NSCacheIndex::remove(NSCacheEntry& entry)
{
    if (!entry.isIndexed_)
        return;
    entry.isIndexed_ = false;
    --entryCount_;
    std::size_t number;
    placeOf(entry, number).store(NSCachePlace::abandoned(), std::memory_order_release);
    // At the end of a run nothing has to go on: abandoned places are empty again.
    if (!table_->place(number + 1).load(std::memory_order_relaxed).isEmpty())
        return;
    while (table_->place(number).load(std::memory_order_relaxed).isAbandoned()) {
        table_->place(number--).store(NSCachePlace(), std::memory_order_release);
        --usedCount_;
    }
}

NSCacheEntry* NSCacheIndex::replace(NSCacheEntry& successor, const NSObject& key)
{
    auto [atomic, place] =
        findPlace(successor.hash_, [&](const NSCacheEntry& entry) { return entry.hasKey(key); });
    if (place.isEmpty())
        return nullptr;
    atomic->store(NSCachePlace(successor), std::memory_order_release);
    place.entry().isIndexed_ = false;
    successor.isIndexed_ = true;
    return &place.entry();
}

void NSCacheIndex::removeLeaving()
{
    for (std::size_t number = 0; number < table_->capacity(); ++number) {
        auto place = table_->place(number).load(std::memory_order_relaxed);
        if (place.holdsEntry() && place.entry().isLeaving_)
            remove(place.entry());
    }
}

std::unique_ptr<NSCacheTable> NSCacheIndex::rebuild()
{
    auto capacity = std::max(std::bit_ceil(entryCount_ * 2 + 1), smallestCapacity);
    auto old = std::exchange(table_, NSCacheTable::make(capacity));
    usedCount_ = 0;
    for (std::size_t number = 0; number < old->capacity(); ++number) {
        auto place = old->place(number).load(std::memory_order_relaxed);
        if (place.holdsEntry())
            put(place.entry());
    }
    visibleTable_.store(table_.get(), std::memory_order_release);
    return old;
}

} // namespace platform
