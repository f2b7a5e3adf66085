// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Error.h"
#include "platform/services/UIImagePickerController.h"
#include "platform/uikit/UINavigationController.h"
#include "platform/uikit/UINavigationItem.h"

#include <memory>
#include <string>

namespace platform {

class UIVideoEditorController;
class VideoTrimController;

// Hears what came of an editor, one of the first three, once. Whoever presented the editor dismisses it. Main thread only.
class UIVideoEditorControllerDelegate {
public:
    virtual ~UIVideoEditorControllerDelegate() = default;
    // The file is the delegate's to remove.
    virtual void videoEditorControllerDidSaveEditedVideo(UIVideoEditorController&,
                                                         const std::string& path) = 0;
    virtual void videoEditorControllerDidFail(UIVideoEditorController&, const Error& error) = 0;
    virtual void videoEditorControllerDidCancel(UIVideoEditorController&) = 0;
    // Its screen is about to be shown with this in its bar, which may be changed.
    virtual void videoEditorControllerWillShow(UIVideoEditorController&, UINavigationItem&) { }
};

// Lets the user trim a video: the part that is kept is written to a new file, its pictures as they are where they can be.
// Without a delegate it goes by itself. Set up before it is shown. Main thread only.
class UIVideoEditorController : public UINavigationController {
public:
    UIVideoEditorController();
    ~UIVideoEditorController() override;

    // Whether there is a file that looks like a video by its bytes. Reads its head.
    static bool canEditVideo(const std::string& path);

    std::string videoPath;
    double videoMaximumDuration = 0; // seconds; 0: any
    UIImagePickerControllerQualityType videoQuality = UIImagePickerControllerQualityType::low;

    void setDelegate(std::weak_ptr<UIVideoEditorControllerDelegate> delegate);
    std::shared_ptr<UIVideoEditorControllerDelegate> delegate() const { return delegate_.lock(); }

    void viewDidLoad() override;
    void viewWillAppear(Animated animated) override;

private:
    std::weak_ptr<UIVideoEditorControllerDelegate> delegate_;
    std::shared_ptr<VideoTrimController> page_;
};

} // namespace platform
