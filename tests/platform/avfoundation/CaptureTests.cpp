// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVCaptureMovieFileOutput.h"
#include "platform/avfoundation/AVCapturePhotoOutput.h"
#include "platform/avfoundation/AVCaptureSession.h"
#include "platform/avfoundation/AVCaptureVideoDataOutput.h"
#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/DesktopCapture_p.h"
#include "platform/avfoundation/FFmpegCapture_p.h"
#include "platform/avfoundation/V4L2Camera_p.h"
#include "platform/dispatch/VirtualClock.h"
#include "tests/support/FullDisk.h"
#include "tests/support/SyntheticDesk.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <condition_variable>
#include <future>
#include <map>
#include <numeric>

namespace {

using namespace platform;
using Status = AVAuthorizationStatus;
using Position = AVCaptureDevicePosition;

constexpr double rate = 30;
const std::string backCamera = "synthetic:back";

struct Listener : AVCaptureFileOutputRecordingDelegate,
                  AVCapturePhotoCaptureDelegate,
                  AVCaptureVideoDataOutputSampleBufferDelegate {
    int started = 0;
    std::vector<std::optional<Error>> finished;
    std::vector<AVCapturePhoto> photos;
    std::vector<std::shared_ptr<const CVPixelBuffer>> pictures;

    void fileOutputDidStartRecording(AVCaptureMovieFileOutput&, const URL&) override { ++started; }
    void fileOutputDidFinishRecording(AVCaptureMovieFileOutput&, const URL&,
                                      const std::optional<Error>& error) override
    {
        finished.push_back(error);
    }
    void photoOutputDidFinishProcessingPhoto(AVCapturePhotoOutput&, const AVCapturePhoto& photo,
                                             const std::optional<Error>& error) override
    {
        EXPECT_FALSE(error);
        photos.push_back(photo);
    }
    void captureOutputDidOutput(AVCaptureOutput&, const CMSampleBuffer& sample) override
    {
        pictures.push_back(sample.imageBuffer);
    }
};

// A session with all outputs, its devices open.
struct Running {
    VirtualClock clock;
    std::shared_ptr<Listener> listener = std::make_shared<Listener>();
    std::shared_ptr<AVCaptureSession> session = std::make_shared<AVCaptureSession>();
    std::shared_ptr<AVCaptureVideoDataOutput> pictures = std::make_shared<AVCaptureVideoDataOutput>();
    std::shared_ptr<AVCapturePhotoOutput> photos = std::make_shared<AVCapturePhotoOutput>();
    std::shared_ptr<AVCaptureMovieFileOutput> movies = std::make_shared<AVCaptureMovieFileOutput>();
    std::vector<Error> errors;

