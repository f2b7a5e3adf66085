// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVError.h"
#include "platform/foundation/FileManager.h"
#include "platform/services/CameraCapture.h"
#include "platform/services/UIImagePickerController.h"
#include "tests/support/PhotoLibraryFolders.h"
#include "tests/support/ShownPicker.h"
#include "tests/support/SyntheticDesk.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using harness::ViewHarness;
using Role = AccessibilityRole;
using Key = UIKeyCode;
namespace keys = UIImagePickerInfoKey;

const std::string backCamera = "synthetic:back", frontCamera = "synthetic:front";

struct Desk {
    tests::PhotoLibraryFolders folders; // what was allowed is kept there
    tests::SyntheticDesk desk;
    Desk()
    {
        // Of this process alone, from its first use on.
        static const tests::TemporaryDirectory temporary;
        ::setenv("TMPDIR", temporary.path().c_str(), 1);
    }
};

// A picker for photos or for movies, or for both, before a desk of its own.
struct Shown : Desk, tests::ShownPicker {
    explicit Shown(const std::vector<std::string_view>& types,
                   const std::function<void(UIImagePickerController&, SyntheticCapture&)>& setUp = {})
        : ShownPicker(types,
                      [&](auto& made) {
                          made.sourceType = UIImagePickerControllerSourceType::camera;
                          if (setUp)
                              setUp(made, *desk.hardware);
                      },
                      {380, 520})
    {
    }
    void deliver(int pictures, int devices = 1)
    {
        desk.hardware->deliver(pictures, devices);
        settle();
    }
    void waitFor(Role role, std::string_view label)
    {
        waitUntil([&] { return harness.tryFind(role, label).has_value(); });
    }
    // Those that were made and are still there.
    static std::vector<std::string> files()
    {
        std::vector<std::string> names;
        for (const auto& entry :
             std::filesystem::directory_iterator(FileManager::defaultManager().temporaryDirectory().path())) {
            if (entry.path().extension() == ".mov" || entry.path().extension() == ".jpg")
                names.push_back(entry.path());
        }
        return names;
    }
};

TEST(CameraPicker, takes_a_photo_again_and_hands_out_the_one_that_is_used)
{
    for (bool byKeys : {false, true}) {
        Shown shown({kUTTypeImage});
        auto& harness = shown.harness;
        EXPECT_FALSE(harness.find(Role::button, "Take Photo").isEnabled()) << "nothing is seen yet";
        shown.deliver(2);
        auto shoot = [&] {
            byKeys ? static_cast<void>(harness.press(Key::space))
                   : harness.find(Role::button, "Take Photo").tap();
            harness.press(Key::space); // a second one, on the way
            shown.deliver(1);
            shown.waitFor(Role::button, "Use Photo");
        };
        shoot();
        EXPECT_TRUE(shown.listener->picked.empty());
        harness.find(Role::button, "Retake").tap();
        shown.deliver(3);
        shoot();
        EXPECT_TRUE(Shown::files().empty()) << "nothing is written before it is used";
        byKeys ? static_cast<void>(harness.press(Key::returnKey))
               : harness.find(Role::button, "Use Photo").tap();
        harness.press(Key::escape);
        shown.settle();
        ASSERT_EQ(shown.listener->picked.size(), 1u);
        EXPECT_EQ(shown.listener->cancelled, 0);
        const auto& info = shown.listener->picked[0];
        auto path = shown.pathOf(keys::imageURL);
        EXPECT_EQ(Shown::files(), std::vector{path});
        EXPECT_EQ(tests::numbersIn(tests::inspect(path)), std::vector{3});
        EXPECT_EQ(std::get<std::string>(info.find(keys::mediaType)->second), kUTTypeImage);
        EXPECT_EQ(std::get<UIImage>(info.find(keys::originalImage)->second).size(), (CGSize{320, 180}));
        auto& metadata = std::get<PropertyListDictionary>(info.find(keys::mediaMetadata)->second);
        EXPECT_EQ(*metadata.find("{TIFF}")->second.find("Model")->as<std::string>(), "Back Camera");
        std::filesystem::remove(path);
    }
}

