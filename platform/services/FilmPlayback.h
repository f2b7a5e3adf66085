// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAssetTrack.h"
#include "platform/avfoundation/AVURLAsset.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIImage.h"

#include <memory>
#include <optional>

namespace platform {

// Plays a part of a film as pictures, without sound. They are decoded ahead on a thread of their own, a few at a time and no
// larger than they are shown; what comes too late is left out, and who falls far behind goes on where the others are by
// then. Pictures of high dynamic range keep their numbers. Main thread only.
class FilmPlayback {
public:
    struct Options {
        std::shared_ptr<AVURLAsset> asset;
        std::shared_ptr<AVAssetTrack> track; // a video track of it
        double start = 0, end = 0;           // seconds
        CGSize size;                         // pixels that a picture, turned as the track asks, shall fit in
    };
    explicit FilmPlayback(const Options& options);
    ~FilmPlayback();                            // what is being decoded goes on to its end and is dropped
    FilmPlayback(const FilmPlayback&) = delete; // a thread knows what it works on
    FilmPlayback& operator=(const FilmPlayback&) = delete;

    // Whether the first picture is on its way still.
    bool isStarting() const;
    // The picture on screen at that moment, or the last one that is there; nothing when it is the one given last.
    // Moments do not go back.
    std::optional<UIImage> pictureAt(double seconds);

private:
    struct Work; // what is shared with the thread
    const std::shared_ptr<Work> work_;
};

} // namespace platform
