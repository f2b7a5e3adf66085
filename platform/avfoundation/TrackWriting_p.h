// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAssetWriterInput.h"
#include "platform/avfoundation/CMTimeRange.h"
#include "platform/avfoundation/MediaMuxer_p.h"
#include "platform/foundation/Result.h"

#include <memory>

namespace platform {

// How one input's samples become packets of the file. Of the thread that appends.
class TrackWriting {
public:
    TrackWriting() = default;
    TrackWriting(const TrackWriting&) = delete; // refers to its place in the file
    TrackWriting& operator=(const TrackWriting&) = delete;
    virtual ~TrackWriting() = default;

    // The part of `sample` that lies within `session`.
    [[nodiscard]] virtual Result<void> append(const CMSampleBuffer& sample, const CMTimeRange& session) = 0;
    // What is under way; no append follows. A track that nothing was written to is described from its settings where
    // that suffices, and dropped otherwise.
    [[nodiscard]] virtual Result<void> finish() = 0;
};

// Where a track's packets go.
struct TrackPlace {
    MediaMuxer& muxer;
    std::size_t track;
    AVFileType fileType;
    // Of the description, what is known before the samples come.
    CGAffineTransform transform;
    std::string languageCode;
    std::int32_t mediaTimeScale;

    MuxerTrack description(CodecParameters codec, AVRational timeBase) const;
};

// As the input's settings ask. Requires that they can be written (AVAssetWriter::canAdd).
std::unique_ptr<TrackWriting> makeTrackWriting(const AVAssetWriterInput& input, MediaMuxer& muxer,
                                               std::size_t track, AVFileType fileType);

std::unique_ptr<TrackWriting>
makeCompressedTrackWriting(const TrackPlace& place, const std::shared_ptr<const CMFormatDescription>& hint);
std::unique_ptr<TrackWriting> makeAudioTrackWriting(const TrackPlace& place, const AudioSettings& settings);
std::unique_ptr<TrackWriting> makeVideoTrackWriting(const TrackPlace& place, const VideoSettings& settings);

// The encoder and the form of sound that the settings name; none when there is no such form.
const AVCodec* audioEncoder(const AudioSettings& settings);
const AVCodec* videoEncoder(const VideoSettings& settings);
// Linear PCM as the settings ask for it, with the source's rate and channels where they do not say.
CMAudioFormat pcmFormat(const AudioSettings& settings, const CMAudioFormat& source);

// Sends a frame (or null for the end) through an encoder and each packet that comes out to `take`.
template <class Take>
Result<void> encode(AVCodecContext& encoder, const AVFrame* frame, AVPacket& packet, Take&& take);

} // namespace platform

#include "platform/avfoundation/FFmpegError_p.h"

namespace platform {

template <class Take>
Result<void> encode(AVCodecContext& encoder, const AVFrame* frame, AVPacket& packet, Take&& take)
{
    int code = avcodec_send_frame(&encoder, frame);
    if (code < 0 && code != AVERROR_EOF)
        return std::unexpected(mediaError(code, MediaWork::encode));
    for (;;) {
        code = avcodec_receive_packet(&encoder, &packet);
        if (code == AVERROR(EAGAIN) || code == AVERROR_EOF)
            return {};
        if (code < 0)
            return std::unexpected(mediaError(code, MediaWork::encode));
        TRY(take(packet));
        av_packet_unref(&packet);
    }
}

} // namespace platform
