// SPDX-License-Identifier: MIT
#include "platform/services/CameraPickerController.h"

#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/imageFromPixelBuffer.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/FileWriting.h"
#include "platform/foundation/UUID.h"
#include "platform/services/CameraControls.h"
#include "platform/services/CameraMovieReview.h"
#include "platform/services/PhotoCropController.h"
#include "platform/services/VideoTrimController.h"
#include "platform/services/cameraText_p.h"
#include "platform/services/croppedPhotoFile_p.h"
#include "platform/services/mediaPickerText_p.h"
#include "platform/uikit/UIButton.h"
#include "platform/uikit/UINavigationController.h"
#include "platform/uikit/UISegmentedControl.h"
#include "platform/uikit/systemText.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace platform {

namespace {

constexpr int movieMode = 1; // of the two

struct Notice {
    std::string text;
    const char* symbol;
};

Notice noticeOf(CameraProblem problem)
{
    switch (problem) {
    case CameraProblem::noCamera:
        return {mediaPickerText(MediaPickerText::noCamera), "camera"};
    case CameraProblem::noAccess:
        return {cameraText(CameraText::noAccess), "lock.fill"};
    case CameraProblem::inUse:
        return {cameraText(CameraText::inUse), "video"};
    case CameraProblem::disconnected:
        return {cameraText(CameraText::disconnected), "camera"};
    case CameraProblem::diskFull:
        return {cameraText(CameraText::diskFull), "exclamationmark.triangle"};
    case CameraProblem::unusable:
        break;
    }
    return {cameraText(CameraText::unusable), "exclamationmark.triangle"};
}

} // namespace

CameraPickerController::CameraPickerController(Options options)
    : options_(std::move(options))
{
    setTitle(cameraText(CameraText::viewfinder));
}

CameraPickerController::~CameraPickerController()
{
    discard();
}

void CameraPickerController::loadView()
{
    page_ = std::make_shared<CameraPage>();
    setView(page_);
}

void CameraPickerController::viewDidLoad()
{
    controls_ = std::make_shared<CameraControls>();
    page_->addSubview(controls_);
    // The views do not outlive the controller's own.
    auto primary = UIControlEvents{UIControlEvents::primaryActionTriggered};
    page_->onEscape = [this] { cancel(); };
    page_->onShutter = [this] { pressShutter(); };
    controls_->shutter()->addAction([this](UIControl&) { pressShutter(); }, primary);
    controls_->backButton()->addAction([this](UIControl&) { shot_ ? retake() : cancel(); }, primary);
    controls_->useButton()->addAction([this](UIControl&) { use(); }, primary);
    controls_->playButton()->addAction([this](UIControl&) { movie_->togglePlaying(); }, primary);
    controls_->switchButton()->addAction(
        [this](UIControl&) {
            controls_->setMessage({});
            setStage(Stage::starting);
            capture_->switchCamera();
        },
        primary);
    auto begins = options_.recordsMovies && (options_.beginsWithMovies || !options_.takesPhotos);
    controls_->modes()->setSelectedSegmentIndex(begins ? movieMode : 0);
    controls_->modes()->addAction(
        [this](UIControl&) {
            capture_->setRecordsMovies(isRecordingMovies());
            setStage(stage_);
        },
        {UIControlEvents::valueChanged});
    makeCapture();
    setStage(Stage::starting);
}

bool CameraPickerController::isRecordingMovies() const
{
    return controls_->modes()->selectedSegmentIndex() == movieMode;
}

