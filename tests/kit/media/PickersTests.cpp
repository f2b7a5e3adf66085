// SPDX-License-Identifier: MIT
#include "kit/media/FontPickerScreen.h"
#include "kit/media/VideoEditorView.h"
#include "kit/media/photoAssetPicker.h"

#include "platform/swiftui/Color.h"
#include "platform/swiftui/sheet.h"
#include "tests/support/PhotoLibraryFolders.h"
#include "tests/support/harness/DeclarativeHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using Role = AccessibilityRole;
using zelk::AssetPickerKind;
using zelk::ImagePicker;
using zelk::ImagePickerSource;

TEST(ImagePicker, hands_back_the_first_file_or_the_whole_of_what_there_was)
{
    auto url = [](std::string_view name) { return URL::fileURL(std::string("/").append(name)); };
    const std::string image = "UIImagePickerControllerImageURL", media = "UIImagePickerControllerMediaURL",
                      reference = "UIImagePickerControllerReferenceURL";
    struct Case {
        const char* name;
        UIImagePickerInfo info;
        std::optional<URL> picked;
    };
    const Case cases[] = {
        {"the image first", {{reference, url("r")}, {media, url("m")}, {image, url("i")}}, url("i")},
        {"then the medium", {{reference, url("r")}, {media, url("m")}}, url("m")},
        {"then the reference", {{reference, url("r")}}, url("r")},
        {"a file before what is none", {{image, *URL::parse("http://a/b")}, {reference, url("r")}}, url("r")},
        {"no URL", {{image, std::string("text")}}, std::nullopt},
        {"nothing", {}, std::nullopt},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        std::vector<Result<URL>> told;
        int cancelled = 0;
        auto coordinator = ImagePicker({.source = ImagePickerSource::photoLibrary({}),
                                        .didCancel = [&] { ++cancelled; },
                                        .didPickItem = [&](auto item) { told.push_back(std::move(item)); }})
                               .makeCoordinator();
        UIImagePickerController picker;
        coordinator->imagePickerControllerDidFinishPickingMedia(picker, each.info);
        ASSERT_EQ(told.size(), 1u);
        if (each.picked) {
            EXPECT_EQ(told[0].value(), *each.picked);
        } else {
            auto* error = told[0].error().as<zelk::ImagePickerError>();
            ASSERT_TRUE(error);
            EXPECT_EQ(error->userInfo, each.info);
        }
        coordinator->imagePickerControllerDidCancel(picker);
        EXPECT_EQ(cancelled, 1);
    }
}

// The first controller of that kind in the window.
template <class Controller>
std::shared_ptr<Controller> controllerIn(const UIView& view)
{
    if (auto found = std::dynamic_pointer_cast<Controller>(view.viewController()))
        return found;
    for (const auto& subview : view.subviews()) {
        if (auto found = controllerIn<Controller>(*subview))
            return found;
    }
    return nullptr;
}

TEST(ImagePicker, sets_the_platforms_picker_up)
{
    using Mode = UIImagePickerControllerCameraCaptureMode;
    using Source = UIImagePickerControllerSourceType;
    tests::PhotoLibraryFolders folders;
    struct Case {
        ImagePickerSource source;
        std::optional<double> longest;
        Source type;
        std::vector<std::string> mediaTypes;
        Mode mode;
        double duration;
    };
    const std::string image = "public.image", movie = "public.movie";
    const Case cases[] = {
        {ImagePickerSource::photoLibrary({movie, image}),
         7,
         Source::photoLibrary,
         {movie, image},
         Mode::photo,
         7},
        {ImagePickerSource::cameraCapture(true), {}, Source::camera, {movie}, Mode::video, 600},
        {ImagePickerSource::cameraCapture(false), {}, Source::camera, {image}, Mode::photo, 600},
    };
    auto theme = std::make_shared<zelk::ThemeManager>();
    for (const auto& each : cases) {
        harness::DeclarativeHarness harness({320, 400});
        harness.show(ImagePicker({.source = each.source,
                                  .allowsEditing = true,
                                  .videoMaximumDuration = each.longest,
                                  .themeManager = theme}));
        auto picker = controllerIn<UIImagePickerController>(harness.window());
        ASSERT_TRUE(picker && picker->delegate());
        EXPECT_EQ(picker->sourceType, each.type);
        EXPECT_EQ(picker->mediaTypes, each.mediaTypes);
        EXPECT_EQ(picker->cameraCaptureMode, each.mode);
        EXPECT_EQ(picker->videoMaximumDuration, each.duration);
        EXPECT_EQ(picker->videoExportPreset, "AVAssetExportPresetPassthrough");
        EXPECT_EQ(picker->videoQuality, UIImagePickerControllerQualityType::high);
        EXPECT_TRUE(picker->allowsEditing);
        EXPECT_EQ(picker->view()->tintColor(), theme->tintUIColor());
    }
}

