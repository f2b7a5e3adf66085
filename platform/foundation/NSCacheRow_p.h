// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSCacheEntry.h"
#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace platform {

// Entries in a row, which owns them: in at one end, out at the other. A ring of addresses, so that taking one out or
// putting another in its place touches no other entry; what is taken from the middle leaves a gap.
class NSCacheRow {
public:
    NSCacheRow() = default;
    NSCacheRow(const NSCacheRow&) = delete; // entries know their places in it
    NSCacheRow& operator=(const NSCacheRow&) = delete;
    ~NSCacheRow()
    {
        while (takeOldest()) { }
    }

    std::size_t size() const { return size_; }
    bool isEmpty() const { return size_ == 0; }

    void add(std::unique_ptr<NSCacheEntry> entry)
    {
        if (end_ - begin_ == ring_.size())
            makeRoom();
        entry->place_ = static_cast<std::uint32_t>(end_ & (ring_.size() - 1));
        at(end_++) = entry.release();
        ++size_;
    }
    std::unique_ptr<NSCacheEntry> take(NSCacheEntry& entry)
    {
        --size_;
        return std::unique_ptr<NSCacheEntry>(std::exchange(at(entry.place_), nullptr));
    }
    // Null when it is empty.
    std::unique_ptr<NSCacheEntry> takeOldest()
    {
        while (begin_ != end_) {
            if (auto* entry = at(begin_++)) {
                --size_;
                return std::unique_ptr<NSCacheEntry>(entry);
            }
        }
        return nullptr;
    }
    // Puts one in the place of another.
    std::unique_ptr<NSCacheEntry> replace(NSCacheEntry& entry, std::unique_ptr<NSCacheEntry> successor)
    {
        successor->place_ = entry.place_;
        return std::unique_ptr<NSCacheEntry>(std::exchange(at(entry.place_), successor.release()));
    }

private:
    NSCacheEntry*& at(std::uint64_t place) { return ring_[place & (ring_.size() - 1)]; }

    // Closes the gaps; doubles the ring unless they were half of it, so that an entry is seldom moved.
    void makeRoom()
    {
        std::vector<NSCacheEntry*> old(std::bit_ceil(std::max<std::size_t>(size_ * 2, 8)));
        old.swap(ring_);
        precondition(ring_.size() <= std::size_t(1) << 32, "a cache has no room for more entries");
        std::uint32_t place = 0;
        for (auto from = begin_; from != end_; ++from) {
            auto* entry = old[from & (old.size() - 1)];
            if (!entry)
                continue;
            entry->place_ = place;
            ring_[place++] = entry;
        }
        begin_ = 0;
        end_ = place;
    }

    std::vector<NSCacheEntry*> ring_; // a power of two; those from begin_ to end_ count
    std::uint64_t begin_ = 0;
    std::uint64_t end_ = 0;
    std::size_t size_ = 0;
};

} // namespace platform
