// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAssetReaderOutput.h"
#include "platform/avfoundation/AVAssetTrack.h"
#include "platform/avfoundation/AudioSettings.h"
#include "platform/avfoundation/CVPixelBuffer.h"
#include "platform/foundation/Result.h"

#include <atomic>
#include <stop_token>
#include <variant>

namespace platform {

class TrackReading;
struct TrackExtent;

// Reads one track. What comes out depends on the settings:
//
// - None: samples as they are stored, in decode order, from the sync sample at or before the range's start to the last
//   that is needed for the range, with their own times on the asset's timeline.
// - Audio settings (linear PCM): sound in that form. The first sample lies at the start of the range, whose position
//   among the source's samples is rounded once; there are as many as duration times rate, rounded once, however the
//   track is cut; where it has no media there is silence. A range without an end stops with the track. More channels
//   than asked for are mixed by the usual weights (ITU-R BS.775), scaled so that the sum of full channels is not
//   clipped; channels in no known places are dealt out in turn and averaged.
// - Pixel buffer attributes: decoded pictures in the order they are shown, not rotated. The picture on screen at the
//   range's start comes first, its time moved there; the last one's duration ends with the range.
class AVAssetReaderTrackOutput : public AVAssetReaderOutput {
public:
    using OutputSettings = std::variant<std::monostate, AudioSettings, PixelBufferAttributes>;

    // Settings that do not fit the track's media type, or sound in another format than linear PCM or in a form that
    // there is not, make an output that no reader can add.
    AVAssetReaderTrackOutput(std::shared_ptr<AVAssetTrack> track, OutputSettings outputSettings);
    ~AVAssetReaderTrackOutput() override;

    const std::shared_ptr<AVAssetTrack>& track() const { return track_; }
    const OutputSettings& outputSettings() const { return outputSettings_; }
    AVMediaType mediaType() const override { return track_->mediaType(); }
    std::shared_ptr<const CMSampleBuffer> copyNextSampleBuffer() override;

protected:
    // How the samples come to be, by the settings. Opens no file.
    virtual std::unique_ptr<TrackReading> makeReading(TrackExtent extent);

private:
    friend class AVAssetReader;
    bool settingsFit() const;
    // Gets ready to read `range`; `end` is the asset's. Opens no file.
    [[nodiscard]] Result<void> start(const CMTimeRange& range, const CMTime& end, std::stop_token stop);

    // fixed after construction
    const std::shared_ptr<AVAssetTrack> track_;
    const OutputSettings outputSettings_;
    // set when the reader adds it
    bool isAdded_ = false;
    std::weak_ptr<AVAssetReader> reader_;
    // set when the reader starts, then of the thread that reads
    CMTime start_;
    CMTime end_;
    std::unique_ptr<TrackReading> reading_;
    // any thread
    std::atomic<double> progress_ = 0;
};

} // namespace platform
