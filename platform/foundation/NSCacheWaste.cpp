// SPDX-License-Identifier: MIT
#include "platform/foundation/NSCacheWaste_p.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace platform {

namespace {

// As long as a few readers take. One that is suspended in its work, or this thread's own, is not waited for.
constexpr int patience = 64;

} // namespace

void NSCacheWaste::swap(NSCacheWaste& other)
{
    entries_.swap(other.entries_);
    tables_.swap(other.tables_);
    std::swap(size_, other.size_);
    std::swap(epoch_, other.epoch_);
}

void NSCacheWaste::add(NSCacheWaste& other)
{
    if (isEmpty())
        return swap(other);
    if (other.isEmpty())
        return;
    std::ranges::move(other.entries_, std::back_inserter(entries_));
    std::ranges::move(other.tables_, std::back_inserter(tables_));
    other.entries_.clear();
    other.tables_.clear();
    size_ += std::exchange(other.size_, 0);
    // The later of two epochs, and none if either is still to be found out.
    epoch_ = epoch_ && other.epoch_ ? std::optional(std::max(*epoch_, *other.epoch_)) : std::nullopt;
    other.epoch_.reset();
}

bool NSCacheWaste::destroy()
{
    if (!epoch_)
        epoch_ = endReadEpoch();
    for (int i = 0; epoch_ && i < patience; ++i) {
        if (isUnread()) {
            entries_.clear();
            tables_.clear();
            size_ = 0;
            epoch_.reset();
            return true;
        }
    }
    return false;
}

} // namespace platform
