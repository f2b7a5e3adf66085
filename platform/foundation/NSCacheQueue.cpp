// SPDX-License-Identifier: MIT
#include "platform/foundation/NSCacheQueue_p.h"

#include <algorithm>
#include <bit>

namespace platform {

namespace {

// One of so many entries is on probation. Measured: docs/decisions/006-cache-policy.md.
constexpr std::size_t probationShare = 10;

std::uint32_t markOf(std::size_t hash)
{
    return static_cast<std::uint32_t>(hash >> 32);
}

} // namespace

bool NSCacheHistory::isRemembered(Mark mark) const
{
    return mark.departure != 0 && departures_ - mark.departure < span_;
}

void NSCacheHistory::place(std::size_t hash, Mark mark)
{
    auto& bucket = bucketOf(hash);
    auto age = [&](const Mark& known) {
        if (known.hash == mark.hash)
            return UINT32_MAX; // its own place
        return known.departure == 0 ? UINT32_MAX - 1 : departures_ - known.departure;
    };
    *std::ranges::max_element(bucket, {}, age) = mark;
}

void NSCacheHistory::grow(std::size_t span)
{
    // Room for half as many marks again at least, so that few are lost to a full bucket. Of the old marks no low bits are known: they
    // are forgotten, which happens once each time the cache doubles.
    buckets_.assign(std::bit_ceil(std::max<std::size_t>(span * 3 / 8, 4)), Bucket{});
}

void NSCacheHistory::add(std::size_t hash, std::size_t span)
{
    span_ = std::min<std::size_t>(span, INT32_MAX);
    if (buckets_.size() * 8 < span_ * 3 || buckets_.empty())
        grow(span_);
    if (++departures_ == 0)
        departures_ = 1;
    place(hash, {markOf(hash), departures_});
}

bool NSCacheHistory::take(std::size_t hash)
{
    if (buckets_.empty())
        return false;
    for (auto& mark : bucketOf(hash)) {
        if (mark.hash == markOf(hash) && isRemembered(mark)) {
            mark = {};
            return true;
        }
    }
    return false;
}

void NSCacheHistory::clear()
{
    buckets_ = {};
}

NSCacheRow& NSCacheQueue::rowOf(const NSCacheEntry& entry)
{
    return entry.segment_ == NSCacheEntry::Segment::main ? main_ : probation_;
}

void NSCacheQueue::add(std::unique_ptr<NSCacheEntry> entry)
{
    entry->segment_ =
        history_.take(entry->hash_) ? NSCacheEntry::Segment::main : NSCacheEntry::Segment::probation;
    auto& row = rowOf(*entry);
    row.add(std::move(entry));
}

std::unique_ptr<NSCacheEntry> NSCacheQueue::take(NSCacheEntry& entry)
{
    auto& row = rowOf(entry);
    entry.segment_ = NSCacheEntry::Segment::none;
    return row.take(entry);
}

std::unique_ptr<NSCacheEntry> NSCacheQueue::replace(NSCacheEntry& entry,
                                                    std::unique_ptr<NSCacheEntry> successor)
{
    successor->segment_ = entry.segment_;
    successor->visits_.store(entry.visits_.load(std::memory_order_relaxed), std::memory_order_relaxed);
    successor->noteVisit();
    return rowOf(entry).replace(entry, std::move(successor));
}

// Null when all that stood on probation was promoted, but for the newest.
std::unique_ptr<NSCacheEntry> NSCacheQueue::takeFromProbation(const NSCacheEntry* spared)
{
    while (probation_.size() > 1) {
        auto entry = probation_.takeOldest();
        if (entry->visits_.load(std::memory_order_relaxed) == 0 && entry.get() != spared) {
            history_.add(entry->hash_, size() + 1);
            return entry;
        }
        entry->visits_.store(0, std::memory_order_relaxed);
        entry->segment_ = NSCacheEntry::Segment::main;
        main_.add(std::move(entry));
    }
    return nullptr;
}

// Null when there is nothing but `spared`.
std::unique_ptr<NSCacheEntry> NSCacheQueue::takeFromMain(const NSCacheEntry* spared)
{
    // More turns than visits can give: busy readers of a small cache must not keep all of its entries in.
    auto turns = (NSCacheEntry::maximumVisits + 1) * main_.size();
    while (auto entry = main_.takeOldest()) {
        if (entry.get() == spared && main_.isEmpty()) {
            main_.add(std::move(entry));
            return nullptr;
        }
        auto visits = entry->visits_.load(std::memory_order_relaxed);
        bool isOutOfTurns = turns == 0 || --turns == 0;
        if ((visits == 0 || isOutOfTurns) && entry.get() != spared)
            return entry;
        // Visits that come while this is written are lost: they count little.
        if (visits > 0)
            entry->visits_.store(visits - 1, std::memory_order_relaxed);
        main_.add(std::move(entry));
    }
    return nullptr;
}

std::unique_ptr<NSCacheEntry> NSCacheQueue::takeVictim(const NSCacheEntry* spared)
{
    std::unique_ptr<NSCacheEntry> victim;
    if (probation_.size() > std::max<std::size_t>(size() / probationShare, 1))
        victim = takeFromProbation(spared);
    if (!victim)
        victim = takeFromMain(spared);
    if (!victim)
        victim = takeFromProbation(spared);
    if (!victim)
        victim = takeFromMain(spared);
    if (!victim)
        victim = probation_.isEmpty() ? main_.takeOldest() : probation_.takeOldest();
    if (victim)
        victim->segment_ = NSCacheEntry::Segment::none;
    return victim;
}

} // namespace platform
