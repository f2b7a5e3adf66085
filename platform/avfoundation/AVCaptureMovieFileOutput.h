// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVCaptureOutput.h"
#include "platform/avfoundation/AVCaptureSession.h"
#include "platform/avfoundation/CMTime.h"
#include "platform/foundation/URL.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

namespace platform {

class AVCaptureMovieFileOutput;

// Hears of a recording. Main thread only.
class AVCaptureFileOutputRecordingDelegate {
public:
    virtual ~AVCaptureFileOutputRecordingDelegate() = default;
    virtual void fileOutputDidStartRecording(AVCaptureMovieFileOutput&, const URL&) { }
    // Once for each recording, when the file is complete. An error with AVErrorRecordingSuccessfullyFinishedKey among its texts
    // ended a recording that is whole until then: the longest duration reached, the disk nearly full, the camera unplugged.
    // With any other error there is no file.
    virtual void fileOutputDidFinishRecording(AVCaptureMovieFileOutput& output, const URL& file,
                                              const std::optional<Error>& error) = 0;
};

// Records what a session's devices give to QuickTime movies: H.264, with AAC when a microphone gives sound by the time of the
// first picture. A microphone that was started and gave nothing yet is waited for, two seconds at most, before the movie
// begins. Main thread only.
class AVCaptureMovieFileOutput : public AVCaptureOutput {
public:
    AVCaptureMovieFileOutput();
    ~AVCaptureMovieFileOutput() override; // as stopRecording

    // Of the next recording; invalid, as at first: any.
    CMTime maxRecordedDuration() const { return longest_; }
    void setMaxRecordedDuration(const CMTime& duration) { longest_ = duration; }
    // Bytes that are to stay free, so that the file can be completed.
    std::int64_t minFreeDiskSpaceLimit() const { return leastFree_; }
    void setMinFreeDiskSpaceLimit(std::int64_t bytes) { leastFree_ = bytes; }
    // Pictures are made no larger than that of a session of this preset.
    void setPreset(AVCaptureSessionPreset preset) { preset_ = preset; }

    // Begins with the next picture. The delegate is kept until it heard of the end. Requires: not recording; a file's URL.
    void startRecording(const URL& file, std::shared_ptr<AVCaptureFileOutputRecordingDelegate> delegate);
    // Completes the file on another thread.
    void stopRecording();
    // Removes the file at once, also while it is being completed; the delegate hears AVError::operationCancelled.
    void discardRecording();
    bool isRecording() const;        // until the delegate has heard of its end
    CMTime recordedDuration() const; // of the one under way, zero before its first picture. Any thread.

protected:
    void take(AVMediaType mediaType, const CMSampleBuffer& sample) override;
    void handleBegin(AVMediaType mediaType) override;
    void handleEnd(AVMediaType mediaType, const std::optional<Error>& error) override;

private:
    class Recording;
    std::shared_ptr<Recording> recording() const;

    CMTime longest_;
    std::int64_t leastFree_ = 32 * 1024 * 1024;
    AVCaptureSessionPreset preset_ = AVCaptureSessionPreset::high;
    // guarded by mutex_
    mutable std::mutex mutex_;
    std::shared_ptr<Recording> recording_;
    CMTime soundUntil_;          // what the microphone gave last
    bool isSoundComing_ = false; // a microphone is being opened, or is open and gave nothing yet
};

} // namespace platform
