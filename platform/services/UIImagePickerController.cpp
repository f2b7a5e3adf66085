// SPDX-License-Identifier: MIT
#include "platform/services/UIImagePickerController.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/FileManager.h"
#include "platform/services/MediaFileChooser.h"
#include "platform/services/MediaLibraryController.h"
#include "platform/services/PhotoCropController.h"
#include "platform/services/PortalFileChooser_p.h"
#include "platform/services/VideoTrimController.h"
#include "platform/services/croppedPhotoFile_p.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace platform {

using Source = UIImagePickerControllerSourceType;

namespace {

bool offers(const std::vector<std::string>& types, std::string_view type)
{
    return std::ranges::find(types, type) != types.end();
}

std::shared_ptr<MediaFileChooser>& givenChooser()
{
    static std::shared_ptr<MediaFileChooser> chooser;
    return chooser;
}

UIImagePickerInfo infoOf(const LibraryFile& file, const URL& given)
{
    UIImagePickerInfo info;
    info.emplace(UIImagePickerInfoKey::mediaType, std::string(file.isVideo ? kUTTypeMovie : kUTTypeImage));
    info.emplace(file.isVideo ? UIImagePickerInfoKey::mediaURL : UIImagePickerInfoKey::imageURL, given);
    info.emplace(UIImagePickerInfoKey::referenceURL, URL::fileURL(file.path));
    return info;
}

} // namespace

UIImagePickerController::UIImagePickerController() = default;
UIImagePickerController::~UIImagePickerController() = default;

std::vector<std::string> UIImagePickerController::availableMediaTypes(Source type)
{
    if (!isSourceTypeAvailable(type))
        return {};
    return {std::string(kUTTypeImage), std::string(kUTTypeMovie)};
}

void UIImagePickerController::setDelegate(std::weak_ptr<UIImagePickerControllerDelegate> delegate)
{
    assertOnMainThread();
    delegate_ = std::move(delegate);
}

void UIImagePickerController::viewDidLoad()
{
    UINavigationController::viewDidLoad();
    setNavigationBarHidden(true); // the pages have bars of their own
    sourceType == Source::camera ? showCamera() : showLibrary();
}

void UIImagePickerController::viewWillAppear(Animated animated)
{
    UINavigationController::viewWillAppear(animated);
    isOver_ = false;
}

void UIImagePickerController::setFileChooser(std::shared_ptr<MediaFileChooser> chooser)
{
    assertOnMainThread();
    givenChooser() = std::move(chooser);
}

MediaKinds UIImagePickerController::kinds() const
{
    return {.photos = offers(mediaTypes, kUTTypeImage), .videos = offers(mediaTypes, kUTTypeMovie)};
}

void UIImagePickerController::showLibrary()
{
    library_ = std::make_shared<MediaLibraryController>(kinds());
    auto isKnown = kinds().photos || kinds().videos;
    if (isKnown && !prefersEmbeddedLibrary)
        chooser_ = givenChooser() ? givenChooser() : PortalFileChooser::ofDesktop();
    library_->setWaiting(chooser_ != nullptr);
    auto self = std::static_pointer_cast<UIImagePickerController>(shared_from_this());
    library_->onPick = [weak = std::weak_ptr(self)](const LibraryFile& file) {
        if (auto picker = weak.lock())
            picker->pick(file);
    };
    library_->onCancel = [weak = std::weak_ptr(self)] {
        if (auto picker = weak.lock())
            picker->cancel();
    };
    setViewControllers({library_});
}

void UIImagePickerController::viewDidAppear(Animated animated)
{
    UINavigationController::viewDidAppear(animated);
    if (topViewController() == library_)
        askDesktop();
}

