// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAssetExportSession.h"
#include "platform/dispatch/Token.h"
#include "platform/services/UIImagePickerInfo.h"
#include "platform/uikit/UINavigationController.h"

#include <memory>
#include <string>
#include <vector>

namespace platform {

class MediaFileChooser;
class MediaLibraryController;
class UIImagePickerController;
struct LibraryFile;
struct MediaKinds;
struct PhotoCrop;

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

// Lets the user pick a photo or a video, in the dialog that the desktop has for files or from the folders that it has for
// photos and videos. The files are not touched: their own URLs are handed out, or none where what was chosen is no such file;
// of what is edited that of a copy. Without a delegate it goes by itself. Set up before it is shown. Main thread only.
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
    // A square is cut out of a photo before it is handed out, and a video is trimmed. The file told is then a new one, which is
    // the listener's to remove, but for a video of the library of which all was kept: that is told as if not edited, its media
    // URL being its reference URL. Of a photo, JPEG where it was JPEG and PNG otherwise, the cut, where it was and the whole
    // are told beside it.
    bool allowsEditing = false;
    // Shows the library here rather than in the desktop's own dialog. Without such a dialog it always does.
    bool prefersEmbeddedLibrary = false;
    std::string videoExportPreset{AVAssetExportPresetPassthrough}; // of what is trimmed
    UIImagePickerControllerQualityType videoQuality = UIImagePickerControllerQualityType::medium;
    double videoMaximumDuration = 600; // seconds, of what is recorded or trimmed; 0: any
    UIImagePickerControllerCameraDevice cameraDevice = UIImagePickerControllerCameraDevice::rear;
    UIImagePickerControllerCameraCaptureMode cameraCaptureMode =
        UIImagePickerControllerCameraCaptureMode::photo;

    void setDelegate(std::weak_ptr<UIImagePickerControllerDelegate> delegate);
    std::shared_ptr<UIImagePickerControllerDelegate> delegate() const { return delegate_.lock(); }

    // The desktop's dialog; null: the one of the desktop's portal.
    static void setFileChooser(std::shared_ptr<MediaFileChooser> chooser);

    void viewDidLoad() override;
    void viewWillAppear(Animated animated) override;
    void viewDidAppear(Animated animated) override;

private:
    void showLibrary();
    void showCamera();
    MediaKinds kinds() const;
    void askDesktop();
    void pick(const LibraryFile& file);
    void showCrop(const LibraryFile& file);
    void finishCrop(const LibraryFile& file, PhotoCrop crop);
    void showTrimmer(const LibraryFile& file);
    void backToLibrary();
    void finish(const UIImagePickerInfo& info);
    void cancel();

    std::weak_ptr<UIImagePickerControllerDelegate> delegate_;
    std::shared_ptr<MediaLibraryController> library_;
    std::shared_ptr<MediaFileChooser> chooser_; // while it is asked, or may be again
    Token asking_;
    bool isOver_ = false;
};

} // namespace platform