void CameraPickerController::makeCapture()
{
    capture_ = std::make_shared<CameraCapture>(CameraCapture::Options{.position = options_.position,
                                                                      .preset = options_.preset,
                                                                      .recordsMovies = isRecordingMovies(),
                                                                      .longest = options_.longest});
    auto self = std::static_pointer_cast<CameraPickerController>(shared_from_this());
    auto weakly = [weak = std::weak_ptr(self)](auto method) {
        return [weak, method](const auto&... arguments) {
            if (auto controller = weak.lock())
                (controller.get()->*method)(arguments...);
        };
    };
    capture_->onPicture = weakly(&CameraPickerController::takePicture);
    capture_->onProblem = weakly(&CameraPickerController::takeProblem);
    capture_->onPhoto = weakly(&CameraPickerController::takePhoto);
    capture_->onMovie = weakly(&CameraPickerController::takeMovie);
    capture_->onFailure = weakly(&CameraPickerController::takeFailure);
    capture_->onDevicesChange = [weak = std::weak_ptr(self)] {
        if (auto controller = weak.lock())
            controller->setStage(controller->stage_);
    };
}

// --- What is on screen -------------------------------------------------------------------------------

void CameraPickerController::setStage(Stage stage)
{
    auto isNew = std::exchange(stage_, stage) != stage;
    auto& controls = *controls_;
    auto isReview = stage == Stage::review, isRecording = stage == Stage::recording;
    controls.backButton()->setTitle(isReview ? cameraText(CameraText::retake)
                                             : systemText(SystemText::cancel));
    controls.useButton()->setHidden(!isReview);
    if (isNew) {
        controls.playButton()->setHidden(true); // until a movie can be played
        controls.setNotice({});
    }
    if (shot_)
        controls.useButton()->setTitle(
            cameraText(shot_->isMovie ? CameraText::useVideo : CameraText::usePhoto));
    using Face = CameraShutterButton::Face;
    controls.shutter()->setHidden(isReview);
    controls.shutter()->setFace(isRecording               ? Face::recording
                                    : isRecordingMovies() ? Face::video
                                                          : Face::photo);
    controls.shutter()->setEnabled(stage == Stage::live || isRecording);
    controls.switchButton()->setHidden(!capture_->canSwitch() || isReview || isRecording
                                       || stage == Stage::completing);
    controls.modes()->setHidden(!options_.takesPhotos || !options_.recordsMovies || isReview || isRecording
                                || stage == Stage::completing);
    controls.setTime(isRecording ? std::optional(capture_->recordedSeconds()) : std::nullopt);
    controls.preview()->setShowsAll(isReview);
    controls.preview()->setMirrored(!isReview && capture_->isMirrored());
    controls.setWaiting(stage == Stage::starting || stage == Stage::completing);
    controls.setNeedsLayout();
    if (isNew && page_->window() && (stage == Stage::live || isReview))
        isReview ? controls.useButton()->becomeFirstResponder() : controls.shutter()->becomeFirstResponder();
}

void CameraPickerController::takePicture(const UIImage& picture)
{
    if (shot_)
        return;
    controls_->preview()->setPicture(picture);
    if (stage_ == Stage::starting)
        setStage(Stage::live);
    else if (stage_ == Stage::recording)
        controls_->setTime(capture_->recordedSeconds());
}

void CameraPickerController::takeProblem(std::optional<CameraProblem> problem)
{
    if (shot_)
        return;
    if (!problem)
        return controls_->setMessage({});
    auto notice = noticeOf(*problem);
    controls_->preview()->setPicture({});
    // A movie that the camera left is on its way.
    if (stage_ == Stage::recording || stage_ == Stage::completing)
        return setStage(Stage::completing);
    setStage(Stage::starting);
    controls_->setWaiting(false);
    controls_->setMessage(notice.text, notice.symbol);
}

void CameraPickerController::viewDidAppear(Animated animated)
{
    UIViewController::viewDidAppear(animated);
    if (shot_)
        return;
    controls_->setMessage({});
    setStage(Stage::starting);
    capture_->start();
}

void CameraPickerController::viewDidDisappear(Animated animated)
{
    UIViewController::viewDidDisappear(animated);
    capture_->stop();
}

void CameraPickerController::viewDidLayoutSubviews()
{
    UIViewController::viewDidLayoutSubviews();
    controls_->setFrame(page_->bounds());
    controls_->layoutIfNeeded();
    auto size = controls_->preview()->bounds().size;
    auto scale = std::max(page_->traitCollection().displayScale, 1.0);
    capture_->setPictureSize({size.width * scale, size.height * scale});
}

