// SPDX-License-Identifier: MIT
#include "platform/services/CameraMovieReview.h"

#include "platform/avfoundation/AVAssetImageGenerator.h"
#include "platform/avfoundation/AVAssetTrack.h"
#include "platform/avfoundation/AVURLAsset.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/DisplayLink.h"
#include "platform/services/FilmPlayback.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace platform {

CameraMovieReview::CameraMovieReview(std::string path)
    : path_(std::move(path))
{
}

CameraMovieReview::~CameraMovieReview() = default;

void CameraMovieReview::load(CGSize size)
{
    size_ = size;
    DispatchQueue::make("org.zelk.platform.movie-review")->async([weak = weak_from_this(), path = path_] {
        auto asset = std::make_shared<AVURLAsset>(URL::fileURL(path));
        auto tracks = asset->tracks();
        auto found = std::ranges::find(tracks, AVMediaType::video,
                                       [](const auto& track) { return track->mediaType(); });
        if (found == tracks.end())
            return; // it was taken away meanwhile
        DispatchQueue::main()->async([weak, asset, track = *found, seconds = asset->duration().seconds()] {
            if (auto review = weak.lock())
                review->take(asset, track, seconds);
        });
    });
}

void CameraMovieReview::take(std::shared_ptr<AVURLAsset> asset, std::shared_ptr<AVAssetTrack> track,
                             double seconds)
{
    asset_ = std::move(asset);
    track_ = std::move(track);
    seconds_ = seconds;
    showFirst();
    if (onPlayingChange)
        onPlayingChange();
}

void CameraMovieReview::showFirst()
{
    auto generator = std::make_shared<AVAssetImageGenerator>(asset_);
    generator->setAppliesPreferredTrackTransform(true);
    generator->setMaximumSize(size_);
    generator->generateCGImagesAsynchronously(
        {CMTime::zero()},
        [weak = weak_from_this()](const CMTime&, const std::optional<UIImage>& image, const CMTime&,
                                  AVAssetImageGeneratorResult, const std::optional<Error>&) {
            DispatchQueue::main()->async([weak, image] {
                auto review = weak.lock();
                if (review && image && !review->isPlaying() && review->onPicture)
                    review->onPicture(*image);
            });
        });
}

void CameraMovieReview::togglePlaying()
{
    if (isPlaying())
        return stop();
    if (!track_)
        return;
    playback_ = std::make_unique<FilmPlayback>(
        FilmPlayback::Options{.asset = asset_, .track = track_, .start = 0, .end = seconds_, .size = size_});
    began_.reset();
    frames_ = DisplayLink::shared().request([this](Instant frameTime) { step(frameTime); });
    if (onPlayingChange)
        onPlayingChange();
}

void CameraMovieReview::step(Instant frameTime)
{
    if (playback_->isStarting() || !began_)
        began_ = frameTime;
    auto passed = std::chrono::duration<double>(frameTime - *began_).count();
    if (auto picture = playback_->pictureAt(std::min(passed, seconds_)); picture && onPicture)
        onPicture(*picture);
    if (passed >= seconds_)
        stop();
}

void CameraMovieReview::stop()
{
    frames_.cancel();
    playback_.reset();
    showFirst();
    if (onPlayingChange)
        onPlayingChange();
}

} // namespace platform
