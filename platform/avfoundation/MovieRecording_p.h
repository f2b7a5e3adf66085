// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAssetWriter.h"
#include "platform/avfoundation/CaptureHardware.h"

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace platform {

// One movie while it is recorded: begins with its first picture, ends once. Pictures come from one thread, sound from another,
// the end from any.
class MovieRecording : public std::enable_shared_from_this<MovieRecording> {
public:
    struct Options {
        URL file;
        CMTime longest; // invalid: any
        std::int64_t leastFree = 0;
        CaptureWish largest;
        std::function<void()> onStart; // both on any thread
        std::function<void(std::optional<Error>)> onEnd;
    };
    explicit MovieRecording(Options options);

    enum class Sound { none, coming, heard };
    void takePicture(const CMSampleBuffer& sample, Sound sound);
    void takeSound(const CMSampleBuffer& sample);
    void endSound();
    // Without an error: because it was wanted.
    void end(const std::optional<Error>& error);
    // There will be no file, even if it is being completed.
    void discard();
    bool isDiscarded() const;

    CMTime duration() const;

private:
    Result<void> open(const CMSampleBuffer& first, bool hasSound);
    void appendSound(const CMSampleBuffer& sample);
    void fail(const Error& error);
    bool isDiskFull() const;
    bool isEnding() const;

    const Options options_;
    // of the thread of the pictures, others' once isOpen_
    std::shared_ptr<AVAssetWriter> writer_;
    std::shared_ptr<AVAssetWriterInput> pictures_, sound_;
    CMTime start_, checked_, offered_;
    std::atomic<bool> isOpen_ = false;
    // guarded by soundMutex_, which is taken before mutex_
    std::mutex soundMutex_;
    std::deque<CMSampleBuffer> early_; // came before the first picture that it belongs to
    bool hasSoundEnded_ = false;
    // guarded by mutex_
    mutable std::mutex mutex_;
    CMTime reached_;
    bool isEnding_ = false, isDiscarded_ = false;
};

} // namespace platform