// --- Taking ------------------------------------------------------------------------------------------

void CameraPickerController::pressShutter()
{
    if (stage_ == Stage::review)
        return use();
    if (stage_ == Stage::recording) {
        capture_->stopRecording();
        return setStage(Stage::completing);
    }
    if (stage_ != Stage::live)
        return;
    controls_->setMessage({});
    if (isRecordingMovies()) {
        capture_->startRecording();
        return setStage(Stage::recording);
    }
    capture_->takePhoto();
    controls_->flash();
    setStage(Stage::completing);
    controls_->setWaiting(false); // it is a moment
}

void CameraPickerController::takePhoto(const AVCapturePhoto& photo)
{
    if (stage_ != Stage::completing || isOver_)
        return;
    shot_ = Shot{.isMovie = false,
                 .image = imageFromPixelBuffer(photo.pixelBuffer),
                 .jpeg = photo.fileDataRepresentation,
                 .metadata = photo.metadata};
    capture_->stop();
    options_.allowsEditing ? crop() : review();
}

void CameraPickerController::takeMovie(const std::string& path, const std::optional<Error>& error)
{
    if (isOver_) {
        std::ignore = FileManager::defaultManager().removeItem(URL::fileURL(path));
        return;
    }
    shot_ = Shot{.isMovie = true, .path = path};
    capture_->stop();
    options_.allowsEditing ? trim() : review();
    // That it is as long as it may be is no news.
    if (error && *error != Error(AVError::maximumDurationReached) && shot_)
        controls_->setNotice(noticeOf(cameraProblemOf(*error)).text);
}

void CameraPickerController::takeFailure(const Error& error)
{
    if (isOver_ || shot_)
        return;
    auto notice = noticeOf(cameraProblemOf(error));
    setStage(Stage::starting); // until the next picture
    controls_->setMessage(notice.text, notice.symbol);
}

void CameraPickerController::review()
{
    controls_->setMessage({});
    setStage(Stage::review);
    if (!shot_->isMovie)
        return controls_->preview()->setPicture(shot_->image);
    // The last that was seen stands until the first of the movie is there.
    movie_ = std::make_shared<CameraMovieReview>(shot_->path);
    movie_->onPicture = [this](const UIImage& picture) { controls_->preview()->setPicture(picture); };
    movie_->onPlayingChange = [this] {
        controls_->playButton()->setHidden(!movie_->canPlay() || movie_->isPlaying());
    };
    auto size = controls_->preview()->bounds().size;
    auto scale = std::max(page_->traitCollection().displayScale, 1.0);
    movie_->load({std::max(size.width * scale, 1.0), std::max(size.height * scale, 1.0)});
}

// What was taken is still there, though nothing came of its editing.
void CameraPickerController::reviewAfter(const Error& error)
{
    if (!shot_)
        return;
    review();
    auto problem = cameraProblemOf(error);
    controls_->setNotice(problem == CameraProblem::unusable
                             ? error.localizedDescription() // it is not the camera's
                             : noticeOf(problem).text);
    auto navigation = navigationController();
    if (navigation && navigation->topViewController().get() != this)
        navigation->popToRootViewController(Animated::yes);
}

void CameraPickerController::crop()
{
    auto self = std::static_pointer_cast<CameraPickerController>(shared_from_this());
    auto page = std::make_shared<PhotoCropController>(
        shot_->image, [weak = std::weak_ptr(self)](std::optional<PhotoCrop> crop) {
            auto controller = weak.lock();
            if (!controller || !controller->shot_)
                return;
            if (!crop)
                return controller->retake();
            controller->finishCrop(std::move(*crop));
        });
    if (auto navigation = navigationController())
        navigation->pushViewController(std::move(page), Animated::yes);
}

