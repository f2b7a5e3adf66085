// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVCaptureMovieFileOutput.h"
#include "platform/avfoundation/AVCapturePhotoOutput.h"
#include "platform/avfoundation/AVCaptureSession.h"
#include "platform/avfoundation/AVCaptureVideoDataOutput.h"
#include "platform/dispatch/Token.h"
#include "platform/foundation/NSUserDefaults.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIImage.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {

// Why a camera gives no pictures.
enum class CameraProblem { noCamera, noAccess, inUse, disconnected, unusable, diskFull };

CameraProblem cameraProblemOf(const Error& error);

// The camera behind a picker's page: asks for it, shows what it sees, takes photos and movies, and removes what nobody wants.
// Comes back by itself when a camera is plugged in, nobody else uses it any more, or the user allows it after all. Main
// thread only.
class CameraCapture : public std::enable_shared_from_this<CameraCapture>,
                      public AVCaptureVideoDataOutputSampleBufferDelegate,
                      public AVCapturePhotoCaptureDelegate {
public:
    struct Options {
        AVCaptureDevicePosition position = AVCaptureDevicePosition::back; // where there is such a camera
        AVCaptureSessionPreset preset = AVCaptureSessionPreset::high;
        bool recordsMovies = false;
        double longest = 0; // seconds of a movie; 0: any
    };
    explicit CameraCapture(Options options);
    ~CameraCapture() override;

    // Set before it starts.
    std::function<void(const UIImage&)> onPicture; // the newest, about as large as was asked for
    std::function<void(std::optional<CameraProblem>)> onProblem; // nothing: it is over
    std::function<void()> onDevicesChange;                       // whether there is another camera
    std::function<void(const AVCapturePhoto&)> onPhoto;
    // A complete movie, which is the caller's to remove, perhaps with why it ended by itself.
    std::function<void(const std::string& path, const std::optional<Error>&)> onMovie;
    std::function<void(const Error&)> onFailure; // of a photo or a movie: there is none

    // The user is asked where nothing is known yet.
    void start();
    // A movie under way is removed at once. A problem is told again when it starts again.
    void stop();
    bool isRunning() const { return session_->isRunning(); }
    // The part of the page that pictures are shown in, in pixels.
    void setPictureSize(CGSize size);
    void setRecordsMovies(bool records); // a microphone is opened, and asked for, only then

    bool canSwitch() const { return cameraCount_ > 1 && !isRecording(); }
    void switchCamera();
    bool isMirrored() const { return camera_ && camera_->position() == AVCaptureDevicePosition::front; }

    void takePhoto();
    void startRecording();
    void stopRecording();
    bool isRecording() const { return movies_->isRecording(); }
    double recordedSeconds() const { return movies_->recordedDuration().seconds(); }

    void captureOutputDidOutput(AVCaptureOutput& output, const CMSampleBuffer& sample) override;
    void photoOutputDidFinishProcessingPhoto(AVCapturePhotoOutput& output, const AVCapturePhoto& photo,
                                             const std::optional<Error>& error) override;

private:
    class MovieTaker;
    void open();
    void openCamera(const std::shared_ptr<AVCaptureDevice>& camera);
    void openMicrophone();
    void closeInput(AVMediaType mediaType);
    void devicesChanged();
    void accessChanged();
    void setProblem(std::optional<CameraProblem> problem);
    void movieEnded(const URL& file, const std::optional<Error>& error);

    Options options_;
    const std::shared_ptr<AVCaptureSession> session_;
    const std::shared_ptr<AVCaptureVideoDataOutput> pictures_;
    const std::shared_ptr<AVCapturePhotoOutput> photos_;
    const std::shared_ptr<AVCaptureMovieFileOutput> movies_;
    std::shared_ptr<AVCaptureDevice> camera_; // the one in use, or that was
    std::size_t cameraCount_ = 0;
    std::optional<CameraProblem> problem_;
    CGSize pictureSize_, sourceSize_;
    Token devices_;
    NSUserDefaults::Observation access_;
    Token retry_;             // of a camera that somebody else has
    bool isWanted_ = false;   // started and not stopped
    bool isStarting_ = false; // the user is being asked
};

} // namespace platform
