// SPDX-License-Identifier: MIT
#include "platform/avfoundation/MovieRecording_p.h"

#include "platform/avfoundation/AVError.h"
#include "platform/foundation/FileManager.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace platform {

namespace {

constexpr CMTimeScale timescale = 90'000;
constexpr CMTime betweenChecks{1, 1}; // of the space that is left
constexpr CMTime longestEarly{5, 1};  // of sound without a picture
constexpr CMTime longestWait{2, 1};   // of pictures for sound

Error finishedAllTheSame(const Error& error)
{
    auto texts = error.bridged().userInfo();
    texts.emplace(AVErrorRecordingSuccessfullyFinishedKey, "true");
    return NSError(error.bridged().domain(), error.bridged().code(), std::move(texts));
}

VideoSettings settingsFor(const CVPixelBuffer& picture, const CaptureWish& largest)
{
    VideoSettings settings;
    settings.AVVideoMaxKeyFrameIntervalKey = 60; // so that trimming finds places to cut at
    settings.AVVideoExpectedSourceFrameRateKey = largest.frameRate;
    const auto scale = std::min({1.0, static_cast<double>(largest.width) / picture.width(),
                                 static_cast<double>(largest.height) / picture.height()});
    auto even = [scale](int side) { return std::max(static_cast<int>(side * scale) / 2 * 2, 2); };
    settings.AVVideoWidthKey = even(picture.width());
    settings.AVVideoHeightKey = even(picture.height());
    return settings;
}

} // namespace

MovieRecording::MovieRecording(Options options)
    : options_(std::move(options))
{
}

bool MovieRecording::isEnding() const
{
    std::lock_guard lock(mutex_);
    return isEnding_;
}

bool MovieRecording::isDiscarded() const
{
    std::lock_guard lock(mutex_);
    return isDiscarded_;
}

CMTime MovieRecording::duration() const
{
    std::lock_guard lock(mutex_);
    return reached_.isNumeric() ? reached_ : CMTime::zero();
}

bool MovieRecording::isDiskFull() const
{
    auto folder = options_.file.deletingLastPathComponent().path();
    auto attributes = FileManager::defaultManager().attributesOfFileSystem(folder);
    auto found = attributes ? attributes->find(NSFileSystemFreeSize) : PropertyListDictionary::iterator();
    const auto* free = attributes && found != attributes->end() ? found->second.as<std::int64_t>() : nullptr;
    return free && *free < options_.leastFree; // what cannot be asked shows when it is written to
}

Result<void> MovieRecording::open(const CMSampleBuffer& first, bool hasSound)
{
    if (isDiskFull())
        return failure(AVError::diskFull);
    auto writer = TRY(AVAssetWriter::make(options_.file, AVFileTypeQuickTimeMovie));
    pictures_ = std::make_shared<AVAssetWriterInput>(AVMediaType::video,
                                                     settingsFor(*first.imageBuffer, options_.largest));
    pictures_->setMediaTimeScale(timescale);
    if (!writer->canAdd(*pictures_))
        return failure(AVError::encoderNotFound);
    writer->add(pictures_);
    if (hasSound) {
        sound_ = std::make_shared<AVAssetWriterInput>(AVMediaType::audio,
                                                      AudioSettings{.AVFormatIDKey = kAudioFormatMPEG4AAC});
        if (writer->canAdd(*sound_))
            writer->add(sound_);
        else
            sound_ = nullptr;
    }
    if (!writer->startWriting())
        return std::unexpected(writer->error().value_or(Error(AVError::unknown)));
    start_ = checked_ = first.presentationTimeStamp;
    writer->startSession(start_);
    if (options_.longest.isNumeric())
        writer->endSession(start_ + options_.longest);
    bool isLate = false;
    {
        std::lock_guard lock(mutex_);
        isLate = isEnding_; // whoever ended it saw nothing to end
        if (!isLate)
            writer_ = std::move(writer);
    }
    if (isLate) {
        writer->cancelWriting();
        return failure(AVError::operationCancelled);
    }
    {
        std::lock_guard lock(soundMutex_);
        isOpen_ = true;
        for (const auto& each : std::exchange(early_, {}))
            appendSound(each);
        if (sound_ && hasSoundEnded_)
            sound_->markAsFinished();
    }
    options_.onStart();
    return {};
}

