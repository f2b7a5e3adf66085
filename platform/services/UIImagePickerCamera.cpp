// SPDX-License-Identifier: MIT
// The part of the image picker that is a camera.
#include "platform/services/CameraPickerController.h"
#include "platform/services/UIImagePickerController.h"

#include <algorithm>

namespace platform {

namespace {

using Source = UIImagePickerControllerSourceType;
using Quality = UIImagePickerControllerQualityType;

AVCaptureDevicePosition positionOf(UIImagePickerControllerCameraDevice device)
{
    return device == UIImagePickerControllerCameraDevice::front ? AVCaptureDevicePosition::front
                                                                : AVCaptureDevicePosition::back;
}

AVCaptureSessionPreset presetOf(Quality quality)
{
    switch (quality) {
    case Quality::high:
        return AVCaptureSessionPreset::high;
    case Quality::medium:
    case Quality::iFrame1280x720:
        return AVCaptureSessionPreset::hd1280x720;
    case Quality::low:
    case Quality::vga640x480:
    case Quality::iFrame960x540:
        break;
    }
    return AVCaptureSessionPreset::vga640x480;
}

} // namespace

bool UIImagePickerController::isSourceTypeAvailable(Source type)
{
    return type != Source::camera || !AVCaptureDevice::devices(AVMediaType::video).empty();
}

// A camera that does not say where it looks is what a desk has: it stands for the one at the back, which is asked for first.
bool UIImagePickerController::isCameraDeviceAvailable(UIImagePickerControllerCameraDevice device)
{
    auto cameras = AVCaptureDevice::devices(AVMediaType::video);
    return std::ranges::any_of(cameras, [&](const auto& camera) {
        return camera->position() == positionOf(device)
            || (camera->position() == AVCaptureDevicePosition::unspecified
                && device == UIImagePickerControllerCameraDevice::rear);
    });
}

void UIImagePickerController::showCamera()
{
    auto offers = [&](std::string_view type) {
        return std::ranges::find(mediaTypes, type) != mediaTypes.end();
    };
    CameraPickerController::Options options{.recordsMovies = offers(kUTTypeMovie),
                                            .beginsWithMovies = cameraCaptureMode
                                                == UIImagePickerControllerCameraCaptureMode::video,
                                            .position = positionOf(cameraDevice),
                                            .longest = videoMaximumDuration,
                                            .allowsEditing = allowsEditing,
                                            .exportPreset = videoExportPreset};
    options.takesPhotos = offers(kUTTypeImage) || !options.recordsMovies;
    // The quality is that of movies; a photo is as good as the camera.
    options.preset = options.recordsMovies ? presetOf(videoQuality) : AVCaptureSessionPreset::photo;
    auto camera = std::make_shared<CameraPickerController>(std::move(options));
    auto self = std::static_pointer_cast<UIImagePickerController>(shared_from_this());
    camera->onFinish = [weak = std::weak_ptr(self)](const UIImagePickerInfo& info) {
        if (auto picker = weak.lock())
            picker->finish(info);
    };
    camera->onCancel = [weak = std::weak_ptr(self)] {
        if (auto picker = weak.lock())
            picker->cancel();
    };
    setViewControllers({camera});
}

} // namespace platform
