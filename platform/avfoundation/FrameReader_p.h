// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/MediaDecoder_p.h"
#include "platform/avfoundation/MediaDemuxer_p.h"
#include "platform/avfoundation/MediaSource_p.h"

namespace platform {

// Decodes one stream of a file, frame after frame in the order of presentation. One thread at a time.
class FrameReader {
public:
    // `stream` is a position in source.streams(). AVError::contentIsProtected when it is encrypted.
    static Result<std::unique_ptr<FrameReader>> open(const MediaSource& source, int stream,
                                                     std::stop_token stop,
                                                     const MediaDecoderOptions& options = {});

    AVRational timeBase() const { return timeBase_; }
    MediaDecoder& decoder() { return *decoder_; }
    // Samples that the encoder put before the sound.
    int initialPadding() const { return demuxer_->stream(streamIndex_).codecpar->initial_padding; }
    MediaDemuxer& demuxer() { return *demuxer_; }

    // The next frames are those from the key picture at or before `time` (asset time, ticks), for sound from a little
    // earlier than `time`, so that the decoder has settled by then. They begin before `time`: the caller skips.
    Result<void> seek(std::int64_t time);
    // False at the end. Times are asset times. A file of which nothing can be decoded fails with AVError::decodeFailed.
    Result<bool> next(AVFrame& frame);

private:
    FrameReader() = default;
    Result<bool> decodeNext(AVFrame& frame);

    std::unique_ptr<MediaDemuxer> demuxer_;
    std::unique_ptr<MediaDecoder> decoder_;
    Packet packet_;
    AVRational timeBase_{1, 1};
    int streamIndex_ = 0;
    // of the last seek, in ticks
    std::int64_t wanted_ = INT64_MIN;
    std::int64_t place_ = 0;
    bool isDraining_ = false;
};

} // namespace platform
