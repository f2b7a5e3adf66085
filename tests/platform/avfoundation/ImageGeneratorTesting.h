// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAssetImageGenerator.h"
#include "platform/avfoundation/AVError.h"
#include "tests/support/CountedVideo.h"

#include <condition_variable>
#include <mutex>

namespace tests {

struct Still {
    platform::CMTime requested;
    std::optional<platform::UIImage> image;
    platform::CMTime actual;
    platform::AVAssetImageGeneratorResult result;
    std::optional<platform::Error> error;
};

// What a handler was called with, up to one call for each time, and then a moment in which no other must come.
inline std::vector<Still> generate(platform::AVAssetImageGenerator& generator,
                                   const std::vector<platform::AVRequestedTime>& times,
                                   const std::function<void()>& onFirst = nullptr)
{
    struct Shared {
        std::mutex mutex;
        std::condition_variable changed;
        std::vector<Still> stills;
        bool isReleased = false;
    };
    auto shared = std::make_shared<Shared>();
    // The handler goes after its last call.
    std::shared_ptr<void> released(nullptr, [shared](void*) {
        std::lock_guard lock(shared->mutex);
        shared->isReleased = true;
        shared->changed.notify_all();
    });
    generator.generateCGImagesAsynchronously(
        times,
        [shared, onFirst, released = std::move(released)](auto& requested, auto& image, auto& actual,
                                                          auto result, auto& error) {
            std::unique_lock lock(shared->mutex);
            shared->stills.push_back({requested, image, actual, result, error});
            const bool isFirst = shared->stills.size() == 1;
            lock.unlock();
            if (isFirst && onFirst)
                onFirst();
        });
    std::unique_lock lock(shared->mutex);
    shared->changed.wait(lock, [&] { return shared->isReleased; });
    return std::move(shared->stills);
}

inline std::shared_ptr<platform::AVAssetImageGenerator>
exactGenerator(std::shared_ptr<platform::AVAsset> asset)
{
    auto generator = std::make_shared<platform::AVAssetImageGenerator>(std::move(asset));
    generator->setRequestedTimeToleranceBefore(platform::CMTime::zero());
    generator->setRequestedTimeToleranceAfter(platform::CMTime::zero());
    return generator;
}

} // namespace tests
