// SPDX-License-Identifier: MIT
#include "platform/services/CameraCapture.h"

#include "platform/avfoundation/AVCaptureAuthorization.h"
#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/imageFromPixelBuffer.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/UUID.h"
#include "platform/services/captureAlertQuestion.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <tuple>
#include <utility>

namespace platform {

namespace {

constexpr CMTimeScale timescale = 600;
constexpr std::chrono::seconds betweenTries{2};

template <class Code>
bool is(const Error& error, Code code)
{
    return error == Error(code);
}

} // namespace

CameraProblem cameraProblemOf(const Error& error)
{
    if (is(error, AVError::applicationIsNotAuthorizedToUseDevice))
        return CameraProblem::noAccess;
    if (is(error, AVError::deviceInUseByAnotherApplication))
        return CameraProblem::inUse;
    if (is(error, AVError::deviceWasDisconnected) || is(error, AVError::deviceNotConnected))
        return CameraProblem::disconnected;
    if (is(error, AVError::diskFull) || is(error, NSError(NSCocoaError::fileWriteOutOfSpace)))
        return CameraProblem::diskFull;
    return CameraProblem::unusable;
}

// Hears of a movie's end also when the camera's page has gone.
class CameraCapture::MovieTaker : public AVCaptureFileOutputRecordingDelegate {
public:
    explicit MovieTaker(std::weak_ptr<CameraCapture> capture)
        : capture_(std::move(capture))
    {
    }
    void fileOutputDidFinishRecording(AVCaptureMovieFileOutput&, const URL& file,
                                      const std::optional<Error>& error) override
    {
        if (auto capture = capture_.lock())
            capture->movieEnded(file, error);
        else
            std::ignore = FileManager::defaultManager().removeItem(file); // there may be none
    }

private:
    const std::weak_ptr<CameraCapture> capture_;
};

CameraCapture::CameraCapture(Options options)
    : options_(options)
    , session_(std::make_shared<AVCaptureSession>())
    , pictures_(std::make_shared<AVCaptureVideoDataOutput>())
    , photos_(std::make_shared<AVCapturePhotoOutput>())
    , movies_(std::make_shared<AVCaptureMovieFileOutput>())
{
    session_->setSessionPreset(options_.preset);
    movies_->setPreset(options_.preset);
    if (options_.longest > 0)
        movies_->setMaxRecordedDuration(CMTime::makeWithSeconds(options_.longest, timescale));
    // What is shown goes first: a movie's pictures take longer.
    session_->addOutput(pictures_);
    session_->addOutput(photos_);
    session_->addOutput(movies_);
}

CameraCapture::~CameraCapture()
{
    movies_->discardRecording();
    session_->stopRunning();
}

// --- Starting --------------------------------------------------------------------------------------

void CameraCapture::start()
{
    isWanted_ = true;
    if (isStarting_ || session_->isRunning())
        return;
    auto weak = weak_from_this();
    if (!devices_) {
        useCaptureAlertQuestion();
        pictures_->setSampleBufferDelegate(weak, DispatchQueue::main());
        session_->onRuntimeError = [weak](const AVCaptureDevice& device, const Error& error) {
            auto capture = weak.lock();
            if (capture && device.mediaType() == AVMediaType::audio) // without a microphone movies are silent
                return capture->closeInput(AVMediaType::audio);
            if (!capture || !capture->camera_ || device.uniqueID() != capture->camera_->uniqueID())
                return;
            capture->closeInput(AVMediaType::video);
            capture->session_->stopRunning();
            capture->setProblem(cameraProblemOf(error));
            capture->accessChanged(); // it may have been given again before this was told
        };
        devices_ = AVCaptureDevice::observeDevices([weak] {
            if (auto capture = weak.lock())
                capture->devicesChanged();
        });
        access_ = AVCaptureAuthorization::shared().observe([weak] {
            if (auto capture = weak.lock())
                capture->accessChanged();
        });
    }
    cameraCount_ = AVCaptureDevice::devices(AVMediaType::video).size();
    if (cameraCount_ == 0) // nobody is asked for what is not there
        return setProblem(CameraProblem::noCamera);
    isStarting_ = true;
    AVCaptureDevice::requestAccess(AVMediaType::video, [weak](bool mayUse) {
        auto capture = weak.lock();
        if (!capture)
            return;
        capture->isStarting_ = false;
        if (!capture->isWanted_)
            return;
        if (mayUse)
            capture->open();
        else
            capture->setProblem(CameraProblem::noAccess);
    });
}

void CameraCapture::open()
{
    auto camera = camera_ && camera_->isConnected()
        ? camera_
        : AVCaptureDevice::defaultDevice(AVMediaType::video, options_.position);
    if (!camera)
        return setProblem(CameraProblem::noCamera);
    openCamera(camera);
    if (options_.recordsMovies)
        openMicrophone();
}

void CameraCapture::openCamera(const std::shared_ptr<AVCaptureDevice>& camera)
{
    closeInput(AVMediaType::video);
    camera_ = camera;
    sourceSize_ = {}; // another camera's pictures may have another shape
    setPictureSize(pictureSize_);
    photos_->setCameraModel(camera->localizedName());
    auto input = AVCaptureDeviceInput::make(camera);
    if (!input)
        return setProblem(cameraProblemOf(input.error()));
    session_->addInput(std::move(*input));
    session_->startRunning();
    if (onDevicesChange)
        onDevicesChange();
}

void CameraCapture::openMicrophone()
{
    auto microphone = AVCaptureDevice::defaultDevice(AVMediaType::audio);
    if (!microphone)
        return;
    AVCaptureDevice::requestAccess(AVMediaType::audio, [weak = weak_from_this(), microphone](bool mayUse) {
        auto capture = weak.lock();
        if (!capture || !mayUse || !capture->isWanted_ || !capture->options_.recordsMovies)
            return;
        auto input = AVCaptureDeviceInput::make(microphone);
        if (input && capture->session_->canAddInput(**input))
            capture->session_->addInput(std::move(*input));
    });
}

void CameraCapture::closeInput(AVMediaType mediaType)
{
    for (const auto& input : session_->inputs()) {
        if (input->device()->mediaType() == mediaType)
            session_->removeInput(*input);
    }
}

void CameraCapture::setRecordsMovies(bool records)
{
    if (std::exchange(options_.recordsMovies, records) == records || !isWanted_)
        return;
    if (!records)
        closeInput(AVMediaType::audio);
    else if (session_->isRunning())
        openMicrophone();
}

void CameraCapture::stop()
{
    isWanted_ = false;
    retry_.cancel();
    problem_.reset(); // whoever starts it again hears of it again
    movies_->discardRecording();
    session_->stopRunning();
    closeInput(AVMediaType::video);
    closeInput(AVMediaType::audio);
}

void CameraCapture::devicesChanged()
{
    cameraCount_ = AVCaptureDevice::devices(AVMediaType::video).size();
    if (onDevicesChange)
        onDevicesChange();
    auto mayHelp = problem_ == CameraProblem::noCamera || problem_ == CameraProblem::disconnected
        || problem_ == CameraProblem::unusable;
    if (isWanted_ && mayHelp && cameraCount_ > 0)
        start();
}

// What is taken back the session tells.
void CameraCapture::accessChanged()
{
    auto status = AVCaptureDevice::authorizationStatus(AVMediaType::video);
    if (isWanted_ && problem_ == CameraProblem::noAccess && status == AVAuthorizationStatus::authorized)
        start();
    auto hears =
        AVCaptureDevice::authorizationStatus(AVMediaType::audio) == AVAuthorizationStatus::authorized;
    if (isWanted_ && hears && options_.recordsMovies && session_->isRunning() && !isRecording())
        openMicrophone();
}

void CameraCapture::switchCamera()
{
    auto cameras = AVCaptureDevice::devices(AVMediaType::video);
    if (!isWanted_ || isRecording() || cameras.empty())
        return;
    auto now = std::ranges::find_if(
        cameras, [&](const auto& each) { return camera_ && each->uniqueID() == camera_->uniqueID(); });
    problem_.reset(); // that of the other one is told even if it is the same
    openCamera(now == cameras.end() || now + 1 == cameras.end() ? cameras.front() : *(now + 1));
}

void CameraCapture::setProblem(std::optional<CameraProblem> problem)
{
    retry_.cancel();
    if (problem == CameraProblem::inUse) {
        auto& loop = RunLoop::main();
        retry_ = loop.schedule(loop.clock().now() + betweenTries, [this] { start(); });
    }
    if (std::exchange(problem_, problem) != problem && onProblem)
        onProblem(problem);
}

// --- Pictures --------------------------------------------------------------------------------------

void CameraCapture::setPictureSize(CGSize size)
{
    pictureSize_ = size;
    PixelBufferAttributes form;
    if (sourceSize_.width > 0 && size.width > 0) {
        auto scale = std::max(size.width / sourceSize_.width, size.height / sourceSize_.height);
        if (scale < 1) { // the part that is not shown is not less sharp
            form.kCVPixelBufferWidthKey =
                std::max(static_cast<int>(std::lround(sourceSize_.width * scale)), 1);
            form.kCVPixelBufferHeightKey =
                std::max(static_cast<int>(std::lround(sourceSize_.height * scale)), 1);
        }
    }
    pictures_->setVideoSettings(form);
}

void CameraCapture::captureOutputDidOutput(AVCaptureOutput&, const CMSampleBuffer& sample)
{
    if (!isWanted_ || !sample.imageBuffer)
        return;
    setProblem(std::nullopt);
    auto image = imageFromPixelBuffer(sample.imageBuffer);
    if (auto source = pictures_->sourceSize(); source != sourceSize_) {
        auto isStretched = std::exchange(sourceSize_, source).width > 0;
        setPictureSize(pictureSize_);
        if (isStretched)
            return; // to the form of the ones before
    }
    if (onPicture)
        onPicture(image);
}

void CameraCapture::takePhoto()
{
    if (session_->isRunning())
        photos_->capturePhoto(weak_from_this());
}

void CameraCapture::photoOutputDidFinishProcessingPhoto(AVCapturePhotoOutput&, const AVCapturePhoto& photo,
                                                        const std::optional<Error>& error)
{
    if (!isWanted_)
        return;
    if (error && onFailure)
        onFailure(*error);
    else if (!error && onPhoto)
        onPhoto(photo);
}

// --- Movies ----------------------------------------------------------------------------------------

void CameraCapture::startRecording()
{
    if (!session_->isRunning() || isRecording())
        return;
    auto path = FileManager::defaultManager().temporaryDirectory().path();
    path.append("/").append(UUID().string()).append(".mov");
    movies_->startRecording(URL::fileURL(path), std::make_shared<MovieTaker>(weak_from_this()));
    if (onDevicesChange)
        onDevicesChange();
}

void CameraCapture::stopRecording()
{
    movies_->stopRecording();
}

void CameraCapture::movieEnded(const URL& file, const std::optional<Error>& error)
{
    auto isWhole = !error || error->bridged().userInfo().contains(AVErrorRecordingSuccessfullyFinishedKey);
    if (!isWanted_ || !isWhole) {
        std::ignore = FileManager::defaultManager().removeItem(file); // where there is one
        // One that was thrown away is nobody's failure.
        if (isWanted_ && onFailure && !is(*error, AVError::operationCancelled))
            onFailure(*error);
        return;
    }
    if (onMovie)
        onMovie(file.path(), error);
    else
        std::ignore = FileManager::defaultManager().removeItem(file);
}

} // namespace platform
