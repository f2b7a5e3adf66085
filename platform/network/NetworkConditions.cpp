// SPDX-License-Identifier: MIT
#include "platform/network/NetworkConditions.h"

#include "platform/network/NetworkServiceWatcher_p.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace platform {

struct NetworkConditions::State {
    std::mutex mutex;
    // guarded by mutex
    bool isWatched = false;
    bool isOverridden = false;
    std::optional<bool> isMetered;
    std::uint64_t lastObserver = 0;
    std::map<std::uint64_t, std::function<void(bool)>> observers;
    std::vector<std::function<void(bool)>> waiting;
};

NetworkConditions& NetworkConditions::shared()
{
    // Never destroyed: loads of any thread may ask until the end.
    static auto& instance = *new NetworkConditions;
    return instance;
}

NetworkConditions::NetworkConditions()
    : state_(std::make_unique<State>())
{
}

void NetworkConditions::whenKnown(std::function<void(bool)> receive)
{
    std::unique_lock lock(state_->mutex);
    if (state_->isMetered) {
        bool isMetered = *state_->isMetered;
        lock.unlock();
        receive(isMetered);
        return;
    }
    state_->waiting.push_back(std::move(receive));
    bool isWatched = std::exchange(state_->isWatched, true);
    lock.unlock();
    if (!isWatched)
        NetworkServiceWatcher::start([this](bool isMetered) { set(isMetered, false); });
}

Token NetworkConditions::observe(std::function<void(bool)> onChange)
{
    std::lock_guard lock(state_->mutex);
    auto number = ++state_->lastObserver;
    state_->observers.emplace(number, std::move(onChange));
    return Token([this, number] {
        std::lock_guard guard(state_->mutex);
        state_->observers.erase(number);
    });
}

void NetworkConditions::set(bool isMetered, bool isOverride)
{
    std::vector<std::function<void(bool)>> receivers;
    {
        std::lock_guard lock(state_->mutex);
        if (state_->isOverridden && !isOverride)
            return;
        state_->isOverridden = isOverride;
        bool isChange = state_->isMetered != isMetered;
        state_->isMetered = isMetered;
        receivers.swap(state_->waiting);
        if (isChange) {
            for (auto& [number, observer] : state_->observers)
                receivers.push_back(observer);
        }
    }
    for (auto& receive : receivers)
        receive(isMetered);
}

NetworkConditionsOverride::NetworkConditionsOverride(bool isMetered)
{
    setMetered(isMetered);
}

NetworkConditionsOverride::~NetworkConditionsOverride()
{
    auto& state = *NetworkConditions::shared().state_;
    std::lock_guard lock(state.mutex);
    state.isOverridden = false;
    state.isMetered = std::nullopt; // whoever asks next hears from the service
    state.isWatched = false;
}

void NetworkConditionsOverride::setMetered(bool isMetered)
{
    NetworkConditions::shared().set(isMetered, true);
}

} // namespace platform