// What the desktop's dialog cannot do, the page does.
void UIImagePickerController::askDesktop()
{
    if (!chooser_ || asking_ || isOver_)
        return;
    auto self = std::static_pointer_cast<UIImagePickerController>(shared_from_this());
    auto question = MediaFileChooser::Question{library_->title(), kinds(), view()->window()};
    asking_ = chooser_->ask(
        question,
        [weak = std::weak_ptr(self)](MediaFileChooser::Outcome outcome, std::optional<LibraryFile> file) {
            auto picker = weak.lock();
            if (!picker)
                return;
            picker->asking_.cancel();
            if (outcome == MediaFileChooser::Outcome::picked && file)
                return picker->pick(*file);
            if (outcome == MediaFileChooser::Outcome::cancelled)
                return picker->cancel();
            if (outcome == MediaFileChooser::Outcome::unusable)
                return picker->finish({});
            picker->chooser_ = nullptr;
            picker->library_->setWaiting(false);
        });
}

void UIImagePickerController::pick(const LibraryFile& file)
{
    if (!allowsEditing)
        finish(infoOf(file, URL::fileURL(file.path)));
    else if (file.isVideo)
        showTrimmer(file);
    else
        showCrop(file);
}

void UIImagePickerController::showCrop(const LibraryFile& file)
{
    auto self = std::static_pointer_cast<UIImagePickerController>(shared_from_this());
    auto page = std::make_shared<PhotoCropController>(
        file.path, [weak = std::weak_ptr(self), file](std::optional<PhotoCrop> crop) {
            auto picker = weak.lock();
            if (!picker)
                return;
            if (!crop)
                return picker->backToLibrary();
            picker->finishCrop(file, std::move(*crop));
        });
    pushViewController(std::move(page), Animated::yes);
}

void UIImagePickerController::finishCrop(const LibraryFile& file, PhotoCrop crop)
{
    auto self = std::static_pointer_cast<UIImagePickerController>(shared_from_this());
    auto part = crop.editedImage;
    writeCroppedPhoto(part, {.path = file.path},
                      [weak = std::weak_ptr(self), file, crop = std::move(crop)](const Result<URL>& written) {
                          auto picker = weak.lock();
                          if (!picker || picker->isOver_) {
                              if (written)
                                  std::ignore = FileManager::defaultManager().removeItem(*written);
                              return;
                          }
                          // As of a film: what cannot be written comes without a file.
                          if (!written)
                              return picker->finish({});
                          auto info = infoOf(file, *written);
                          info.emplace(UIImagePickerInfoKey::originalImage, crop.originalImage);
                          info.emplace(UIImagePickerInfoKey::editedImage, crop.editedImage);
                          info.emplace(UIImagePickerInfoKey::cropRect, crop.cropRect);
                          picker->finish(info);
                      });
}

void UIImagePickerController::showTrimmer(const LibraryFile& file)
{
    auto page = std::make_shared<VideoTrimController>(VideoTrimController::Options{
        .path = file.path, .longest = videoMaximumDuration, .preset = videoExportPreset, .mayKeepAll = true});
    auto self = std::static_pointer_cast<UIImagePickerController>(shared_from_this());
    page->onFinish = [weak = std::weak_ptr(self), file](const Result<std::string>& trimmed) {
        // A film that cannot be cut is handed out by nobody: it comes without a file.
        if (auto picker = weak.lock())
            picker->finish(trimmed ? infoOf(file, URL::fileURL(*trimmed)) : UIImagePickerInfo{});
    };
    page->onCancel = [weak = std::weak_ptr(self)] {
        if (auto picker = weak.lock())
            picker->backToLibrary();
    };
    pushViewController(std::move(page), Animated::yes);
}

void UIImagePickerController::backToLibrary()
{
    setViewControllers({library_}, Animated::yes);
    askDesktop();
}

void UIImagePickerController::finish(const UIImagePickerInfo& info)
{
    if (std::exchange(isOver_, true))
        return;
    asking_.cancel();
    auto kept = shared_from_this();
    if (auto told = delegate())
        told->imagePickerControllerDidFinishPickingMedia(*this, info);
    else
        dismiss(Animated::yes);
}

void UIImagePickerController::cancel()
{
    if (std::exchange(isOver_, true))
        return;
    asking_.cancel();
    auto kept = shared_from_this();
    if (auto told = delegate())
        told->imagePickerControllerDidCancel(*this);
    else
        dismiss(Animated::yes);
}

} // namespace platform
