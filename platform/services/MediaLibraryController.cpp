// SPDX-License-Identifier: MIT
#include "platform/services/MediaLibraryController.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/services/MediaGridView.h"
#include "platform/services/PickerBar.h"
#include "platform/services/mediaPickerText_p.h"
#include "platform/uikit/UIActivityIndicatorView.h"
#include "platform/uikit/UIButton.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UISegmentedControl.h"

#include <algorithm>
#include <array>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat filterHeight = 44, filterInset = 8, margin = 24, wheelSide = 32;
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
    empty_ = std::make_shared<UILabel>();
    empty_->setPreferredFont(FontTextStyle::title3);
    empty_->setTextColor(UIColor::secondaryLabel());
    empty_->setTextAlignment(TextAlignment::center);
    empty_->setNumberOfLines(0);
    wheel_ = std::make_shared<UIActivityIndicatorView>(UIActivityIndicatorViewStyle::large);
    page_->addSubview(bar_);
    if (kinds_.photos && kinds_.videos) {
        filter_ = std::make_shared<UISegmentedControl>(std::vector{mediaPickerText(MediaPickerText::all),
                                                                   mediaPickerText(MediaPickerText::photos),
                                                                   mediaPickerText(MediaPickerText::videos)});
        filter_->setSelectedSegmentIndex(0);
        filter_->addAction([this](UIControl&) { showFiles(); }, {UIControlEvents::valueChanged});
        page_->addSubview(filter_);
    }
    for (const auto& view :
         {std::shared_ptr<UIView>(grid_), std::shared_ptr<UIView>(empty_), std::shared_ptr<UIView>(wheel_)})
        page_->addSubview(view);
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
    isListed_ ? wheel_->stopAnimating() : wheel_->startAnimating();
    empty_->setHidden(!isListed_ || !shown.empty());
    empty_->setText(mediaPickerText(MediaPickerText::noMedia));
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
    auto area = page_->bounds().inset(page_->safeAreaInsets());
    if (area.isNull())
        area = page_->bounds();
    bar_->setFrame(CGRect::make(area.minX(), area.minY(), area.width(), PickerBar::height));
    auto top = bar_->frame().maxY();
    if (filter_) {
        auto wide = std::min(std::max(area.width() - 2 * filterInset, 0.0), 420.0);
        filter_->setFrame(CGRect::make(area.midX() - wide / 2, top + filterInset, wide,
                                       filterHeight - 2 * filterInset + 4));
        top += filterHeight + 4;
    }
    auto below = CGRect::make(area.minX(), top, area.width(), std::max(area.maxY() - top, 0.0));
    grid_->setFrame(below);
    auto inner = below.insetBy(margin, margin);
    empty_->setFrame(inner.isNull() ? below : inner);
    wheel_->setFrame(
        CGRect::make(below.midX() - wheelSide / 2, below.midY() - wheelSide / 2, wheelSide, wheelSide));
}

} // namespace platform
