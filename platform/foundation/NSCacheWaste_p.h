// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSCacheIndex.h"
#include "platform/foundation/ReadSection.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace platform {

// What left a cache and may still be looked at by its readers. Destroying it runs other people's code: it must not be
// done with a lock held.
class NSCacheWaste {
public:
    bool isEmpty() const { return size_ == 0 && tables_.empty(); }
    // Whether there is more than so many entries, or something larger.
    bool isMoreThan(std::size_t entryCount) const { return size_ > entryCount || !tables_.empty(); }

    void add(std::unique_ptr<NSCacheEntry> entry)
    {
        entries_.push_back(std::move(entry));
        ++size_;
    }
    void add(std::unique_ptr<NSCacheTable> table)
    {
        if (table)
            tables_.push_back(std::move(table));
    }
    // Empties the other. Cheap when either is empty, and keeps the memory that is reserved.
    void add(NSCacheWaste& other);
    void swap(NSCacheWaste& other);

    // Destroys everything, if all that read when this was first called are done soon; else does nothing and gives false.
    [[nodiscard]] bool destroy();
    // Whether destroy() was called and would succeed now. Takes no call into the kernel.
    bool isUnread() const { return epoch_ && hasNoReadersSince(*epoch_); }

private:
    std::vector<std::unique_ptr<NSCacheEntry>> entries_;
    std::vector<std::unique_ptr<NSCacheTable>> tables_;
    std::size_t size_ = 0;           // of entries_, which itself costs more to ask while it changes
    std::optional<ReadEpoch> epoch_; // everything was out of reach when it ended
};

} // namespace platform
