// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/FFmpegHandles_p.h"
#include "platform/avfoundation/FFmpegTime_p.h"
#include "platform/foundation/Result.h"

#include <cstdint>
#include <memory>

namespace platform {

struct MediaDecoderOptions {
    // 0 takes one more than there are processors. Each further one holds a few more pictures in memory.
    int threads = 0;
    AVDiscard skipFrames = AVDISCARD_DEFAULT;
};

// Decodes the packets of one stream into frames whose `pts` and `pkt_duration` are set, in ticks of the stream's time
// base. A damaged packet costs what it held: the error of the last one is kept for who finds that nothing came at all.
// One thread at a time.
class MediaDecoder {
public:
    // `parameters` are copied. AVError::decoderNotFound when nobody can decode them, invalidSourceMedia when they
    // contradict themselves or are beyond what is decoded here (8192 x 8192 pixels, 64 channels).
    static Result<std::unique_ptr<MediaDecoder>> open(const AVCodecParameters& parameters,
                                                      AVRational timeBase, AVRational frameRate,
                                                      const MediaDecoderOptions& options = {});

    AVCodecContext& context() { return *context_; }

    // Takes a packet, or null for the end. To be followed by receive until that gives nothing.
    Result<void> send(const AVPacket* packet);
    // Whether `frame` was filled; false when the decoder wants more or has ended.
    Result<bool> receive(AVFrame& frame);
    // Forgets what is under way, for a seek.
    void flush();

    // Whether frames since the opening or the flush were left out because they refer to what came before it.
    bool hasSkipped() const { return hasSkipped_; }
    // How many frames came since the opening.
    std::int64_t frameCount() const { return frameCount_; }
    // A negative number of the codec library, 0 when every packet could be decoded.
    int lastDamage() const { return lastDamage_; }

private:
    MediaDecoder(CodecContext context, AVRational timeBase, AVRational frameRate);
    void completeTimes(AVFrame& frame);

    CodecContext context_;
    const AVRational timeBase_;
    const AVRational frameRate_;
    std::int64_t nextPts_ = AV_NOPTS_VALUE;
    bool isSettling_ = true; // no sound picture since the opening or the seek
    bool hasSkipped_ = false;
    std::int64_t frameCount_ = 0;
    int lastDamage_ = 0;
};

} // namespace platform
