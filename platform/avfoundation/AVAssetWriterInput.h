// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVMediaType.h"
#include "platform/avfoundation/AudioSettings.h"
#include "platform/avfoundation/CMSampleBuffer.h"
#include "platform/avfoundation/VideoSettings.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/NSObject.h"
#include "platform/graphics/Geometry.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <variant>

namespace platform {

class AVAssetWriter;
class TrackWriting;

// Where one track's samples go into a writer. Set up on one thread before writing starts; then samples are appended
// from one thread at a time, and the rest is for any thread.
class AVAssetWriterInput : public NSObject {
public:
    // None: samples are written as they are. Otherwise they must be linear PCM, or pictures, and are compressed (or,
    // for linear PCM, brought into that form).
    using OutputSettings = std::variant<std::monostate, AudioSettings, VideoSettings>;

    AVAssetWriterInput(AVMediaType mediaType, OutputSettings outputSettings,
                       std::shared_ptr<const CMFormatDescription> sourceFormatHint = nullptr);
    ~AVAssetWriterInput() override;

    AVMediaType mediaType() const { return mediaType_; }
    const OutputSettings& outputSettings() const { return outputSettings_; }
    const std::shared_ptr<const CMFormatDescription>& sourceFormatHint() const { return sourceFormatHint_; }

    // How players turn and mirror the pictures. Before writing starts.
    const CGAffineTransform& transform() const { return transform_; }
    void setTransform(const CGAffineTransform& transform);
    // ISO 639-2 ("eng"). Before writing starts.
    const std::string& languageCode() const { return languageCode_; }
    void setLanguageCode(std::string code);
    // Ticks a second of the track's times in the file; 0 lets the writer choose. Before writing starts.
    std::int32_t mediaTimeScale() const { return mediaTimeScale_; }
    void setMediaTimeScale(std::int32_t scale);

    // Whether the track wants samples now: false before the writing session started, once the track is finished, when the
    // writer has failed, and while this track is more than a second ahead of another that is not finished.
    bool isReadyForMoreMediaData() const;

    // Runs `use` on `queue` whenever the track becomes ready for samples, beginning with now when it is. `use` appends until
    // the track is not ready or it has nothing more, when it marks the track as finished; after that, and after the writer
    // ended, it is let go. After a failure of the writer it is run once more, so that it can see that. Once only.
    void requestMediaDataWhenReady(std::shared_ptr<DispatchQueue> queue, std::function<void()> use);

    // Takes a sample; blocks while it is compressed and written. False when the writer is not writing, or fails by it: its
    // error says why. Times must not go back (decode times for samples as they are); sound that is missing is filled up
    // with silence, sound that overlaps is cut. Requires a session.
    bool append(const CMSampleBuffer& sample);

    // No more samples come.
    void markAsFinished();

private:
    friend class AVAssetWriter;
    // Runs the requested block if the track is ready or the writer has failed, unless it runs already. No lock is held.
    void pump();
    void runRequest();
    void forgetRequest();

    // fixed once writing starts
    const AVMediaType mediaType_;
    const OutputSettings outputSettings_;
    const std::shared_ptr<const CMFormatDescription> sourceFormatHint_;
    CGAffineTransform transform_;
    std::string languageCode_ = "und";
    std::int32_t mediaTimeScale_ = 0;
    std::weak_ptr<AVAssetWriter> writer_;
    std::unique_ptr<TrackWriting> writing_; // of the thread that appends

    // guarded by the writer's mutex_
    CMTime reached_; // the end of what was appended, in the samples' time; invalid before
    bool isFinished_ = false;

    // guarded by requestMutex_
    std::mutex requestMutex_;
    std::shared_ptr<DispatchQueue> queue_;
    std::shared_ptr<std::function<void()>> use_; // null when there is no request, or not any more
    bool isRunning_ = false;
    bool isToRunAgain_ = false; // something changed since the block began to run
    bool sawFailure_ = false;
};

} // namespace platform