    Running()
    {
        pictures->setSampleBufferDelegate(listener, DispatchQueue::main());
        session->onRuntimeError = [this](const AVCaptureDevice&, const Error& error) {
            errors.push_back(error);
        };
        for (auto type : {platform::AVMediaType::video, platform::AVMediaType::audio}) {
            if (auto device = AVCaptureDevice::defaultDevice(type, Position::back))
                session->addInput(AVCaptureDeviceInput::make(device).value());
        }
        for (const auto& output : std::vector<std::shared_ptr<AVCaptureOutput>>{pictures, photos, movies})
            session->addOutput(output);
        session->startRunning();
    }
    template <class Condition>
    void until(Condition&& isSo)
    {
        for (int turn = 0; !isSo() && turn < 1'000'000; ++turn)
            clock.settleWithBackgroundQueues();
        EXPECT_TRUE(isSo());
    }
};

TEST(Capture, opens_nothing_again_that_was_refused_meanwhile)
{
    tests::SyntheticDesk desk;
    Running running;
    desk.hardware->deliver(5, 2);
    running.session->stopRunning();
    running.until([&] { return desk.hardware->openStreamCount() == 0; });
    AVCaptureAuthorization::shared().setStatus(Status::denied, platform::AVMediaType::audio);
    running.session->startRunning();
    desk.hardware->deliver(5);
    running.until([&] { return running.errors.size() == 1; });
    EXPECT_EQ(running.errors[0], Error(AVError::applicationIsNotAuthorizedToUseDevice));
    EXPECT_EQ(desk.hardware->openStreamCount(), 1);
}

TEST(Capture, records_every_picture_with_the_sound_until_it_ends)
{
    struct Case {
        const char* name;
        std::function<void(Running&, SyntheticCapture&)> act;
        int pictures; // in the movie; 0: there is none
        std::optional<AVError> error = {};
        bool hasMicrophone = true;
        std::optional<rlim_t> room = {}; // bytes on the disk
    };
    const Case cases[] = {
        {"until it is stopped",
         [](Running& running, SyntheticCapture& desk) {
             desk.deliver(45);
             EXPECT_NEAR(running.movies->recordedDuration().seconds(), 1.5, 0.01);
             running.movies->stopRecording();
         },
         45},
        {"without a microphone",
         [](Running& running, SyntheticCapture& desk) {
             desk.deliver(20);
             running.movies->stopRecording();
         },
         20,
         {},
         false},
        {"until the longest duration", [](Running&, SyntheticCapture& desk) { desk.deliver(80); }, 60,
         AVError::maximumDurationReached},
        {"until the camera is unplugged",
         [](Running&, SyntheticCapture& desk) {
             desk.deliver(25);
             desk.unplug(backCamera);
         },
         25, AVError::deviceWasDisconnected},
        {"until the user takes back that it may be used",
         [](Running&, SyntheticCapture& desk) {
             desk.deliver(25);
             AVCaptureAuthorization::shared().setStatus(Status::denied, platform::AVMediaType::video);
         },
         25, AVError::applicationIsNotAuthorizedToUseDevice},
        {"until the session stops",
         [](Running& running, SyntheticCapture& desk) {
             desk.deliver(10);
             running.session->stopRunning();
         },
         10},
        {"beyond the microphone's end",
         [](Running& running, SyntheticCapture& desk) {
             desk.deliver(15);
             desk.unplug(SyntheticCapture::microphoneID);
             running.until([&] { return running.errors.size() == 1; });
             desk.deliver(15);
             running.movies->stopRecording();
         },
         30},
        {"nothing before the first picture",
         [](Running& running, SyntheticCapture&) { running.movies->stopRecording(); }, 0,
         AVError::noDataCaptured},
        {"nothing on a disk that is full", [](Running&, SyntheticCapture& desk) { desk.deliver(2); }, 0,
         AVError::diskFull},
        {"nothing on a disk that becomes full",
         [](Running& running, SyntheticCapture& desk) {
             desk.deliver(40);
             running.movies->stopRecording();
         },
         0, AVError::diskFull, true, 2000},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        tests::TemporaryDirectory folder;
        tests::SyntheticDesk desk([&](auto& options) { options.hasMicrophone = each.hasMicrophone; });
        Running running;
        desk.hardware->deliver(5, each.hasMicrophone ? 2 : 1);
        running.movies->setMaxRecordedDuration(CMTime(2, 1));
        std::optional<tests::FullDisk> disk;
        if (each.room)
            disk.emplace(*each.room);
        else if (each.error == AVError::diskFull)
            running.movies->setMinFreeDiskSpaceLimit(INT64_MAX);
        running.movies->startRecording(folder.url("a.mov"), running.listener);
        each.act(running, *desk.hardware);
        running.until([&] { return !running.listener->finished.empty(); });
        running.clock.settleWithBackgroundQueues();
        ASSERT_EQ(running.listener->finished.size(), 1u);
        EXPECT_FALSE(running.movies->isRecording());
        auto error = running.listener->finished[0];
        EXPECT_EQ(error, each.error ? std::optional(Error(*each.error)) : std::nullopt);
        EXPECT_EQ(folder.fileCount(), each.pictures ? 1 : 0) << "half a file is no file";
        EXPECT_EQ(running.listener->started, each.pictures || each.room ? 1 : 0);
        if (!each.pictures)
            continue;
        if (error) {
            EXPECT_TRUE(error->bridged().userInfo().contains(AVErrorRecordingSuccessfullyFinishedKey));
        }
        auto movie = tests::inspect(folder.path("a.mov"));
        std::vector<int> expected(static_cast<std::size_t>(each.pictures));
        std::iota(expected.begin(), expected.end(), 5);
        EXPECT_EQ(tests::numbersIn(movie), expected);
        EXPECT_NEAR(movie.duration, each.pictures / rate, 0.06);
        ASSERT_EQ(movie.ofType(AVMEDIA_TYPE_AUDIO).size(), each.hasMicrophone ? 1u : 0u);
        if (each.hasMicrophone) {
            EXPECT_NEAR(movie.audio().onset(0, 0.03F), 0, 0.05);
        }
        EXPECT_EQ(tests::proberWarnings(folder.path("a.mov")), "");
    }
}

// A desk whose microphone gives nothing until it is told to.
class LateMicrophone : public CaptureHardware {
public:
    explicit LateMicrophone(std::shared_ptr<SyntheticCapture> desk)
        : desk_(std::move(desk))
    {
    }
    void begin()
    {
        std::lock_guard lock(mutex_);
        hasBegun_ = true;
        changed_.notify_all();
    }
    std::vector<CaptureDeviceInfo> devices(platform::AVMediaType type) override
    {
        return desk_->devices(type);
    }
    Result<std::unique_ptr<CaptureStream>> open(const CaptureDeviceInfo& device, const CaptureWish& wish,
                                                const std::stop_token& stop) override
    {
        if (device.mediaType == platform::AVMediaType::audio)
            return std::make_unique<Stream>(*this, device);
        return desk_->open(device, wish, stop);
    }
    Token watch(std::function<void()> onChange) override { return desk_->watch(std::move(onChange)); }

private:
    struct Stream : CaptureStream {
        LateMicrophone& owner;
        CaptureDeviceInfo device;
        std::unique_ptr<CaptureStream> sound = {};
        Stream(LateMicrophone& its, const CaptureDeviceInfo& of)
            : owner(its)
            , device(of)
        {
        }
        Result<std::optional<CMSampleBuffer>> read(const std::stop_token& stop) override
        {
            std::unique_lock lock(owner.mutex_);
            if (!owner.changed_.wait(lock, stop, [&] { return owner.hasBegun_; }))
                return std::nullopt;
            lock.unlock();
            if (!sound)
                sound = owner.desk_->open(device, {}, stop).value();
            return sound->read(stop);
        }
    };
    const std::shared_ptr<SyntheticCapture> desk_;
    std::mutex mutex_;
    std::condition_variable_any changed_;
    bool hasBegun_ = false;
};

TEST(Capture, waits_for_sound_that_comes_late_but_not_for_a_microphone_that_is_silent)
{
    for (bool comes : {true, false}) {
        tests::TemporaryDirectory folder;
        tests::SyntheticDesk desk;
        auto late = std::make_shared<LateMicrophone>(desk.hardware);
        CaptureHardware::replace(late);
        Running running;
        running.movies->startRecording(folder.url("a.mov"), running.listener);
        desk.hardware->deliver(30);
        EXPECT_EQ(running.movies->recordedDuration(), CMTime::zero()) << "it is still waited for";
        if (comes) {
            late->begin();
            desk.hardware->deliver(1, 2);
        }
        desk.hardware->deliver(60, comes ? 2 : 1);
        running.movies->stopRecording();
        running.until([&] { return !running.listener->finished.empty(); });
        EXPECT_EQ(running.listener->finished[0], std::nullopt);
        auto movie = tests::inspect(folder.path("a.mov"));
        auto numbers = tests::numbersIn(movie);
        ASSERT_FALSE(numbers.empty());
        EXPECT_NEAR(numbers.front(), comes ? 30.5 : 60, 0.5) << "two seconds are enough";
        EXPECT_EQ(numbers.back(), comes ? 90 : 89);
        EXPECT_EQ(movie.ofType(AVMEDIA_TYPE_AUDIO).size(), comes ? 1u : 0u);
        running.session->stopRunning();
        for (int turn = 0; desk.hardware->openStreamCount() > 0 && turn < 1'000'000; ++turn)
            running.clock.settleWithBackgroundQueues();
    }
}

TEST(Capture, hands_the_newest_picture_to_who_was_busy_and_takes_photos_that_say_when)
{
    tests::TemporaryDirectory folder;
    tests::SyntheticDesk desk;
    Running running;
    running.pictures->setVideoSettings(
        {.kCVPixelBufferPixelFormatTypeKey = CVPixelFormatType::planar420YpCbCr8});
    desk.hardware->deliver(10, 2);
    EXPECT_TRUE(running.listener->pictures.empty());
    running.clock.settle();
    ASSERT_EQ(running.listener->pictures.size(), 1u) << "the main thread is handed one, however many came";
    const auto& picture = *running.listener->pictures[0];
    EXPECT_EQ(SyntheticCapture::numberOf(picture.baseAddress(0), picture.bytesPerRow(0), 320, 180), 9);

    running.photos->setCameraModel("Kamera \"Ä\"");
    running.photos->capturePhoto(running.listener);
    desk.hardware->deliver(3);
    running.clock.settle();
    ASSERT_EQ(running.listener->photos.size(), 1u);
    const auto& photo = running.listener->photos[0];
    auto path = folder.file("photo.jpg", photo.fileDataRepresentation);
    auto said = tests::outputOf("ffprobe -v warning -show_frames " + path + " 2>&1");
    const auto& exif = photo.metadata.find("{Exif}")->second;
    const auto* date = exif.find("DateTimeOriginal")->as<std::string>();
    const auto* offset = exif.find("OffsetTimeOriginal")->as<std::string>();
    for (const auto& part : {std::string("width=320"), std::string("height=180"),
                             std::string("TAG:Model=Kamera \"Ä\""), "TAG:DateTimeOriginal=" + *date,
                             "TAG:0x9011=" + *offset, std::string("TAG:PixelXDimension=    320")})
        EXPECT_NE(said.find(part), said.npos) << part << " in\n" << said;
    EXPECT_EQ(tests::numbersIn(tests::inspect(path)), std::vector<int>{10});

    running.photos->capturePhoto(running.listener); // which nobody waits for any more
    running.listener.reset();
    desk.hardware->deliver(1);
    running.clock.settle();
}

TEST(Capture, says_why_a_camera_gives_nothing_and_when_one_comes)
{
    tests::SyntheticDesk desk;
    VirtualClock watched;
    int changes = 0;
    auto token = AVCaptureDevice::observeDevices([&] { ++changes; });
    auto front = AVCaptureDevice::defaultDevice(platform::AVMediaType::video, Position::front);
    EXPECT_EQ(front->position(), Position::front);
    desk.hardware->unplug(front->uniqueID());
    watched.settle();
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(front->isConnected());
    EXPECT_EQ(AVCaptureDeviceInput::make(front).error(), Error(AVError::deviceNotConnected));
    EXPECT_EQ(AVCaptureDevice::defaultDevice(platform::AVMediaType::video, Position::front)->uniqueID(),
              backCamera)
        << "another is better than none";
    token.cancel();
    desk.hardware->unplug(backCamera);
    watched.settle();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(AVCaptureDevice::defaultDevice(platform::AVMediaType::video), nullptr);
    EXPECT_TRUE(AVCaptureDevice::devices(platform::AVMediaType::text).empty());
}

TEST(Capture, tells_that_somebody_else_has_the_camera)
{
    tests::SyntheticDesk desk;
    desk.hardware->setOpenFailure(Error(AVError::deviceInUseByAnotherApplication));
    Running running;
    running.until([&] { return running.errors.size() == 2; });
    EXPECT_EQ(running.errors[0], Error(AVError::deviceInUseByAnotherApplication));
    EXPECT_EQ(desk.hardware->openStreamCount(), 0);
    // A session that starts where another has just stopped waits until the device is closed.
    desk.hardware->setOpenFailure(std::nullopt);
    for (int i = 0; i < 3; ++i) {
        running.session->stopRunning();
        running.session->startRunning();
    }
    running.until([&] {
        desk.hardware->deliver(1); // perhaps to one that is being closed
        return !running.listener->pictures.empty();
    });
    EXPECT_EQ(running.errors.size(), 2u);
}

struct Question : AVCaptureQuestion {
    std::vector<platform::AVMediaType> asked;
    std::vector<Answer> standing;
    void ask(platform::AVMediaType mediaType, Answer answer) override
    {
        asked.push_back(mediaType);
        standing.push_back(std::move(answer));
    }
};

TEST(CaptureAuthorization, asks_once_remembers_and_forgets)
{
    tests::SyntheticDesk desk;
    VirtualClock clock;
    auto& authorization = AVCaptureAuthorization::shared();
    auto camera = AVCaptureDevice::defaultDevice(platform::AVMediaType::video);
    for (auto answer : {Status::denied, Status::authorized, Status::notDetermined}) {
        desk.allow(Status::notDetermined);
        auto question = std::make_shared<Question>();
        authorization.setQuestion(question);
        std::vector<bool> told;
        auto ask = [&] {
            AVCaptureDevice::requestAccess(platform::AVMediaType::video,
                                           [&](bool mayUse) { told.push_back(mayUse); });
            clock.settle();
        };
        ask();
        ask();
        EXPECT_EQ(question->asked, std::vector{platform::AVMediaType::video});
        EXPECT_FALSE(AVCaptureDeviceInput::make(camera));
        question->standing.at(0)(answer);
        clock.settle();
        const bool may = answer == Status::authorized;
        EXPECT_EQ(told, std::vector<bool>(2, may));
        EXPECT_EQ(AVCaptureDevice::authorizationStatus(platform::AVMediaType::video), answer);
        EXPECT_EQ(AVCaptureDevice::authorizationStatus(platform::AVMediaType::audio), Status::notDetermined);
        EXPECT_EQ(AVCaptureDeviceInput::make(camera).has_value(), may);
        ask();
        EXPECT_EQ(question->asked.size(), answer == Status::notDetermined ? 2u : 1u);
        if (answer == Status::notDetermined)
            question->standing.at(1)(answer);
    }
    tests::TemporaryDirectory folder;
    folder.write("zelk/restrictions.plist", "<plist><dict><key>CameraRestricted</key><true/></dict></plist>");
    ::setenv("XDG_CONFIG_DIRS", folder.path().c_str(), 1);
    EXPECT_EQ(AVCaptureDevice::authorizationStatus(platform::AVMediaType::video), Status::restricted);
    ::unsetenv("XDG_CONFIG_DIRS");
}

TEST(V4L2Camera, is_none_of_the_files_that_stand_where_cameras_do)
{
    tests::TemporaryDirectory folder;
    folder.write("video0", "no device");
    std::filesystem::create_directory(folder.path("video1"));
    ASSERT_EQ(::mkfifo(folder.path("video2").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/null", folder.path("video3"));
    std::filesystem::create_symlink("/nowhere", folder.path("video4"));
    for (const char* name : {"video0", "video1", "video2", "video3", "video4", "video5"}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(v4l2CameraAt(folder.path(name)));
        EXPECT_TRUE(v4l2Formats(folder.path(name)).empty());
        if (std::string_view(name) == "video2")
            continue; // the library itself would wait for a writer; it is asked for cameras only
        auto stream = openFFmpegCapture({.format = "v4l2", .device = folder.path(name)}, {});
        ASSERT_FALSE(stream);
        EXPECT_EQ(stream.error(), Error(AVError::deviceNotConnected));
    }
    EXPECT_TRUE(V4L2Cameras(folder.path()).now().empty());
    EXPECT_TRUE(V4L2Cameras(folder.path("gone")).now().empty());
    EXPECT_FALSE(DesktopCapture().open({.uniqueID = "gone"}, {}, {}));

    std::promise<void> changed;
    std::once_flag once;
    auto token = watchDevices(folder.path(), [&] { std::call_once(once, [&] { changed.set_value(); }); });
    folder.write("audio0", "");
    folder.write("video6", "");
    changed.get_future().wait();
}

TEST(V4L2Camera, is_asked_once_while_nothing_changes_unless_it_may_yet_become_one)
{
    tests::TemporaryDirectory folder;
    std::map<std::string, int> asked;
    V4L2Cameras cameras(folder.path(), [&](const std::string& path) {
        auto name = std::filesystem::path(path).filename().string();
        ++asked[name];
        V4L2Answer answer{.camera = std::nullopt, .isLasting = name != "video2"};
        if (name == "video0")
            answer.camera = V4L2Camera{.path = path, .name = name};
        return answer;
    });
    for (const char* name :
         {"video0", "video1", "video2", "vbi0"}) // a camera, a converter, one without a driver yet
        folder.write(name, "");
    for (int times = 0; times < 3; ++times)
        EXPECT_EQ(cameras.now().size(), 1u);
    EXPECT_EQ(asked, (std::map<std::string, int>{{"video0", 1}, {"video1", 1}, {"video2", 3}}));
    namespace files = std::filesystem;
    for (const char* name : {"video0", "video1"}) { // put back, and other permissions
        files::remove(folder.path(name));
        EXPECT_EQ(cameras.now().size(), name == std::string_view("video0") ? 0u : 1u);
        folder.write(name, "");
        EXPECT_EQ(cameras.now().size(), 1u);
    }
    EXPECT_EQ(asked["video0"], 2);
    EXPECT_EQ(asked["video1"], 2);
}

TEST(V4L2Camera, gives_the_pictures_that_come_nearest_to_the_wish)
{
    using Formats = std::vector<CaptureFormat>;
    const CaptureFormat raw{"yuyv422", 640, 480, 30}, slow{"yuyv422", 1920, 1080, 5},
        jpeg{"mjpeg", 1920, 1080, 30}, small{"mjpeg", 1280, 720, 30}, planar{"nv12", 1280, 720, 30},
        film{"h264", 1920, 1080, 30}, grey{"gray", 640, 360, 30}, huge{"mjpeg", 3840, 2160, 30},
        unknown{"nv12", 1280, 720, 0};
    const CaptureWish high{1920, 1080, 30}, medium{1280, 720, 30}, low{640, 480, 30};
    struct Case {
        const char* name;
        Formats formats;
        CaptureWish wish;
        std::optional<CaptureFormat> best;
    };
    const Case cases[] = {
        {"nothing of nothing", {}, high, {}},
        {"moving pictures before still ones", {slow, raw, jpeg}, high, jpeg},
        {"what is smooth before what is large", {slow, raw}, high, raw},
        {"no larger than needed", {raw, huge, jpeg, small}, medium, small},
        {"large enough", {raw, small}, high, small},
        {"what costs least", {small, planar}, medium, planar},
        {"pictures before film", {film, jpeg}, high, jpeg},
        {"film before nothing", {film}, low, film},
        {"colour before grey", {grey, huge}, low, huge},
        {"a speed that is not known counts as enough", {unknown, raw}, medium, unknown},
    };
    for (const auto& each : cases)
        EXPECT_EQ(bestCaptureFormat(each.formats, each.wish), each.best) << each.name;
    EXPECT_EQ(cameraPosition("Integrated Camera: Front", ""), Position::front);
    EXPECT_EQ(cameraPosition("Rear camera", "front"), Position::front) << "the firmware knows better";
    EXPECT_EQ(cameraPosition("ov5693 rear", ""), Position::back);
    EXPECT_EQ(cameraPosition("USB 2.0 Webcam", "unknown"), Position::unspecified);
}

} // namespace
