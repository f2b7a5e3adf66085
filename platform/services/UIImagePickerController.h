// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAssetExportSession.h"
#include "platform/services/UIImagePickerInfo.h"
#include "platform/uikit/UINavigationController.h"

#include <memory>
#include <string>
#include <vector>

namespace platform {

class UIImagePickerController;
struct LibraryFile;

enum class UIImagePickerControllerSourceType { photoLibrary = 0, camera = 1, savedPhotosAlbum = 2 };
enum class UIImagePickerControllerCameraDevice { rear = 0, front = 1 };
enum class UIImagePickerControllerCameraCaptureMode { photo = 0, video = 1 };
enum class UIImagePickerControllerQualityType {
    high = 0,
    medium = 1,
    low = 2,
    vga640x480 = 3,
    iFrame1280x720 = 4,
    iFrame960x540 = 5
};

// Hears what came of a picker, once: an item or nothing. Whoever presented the picker dismisses it. Main thread only.
class UIImagePickerControllerDelegate {
public:
    virtual ~UIImagePickerControllerDelegate() = default;
    virtual void imagePickerControllerDidFinishPickingMedia(UIImagePickerController&,
                                                            const UIImagePickerInfo& info) = 0;
    virtual void imagePickerControllerDidCancel(UIImagePickerController&) = 0;
};

// Lets the user pick a photo or a video from the folders that the desktop has for them. The files are not touched: their own
// URLs are handed out. Without a delegate it goes by itself. Set up before it is shown. Main thread only.
class UIImagePickerController : public UINavigationController {
public:
    UIImagePickerController();
    ~UIImagePickerController() override;

    // The library always is; a camera when one is connected, which is looked for each time.
    static bool isSourceTypeAvailable(UIImagePickerControllerSourceType type);
    static bool isCameraDeviceAvailable(UIImagePickerControllerCameraDevice device);
    // What that source can offer; empty for one that is not available.
    static std::vector<std::string> availableMediaTypes(UIImagePickerControllerSourceType type);

    UIImagePickerControllerSourceType sourceType = UIImagePickerControllerSourceType::photoLibrary;
    // Uniform type identifiers; the default is photos. What is none of those known is offered nothing for.
    std::vector<std::string> mediaTypes{std::string(kUTTypeImage)};
    // A video is trimmed before it is handed out; photos are handed out as they are.
    bool allowsEditing = false;
    std::string videoExportPreset{AVAssetExportPresetPassthrough}; // of what is trimmed
    UIImagePickerControllerQualityType videoQuality = UIImagePickerControllerQualityType::medium;
    double videoMaximumDuration = 600; // seconds, of what is recorded or trimmed; 0: any
    UIImagePickerControllerCameraDevice cameraDevice = UIImagePickerControllerCameraDevice::rear;
    UIImagePickerControllerCameraCaptureMode cameraCaptureMode =
        UIImagePickerControllerCameraCaptureMode::photo;

    void setDelegate(std::weak_ptr<UIImagePickerControllerDelegate> delegate);
    std::shared_ptr<UIImagePickerControllerDelegate> delegate() const { return delegate_.lock(); }

    void viewDidLoad() override;
    void viewWillAppear(Animated animated) override;

private:
    void showLibrary();
    void showCamera();
    void pick(const LibraryFile& file);
    void finish(const UIImagePickerInfo& info);
    void cancel();

    std::weak_ptr<UIImagePickerControllerDelegate> delegate_;
    bool isOver_ = false;
};

} // namespace platform