TEST(VideoEditorView, is_called_trimming_and_goes_on_with_next)
{
    tests::TemporaryDirectory folder;
    std::vector<Result<std::string>> told;
    harness::DeclarativeHarness harness({400, 400});
    harness.show(zelk::VideoEditorView(
        folder.file("text.mov", "text"), [] { FAIL() << "nobody cancelled"; },
        [&](auto result) { told.push_back(std::move(result)); }));
    harness.settle();
    EXPECT_TRUE(harness.tryFind(Role::button, "Next"));
    EXPECT_TRUE(harness.tryFind(Role::header, "Trim Video"));
    auto editor = controllerIn<UIVideoEditorController>(harness.window());
    EXPECT_EQ(editor->videoMaximumDuration, 0);
    EXPECT_EQ(editor->videoQuality, UIImagePickerControllerQualityType::high);
    harness.clock().settleWithBackgroundQueues();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_FALSE(told[0]);
}

TEST(AssetPicker, is_presented_for_a_kind_and_clears_it_when_it_goes)
{
    static_assert(AssetPickerKind::fromRawValue("photo-library") == AssetPickerKind::photoLibrary);
    static_assert(AssetPickerKind::fromRawValue("camera") == AssetPickerKind::cameraCapture);
    static_assert(!AssetPickerKind::fromRawValue("Camera"));
    tests::PhotoLibraryFolders folders;
    auto picture = tests::contentsOf(tests::smallPicture().path());
    folders.folder.write("pictures/one.png", picture);
    for (auto how : {"one.png", "Cancel", "Escape"}) {
        SCOPED_TRACE(how);
        bool picks = how == std::string("one.png");
        auto kind = std::make_shared<StateCell<std::optional<AssetPickerKind>>>(std::nullopt);
        std::vector<std::string> told;
        harness::DeclarativeHarness harness({320, 400});
        harness.show(Color{UIColor::white()}
                     | zelk::photoAssetPicker(Binding(kind), {}, [&](Result<URL> item) {
                           EXPECT_TRUE(kind->value()) << "the item is told before the screen goes";
                           told.push_back(item ? item->lastPathComponent() : "error");
                       }));
        harness.settle();
        kind->set(AssetPickerKind(AssetPickerKind::photoLibrary));
        harness.advance(2s);
        harness.clock().settleWithBackgroundQueues();
        if (how == std::string("Escape"))
            harness.press(UIKeyCode::escape);
        else
            harness.find(Role::button, how).tap();
        harness.advance(2s);
        EXPECT_EQ(told, picks ? std::vector<std::string>{"one.png"} : std::vector<std::string>{});
        EXPECT_EQ(kind->value(), std::nullopt);
        EXPECT_FALSE(harness.tryFind(Role::button, "one.png"));
    }
}

TEST(Pickers, take_escape_before_what_they_stand_in_does_and_tell_of_it_once)
{
    tests::PhotoLibraryFolders folders;
    auto escape = [](auto presentation, auto picker) {
        auto isShown = std::make_shared<StateCell<bool>>(false);
        harness::DeclarativeHarness harness({600, 500});
        harness.show(Color{UIColor::white()} | presentation(Binding(isShown), picker));
        isShown->set(true);
        harness.advance(1s);
        for (int times = 0; times < 2; ++times) {
            harness.press(UIKeyCode::escape);
            harness.advance(1s);
        }
        return isShown->value(); // who presents it is to end it
    };
    int cancelled = 0;
    auto cancel = [&] { ++cancelled; };
    auto photos = [&] {
        return ImagePicker({.source = ImagePickerSource::photoLibrary({}), .didCancel = cancel});
    };
    auto fonts = [&] { return zelk::FontPickerScreen([](auto&) { FAIL(); }, cancel); };
    auto asSheet = [](auto shown, auto content) { return sheet(shown, content); };
    auto asCover = [](auto shown, auto content) { return fullScreenCover(shown, content); };
    EXPECT_TRUE(escape(asSheet, photos));
    EXPECT_TRUE(escape(asCover, photos));
    EXPECT_TRUE(escape(asSheet, fonts));
    EXPECT_TRUE(escape(asCover, fonts));
    EXPECT_EQ(cancelled, 4);
    EXPECT_FALSE(escape(asSheet, [] { return Color{UIColor::red()}; })) << "nothing inside wants it";
}

} // namespace
