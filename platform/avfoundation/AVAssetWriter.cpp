// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVAssetWriter.h"

#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/MediaMuxer_p.h"
#include "platform/avfoundation/TrackWriting_p.h"
#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

// How far a track may be ahead of the others: the file holds their samples side by side, and what waits for its
// neighbours waits in memory.
constexpr CMTime furthestAhead{1, 1};

bool takesTrack(AVFileType type, const AVAssetWriterInput& input, std::size_t tracksBefore)
{
    if (auto* audio = std::get_if<AudioSettings>(&input.outputSettings())) {
        if (input.mediaType() != AVMediaType::audio || !audioEncoder(*audio))
            return false;
        bool isPCM = audio->AVFormatIDKey == kAudioFormatLinearPCM;
        if (type == AVFileType::wave)
            return isPCM && !audio->AVLinearPCMIsBigEndianKey.value_or(false) && tracksBefore == 0;
        return !isPCM || type == AVFileType::quickTimeMovie;
    }
    if (auto* video = std::get_if<VideoSettings>(&input.outputSettings())) {
        return input.mediaType() == AVMediaType::video && videoEncoder(*video)
            && (type == AVFileType::quickTimeMovie || type == AVFileType::mpeg4);
    }
    // What the samples are shows when they come; the file type may refuse them then.
    return type == AVFileType::quickTimeMovie || type == AVFileType::mpeg4
        || input.mediaType() == AVMediaType::audio;
}

} // namespace

struct AVAssetWriter::Key { };

AVAssetWriter::AVAssetWriter(const Key&, URL outputURL, AVFileType fileType)
    : outputURL_(std::move(outputURL))
    , fileType_(fileType)
{
}

AVAssetWriter::~AVAssetWriter() = default;

Result<std::shared_ptr<AVAssetWriter>> AVAssetWriter::make(URL outputURL, AVFileType fileType)
{
    if (!outputURL.isFileURL())
        return failure(NSCocoaError::fileWriteUnsupportedScheme);
    return std::make_shared<AVAssetWriter>(Key{}, std::move(outputURL), fileType);
}

void AVAssetWriter::setShouldOptimizeForNetworkUse(bool optimize)
{
    precondition(status() == AVAssetWriterStatus::unknown,
                 "where the index goes is set before writing starts");
    optimizesForNetwork_ = optimize;
}

void AVAssetWriter::setMetadata(std::vector<AVMetadataItem> items)
{
    precondition(status() == AVAssetWriterStatus::unknown, "metadata is set before writing starts");
    metadata_ = std::move(items);
}

bool AVAssetWriter::canAdd(const AVAssetWriterInput& input) const
{
    return status() == AVAssetWriterStatus::unknown && takesTrack(fileType_, input, inputs_.size());
}

void AVAssetWriter::add(std::shared_ptr<AVAssetWriterInput> input)
{
    precondition(canAdd(*input), "the writer takes such a track; canAdd tells");
    precondition(input->writer_.expired(), "the track belongs to no writer yet");
    input->writer_ = sharedFrom(this);
    inputs_.push_back(std::move(input));
}

bool AVAssetWriter::startWriting()
{
    precondition(status() == AVAssetWriterStatus::unknown, "a writer starts once");
    auto made = [&]() -> Result<std::unique_ptr<MediaMuxer>> {
        if (inputs_.empty())
            return failure(AVError::noSourceTrack);
        return MediaMuxer::create(outputURL_.path(), fileType_, inputs_.size(),
                                  {.indexAtFront = optimizesForNetwork_, .metadata = metadata_});
    }();
    if (!made) {
        fail(made.error());
        return false;
    }
    muxer_ = std::move(*made);
    for (std::size_t i = 0; i < inputs_.size(); ++i)
        inputs_[i]->writing_ = makeTrackWriting(*inputs_[i], *muxer_, i, fileType_);
    std::lock_guard lock(mutex_);
    status_ = AVAssetWriterStatus::writing;
    return true;
}

void AVAssetWriter::startSession(const CMTime& sourceTime)
{
    precondition(sourceTime.isNumeric(), "a session starts at a time that is a number");
    {
        std::lock_guard lock(mutex_);
        precondition(status_ != AVAssetWriterStatus::unknown, "writing starts before the session");
        precondition(!sessionStart_.isValid(), "a writer has one session");
        sessionStart_ = sourceTime;
    }
    pumpInputs();
}

