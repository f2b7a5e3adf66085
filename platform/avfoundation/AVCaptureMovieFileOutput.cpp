// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVCaptureMovieFileOutput.h"

#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/MovieRecording_p.h"
#include "platform/avfoundation/captureWish_p.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"

#include <utility>

namespace platform {

namespace {

constexpr CMTime recently{1, 1}; // how long ago a microphone that works was heard

} // namespace

class AVCaptureMovieFileOutput::Recording : public MovieRecording {
public:
    using MovieRecording::MovieRecording;
};

AVCaptureMovieFileOutput::AVCaptureMovieFileOutput() = default;

AVCaptureMovieFileOutput::~AVCaptureMovieFileOutput()
{
    stopRecording();
}

std::shared_ptr<AVCaptureMovieFileOutput::Recording> AVCaptureMovieFileOutput::recording() const
{
    std::lock_guard lock(mutex_);
    return recording_;
}

bool AVCaptureMovieFileOutput::isRecording() const
{
    return recording() != nullptr;
}

CMTime AVCaptureMovieFileOutput::recordedDuration() const
{
    auto now = recording();
    return now ? now->duration() : CMTime::zero();
}

void AVCaptureMovieFileOutput::startRecording(const URL& file,
                                              std::shared_ptr<AVCaptureFileOutputRecordingDelegate> delegate)
{
    assertOnMainThread();
    precondition(!isRecording(), "one movie is recorded at a time");
    precondition(file.isFileURL(), "a movie is recorded to a file");
    // The delegate is let go of on the main thread, whoever ends the recording.
    auto told = std::make_shared<std::shared_ptr<AVCaptureFileOutputRecordingDelegate>>(std::move(delegate));
    auto self = sharedFrom(this);
    auto started = [weak = std::weak_ptr(self), told, file] {
        DispatchQueue::main()->async([weak, told, file] {
            if (auto output = weak.lock(); output && *told)
                (*told)->fileOutputDidStartRecording(*output, file);
        });
    };
    // The output stays until its delegate has heard of the end.
    auto ended = [self, told, file](std::optional<Error> error) {
        DispatchQueue::main()->async([self, told, file, error = std::move(error)]() mutable {
            {
                std::lock_guard lock(self->mutex_);
                auto over = std::exchange(self->recording_, nullptr);
                if (over && over->isDiscarded())
                    error = AVError::operationCancelled; // also when it was complete by then
            }
            if (auto listener = std::exchange(*told, nullptr))
                listener->fileOutputDidFinishRecording(*self, file, error);
        });
    };
    std::lock_guard lock(mutex_);
    recording_ = std::make_shared<Recording>(MovieRecording::Options{.file = file,
                                                                     .longest = longest_,
                                                                     .leastFree = leastFree_,
                                                                     .largest = captureWish(preset_),
                                                                     .onStart = std::move(started),
                                                                     .onEnd = std::move(ended)});
}

void AVCaptureMovieFileOutput::stopRecording()
{
    if (auto now = recording())
        now->end(std::nullopt);
}

void AVCaptureMovieFileOutput::discardRecording()
{
    if (auto now = recording())
        now->discard();
}

void AVCaptureMovieFileOutput::handleBegin(AVMediaType mediaType)
{
    if (mediaType != AVMediaType::audio)
        return;
    std::lock_guard lock(mutex_);
    isSoundComing_ = true;
}

void AVCaptureMovieFileOutput::take(AVMediaType mediaType, const CMSampleBuffer& sample)
{
    std::shared_ptr<Recording> now;
    auto sound = MovieRecording::Sound::none;
    {
        std::lock_guard lock(mutex_);
        if (mediaType == AVMediaType::audio) {
            soundUntil_ = sample.presentationTimeStamp + sample.duration;
            isSoundComing_ = false;
        }
        now = recording_;
        if (soundUntil_.isNumeric() && sample.presentationTimeStamp - soundUntil_ <= recently)
            sound = MovieRecording::Sound::heard;
        else if (isSoundComing_)
            sound = MovieRecording::Sound::coming;
    }
    if (!now)
        return;
    if (mediaType == AVMediaType::audio)
        now->takeSound(sample);
    else
        now->takePicture(sample, sound);
}

void AVCaptureMovieFileOutput::handleEnd(AVMediaType mediaType, const std::optional<Error>& error)
{
    if (mediaType == AVMediaType::audio) {
        std::lock_guard lock(mutex_);
        soundUntil_ = CMTime::invalid();
        isSoundComing_ = false;
    }
    auto now = recording();
    if (now && mediaType == AVMediaType::audio)
        now->endSound(); // the rest is silent
    else if (now)
        now->end(error);
}

} // namespace platform
