// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAssetExportSession.h"
#include "platform/dispatch/Token.h"
#include "platform/foundation/Result.h"
#include "platform/services/VideoTrimStrip.h"
#include "platform/uikit/UINavigationItem.h"
#include "platform/uikit/UIViewController.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {

class AVAssetImageGenerator;
class AVAssetTrack;
class AVURLAsset;
class FilmPlayback;
class PickerBar;
class PickerPage;
class UIActivityIndicatorView;
class UIButton;
class UIImageView;
class UILabel;

// A page on which a part of a film is chosen and written to a file of its own. Main thread only.
class VideoTrimController : public UIViewController {
public:
    struct Options {
        std::string path;
        double longest = 0; // seconds; 0: any
        std::string preset{AVAssetExportPresetPassthrough};
        // Where all of the film is chosen, and its encoding is kept, `path` itself is told and no file made.
        bool mayKeepAll = false;
    };
    explicit VideoTrimController(Options options);
    ~VideoTrimController() override;

    // Set before it is shown. Exactly one of them is called in the end: with the path of the new file, which is the caller's
    // to remove, or with why there is none.
    std::function<void(Result<std::string>)> onFinish;
    std::function<void()> onCancel;

    // What the bar shows. The one on the right writes the film.
    const UINavigationItem& navigationItem() const { return item_; }
    void setNavigationItem(UINavigationItem item);

    void loadView() override;
    void viewDidLoad() override;
    void viewDidAppear(Animated animated) override;
    void viewWillDisappear(Animated animated) override;
    void viewWillLayoutSubviews() override;
    void viewDidLayoutSubviews() override;

private:
    using Pictures = std::shared_ptr<AVAssetImageGenerator>;
    void takeAsset(std::shared_ptr<AVURLAsset> asset, std::shared_ptr<AVAssetTrack> track, double seconds);
    void makeStrip();
    void showPicture();
    void togglePlaying();
    void stopPlaying();
    void step(Instant frameTime);
    void save();
    void finish(Result<std::string> result);
    void leave();
    void updateTimes();

    const Options options_;
    UINavigationItem item_;
    std::shared_ptr<PickerPage> page_;
    std::shared_ptr<PickerBar> bar_;
    std::shared_ptr<UIImageView> picture_;
    std::shared_ptr<UILabel> times_;
    std::shared_ptr<UIButton> play_;
    std::shared_ptr<VideoTrimStrip> strip_;
    std::shared_ptr<UIActivityIndicatorView> wheel_;
    std::shared_ptr<AVURLAsset> asset_; // once it was read
    std::shared_ptr<AVAssetTrack> track_;
    CGSize pictureSize_;
    Pictures stripPictures_;
    std::size_t stripCount_ = 0;
    bool isPictureOnItsWay_ = false, isPictureStale_ = false;
    std::unique_ptr<FilmPlayback> playback_; // while it plays
    Token playing_;
    std::optional<Instant> lastFrame_;
    std::shared_ptr<AVAssetExportSession> session_;
    bool isOver_ = false;
};

} // namespace platform
