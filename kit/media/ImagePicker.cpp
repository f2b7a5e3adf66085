// SPDX-License-Identifier: MIT
#include "kit/media/ImagePicker.h"

#include "platform/uikit/UINavigationBar.h"

namespace zelk {

namespace {

using Controller = platform::UIImagePickerController;
using SourceType = platform::UIImagePickerControllerSourceType;
using CaptureMode = platform::UIImagePickerControllerCameraCaptureMode;
namespace keys = platform::UIImagePickerInfoKey;

std::optional<platform::URL> fileIn(const platform::UIImagePickerInfo& info)
{
    for (auto key : {keys::imageURL, keys::mediaURL, keys::referenceURL}) {
        auto found = info.find(key);
        auto* url = found == info.end() ? nullptr : std::get_if<platform::URL>(&found->second);
        if (url && url->isFileURL())
            return *url;
    }
    return std::nullopt;
}

} // namespace

platform::NSError nsError(const ImagePickerError&)
{
    return {"zelk.ImagePickerError", 0};
}

bool ImagePickerSource::isCameraAvailable()
{
    return Controller::isSourceTypeAvailable(SourceType::camera);
}

bool ImagePickerSource::isPhotoLibraryAvailable()
{
    return Controller::isSourceTypeAvailable(SourceType::photoLibrary);
}

ImagePicker::ImagePicker(Options options)
    : source(std::move(options.source))
    , allowsEditing(options.allowsEditing)
    , videoMaximumDuration(options.videoMaximumDuration)
    , didCancel(std::move(options.didCancel))
    , didPickItem(std::move(options.didPickItem))
    , themeManager(std::move(options.themeManager))
{
}

std::shared_ptr<ImagePicker::Coordinator> ImagePicker::makeCoordinator() const
{
    return std::make_shared<Coordinator>(*this);
}

std::shared_ptr<Controller> ImagePicker::makeUIViewController(const Context& context) const
{
    auto picker = std::make_shared<Controller>();
    picker->allowsEditing = allowsEditing;
    picker->videoExportPreset = platform::AVAssetExportPresetPassthrough;
    picker->videoQuality = platform::UIImagePickerControllerQualityType::high;
    if (videoMaximumDuration)
        picker->videoMaximumDuration = *videoMaximumDuration;
    if (auto* library = std::get_if<Source::PhotoLibrary>(&source.value())) {
        picker->mediaTypes = library->mediaTypes;
    } else {
        auto isVideo = std::get<Source::CameraCapture>(source.value()).video;
        picker->sourceType = SourceType::camera;
        picker->cameraDevice = platform::UIImagePickerControllerCameraDevice::rear;
        picker->mediaTypes = {std::string(isVideo ? platform::kUTTypeMovie : platform::kUTTypeImage)};
        picker->cameraCaptureMode = isVideo ? CaptureMode::video : CaptureMode::photo;
    }
    auto tint = themeManager ? std::optional(themeManager->tintUIColor()) : std::nullopt;
    picker->navigationBar()->setTintColor(tint);
    picker->view()->setTintColor(tint);
    picker->setDelegate(context.coordinator);
    return picker;
}

void ImagePicker::updateUIViewController(Controller&, const Context& context) const
{
    context.coordinator->parent = *this;
}

void ImagePicker::Coordinator::imagePickerControllerDidFinishPickingMedia(
    Controller&, const platform::UIImagePickerInfo& info)
{
    auto pick = parent.didPickItem; // which may take this away
    if (!pick)
        return;
    if (auto file = fileIn(info))
        pick(*file);
    else
        pick(std::unexpected(platform::Error(ImagePickerError::missingMediaURL(info))));
}

void ImagePicker::Coordinator::imagePickerControllerDidCancel(Controller&)
{
    if (auto cancel = parent.didCancel)
        cancel();
}

} // namespace zelk
