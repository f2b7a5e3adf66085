// SPDX-License-Identifier: MIT
#include "platform/services/MediaLibraryController.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/services/MediaGridView.h"
#include "platform/services/PickerBar.h"
#include "platform/services/PickerNotice.h"
#include "platform/services/mediaPickerText_p.h"
#include "platform/uikit/UIButton.h"
#include "platform/uikit/UISegmentedControl.h"

#include <algorithm>
#include <array>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat filterHeight = 44, filterInset = 8;
constexpr std::array choices{MediaKinds{true, true}, MediaKinds{true, false}, MediaKinds{false, true}};

MediaPickerText titleOf(MediaKinds kinds)
{
    if (kinds.photos == kinds.videos)
        return MediaPickerText::library;
    return kinds.photos ? MediaPickerText::photos : MediaPickerText::videos;
}

} // namespace

MediaLibraryController::MediaLibraryController(MediaKinds kinds)
    : kinds_(kinds)
{
    setTitle(mediaPickerText(titleOf(kinds)));
}

MediaLibraryController::~MediaLibraryController()
{
    listing_.request_stop();
}

void MediaLibraryController::loadView()
{
    page_ = std::make_shared<PickerPage>();
    setView(page_);
}

void MediaLibraryController::setWaiting(bool waiting)
{
    isWaiting_ = waiting;
    if (!isViewLoaded())
        return;
    startListing();
    showFiles();
}

void MediaLibraryController::viewDidLoad()
{
    // The views do not outlive the controller's own.
    auto leave = [this] {
        if (auto cancel = onCancel)
            cancel();
    };
    page_->onEscape = leave;
    bar_ = std::make_shared<PickerBar>();
    bar_->setTitle(title());
    bar_->cancelButton()->addAction([leave](UIControl&) { leave(); },
                                    {UIControlEvents::primaryActionTriggered});
    grid_ = std::make_shared<MediaGridView>();
    grid_->accessibility().label = title();
    grid_->onPick = [this](const LibraryFile& file) {
        if (auto pick = onPick)
            pick(file);
    };
    notice_ = std::make_shared<PickerNotice>();
    page_->addSubview(bar_);
    if (kinds_.photos && kinds_.videos) {
        filter_ = std::make_shared<UISegmentedControl>(std::vector{mediaPickerText(MediaPickerText::all),
                                                                   mediaPickerText(MediaPickerText::photos),
                                                                   mediaPickerText(MediaPickerText::videos)});
        filter_->setSelectedSegmentIndex(0);
        filter_->addAction([this](UIControl&) { showFiles(); }, {UIControlEvents::valueChanged});
        page_->addSubview(filter_);
    }
    page_->addSubview(grid_);
    page_->addSubview(notice_);
    startListing();
    showFiles();
}

void MediaLibraryController::startListing()
{
    if (isWaiting_ || std::exchange(isListing_, true))
        return;
    auto self = std::static_pointer_cast<MediaLibraryController>(shared_from_this());
    DispatchQueue::make("org.zelk.platform.media-listing")
        ->async([weak = std::weak_ptr(self), kinds = kinds_, stop = listing_.get_token()] {
            auto files = listMedia(mediaFolders(), kinds, stop);
            DispatchQueue::main()->async([weak, files = std::move(files)]() mutable {
                auto controller = weak.lock();
                if (!controller)
                    return;
                controller->files_ = std::move(files);
                controller->isListed_ = true;
                controller->showFiles();
            });
        });
}

MediaKinds MediaLibraryController::chosenKinds() const
{
    auto chosen = filter_ ? filter_->selectedSegmentIndex() : 0;
    return choices[static_cast<std::size_t>(std::max(chosen, 0))];
}

void MediaLibraryController::showFiles()
{
    auto kinds = chosenKinds();
    std::vector<LibraryFile> shown;
    std::ranges::copy_if(files_, std::back_inserter(shown),
                         [&](const LibraryFile& file) { return file.isVideo ? kinds.videos : kinds.photos; });
    notice_->setWaiting(!isListed_);
    notice_->setText(isListed_ && shown.empty() ? mediaPickerText(MediaPickerText::noMedia) : std::string());
    auto hasKeyboard = grid_->isFirstResponder();
    grid_->setHidden(shown.empty());
    grid_->setFiles(std::move(shown));
    if (isListed_ && !hasKeyboard && page_->window() && !grid_->isHidden())
        grid_->becomeFirstResponder();
    page_->setNeedsLayout();
}

void MediaLibraryController::viewDidAppear(Animated animated)
{
    UIViewController::viewDidAppear(animated);
    if (!grid_->isHidden())
        grid_->becomeFirstResponder();
}

void MediaLibraryController::viewWillLayoutSubviews()
{
    UIViewController::viewWillLayoutSubviews();
    auto below = page_->placeBar(*bar_);
    if (filter_) {
        auto wide = std::min(std::max(below.width() - 2 * filterInset, 0.0), 420.0);
        filter_->setFrame(CGRect::make(below.midX() - wide / 2, below.minY() + filterInset, wide,
                                       filterHeight - 2 * filterInset + 4));
        auto taken = std::min(filterHeight + 4, below.height());
        below = CGRect::make(below.minX(), below.minY() + taken, below.width(), below.height() - taken);
    }
    grid_->setFrame(below);
    notice_->setFrame(below);
}

} // namespace platform
