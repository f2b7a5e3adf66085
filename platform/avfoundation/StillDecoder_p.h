// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/GroupReader_p.h"
#include "platform/avfoundation/MediaDecoder_p.h"
#include "platform/avfoundation/StillRenderer_p.h"

#include <deque>
#include <functional>
#include <memory>
#include <stop_token>

namespace platform {

// Decodes groups of pictures and picks from them the pictures that are wanted. Stays the same for all groups of a stream
// that one thread decodes. One thread at a time.
class StillDecoder {
public:
    struct Events {
        std::function<void(const StillMoment&, Result<StillPicture>)> onPicture;
        // Nothing was found where it should be: the group reader is to look elsewhere.
        std::function<void(const StillMoment&)> onRetry;
    };

    // `threads` as MediaDecoderOptions has them.
    static Result<std::unique_ptr<StillDecoder>> open(const StillSession& session, CGSize maximumSize,
                                                      int threads, Events events);

    // Pieces of one group come one after the other. Returns early when `stop` is requested: the moments that are left
    // are then nobody's.
    void decode(PacketGroup piece, const std::stop_token& stop);

private:
    StillDecoder(std::unique_ptr<MediaDecoder> decoder, const StillShape& shape, Events events);

    Result<void> decodePackets(const PacketGroup& piece, const std::stop_token& stop);
    Result<void> receive();
    void choose();
    void endGroup(const std::optional<Error>& error);
    void give(const StillMoment& moment, const AVFrame& frame);
    void giveUp(const StillMoment& moment, const std::optional<Error>& error);

    // fixed after construction
    const std::unique_ptr<MediaDecoder> decoder_;
    const Events events_;
    AVRational timeBase_{1, 1};
    bool skipsUnwanted_ = false; // whether decoding without them leaves the others as they are

    StillRenderer renderer_;
    std::deque<StillMoment> moments_; // of the group, by time
    Frame current_ = makeFrame();
    Frame previous_ = makeFrame(); // the last one of the group
    bool hasPrevious_ = false;
    bool isFirstOfStream_ = false;
    bool isKeyAlone_ = false;
    std::int64_t keyTime_ = 0;
    // the last one that was made
    UIImage image_;
    std::int64_t imageTime_ = AV_NOPTS_VALUE;
};

} // namespace platform