void MovieRecording::takePicture(const CMSampleBuffer& sample, Sound sound)
{
    if (isEnding() || !sample.imageBuffer)
        return;
    if (!isOpen_) {
        if (!offered_.isNumeric())
            offered_ = sample.presentationTimeStamp;
        if (sound == Sound::coming && sample.presentationTimeStamp - offered_ < longestWait)
            return; // a movie has no sound unless it begins with it
        if (auto opened = open(sample, sound == Sound::heard); !opened)
            return fail(opened.error());
    }
    auto passed = sample.presentationTimeStamp - start_;
    if (options_.longest.isNumeric() && passed >= options_.longest)
        return end(Error(AVError::maximumDurationReached));
    if (sample.presentationTimeStamp - checked_ >= betweenChecks) {
        checked_ = sample.presentationTimeStamp;
        if (isDiskFull())
            return end(Error(AVError::diskFull));
    }
    if (!pictures_->append(sample)) {
        if (!isEnding())
            fail(writer_->error().value_or(Error(AVError::unknown)));
        return;
    }
    std::lock_guard lock(mutex_);
    reached_ = passed + sample.duration;
    if (options_.longest.isNumeric())
        reached_ = CMTimeMinimum(reached_, options_.longest);
}

// The microphone does not wait for the camera: what it heard by the time of the first picture is cut to it by the writer.
void MovieRecording::takeSound(const CMSampleBuffer& sample)
{
    std::lock_guard lock(soundMutex_);
    if (isOpen_)
        return appendSound(sample);
    early_.push_back(sample);
    while (sample.presentationTimeStamp - early_.front().presentationTimeStamp > longestEarly)
        early_.pop_front();
}

void MovieRecording::appendSound(const CMSampleBuffer& sample)
{
    if (!sound_ || isEnding())
        return;
    if (!sound_->append(sample) && !isEnding())
        fail(writer_->error().value_or(Error(AVError::unknown)));
}

void MovieRecording::endSound()
{
    std::lock_guard lock(soundMutex_);
    hasSoundEnded_ = true;
    if (isOpen_ && sound_ && !isEnding())
        sound_->markAsFinished();
}

void MovieRecording::end(const std::optional<Error>& error)
{
    std::shared_ptr<AVAssetWriter> writer;
    CMTime end;
    {
        std::lock_guard lock(mutex_);
        if (std::exchange(isEnding_, true))
            return;
        writer = writer_;
        end = start_ + (reached_.isNumeric() ? reached_ : CMTime::zero());
    }
    if (!writer)
        return options_.onEnd(error.value_or(Error(AVError::noDataCaptured)));
    writer->endSession(end);
    writer->finishWriting([self = shared_from_this(), writer, error] {
        auto failure = writer->error();
        if (failure || self->isDiscarded())
            std::ignore = FileManager::defaultManager().removeItem(self->options_.file); // nobody can play it
        self->options_.onEnd(failure     ? failure
                                 : error ? std::optional(finishedAllTheSame(*error))
                                         : std::nullopt);
    });
}

void MovieRecording::discard()
{
    bool isCompleting = false;
    {
        std::lock_guard lock(mutex_);
        isDiscarded_ = true;
        isCompleting = isEnding_ && writer_;
    }
    if (isCompleting) // which ends in a file without a name
        std::ignore = FileManager::defaultManager().removeItem(options_.file);
    else
        fail(AVError::operationCancelled);
}

// There will be no file.
void MovieRecording::fail(const Error& error)
{
    std::shared_ptr<AVAssetWriter> writer;
    {
        std::lock_guard lock(mutex_);
        if (std::exchange(isEnding_, true))
            return;
        writer = writer_;
    }
    // A file that was there before the recording is not ours.
    if (writer) {
        writer->cancelWriting();
        std::ignore = FileManager::defaultManager().removeItem(options_.file);
    }
    options_.onEnd(error);
}

} // namespace platform