TEST(CameraPicker, records_a_movie_until_somebody_or_something_ends_it)
{
    struct Case {
        const char* name;
        std::function<void(Shown&)> end;
        int pictures;
    };
    const Case cases[] = {
        {"the shutter", [](Shown& shown) { shown.harness.find(Role::button, "Stop Recording").tap(); }, 45},
        {"the longest duration", [](Shown& shown) { shown.deliver(100); }, 60},
        {"the plug", [](Shown& shown) { shown.desk.hardware->unplug(backCamera); }, 45},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        Shown shown({kUTTypeMovie}, [](auto& picker, auto&) { picker.videoMaximumDuration = 2; });
        shown.deliver(5, 2);
        shown.harness.find(Role::button, "Record").tap();
        EXPECT_FALSE(shown.harness.tryFind(Role::button, "Switch Camera")) << "a movie has one camera";
        shown.deliver(45);
        EXPECT_EQ(shown.harness.find(Role::staticText, "Recording Time").value(), "0:01");
        each.end(shown);
        shown.waitFor(Role::button, "Use Video");
        EXPECT_FALSE(shown.harness.tryFind(Role::staticText, "Recording Time"));
        EXPECT_EQ(shown.harness.tryFind(Role::staticText, "The Camera Was Disconnected").has_value(),
                  each.name == std::string_view("the plug"));
        shown.harness.find(Role::button, "Use Video").tap();
        shown.settle();
        ASSERT_EQ(shown.listener->picked.size(), 1u);
        auto path = shown.pathOf(keys::mediaURL);
        EXPECT_EQ(Shown::files(), std::vector{path});
        auto movie = tests::inspect(path);
        EXPECT_EQ(tests::numbersIn(movie).size(), static_cast<std::size_t>(each.pictures));
        EXPECT_EQ(movie.ofType(AVMEDIA_TYPE_AUDIO).size(), 1u);
        std::filesystem::remove(path);
    }
}

