// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CMTimeRange.h"
#include "platform/avfoundation/MediaSource_p.h"

#include <memory>

namespace platform {

// A stretch of a track's timeline and what plays there. Times of the source are asset times of its file.
struct MediaSegment {
    std::shared_ptr<const MediaSource> source; // null: nothing plays
    int stream = -1;                           // of the source
    CMTime sourceStart;                        // invalid when nothing plays
    CMTimeRange target;
    // Whether it is all of a track of a file that only its data tell the end of; the range is what its header says.
    bool isWholeTrack = false;

    bool isEmpty() const { return !source; }
    const MediaStream& mediaStream() const { return source->streams()[static_cast<std::size_t>(stream)]; }
};

// The segments that meet `range`, cut to it; their targets stay on the track's timeline. A range may be without end,
// and then so is the last segment if it is all of a file's track.
std::vector<MediaSegment> segmentsWithin(const std::vector<MediaSegment>& segments, const CMTimeRange& range);

} // namespace platform
