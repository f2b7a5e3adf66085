// SPDX-License-Identifier: MIT
#include "platform/services/VideoTrimController.h"

#include "platform/avfoundation/AVAssetImageGenerator.h"
#include "platform/avfoundation/AVAssetTrack.h"
#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/AVURLAsset.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/DisplayLink.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/UUID.h"
#include "platform/services/FilmPlayback.h"
#include "platform/services/PickerBar.h"
#include "platform/services/mediaDuration.h"
#include "platform/services/mediaPickerText_p.h"
#include "platform/uikit/UIActivityIndicatorView.h"
#include "platform/uikit/UIButton.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIImageView.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/systemText.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat stripHeight = 64, margin = 12, timesHeight = 24, playHeight = 36;
constexpr CGFloat stripPixels = 160, previewPixels = 1280;
constexpr CMTimeScale timescale = 600;

CMTime timeAt(double seconds)
{
    return CMTime::makeWithSeconds(seconds, timescale);
}

std::shared_ptr<AVAssetTrack> videoTrackOf(const AVAsset& asset)
{
    auto tracks = asset.tracks();
    auto found = std::ranges::find_if(
        tracks, [](const auto& track) { return track->mediaType() == AVMediaType::video; });
    return found == tracks.end() ? nullptr : *found;
}

} // namespace

VideoTrimController::VideoTrimController(Options options)
    : options_(std::move(options))
{
}

VideoTrimController::~VideoTrimController()
{
    if (stripPictures_)
        stripPictures_->cancelAllCGImageGeneration();
    if (session_ && !isOver_)
        session_->cancelExport();
}

void VideoTrimController::setNavigationItem(UINavigationItem item)
{
    item_ = std::move(item);
    if (!bar_)
        return;
    bar_->setTitle(item_.title);
    bar_->setDoneTitle(item_.rightBarButtonItem ? item_.rightBarButtonItem->title : std::string());
    bar_->doneButton()->setFont(UIFont::preferredFont(FontTextStyle::body,
                                                      page_->traitCollection().preferredContentSizeCategory,
                                                      page_->traitCollection().textScale)
                                    .withWeight(FontWeight::semibold));
}

void VideoTrimController::loadView()
{
    page_ = std::make_shared<PickerPage>();
    setView(page_);
}

void VideoTrimController::viewDidLoad()
{
    bar_ = std::make_shared<PickerBar>();
    picture_ = std::make_shared<UIImageView>();
    picture_->setContentMode(UIViewContentMode::scaleAspectFit);
    picture_->setBackgroundColor(UIColor::black());
    picture_->setClipsToBounds(true);
    times_ = std::make_shared<UILabel>();
    times_->setPreferredFont(FontTextStyle::footnote);
    times_->setTextColor(UIColor::secondaryLabel());
    times_->setTextAlignment(TextAlignment::center);
    play_ = std::make_shared<UIButton>(UIButtonStyle::bordered);
    play_->setTitle(mediaPickerText(MediaPickerText::play));
    strip_ = std::make_shared<VideoTrimStrip>();
    wheel_ = std::make_shared<UIActivityIndicatorView>(UIActivityIndicatorViewStyle::large);
    for (const auto& view :
         {std::shared_ptr<UIView>(bar_), std::shared_ptr<UIView>(picture_), std::shared_ptr<UIView>(times_),
          std::shared_ptr<UIView>(play_), std::shared_ptr<UIView>(strip_), std::shared_ptr<UIView>(wheel_)})
        page_->addSubview(view);

    // The views do not outlive the controller's own.
    auto primary = UIControlEvents{UIControlEvents::primaryActionTriggered};
    page_->onEscape = [this] { leave(); };
    page_->onSpace = [this] { togglePlaying(); };
    page_->onReturn = [this] {
        if (bar_->doneButton()->isEnabled())
            bar_->doneButton()->performPrimaryAction();
    };
    bar_->cancelButton()->addAction([this](UIControl&) { leave(); }, primary);
    bar_->doneButton()->addAction(
        [this](UIControl&) {
            if (auto action = item_.rightBarButtonItem ? item_.rightBarButtonItem->action : nullptr)
                action();
        },
        primary);
    play_->addAction([this](UIControl&) { togglePlaying(); }, primary);
    strip_->onMove = [this](VideoTrimStrip::Handle) {
        stopPlaying();
        showPicture();
        updateTimes();
    };
    auto self = std::static_pointer_cast<VideoTrimController>(shared_from_this());
    std::weak_ptr<VideoTrimController> weak = self;
    if (!item_.rightBarButtonItem)
        item_.rightBarButtonItem = UIBarButtonItem{
            .title = systemText(SystemText::ok), .style = UIBarButtonItem::Style::done, .action = [weak] {
                if (auto page = weak.lock())
                    page->save();
            }};
    setNavigationItem(item_);
    bar_->doneButton()->setEnabled(false);
    play_->setEnabled(false);
    wheel_->startAnimating();
    // Reading a file's head may take a while.
    DispatchQueue::make("org.zelk.platform.video-trim")->async([weak, path = options_.path] {
        auto asset = std::make_shared<AVURLAsset>(URL::fileURL(path));
        auto track = videoTrackOf(*asset);
        auto seconds = asset->duration().seconds();
        DispatchQueue::main()->async([weak, asset, track, seconds] {
            if (auto page = weak.lock())
                page->takeAsset(asset, track, seconds);
        });
    });
}