TEST(CameraPicker, leaves_nothing_behind_wherever_it_is_cancelled)
{
    struct Case {
        const char* name;
        std::function<void(Shown&)> act;
    };
    const Case cases[] = {
        {"before anything is seen", [](Shown&) {}},
        {"before the shutter", [](Shown& shown) { shown.deliver(2, 2); }},
        {"while a movie is recorded",
         [](Shown& shown) {
             shown.deliver(2, 2);
             shown.harness.press(Key::space);
             shown.deliver(10, 2);
         }},
        {"while a movie is completed",
         [](Shown& shown) {
             shown.deliver(2, 2);
             shown.harness.press(Key::space);
             shown.deliver(10, 2);
             shown.harness.press(Key::space);
         }},
        {"before what was taken",
         [](Shown& shown) {
             shown.deliver(2, 2);
             shown.harness.press(Key::space);
             shown.deliver(10, 2);
             shown.harness.press(Key::space);
             shown.waitFor(Role::button, "Use Video");
         }},
        {"when it was thrown away",
         [](Shown& shown) {
             shown.deliver(2, 2);
             shown.harness.press(Key::space);
             shown.deliver(10, 2);
             shown.harness.press(Key::space);
             shown.waitFor(Role::button, "Use Video");
             shown.harness.find(Role::button, "Retake").tap();
         }},
    };
    for (const auto& each : cases) {
        for (bool isDropped : {false, true}) {
            SCOPED_TRACE(each.name);
            Shown shown({kUTTypeMovie});
            each.act(shown);
            if (isDropped) { // as when the program closes the window
                shown.picker.reset();
                shown.harness.dropWindow();
            } else {
                shown.harness.press(Key::escape);
                shown.harness.press(Key::escape);
                EXPECT_EQ(shown.listener->cancelled, 1);
            }
            shown.waitUntil([&] { return shown.desk.hardware->openStreamCount() == 0; });
            for (int turn = 0; !Shown::files().empty() && turn < 10'000; ++turn)
                shown.settle();
            EXPECT_EQ(Shown::files(), std::vector<std::string>{});
            EXPECT_TRUE(shown.listener->picked.empty());
        }
    }
}

TEST(CameraPicker, says_why_nothing_is_seen_and_comes_back)
{
    const std::vector<std::string_view> photos{kUTTypeImage};
    {
        Shown shown(photos, [](auto&, auto& desk) {
            desk.unplug(backCamera);
            desk.unplug(frontCamera);
            EXPECT_FALSE(
                UIImagePickerController::isSourceTypeAvailable(UIImagePickerControllerSourceType::camera));
        });
        EXPECT_TRUE(shown.harness.tryFind(Role::staticText, "No Camera")) << shown.harness.describe();
        EXPECT_FALSE(shown.harness.find(Role::button, "Take Photo").isEnabled());
        shown.desk.hardware->plugIn({.uniqueID = "new", .name = "New"});
        shown.settle();
        shown.deliver(2);
        EXPECT_FALSE(shown.harness.tryFind(Role::staticText, "No Camera"));
        EXPECT_TRUE(shown.harness.find(Role::button, "Take Photo").isEnabled());
        shown.desk.hardware->unplug("new");
        shown.waitFor(Role::staticText, "The Camera Was Disconnected");
    }
    {
        Shown shown(photos, [](auto&, auto& desk) {
            desk.setOpenFailure(Error(AVError::deviceInUseByAnotherApplication));
        });
        shown.waitFor(Role::staticText, "The Camera Is in Use by Another Program");
        shown.desk.hardware->setOpenFailure(std::nullopt);
        shown.harness.advance(3s);
        shown.deliver(1);
        EXPECT_FALSE(shown.harness.tryFind(Role::staticText, "The Camera Is in Use by Another Program"));
    }
    for (auto answer : {"Allow", "Don’t Allow"}) {
        Shown shown(photos, [](auto&, auto&) {
            AVCaptureAuthorization::shared().setStatus(AVAuthorizationStatus::notDetermined,
                                                       platform::AVMediaType::video);
        });
        shown.harness.advance(1s);
        shown.harness.find(Role::button, answer).tap();
        shown.harness.advance(1s);
        shown.settle();
        if (answer == std::string_view("Allow")) {
            shown.deliver(1);
            EXPECT_TRUE(shown.harness.find(Role::button, "Take Photo").isEnabled());
            shown.desk.allow(AVAuthorizationStatus::denied); // as the user may, in the settings
        }
        shown.waitFor(Role::staticText, "No Access to the Camera");
        shown.waitUntil([&] { return shown.desk.hardware->openStreamCount() == 0; });
        shown.desk.allow(AVAuthorizationStatus::authorized);
        shown.settle();
        shown.deliver(1);
        EXPECT_FALSE(shown.harness.tryFind(Role::staticText, "No Access to the Camera"));
    }
}

TEST(CameraPicker, offers_both_kinds_and_all_cameras_and_mirrors_the_one_that_looks_at_the_user)
{
    Shown shown({kUTTypeImage, kUTTypeMovie}, [](auto& picker, auto&) {
        picker.cameraCaptureMode = UIImagePickerControllerCameraCaptureMode::video;
        EXPECT_TRUE(
            UIImagePickerController::isCameraDeviceAvailable(UIImagePickerControllerCameraDevice::front));
    });
    auto& harness = shown.harness;
    shown.deliver(2, 2);
    EXPECT_TRUE(harness.find(Role::radioButton, "Video").isSelected());
    EXPECT_TRUE(harness.find(Role::button, "Record").isEnabled());
    harness.find(Role::radioButton, "Photo").tap();
    EXPECT_TRUE(harness.find(Role::button, "Take Photo").isEnabled());
    // From sixteen on the fifth bright square from the right is what tells the sides apart.
    auto isBright = [&](bool atRight) {
        auto frame = harness.find(Role::image, "Viewfinder").frame();
        auto scale = frame.height() / 180;
        auto x = (232 - 160) * scale * (atRight ? 1 : -1);
        return harness::colorAt(harness.snapshot(), {frame.midX() + x, frame.maxY() - 16 * scale}) > "c";
    };
    shown.deliver(18);
    EXPECT_TRUE(isBright(true));
    EXPECT_FALSE(isBright(false));
    harness.find(Role::button, "Switch Camera").tap();
    for (int turn = 0; !harness.find(Role::button, "Take Photo").isEnabled() && turn < 1000; ++turn)
        shown.deliver(1);
    shown.deliver(17);
    EXPECT_TRUE(isBright(false)) << "as in a mirror";
    EXPECT_FALSE(isBright(true));
    harness.resize({700, 360});
    auto shutter = harness.find(Role::button, "Take Photo").frame();
    EXPECT_GT(shutter.minX(), harness.find(Role::image, "Viewfinder").frame().maxX() - 1) << "beside it";
    harness.changeTraits(
        [](auto& traits) { traits.layoutDirection = UIUserInterfaceLayoutDirection::rightToLeft; });
    harness.settle();
    EXPECT_LT(harness.find(Role::button, "Take Photo").frame().maxX(),
              harness.find(Role::image, "Viewfinder").frame().minX() + 1);
}

TEST(CameraPicker, lets_the_user_cut_a_photo_and_trim_a_movie)
{
    auto edit = [](auto& picker, auto&) {
        picker.allowsEditing = true;
        picker.videoMaximumDuration = 1;
        picker.videoExportPreset = AVAssetExportPreset640x480;
    };
    {
        Shown shown({kUTTypeImage}, edit);
        shown.deliver(2);
        shown.harness.press(Key::space);
        shown.deliver(1);
        shown.harness.advance(1s);
        shown.settle();
        shown.waitFor(Role::button, "Choose");
        shown.harness.find(Role::button, "Choose").tap();
        shown.waitUntil([&] { return !shown.listener->picked.empty(); });
        ASSERT_EQ(shown.listener->picked.size(), 1u);
        const auto& info = shown.listener->picked[0];
        EXPECT_EQ(std::get<UIImage>(info.find(keys::editedImage)->second).size(), (CGSize{180, 180}));
        EXPECT_EQ(Shown::files(), std::vector{shown.pathOf(keys::imageURL)});
        EXPECT_EQ(UIImage::fromFile(shown.pathOf(keys::imageURL)).value().size(), (CGSize{180, 180}));
        std::filesystem::remove(shown.pathOf(keys::imageURL));
    }
    Shown shown({kUTTypeMovie}, edit);
    shown.deliver(5, 2);
    shown.harness.press(Key::space);
    shown.deliver(50, 2);
    shown.waitFor(Role::slider, "Beginning");
    shown.harness.advance(1s);
    shown.settle();
    shown.harness.find(Role::slider, "Beginning").setValue(0.5);
    shown.harness.find(Role::button, "OK").tap();
    shown.waitUntil([&] { return !shown.listener->picked.empty(); });
    ASSERT_EQ(shown.listener->picked.size(), 1u);
    auto path = shown.pathOf(keys::mediaURL);
    EXPECT_EQ(Shown::files(), std::vector{path}) << "what it was cut from is gone";
    EXPECT_NEAR(tests::inspect(path).duration, 0.5, 0.1);
    std::filesystem::remove(path);
}

TEST(CameraPicker, hands_out_a_movie_as_it_is_where_nothing_is_cut_off_or_it_cannot_be_cut)
{
    for (bool isCut : {false, true}) {
        Shown shown({kUTTypeMovie}, [&](auto& picker, auto&) {
            picker.allowsEditing = true;
            if (isCut)
                picker.videoExportPreset = "none that there is";
        });
        shown.deliver(5, 2);
        shown.harness.press(Key::space);
        shown.deliver(30, 2);
        shown.harness.press(Key::space);
        shown.waitFor(Role::slider, "Beginning");
        shown.harness.advance(1s);
        shown.settle();
        const auto recorded = Shown::files();
        ASSERT_EQ(recorded.size(), 1u);
        if (isCut)
            shown.harness.find(Role::slider, "Beginning").setValue(0.5);
        shown.harness.find(Role::button, "OK").tap();
        shown.settle();
        if (isCut) {
            shown.harness.advance(1s);
            shown.waitFor(Role::button, "Use Video");
            EXPECT_TRUE(
                shown.harness.tryFind(Role::staticText, Error(AVError::exportFailed).localizedDescription()))
                << shown.harness.describe();
            EXPECT_EQ(Shown::files(), recorded);
            shown.harness.find(Role::button, "Use Video").tap();
            shown.settle();
        }
        ASSERT_EQ(shown.listener->picked.size(), 1u);
        EXPECT_EQ(shown.pathOf(keys::mediaURL), recorded[0]);
        EXPECT_NEAR(tests::inspect(recorded[0]).duration, 1, 0.1);
        std::filesystem::remove(recorded[0]);
    }
}

TEST(CameraCapture, shows_each_camera_in_its_own_shape_and_tells_a_problem_whenever_it_is_started)
{
    tests::PhotoLibraryFolders folders;
    ViewHarness harness{{90, 90}};
    auto& clock = harness.clock();
    tests::SyntheticDesk desk;
    auto capture = std::make_shared<CameraCapture>(CameraCapture::Options{});
    CGSize seen;
    int problems = 0;
    capture->onPicture = [&](const UIImage& picture) { seen = picture.size(); };
    capture->onProblem = [&](auto problem) { problems += problem.has_value(); };
    capture->setPictureSize({90, 90});
    capture->start();
    auto look = [&](SyntheticCapture& hardware) {
        for (int picture = 0; picture < 3; ++picture) {
            clock.settleWithBackgroundQueues();
            hardware.deliver(1);
            clock.settleWithBackgroundQueues();
        }
        return seen;
    };
    EXPECT_EQ(look(*desk.hardware), (CGSize{160, 90}));
    auto upright = std::make_shared<SyntheticCapture>(
        tests::SyntheticDesk::Options{.pace = SyntheticCapture::Pace::onDemand, .width = 180, .height = 320});
    CaptureHardware::replace(upright);
    capture->switchCamera();
    EXPECT_EQ(look(*upright), (CGSize{90, 160}));
    upright->setOpenFailure(Error(AVError::diskFull));
    for (int times : {1, 2}) {
        capture->stop();
        capture->start();
        for (int turn = 0; problems < times && turn < 100'000; ++turn)
            clock.settleWithBackgroundQueues();
        EXPECT_EQ(problems, times);
    }
}

} // namespace
