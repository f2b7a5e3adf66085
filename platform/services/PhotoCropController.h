// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Error.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/UIViewController.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {

class CroppablePhoto;
class DispatchQueue;
class PhotoCropView;
class PickerBar;
class PickerNotice;
class PickerPage;

// What was cut out of a photo.
struct PhotoCrop {
    UIImage editedImage;
    CGRect cropRect;       // a square of whole pixels of the original, turned upright
    UIImage originalImage; // all of it
};

// A page on which a square is cut out of a photo, which is moved and scaled beneath a frame that stands still. A copy of
// about the screen's size is shown; the cut is made from all pixels, off the main thread. Main thread only.
class PhotoCropController : public UIViewController {
public:
    // Called once, with nothing when the user goes without a cut. A photo that cannot be read says so on the page, which can
    // then only be left.
    using Completion = std::function<void(std::optional<PhotoCrop>)>;

    PhotoCropController(UIImage photo, Completion completion);
    // Of a file, which is turned upright as it says.
    PhotoCropController(std::string path, Completion completion);
    ~PhotoCropController() override;

    void loadView() override;
    void viewDidLoad() override;
    void viewDidAppear(Animated animated) override;
    void viewWillLayoutSubviews() override;

private:
    PhotoCropController(std::shared_ptr<const CroppablePhoto> photo, Completion completion);
    void prepare();
    void choose();
    void fail(const Error& error);
    void finish(std::optional<PhotoCrop> crop);

    // fixed after construction
    const std::shared_ptr<const CroppablePhoto> photo_;
    const std::shared_ptr<DispatchQueue> queue_;
    // main thread only
    Completion completion_; // empty once it was called
    std::shared_ptr<PickerPage> page_;
    std::shared_ptr<PickerBar> bar_;
    std::shared_ptr<PhotoCropView> crop_;
    std::shared_ptr<PickerNotice> notice_;
    bool isCutting_ = false;
};

} // namespace platform