void VideoTrimController::takeAsset(std::shared_ptr<AVURLAsset> asset, std::shared_ptr<AVAssetTrack> track,
                                    double seconds)
{
    wheel_->stopAnimating();
    auto pictureSize =
        track ? track->preferredTransform().apply(CGRect{{}, track->naturalSize()}).size : CGSize{};
    if (pictureSize.width <= 0 || pictureSize.height <= 0 || !(seconds > 0)) {
        finish(std::unexpected(asset->loadError().value_or(Error(AVError::noSourceTrack))));
        return;
    }
    asset_ = std::move(asset);
    track_ = std::move(track);
    pictureSize_ = pictureSize;
    strip_->setDuration(seconds, options_.longest);
    bar_->doneButton()->setEnabled(true);
    play_->setEnabled(true);
    updateTimes();
    page_->setNeedsLayout();
    showPicture();
}

// --- Pictures --------------------------------------------------------------------------------------

void VideoTrimController::makeStrip()
{
    auto count = asset_ ? strip_->pictureCount(pictureSize_.width / pictureSize_.height) : 0;
    if (count == stripCount_)
        return;
    stripCount_ = count;
    if (stripPictures_)
        stripPictures_->cancelAllCGImageGeneration();
    stripPictures_ = std::make_shared<AVAssetImageGenerator>(asset_);
    stripPictures_->setAppliesPreferredTrackTransform(true);
    stripPictures_->setMaximumSize({stripPixels * 2, stripPixels});
    std::vector<AVRequestedTime> times;
    for (std::size_t i = 0; i < count; ++i)
        times.emplace_back(
            timeAt(strip_->duration() * (static_cast<double>(i) + 0.5) / static_cast<double>(count)));
    auto self = std::static_pointer_cast<VideoTrimController>(shared_from_this());
    auto pictures = std::make_shared<std::vector<UIImage>>(count);
    auto next = std::make_shared<std::size_t>(0);
    stripPictures_->generateCGImagesAsynchronously(
        times,
        [weak = std::weak_ptr(self), pictures, next, made = std::weak_ptr(stripPictures_)](
            const CMTime&, const std::optional<UIImage>& image, const CMTime&, AVAssetImageGeneratorResult,
            const std::optional<Error>&) {
            DispatchQueue::main()->async([weak, pictures, next, made, image] {
                auto place = (*next)++;
                auto page = weak.lock();
                if (!page || page->stripPictures_ != made.lock() || place >= pictures->size())
                    return;
                if (image)
                    (*pictures)[place] = *image;
                page->strip_->setPictures(*pictures);
            });
        });
}

// One at a time; what was asked for meanwhile is the next one.
void VideoTrimController::showPicture()
{
    if (!asset_)
        return;
    if (std::exchange(isPictureOnItsWay_, true)) {
        isPictureStale_ = true;
        return;
    }
    isPictureStale_ = false;
    auto self = std::static_pointer_cast<VideoTrimController>(shared_from_this());
    auto generator = std::make_shared<AVAssetImageGenerator>(asset_);
    generator->setAppliesPreferredTrackTransform(true);
    generator->setMaximumSize({previewPixels, previewPixels});
    generator->setRequestedTimeToleranceBefore(CMTime::zero());
    generator->setRequestedTimeToleranceAfter(CMTime::zero());
    // The end itself has no picture.
    auto seconds = std::clamp(strip_->head(), 0.0, std::max(strip_->duration() - 0.05, 0.0));
    generator->generateCGImagesAsynchronously(
        {timeAt(seconds)},
        [weak = std::weak_ptr(self)](const CMTime&, const std::optional<UIImage>& image, const CMTime&,
                                     AVAssetImageGeneratorResult, const std::optional<Error>&) {
            DispatchQueue::main()->async([weak, image] {
                auto page = weak.lock();
                if (!page)
                    return;
                page->isPictureOnItsWay_ = false;
                if (image)
                    page->picture_->setImage(*image);
                if (page->isPictureStale_)
                    page->showPicture();
            });
        });
}

void VideoTrimController::togglePlaying()
{
    if (playing_)
        return stopPlaying();
    if (!asset_)
        return;
    if (strip_->head() >= strip_->end() - 0.05)
        strip_->setHead(strip_->start());
    play_->setSelected(true);
    lastFrame_.reset();
    auto room = picture_->bounds().size;
    auto density = page_->traitCollection().displayScale;
    playback_ = std::make_unique<FilmPlayback>(
        FilmPlayback::Options{.asset = asset_,
                              .track = track_,
                              .start = strip_->head(),
                              .end = strip_->end(),
                              .size = {room.width * density, room.height * density}});
    playing_ = DisplayLink::shared().request([this](Instant frameTime) { step(frameTime); });
}

