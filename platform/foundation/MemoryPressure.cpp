// SPDX-License-Identifier: MIT
#include "platform/foundation/MemoryPressure.h"

#include "platform/foundation/MemoryPressureWatcher_p.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace platform {

namespace {

class Observers {
public:
    // Never destroyed: caches that live in static objects may outlive everything else.
    static Observers& shared()
    {
        static auto& instance = *new Observers;
        return instance;
    }

    void add(std::weak_ptr<MemoryPressureObserver> observer)
    {
        std::lock_guard lock(mutex_);
        if (!watcher_)
            watcher_.emplace(openMemoryPressureEvents(), [this](auto level) { report(level); });
        // When the list is full: whoever adds pays for those who left, and the list stays as long as it has to be.
        if (observers_.size() == observers_.capacity())
            std::erase_if(observers_, [](auto& known) { return known.expired(); });
        observers_.push_back(std::move(observer));
    }

    void report(MemoryPressureLevel level)
    {
        std::vector<std::shared_ptr<MemoryPressureObserver>> living;
        {
            std::lock_guard lock(mutex_);
            for (auto& known : observers_) {
                if (auto observer = known.lock())
                    living.push_back(std::move(observer));
            }
        }
        for (auto& observer : living)
            observer->handleMemoryPressure(level);
    }

private:
    std::mutex mutex_;
    // guarded by mutex_
    std::vector<std::weak_ptr<MemoryPressureObserver>> observers_;
    std::optional<MemoryPressureWatcher> watcher_;
};

} // namespace

void observeMemoryPressure(std::weak_ptr<MemoryPressureObserver> observer)
{
    Observers::shared().add(std::move(observer));
}

void reportMemoryPressure(MemoryPressureLevel level)
{
    Observers::shared().report(level);
}

} // namespace platform
