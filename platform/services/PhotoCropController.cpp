// SPDX-License-Identifier: MIT
#include "platform/services/PhotoCropController.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/services/CroppablePhoto_p.h"
#include "platform/services/PhotoCropView.h"
#include "platform/services/PickerBar.h"
#include "platform/services/PickerNotice.h"
#include "platform/services/mediaPickerText_p.h"
#include "platform/uikit/UIButton.h"
#include "platform/uikit/UIEvent.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

constexpr int shownSide = 2048; // pixels of the shorter side

} // namespace

PhotoCropController::PhotoCropController(std::shared_ptr<const CroppablePhoto> photo, Completion completion)
    : photo_(std::move(photo))
    , queue_(DispatchQueue::make("org.zelk.platform.photo-crop"))
    , completion_(std::move(completion))
{
    setTitle(mediaPickerText(MediaPickerText::moveAndScale));
}

PhotoCropController::PhotoCropController(UIImage photo, Completion completion)
    : PhotoCropController(std::make_shared<CroppablePhoto>(std::move(photo)), std::move(completion))
{
}

PhotoCropController::PhotoCropController(std::string path, Completion completion)
    : PhotoCropController(std::make_shared<CroppablePhoto>(std::move(path)), std::move(completion))
{
}

PhotoCropController::~PhotoCropController() = default;

void PhotoCropController::loadView()
{
    page_ = std::make_shared<PickerPage>();
    // A photo is judged on black, whatever the program looks like.
    page_->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::dark);
    page_->setBackgroundColor(UIColor::black());
    setView(page_);
}

void PhotoCropController::viewDidLoad()
{
    bar_ = std::make_shared<PickerBar>();
    bar_->setTitle(title());
    bar_->setDoneTitle(mediaPickerText(MediaPickerText::choose));
    bar_->doneButton()->setEnabled(false);
    crop_ = std::make_shared<PhotoCropView>();
    notice_ = std::make_shared<PickerNotice>();
    notice_->setWaiting(true);
    page_->addSubview(crop_);
    page_->addSubview(notice_);
    page_->addSubview(bar_);
    // The views do not outlive the controller's own.
    auto primary = UIControlEvents{UIControlEvents::primaryActionTriggered};
    page_->onEscape = [this] { finish(std::nullopt); };
    page_->onReturn = [this] { choose(); };
    bar_->cancelButton()->addAction([this](UIControl&) { finish(std::nullopt); }, primary);
    bar_->doneButton()->addAction([this](UIControl&) { choose(); }, primary);
    prepare();
}

void PhotoCropController::prepare()
{
    auto self = std::static_pointer_cast<PhotoCropController>(shared_from_this());
    queue_->async([weak = std::weak_ptr(self), photo = photo_] {
        auto shown = photo->shown(shownSide);
        DispatchQueue::main()->async([weak, shown = std::move(shown)] {
            auto page = weak.lock();
            if (!page)
                return;
            page->notice_->setWaiting(false);
            if (!shown)
                return page->fail(shown.error());
            page->crop_->setPicture(shown->image, shown->fullSize);
            page->bar_->doneButton()->setEnabled(true);
            if (page->page_->window())
                page->crop_->becomeFirstResponder();
        });
    });
}

void PhotoCropController::choose()
{
    if (crop_->cropRect().isEmpty() || std::exchange(isCutting_, true))
        return;
    bar_->doneButton()->setEnabled(false);
    crop_->setUserInteractionEnabled(false);
    notice_->setWaiting(true);
    auto self = std::static_pointer_cast<PhotoCropController>(shared_from_this());
    queue_->async([weak = std::weak_ptr(self), photo = photo_, part = crop_->cropRect()] {
        auto cut = photo->cut(part);
        DispatchQueue::main()->async([weak, part, cut = std::move(cut)]() mutable {
            auto page = weak.lock();
            if (!page)
                return;
            page->notice_->setWaiting(false);
            if (cut)
                page->finish(PhotoCrop{std::move(cut->part), part, std::move(cut->whole)});
            else
                page->fail(cut.error());
        });
    });
}

void PhotoCropController::fail(const Error& error)
{
    crop_->setPicture({}, {});
    bar_->doneButton()->setEnabled(false);
    notice_->setText(error.localizedDescription());
}

void PhotoCropController::finish(std::optional<PhotoCrop> crop)
{
    auto kept = shared_from_this();
    if (auto completion = std::exchange(completion_, nullptr))
        completion(std::move(crop));
}

void PhotoCropController::viewDidAppear(Animated animated)
{
    UIViewController::viewDidAppear(animated);
    crop_->becomeFirstResponder();
}

void PhotoCropController::viewWillLayoutSubviews()
{
    UIViewController::viewWillLayoutSubviews();
    auto below = page_->placeBar(*bar_);
    crop_->setFrame(below);
    notice_->setFrame(below);
}

} // namespace platform