void VideoTrimController::stopPlaying()
{
    playing_.cancel();
    playback_.reset();
    play_->setSelected(false);
}

void VideoTrimController::step(Instant frameTime)
{
    // Time begins with the first picture.
    if (playback_->isStarting())
        return;
    auto before = std::exchange(lastFrame_, frameTime).value_or(frameTime);
    strip_->setHead(strip_->head() + std::chrono::duration<double>(frameTime - before).count());
    if (auto picture = playback_->pictureAt(strip_->head()))
        picture_->setImage(*picture);
    updateTimes();
    if (strip_->head() < strip_->end())
        return;
    stopPlaying();
    showPicture();
}

void VideoTrimController::updateTimes()
{
    auto text = mediaDuration(strip_->head());
    text.append("  ·  ").append(mediaDuration(strip_->end() - strip_->start()));
    times_->setText(std::move(text));
}

// --- The end ---------------------------------------------------------------------------------------

void VideoTrimController::save()
{
    if (!asset_ || session_ || isOver_)
        return;
    stopPlaying();
    auto isWhole = strip_->start() <= 0 && strip_->end() >= strip_->duration();
    if (options_.mayKeepAll && isWhole && options_.preset == AVAssetExportPresetPassthrough)
        return finish(options_.path);
    session_ = AVAssetExportSession::make(asset_, options_.preset);
    if (!session_)
        return finish(std::unexpected(Error(AVError::exportFailed)));
    auto path = FileManager::defaultManager().temporaryDirectory().path();
    path.append("/").append(UUID().string()).append(".mov");
    session_->setOutputURL(URL::fileURL(path));
    session_->setTimeRange({timeAt(strip_->start()), timeAt(strip_->end() - strip_->start())});
    bar_->doneButton()->setEnabled(false);
    strip_->setUserInteractionEnabled(false);
    wheel_->startAnimating();
    auto self = std::static_pointer_cast<VideoTrimController>(shared_from_this());
    session_->exportAsynchronously([weak = std::weak_ptr(self), session = std::weak_ptr(session_), path] {
        auto ended = session.lock();
        auto error = ended ? ended->error() : std::optional<Error>();
        DispatchQueue::main()->async([weak, error, path] {
            auto page = weak.lock();
            if (!page || page->isOver_) {
                // Nobody wants it any more; an export that failed has left nothing.
                std::ignore = FileManager::defaultManager().removeItem(URL::fileURL(path));
                return;
            }
            page->wheel_->stopAnimating();
            if (error)
                page->finish(std::unexpected(*error));
            else
                page->finish(path);
        });
    });
}

void VideoTrimController::finish(Result<std::string> result)
{
    auto kept = shared_from_this();
    if (!std::exchange(isOver_, true) && onFinish)
        onFinish(std::move(result));
}

void VideoTrimController::leave()
{
    auto kept = shared_from_this();
    stopPlaying();
    if (std::exchange(isOver_, true))
        return;
    if (session_)
        session_->cancelExport();
    if (onCancel)
        onCancel();
}

// --- Appearance ------------------------------------------------------------------------------------

void VideoTrimController::viewDidAppear(Animated animated)
{
    UIViewController::viewDidAppear(animated);
    setNavigationItem(item_);
}

void VideoTrimController::viewWillDisappear(Animated animated)
{
    UIViewController::viewWillDisappear(animated);
    stopPlaying();
}

void VideoTrimController::viewWillLayoutSubviews()
{
    UIViewController::viewWillLayoutSubviews();
    auto area = page_->placeBar(*bar_);
    auto inner = std::max(area.width() - 2 * margin, 0.0);
    auto stripTop = area.maxY() - margin - stripHeight;
    strip_->setFrame(CGRect::make(area.minX() + margin, stripTop, inner, stripHeight));
    auto playTop = stripTop - margin - playHeight;
    auto playWidth = std::min(play_->sizeThatFits({inner, playHeight}).width + 2 * margin, inner);
    play_->setFrame(CGRect::make(area.midX() - playWidth / 2, playTop, playWidth, playHeight));
    auto timesTop = playTop - timesHeight - margin / 2;
    times_->setFrame(CGRect::make(area.minX() + margin, timesTop, inner, timesHeight));
    auto top = area.minY();
    picture_->setFrame(
        CGRect::make(area.minX(), top, area.width(), std::max(timesTop - margin / 2 - top, 0.0)));
    wheel_->setCenter(picture_->frame().center());
}

void VideoTrimController::viewDidLayoutSubviews()
{
    UIViewController::viewDidLayoutSubviews();
    makeStrip();
}

} // namespace platform