void CameraPickerController::trim()
{
    auto page =
        std::make_shared<VideoTrimController>(VideoTrimController::Options{.path = shot_->path,
                                                                           .longest = options_.longest,
                                                                           .preset = options_.exportPreset,
                                                                           .mayKeepAll = true});
    auto self = std::static_pointer_cast<CameraPickerController>(shared_from_this());
    page->onFinish = [weak = std::weak_ptr(self)](const Result<std::string>& trimmed) {
        auto controller = weak.lock();
        if (!controller) {
            if (trimmed)
                std::ignore = FileManager::defaultManager().removeItem(URL::fileURL(*trimmed));
            return;
        }
        if (!trimmed)
            return controller->reviewAfter(trimmed.error());
        if (controller->shot_ && controller->shot_->path != *trimmed) {
            controller->discard();
            controller->shot_ = Shot{.isMovie = true, .path = *trimmed};
        }
        controller->finish({});
    };
    page->onCancel = [weak = std::weak_ptr(self)] {
        if (auto controller = weak.lock())
            controller->retake();
    };
    if (auto navigation = navigationController())
        navigation->pushViewController(std::move(page), Animated::yes);
}

void CameraPickerController::retake()
{
    discard();
    controls_->setMessage({});
    setStage(Stage::starting);
    auto navigation = navigationController();
    if (navigation && navigation->topViewController().get() != this)
        navigation->popToRootViewController(Animated::yes); // which starts the camera when it is there
    else
        capture_->start();
}

// --- The end -----------------------------------------------------------------------------------------

void CameraPickerController::use()
{
    if (shot_)
        finish({});
}

void CameraPickerController::finishCrop(PhotoCrop crop)
{
    auto self = std::static_pointer_cast<CameraPickerController>(shared_from_this());
    auto told = [weak = std::weak_ptr(self), crop](const Result<URL>& file) {
        auto controller = weak.lock();
        if (controller && !file)
            return controller->reviewAfter(file.error());
        if (!controller || controller->isOver_ || !controller->shot_) {
            if (file)
                std::ignore = FileManager::defaultManager().removeItem(*file);
            return;
        }
        UIImagePickerInfo info;
        info.emplace(UIImagePickerInfoKey::imageURL, *file);
        info.emplace(UIImagePickerInfoKey::editedImage, crop.editedImage);
        info.emplace(UIImagePickerInfoKey::cropRect, crop.cropRect);
        controller->finish(std::move(info));
    };
    writeCroppedPhoto(crop.editedImage, {.jpeg = shot_->jpeg}, std::move(told));
}

void CameraPickerController::finish(UIImagePickerInfo info)
{
    if (isOver_ || !shot_)
        return;
    if (!shot_->isMovie) {
        if (!info.contains(UIImagePickerInfoKey::imageURL)) {
            auto path = FileManager::defaultManager().temporaryDirectory().path();
            path.append("/").append(UUID().string()).append(".jpg");
            if (auto written = writeFileAtomically(URL::fileURL(path), shot_->jpeg); !written)
                return reviewAfter(written.error());
            info.emplace(UIImagePickerInfoKey::imageURL, URL::fileURL(path));
        }
        info.emplace(UIImagePickerInfoKey::originalImage, shot_->image);
        info.emplace(UIImagePickerInfoKey::mediaMetadata, shot_->metadata);
    } else {
        info.emplace(UIImagePickerInfoKey::mediaURL, URL::fileURL(shot_->path));
    }
    info.emplace(UIImagePickerInfoKey::mediaType, std::string(shot_->isMovie ? kUTTypeMovie : kUTTypeImage));
    shot_.reset(); // the file is the caller's
    movie_.reset();
    isOver_ = true;
    capture_->stop();
    auto kept = shared_from_this();
    if (onFinish)
        onFinish(info);
}

void CameraPickerController::cancel()
{
    if (std::exchange(isOver_, true))
        return;
    auto kept = shared_from_this();
    capture_->stop();
    discard();
    if (onCancel)
        onCancel();
}

void CameraPickerController::discard()
{
    movie_.reset();
    if (shot_ && !shot_->path.empty())
        std::ignore = FileManager::defaultManager().removeItem(URL::fileURL(shot_->path));
    shot_.reset();
}

} // namespace platform
