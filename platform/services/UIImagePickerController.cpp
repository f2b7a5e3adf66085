// SPDX-License-Identifier: MIT
#include "platform/services/UIImagePickerController.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/services/MediaLibraryController.h"
#include "platform/services/VideoTrimController.h"
#include "platform/services/mediaPickerText_p.h"

#include <algorithm>
#include <utility>

namespace platform {

using Source = UIImagePickerControllerSourceType;

namespace {

bool offers(const std::vector<std::string>& types, std::string_view type)
{
    return std::ranges::find(types, type) != types.end();
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

void UIImagePickerController::showLibrary()
{
    auto kinds =
        MediaKinds{.photos = offers(mediaTypes, kUTTypeImage), .videos = offers(mediaTypes, kUTTypeMovie)};
    auto library = std::make_shared<MediaLibraryController>(kinds);
    if (!isSourceTypeAvailable(sourceType))
        library->showMessage(mediaPickerText(MediaPickerText::noCamera));
    auto self = std::static_pointer_cast<UIImagePickerController>(shared_from_this());
    library->onPick = [weak = std::weak_ptr(self)](const LibraryFile& file) {
        if (auto picker = weak.lock())
            picker->pick(file);
    };
    library->onCancel = [weak = std::weak_ptr(self)] {
        if (auto picker = weak.lock())
            picker->cancel();
    };
    setViewControllers({library});
}

void UIImagePickerController::pick(const LibraryFile& file)
{
    auto url = URL::fileURL(file.path);
    UIImagePickerInfo info;
    info.emplace(UIImagePickerInfoKey::mediaType, std::string(file.isVideo ? kUTTypeMovie : kUTTypeImage));
    info.emplace(file.isVideo ? UIImagePickerInfoKey::mediaURL : UIImagePickerInfoKey::imageURL, url);
    info.emplace(UIImagePickerInfoKey::referenceURL, URL::fileURL(file.path));
    finish(info);
}

void UIImagePickerController::finish(const UIImagePickerInfo& info)
{
    if (std::exchange(isOver_, true))
        return;
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
    auto kept = shared_from_this();
    if (auto told = delegate())
        told->imagePickerControllerDidCancel(*this);
    else
        dismiss(Animated::yes);
}

} // namespace platform
