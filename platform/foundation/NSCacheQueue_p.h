// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSCacheRow_p.h"

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace platform {

// Which keys left a cache lately, as marks of their hashes: a mark may be another key's once in some million times,
// which costs a wrong guess and nothing else.
class NSCacheHistory {
public:
    // Remembers the key as the one that left last; of keys that left more than `span` departures ago nothing is known.
    void add(std::size_t hash, std::size_t span);
    // Whether the key is remembered; forgets it.
    bool take(std::size_t hash);
    void clear();

private:
    struct Mark {
        std::uint32_t hash = 0;
        std::uint32_t departure = 0; // 0: none
    };
    using Bucket = std::array<Mark, 4>; // half a cache line

    Bucket& bucketOf(std::size_t hash) { return buckets_[hash & (buckets_.size() - 1)]; }
    bool isRemembered(Mark mark) const;
    void place(std::size_t hash, Mark mark);
    void grow(std::size_t span);

    std::vector<Bucket> buckets_; // a power of two
    std::uint32_t departures_ = 0;
    std::size_t span_ = 0;
};

// Decides which entry of a cache goes first. Three rows, as the S3-FIFO policy has them: what is new stands in a short
// one on probation; what is looked up while it stands there, or comes back soon after it left, moves to the main one,
// where an entry that was looked up gets another turn for each of its last three visits; the third is the history of what
// left from probation. A lookup moves nothing, it only counts. Guarded by the cache’s mutex.
class NSCacheQueue {
public:
    std::size_t size() const { return probation_.size() + main_.size(); }

    void add(std::unique_ptr<NSCacheEntry> entry);
    std::unique_ptr<NSCacheEntry> take(NSCacheEntry& entry);
    // Puts one in the place of another, with its visits, and counts one more.
    std::unique_ptr<NSCacheEntry> replace(NSCacheEntry& entry, std::unique_ptr<NSCacheEntry> successor);
    // The entry that is worth least, `spared` only when there is no other. Null when there is none.
    std::unique_ptr<NSCacheEntry> takeVictim(const NSCacheEntry* spared);
    void forgetHistory() { history_.clear(); }

private:
    NSCacheRow& rowOf(const NSCacheEntry& entry);
    std::unique_ptr<NSCacheEntry> takeFromProbation(const NSCacheEntry* spared);
    std::unique_ptr<NSCacheEntry> takeFromMain(const NSCacheEntry* spared);

    NSCacheRow probation_;
    NSCacheRow main_;
    NSCacheHistory history_;
};

} // namespace platform