void AVAssetWriter::endSession(const CMTime& sourceTime)
{
    std::lock_guard lock(mutex_);
    precondition(sessionStart_.isValid() && sourceTime >= sessionStart_, "a session ends after it started");
    sessionEnd_ = sourceTime;
}

AVAssetWriterStatus AVAssetWriter::status() const
{
    std::lock_guard lock(mutex_);
    return status_;
}

std::optional<Error> AVAssetWriter::error() const
{
    std::lock_guard lock(mutex_);
    return error_;
}

void AVAssetWriter::fail(const Error& error)
{
    {
        std::lock_guard lock(mutex_);
        if (status_ != AVAssetWriterStatus::unknown && status_ != AVAssetWriterStatus::writing)
            return;
        status_ = AVAssetWriterStatus::failed;
        error_ = error;
    }
    pumpInputs();
}

bool AVAssetWriter::isReady(const AVAssetWriterInput& input) const
{
    std::lock_guard lock(mutex_);
    if (status_ != AVAssetWriterStatus::writing || isFinishing_ || !sessionStart_.isValid()
        || input.isFinished_)
        return false;
    auto reached = [&](const AVAssetWriterInput& of) {
        return of.reached_.isNumeric() ? of.reached_ : sessionStart_;
    };
    auto most = reached(input) - furthestAhead;
    return std::ranges::all_of(inputs_, [&](const std::shared_ptr<AVAssetWriterInput>& other) {
        return other.get() == &input || other->isFinished_ || reached(*other) >= most;
    });
}

bool AVAssetWriter::appendTo(AVAssetWriterInput& input, const CMSampleBuffer& sample)
{
    Result<void> appended;
    {
        std::shared_lock appending(appending_);
        CMTimeRange session;
        {
            std::lock_guard lock(mutex_);
            if (status_ != AVAssetWriterStatus::writing || input.isFinished_)
                return false;
            precondition(sessionStart_.isValid(), "a session starts before samples are appended");
            session = {sessionStart_, sessionEnd_ - sessionStart_};
        }
        appended = input.writing_->append(sample, session);
        auto end = sample.presentationTimeStamp;
        if (sample.duration.isNumeric())
            end += sample.duration;
        std::lock_guard lock(mutex_);
        if (!input.reached_.isNumeric() || end > input.reached_)
            input.reached_ = end;
    }
    if (!appended) {
        fail(appended.error());
        return false;
    }
    if (inputs_.size() > 1)
        pumpInputs();
    return true;
}

void AVAssetWriter::finish(AVAssetWriterInput& input)
{
    {
        std::lock_guard lock(mutex_);
        input.isFinished_ = true;
    }
    pumpInputs();
}

void AVAssetWriter::pumpInputs()
{
    for (auto& input : inputs_)
        input->pump();
}

Result<void> AVAssetWriter::complete()
{
    for (auto& input : inputs_)
        TRY(input->writing_->finish());
    return muxer_->finish();
}

void AVAssetWriter::complete(const std::function<void()>& completion)
{
    bool isWriting = status() == AVAssetWriterStatus::writing;
    if (isWriting) {
        std::unique_lock alone(appending_);
        // Somebody may have ended the file since.
        if (status() == AVAssetWriterStatus::writing) {
            auto completed = complete();
            std::lock_guard lock(mutex_);
            if (completed) {
                status_ = AVAssetWriterStatus::completed;
            } else {
                status_ = AVAssetWriterStatus::failed;
                error_ = completed.error();
            }
        }
    }
    for (auto& input : inputs_)
        input->forgetRequest();
    completion();
}

void AVAssetWriter::finishWriting(std::function<void()> completion)
{
    {
        std::lock_guard lock(mutex_);
        precondition(status_ != AVAssetWriterStatus::unknown, "what was not started cannot be finished");
        precondition(!isFinishing_, "writing is finished once");
        isFinishing_ = true;
        for (auto& input : inputs_)
            input->isFinished_ = true;
    }
    DispatchQueue::make("org.zelk.avfoundation.writer-finishing")
        ->async(
            [self = sharedFrom(this), completion = std::move(completion)] { self->complete(completion); });
}

void AVAssetWriter::cancelWriting()
{
    {
        std::unique_lock alone(appending_);
        std::lock_guard lock(mutex_);
        if (status_ != AVAssetWriterStatus::unknown && status_ != AVAssetWriterStatus::writing)
            return;
        status_ = AVAssetWriterStatus::cancelled;
    }
    if (muxer_)
        muxer_->remove();
    for (auto& input : inputs_)
        input->forgetRequest();
}

} // namespace platform
