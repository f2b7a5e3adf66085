// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVAssetWriterInput.h"

#include "platform/avfoundation/AVAssetWriter.h"
#include "platform/avfoundation/TrackWriting_p.h"
#include "platform/foundation/Precondition.h"

#include <utility>

namespace platform {

AVAssetWriterInput::AVAssetWriterInput(AVMediaType mediaType, OutputSettings outputSettings,
                                       std::shared_ptr<const CMFormatDescription> sourceFormatHint)
    : mediaType_(mediaType)
    , outputSettings_(std::move(outputSettings))
    , sourceFormatHint_(std::move(sourceFormatHint))
{
}

AVAssetWriterInput::~AVAssetWriterInput() = default;

void AVAssetWriterInput::setTransform(const CGAffineTransform& transform)
{
    precondition(!writing_, "a track is turned before writing starts");
    transform_ = transform;
}

void AVAssetWriterInput::setLanguageCode(std::string code)
{
    precondition(!writing_, "a track's language is set before writing starts");
    languageCode_ = std::move(code);
}

void AVAssetWriterInput::setMediaTimeScale(std::int32_t scale)
{
    precondition(!writing_, "a track's time scale is set before writing starts");
    precondition(scale >= 0, "a time scale is not negative; 0 lets the writer choose");
    mediaTimeScale_ = scale;
}

bool AVAssetWriterInput::isReadyForMoreMediaData() const
{
    auto writer = writer_.lock();
    return writer && writer->isReady(*this);
}

void AVAssetWriterInput::requestMediaDataWhenReady(std::shared_ptr<DispatchQueue> queue,
                                                   std::function<void()> use)
{
    {
        std::lock_guard lock(requestMutex_);
        precondition(!queue_, "a track is asked to request media data once");
        queue_ = std::move(queue);
        use_ = std::make_shared<std::function<void()>>(std::move(use));
    }
    pump();
}

void AVAssetWriterInput::pump()
{
    auto writer = writer_.lock();
    if (!writer)
        return;
    bool isReady = writer->isReady(*this);
    bool hasFailed = writer->status() == AVAssetWriterStatus::failed;
    std::lock_guard lock(requestMutex_);
    if (!use_ || !(isReady || (hasFailed && !sawFailure_)))
        return;
    if (isRunning_) {
        isToRunAgain_ = true;
        return;
    }
    isRunning_ = true;
    isToRunAgain_ = false;
    sawFailure_ = hasFailed;
    // The block keeps what feeds the track alive, and the track keeps the block, until one of them is done.
    queue_->async([self = sharedFrom(this)] { self->runRequest(); });
}

void AVAssetWriterInput::runRequest()
{
    std::shared_ptr<std::function<void()>> use;
    {
        std::lock_guard lock(requestMutex_);
        use = use_;
    }
    if (use)
        (*use)();
    use.reset();
    bool goesOn = false;
    {
        std::lock_guard lock(requestMutex_);
        isRunning_ = false;
        // A block that had nothing to give is asked again when something changes, not at once.
        goesOn = isToRunAgain_;
    }
    if (auto writer = writer_.lock(); writer && writer->status() == AVAssetWriterStatus::failed) {
        std::unique_lock lock(requestMutex_);
        if (sawFailure_) { // and now so has the block
            lock.unlock();
            return forgetRequest();
        }
        goesOn = true;
    }
    if (goesOn)
        pump();
}

void AVAssetWriterInput::forgetRequest()
{
    std::shared_ptr<std::function<void()>>
        use; // let go of outside the lock: it may be the last owner of much
    std::lock_guard lock(requestMutex_);
    use.swap(use_);
}

bool AVAssetWriterInput::append(const CMSampleBuffer& sample)
{
    auto writer = writer_.lock();
    if (!writer || !writer->appendTo(*this, sample))
        return false;
    {
        std::lock_guard lock(requestMutex_);
        isToRunAgain_ = true;
    }
    return true;
}

void AVAssetWriterInput::markAsFinished()
{
    if (auto writer = writer_.lock())
        writer->finish(*this);
    forgetRequest();
}

} // namespace platform
