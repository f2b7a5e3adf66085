// SPDX-License-Identifier: MIT
#include "platform/services/UIVideoEditorController.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/services/PHPhotosContent_p.h"
#include "platform/services/VideoTrimController.h"
#include "platform/services/mediaPickerText_p.h"

#include <utility>

namespace platform {

namespace {

using Quality = UIImagePickerControllerQualityType;

// The best keeps what is there.
std::string_view presetOf(Quality quality)
{
    switch (quality) {
    case Quality::high:
        return AVAssetExportPresetPassthrough;
    case Quality::medium:
    case Quality::iFrame1280x720:
        return AVAssetExportPreset1280x720;
    case Quality::low:
    case Quality::vga640x480:
    case Quality::iFrame960x540:
        break;
    }
    return AVAssetExportPreset640x480;
}

} // namespace

UIVideoEditorController::UIVideoEditorController() = default;
UIVideoEditorController::~UIVideoEditorController() = default;

bool UIVideoEditorController::canEditVideo(const std::string& path)
{
    auto content = photosContentOf(path);
    return content && content->type == PHAssetMediaType::video;
}

void UIVideoEditorController::setDelegate(std::weak_ptr<UIVideoEditorControllerDelegate> delegate)
{
    assertOnMainThread();
    delegate_ = std::move(delegate);
}

void UIVideoEditorController::viewDidLoad()
{
    UINavigationController::viewDidLoad();
    setNavigationBarHidden(true); // the page has a bar of its own
    page_ = std::make_shared<VideoTrimController>(VideoTrimController::Options{
        .path = videoPath, .longest = videoMaximumDuration, .preset = std::string(presetOf(videoQuality))});
    auto self = std::static_pointer_cast<UIVideoEditorController>(shared_from_this());
    page_->onFinish = [weak = std::weak_ptr(self)](Result<std::string> result) {
        auto editor = weak.lock();
        auto told = editor ? editor->delegate() : nullptr;
        if (told && result)
            told->videoEditorControllerDidSaveEditedVideo(*editor, *result);
        else if (told)
            told->videoEditorControllerDidFail(*editor, result.error());
        else if (editor)
            editor->dismiss(Animated::yes);
    };
    page_->onCancel = [weak = std::weak_ptr(self)] {
        auto editor = weak.lock();
        if (auto told = editor ? editor->delegate() : nullptr)
            told->videoEditorControllerDidCancel(*editor);
        else if (editor)
            editor->dismiss(Animated::yes);
    };
    setViewControllers({page_});
}

void UIVideoEditorController::viewWillAppear(Animated animated)
{
    UINavigationController::viewWillAppear(animated);
    auto told = delegate();
    if (!told)
        return;
    page_->loadViewIfNeeded();
    auto item = page_->navigationItem();
    told->videoEditorControllerWillShow(*this, item);
    page_->setNavigationItem(std::move(item));
}

} // namespace platform
