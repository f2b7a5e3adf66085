// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CMTime.h"
#include "platform/avfoundation/MediaSource_p.h"
#include "platform/foundation/Result.h"
#include "platform/graphics/UIImage.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace platform {

// One picture that is wanted of a stream: the one on screen at `time`, or any that begins within `earliest` and `latest`.
// Asset times of the file, in ticks of the stream.
struct StillMoment {
    std::size_t slot = 0; // where its picture belongs
    std::int64_t time = 0;
    std::int64_t earliest = 0;
    std::int64_t latest = 0;
    // From the file's times to those of the timeline that was asked about, and where the file's part of that begins.
    CMTime shift;
    CMTime start;

    // Where to look for a picture to begin decoding at; earlier than `time` once that went wrong.
    std::int64_t seekTime = 0;
    int attempts = 0;
    bool mayUseKeyAlone = true;
    // Whether reading ended before all pictures up to it were there.
    bool isCutOff = false;

    bool accepts(std::int64_t pts) const { return earliest <= pts && pts <= latest; }
};

struct StillPicture {
    UIImage image;
    CMTime time;
};

// What is wanted of one stream of one file.
struct StillSession {
    std::shared_ptr<const MediaSource> source;
    int stream = 0; // a position in its streams()
    // How its pictures are laid down to be shown.
    CGAffineTransform transform;
    std::vector<StillMoment> moments;
};

} // namespace platform
