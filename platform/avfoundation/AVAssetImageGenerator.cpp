// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVAssetImageGenerator.h"

#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/StillCall_p.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <mutex>
#include <thread>
#include <utility>

namespace platform {

struct AVAssetImageGenerator::Cancelling {
    std::mutex mutex;
    std::stop_source source; // of the calls since the last cancel
};

namespace {

constexpr unsigned greatestQueueCount = 4;
constexpr int allProcessors = 0;
constexpr int oneThread = 1;

// All calls of the process take turns here, so that a thousand of them open no thousand files. Never destroyed.
const std::vector<std::shared_ptr<DispatchQueue>>& queues()
{
    static const auto& all = *[] {
        auto made = std::make_unique<std::vector<std::shared_ptr<DispatchQueue>>>();
        auto count = std::clamp(std::thread::hardware_concurrency(), 1U, greatestQueueCount);
        while (made->size() < count)
            made->push_back(DispatchQueue::make("org.zelk.avfoundation.stills"));
        return made.release();
    }();
    return all;
}

AVAssetImageGeneratorResult outcomeOf(const Result<StillPicture>& result)
{
    if (result)
        return AVAssetImageGeneratorResult::succeeded;
    return result.error() == Error(AVError::operationCancelled) ? AVAssetImageGeneratorResult::cancelled
                                                                : AVAssetImageGeneratorResult::failed;
}

void deliver(const AVAssetImageGenerator::CompletionHandler& handler, const StillRequest& request,
             const Result<StillPicture>& result)
{
    if (result)
        handler(request.requestedTime, result->image, result->time, outcomeOf(result), std::nullopt);
    else
        handler(request.requestedTime, std::nullopt, CMTime::invalid(), outcomeOf(result), result.error());
}

// On the first queue, where it is one of the workers itself.
void runOnQueues(const std::shared_ptr<StillCall>& call)
{
    const auto count = std::min(queues().size(), call->workerLimit());
    call->setWorkerCount(count);
    for (std::size_t queue = 1; queue < count; ++queue)
        queues()[queue]->async([call] { call->run(oneThread); });
    call->run(count == 1 ? allProcessors : oneThread);
}

} // namespace

AVAssetImageGenerator::AVAssetImageGenerator(std::shared_ptr<AVAsset> asset)
    : asset_(std::move(asset))
    , settings_(std::make_unique<StillSettings>())
    , cancelling_(std::make_unique<Cancelling>())
{
    precondition(asset_ != nullptr, "an image generator needs an asset");
}

AVAssetImageGenerator::~AVAssetImageGenerator() = default;

bool AVAssetImageGenerator::appliesPreferredTrackTransform() const
{
    return settings_->appliesPreferredTrackTransform;
}

void AVAssetImageGenerator::setAppliesPreferredTrackTransform(bool applies)
{
    settings_->appliesPreferredTrackTransform = applies;
}

CGSize AVAssetImageGenerator::maximumSize() const
{
    return settings_->maximumSize;
}

void AVAssetImageGenerator::setMaximumSize(CGSize size)
{
    settings_->maximumSize = size;
}

CMTime AVAssetImageGenerator::requestedTimeToleranceBefore() const
{
    return settings_->toleranceBefore;
}

void AVAssetImageGenerator::setRequestedTimeToleranceBefore(const CMTime& tolerance)
{
    settings_->toleranceBefore = tolerance;
}

CMTime AVAssetImageGenerator::requestedTimeToleranceAfter() const
{
    return settings_->toleranceAfter;
}

void AVAssetImageGenerator::setRequestedTimeToleranceAfter(const CMTime& tolerance)
{
    settings_->toleranceAfter = tolerance;
}

const std::optional<AVVideoComposition>& AVAssetImageGenerator::videoComposition() const
{
    return settings_->videoComposition;
}

void AVAssetImageGenerator::setVideoComposition(std::optional<AVVideoComposition> composition)
{
    settings_->videoComposition = std::move(composition);
}

Result<UIImage> AVAssetImageGenerator::copyCGImage(const CMTime& time, CMTime* actualTime) const
{
    std::optional<Result<StillPicture>> picture;
    StillCall call(planStills(*asset_, *settings_, {time}), {},
                   [&picture](const StillRequest&, const Result<StillPicture>& result) { picture = result; });
    call.run(allProcessors);
    if (actualTime)
        *actualTime = *picture ? (*picture)->time : CMTime::invalid();
    if (!*picture)
        return failure(picture->error());
    return (*picture)->image;
}

void AVAssetImageGenerator::generateCGImagesAsynchronously(const std::vector<AVRequestedTime>& times,
                                                           CompletionHandler handler)
{
    precondition(handler != nullptr, "images are generated for a handler");
    std::stop_token stop;
    {
        std::lock_guard lock(cancelling_->mutex);
        stop = cancelling_->source.get_token();
    }
    queues().front()->async([asset = asset_, settings = *settings_, times, stop = std::move(stop),
                             handler = std::move(handler)]() mutable {
        auto plan = planStills(*asset, settings, times);
        runOnQueues(std::make_shared<StillCall>(
            std::move(plan), std::move(stop),
            [handler = std::move(handler)](const StillRequest& request, const Result<StillPicture>& result) {
                deliver(handler, request, result);
            }));
    });
}

void AVAssetImageGenerator::cancelAllCGImageGeneration()
{
    std::stop_source stopped;
    {
        std::lock_guard lock(cancelling_->mutex);
        stopped = std::exchange(cancelling_->source, std::stop_source());
    }
    stopped.request_stop();
}

} // namespace platform
