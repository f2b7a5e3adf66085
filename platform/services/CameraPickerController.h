// SPDX-License-Identifier: MIT
#pragma once

#include "platform/services/CameraCapture.h"
#include "platform/services/UIImagePickerInfo.h"
#include "platform/uikit/UIViewController.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {

class CameraControls;
class CameraMovieReview;
class CameraPage;
struct PhotoCrop;

// A page with what the camera sees, on which a photo is taken or a movie recorded, looked at, and used or taken again. Where
// editing is allowed, the photo is cut and the movie trimmed instead of looked at. Space and Return are the shutter, Escape
// leaves; whatever is not used is removed. What cannot be edited is looked at as it is. Stands on a navigation controller. Main thread only.
class CameraPickerController : public UIViewController {
public:
    struct Options {
        bool takesPhotos = true; // one of the two at least
        bool recordsMovies = false;
        bool beginsWithMovies = false; // where both are offered
        AVCaptureDevicePosition position = AVCaptureDevicePosition::back;
        AVCaptureSessionPreset preset = AVCaptureSessionPreset::high;
        double longest = 0; // seconds of a movie; 0: any
        bool allowsEditing = false;
        std::string exportPreset; // of what is trimmed
    };
    explicit CameraPickerController(Options options);
    ~CameraPickerController() override;

    // Set before it is shown. One of them is called in the end, once. The file that the information names is the caller's to
    // remove.
    std::function<void(const UIImagePickerInfo&)> onFinish;
    std::function<void()> onCancel;

    void loadView() override;
    void viewDidLoad() override;
    void viewDidAppear(Animated animated) override;
    void viewDidDisappear(Animated animated) override;
    void viewDidLayoutSubviews() override;

private:
    enum class Stage { starting, live, recording, completing, review };
    // What was taken and is not used yet.
    struct Shot {
        bool isMovie = false;
        UIImage image;
        std::string jpeg; // of a photo
        PropertyListDictionary metadata;
        std::string path; // of a movie
    };
    bool isRecordingMovies() const;
    void makeCapture();
    void setStage(Stage stage);
    void pressShutter();
    void takePicture(const UIImage& picture);
    void takeProblem(std::optional<CameraProblem> problem);
    void takePhoto(const AVCapturePhoto& photo);
    void takeMovie(const std::string& path, const std::optional<Error>& error);
    void takeFailure(const Error& error);
    void review();
    void reviewAfter(const Error& error);
    void crop();
    void trim();
    void retake();
    void use();
    void finishCrop(PhotoCrop crop);
    void finish(UIImagePickerInfo info);
    void cancel();
    void discard();

    // fixed after construction
    const Options options_;
    // main thread only
    std::shared_ptr<CameraPage> page_;
    std::shared_ptr<CameraControls> controls_;
    std::shared_ptr<CameraCapture> capture_;
    std::optional<Shot> shot_;
    std::shared_ptr<CameraMovieReview> movie_; // of a shot that is one, while it is looked at
    Stage stage_ = Stage::starting;
    bool isOver_ = false;
};

} // namespace platform
