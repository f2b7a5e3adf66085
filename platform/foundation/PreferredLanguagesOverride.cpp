// SPDX-License-Identifier: MIT
#include "platform/foundation/PreferredLanguagesOverride.h"

#include "platform/foundation/Locale.h"

#include <atomic>
#include <mutex>
#include <utility>

namespace platform {

namespace {

struct Override {
    std::atomic<std::uint64_t> generation = 1;
    std::mutex mutex;
    // guarded by mutex
    std::optional<std::vector<std::string>> languages;

    std::optional<std::vector<std::string>> exchange(std::optional<std::vector<std::string>> other)
    {
        std::lock_guard lock(mutex);
        std::swap(languages, other);
        ++generation;
        return other;
    }
};

Override& currentOverride()
{
    static auto& instance = *new Override; // never destroyed: threads may still run while the process exits
    return instance;
}

} // namespace

PreferredLanguagesOverride::PreferredLanguagesOverride(std::vector<std::string> languages)
    : previous_(currentOverride().exchange(std::move(languages)))
{
}

PreferredLanguagesOverride::~PreferredLanguagesOverride()
{
    currentOverride().exchange(std::move(previous_));
}

std::vector<std::string> localizationLanguages()
{
    auto& state = currentOverride();
    {
        std::lock_guard lock(state.mutex);
        if (state.languages)
            return *state.languages;
    }
    return Locale::preferredLanguages();
}

std::uint64_t localizationLanguagesGeneration()
{
    return currentOverride().generation.load(std::memory_order_acquire);
}

} // namespace platform
