// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/Token.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIImage.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {

class AVAssetTrack;
class AVURLAsset;
class FilmPlayback;

// Lets the user look at a movie that was just recorded: its first picture, and all of them when it is played. Main thread only.
class CameraMovieReview : public std::enable_shared_from_this<CameraMovieReview> {
public:
    explicit CameraMovieReview(std::string path);
    ~CameraMovieReview();
    CameraMovieReview(const CameraMovieReview&) = delete; // work under way refers to it
    CameraMovieReview& operator=(const CameraMovieReview&) = delete;

    // Set before it is loaded.
    std::function<void(const UIImage&)> onPicture;
    std::function<void()> onPlayingChange; // or that it can be played

    // Gives the first picture, later. `size`: pixels that pictures shall fit in.
    void load(CGSize size);
    bool canPlay() const { return track_ != nullptr; }
    bool isPlaying() const { return static_cast<bool>(frames_); }
    // From the beginning, to the end.
    void togglePlaying();

private:
    void take(std::shared_ptr<AVURLAsset> asset, std::shared_ptr<AVAssetTrack> track, double seconds);
    void showFirst();
    void step(Instant frameTime);
    void stop();

    const std::string path_;
    CGSize size_;
    std::shared_ptr<AVURLAsset> asset_;
    std::shared_ptr<AVAssetTrack> track_;
    double seconds_ = 0;
    std::unique_ptr<FilmPlayback> playback_; // while it plays
    std::optional<Instant> began_;
    Token frames_;
};

} // namespace platform
