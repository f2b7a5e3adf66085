// SPDX-License-Identifier: MIT
#include "platform/services/PhotoCropController.h"

#include "platform/avfoundation/AVURLAsset.h"
#include "platform/services/MediaFileChooser.h"
#include "platform/services/UIImagePickerController.h"
#include "tests/support/CountedVideo.h"
#include "tests/support/PhotoLibraryFolders.h"
#include "tests/support/ShownPicker.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using harness::ViewHarness;
using Role = AccessibilityRole;
using Key = UIKeyCode;
using Shift = UIKeyModifierFlags;

// Each pixel says where it is: red across, green down.
UIImage map(int width, int height)
{
    std::vector<std::byte> pixels;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            for (auto part : {x, y, 0, 255})
                pixels.push_back(static_cast<std::byte>(part));
    }
    return UIImage::fromPixels(pixels, width, height);
}
CGPoint placeOf(const UIColor& color)
{
    return {std::round(color.components().red * 255), std::round(color.components().green * 255)};
}

struct Cropping {
    ViewHarness harness{{232, 280}}; // of which the frame takes 200 by 200, in the middle below the bar
    std::vector<std::optional<PhotoCrop>> told;
    std::shared_ptr<PhotoCropController> page;

    template <class Photo>
    explicit Cropping(Photo photo)
        : page(std::make_shared<PhotoCropController>(
              std::move(photo), [this](std::optional<PhotoCrop> crop) { told.push_back(std::move(crop)); }))
    {
        harness.show(page);
        harness.clock().settleWithBackgroundQueues();
    }
    std::optional<PhotoCrop> choose()
    {
        harness.find(Role::button, "Choose").tap();
        harness.clock().settleWithBackgroundQueues();
        EXPECT_EQ(told.size(), 1u);
        return told.empty() ? std::nullopt : told.front();
    }
};

TEST(PhotoCrop, cuts_the_square_that_was_moved_and_scaled_into_the_frame)
{
    const CGPoint middle{116, 164};
    struct Case {
        const char* name;
        std::function<void(ViewHarness&)> act;
        CGRect cut; // of 200 by 100 pixels, two points each at first
    };
    const Case cases[] = {
        {"the middle at first", [](auto&) {}, CGRect::make(50, 0, 100, 100)},
        {"dragged", [&](auto& harness) { harness.drag(middle, {middle.x + 60, middle.y + 50}); },
         CGRect::make(20, 0, 100, 100)},
        {"not beyond its edge", [&](auto& harness) { harness.drag(middle, {middle.x - 900, middle.y}); },
         CGRect::make(100, 0, 100, 100)},
        {"arrows",
         [](auto& harness) {
             harness.press(Key::left);
             harness.press(Key::left, Shift::shift);
         },
         CGRect::make(61, 0, 100, 100)},
        {"assistive technology", [](auto& harness) { harness.find(Role::slider, "Zoom").setValue(200); },
         CGRect::make(75, 25, 50, 50)},
        {"two clicks, about their place",
         [&](auto& harness) {
             harness.tap(CGPoint{middle.x - 100, middle.y - 99}, harness::Press{.tapCount = 2});
         },
         CGRect::make(50, 0, 50, 50)},
        {"keys, there and back",
         [](auto& harness) {
             for (auto key : {"+", "+", "-", "0"})
                 harness.press(key, 0);
         },
         CGRect::make(50, 0, 100, 100)},
        {"as large as it gets",
         [&](auto& harness) {
             for (int i = 0; i < 50; ++i)
                 harness.scroll(middle, {0, 400});
         },
         CGRect::make(92, 42, 16, 16)},
        {"a turn of the wheel on nothing else", [](auto& harness) { harness.scroll({10, 10}, {0, 400}); },
         CGRect::make(50, 0, 100, 100)},
    };
    auto photo = map(200, 100);
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        Cropping cropping(photo);
        test.act(cropping.harness);
        auto crop = cropping.choose();
        ASSERT_TRUE(crop);
        EXPECT_EQ(crop->cropRect, test.cut);
        EXPECT_EQ(crop->originalImage, photo);
        EXPECT_EQ(crop->editedImage.pixelWidth(), test.cut.width());
        EXPECT_EQ(placeOf(crop->editedImage.pixel(0, 0)), test.cut.origin);
    }
}

TEST(PhotoCrop, takes_photos_of_any_kind_and_says_what_it_cannot_read)
{
    tests::TemporaryDirectory folder;
    // Lies on its side, as cameras that are held upright write them.
    auto lying = tests::mediaFixture("jpg", "-f lavfi -i color=c=red:s=64x32 -frames:v 1");
    auto bytes = tests::contentsOf(lying);
    const std::string exif("\xFF\xE1\0\x22"
                           "Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0",
                           36);
    auto upright = folder.file("upright.jpg", bytes.substr(0, 2) + exif + bytes.substr(2));
    auto huge = tests::mediaFixture("png", "-f lavfi -i color=c=blue:s=7000x5000 -frames:v 1");
    struct Case {
        std::string path;
        CGRect cut;
    };
    const Case cases[] = {{upright, CGRect::make(0, 16, 32, 32)},
                          {huge, CGRect::make(1000, 0, 5000, 5000)},
                          {folder.file("tiny.png", map(1, 1).pngData()), CGRect::make(0, 0, 1, 1)}};
    for (const auto& test : cases) {
        SCOPED_TRACE(test.path);
        Cropping cropping(test.path);
        auto crop = cropping.choose();
        ASSERT_TRUE(crop);
        EXPECT_EQ(crop->cropRect, test.cut);
        EXPECT_EQ(crop->editedImage.pixelWidth(), test.cut.width());
        EXPECT_EQ(crop->editedImage.pixelHeight(), test.cut.height());
    }
    for (const auto& path : {folder.path("missing.jpg"), folder.file("text.jpg", "text"), folder.path()}) {
        SCOPED_TRACE(path);
        Cropping cropping(path);
        EXPECT_FALSE(cropping.harness.find(Role::button, "Choose").isEnabled());
        EXPECT_TRUE(cropping.harness.tryFind(Role::staticText)) << "it says why";
        cropping.harness.press(Key::returnKey);
        EXPECT_TRUE(cropping.told.empty());
        cropping.harness.press(Key::escape);
        cropping.harness.press(Key::escape);
        ASSERT_EQ(cropping.told.size(), 1u);
        EXPECT_FALSE(cropping.told.front());
    }
    auto gone = folder.file("gone.png", map(9, 9).pngData());
    Cropping cropping(gone);
    std::filesystem::remove(gone);
    cropping.harness.find(Role::button, "Choose").tap();
    cropping.harness.clock().settleWithBackgroundQueues();
    EXPECT_TRUE(cropping.told.empty());
    EXPECT_FALSE(cropping.harness.find(Role::button, "Choose").isEnabled());
}

// --- In the picker ---------------------------------------------------------------------------------

struct Picking : tests::ShownPicker {
    explicit Picking(bool edits)
        : ShownPicker({kUTTypeImage, kUTTypeMovie}, [&](auto& made) { made.allowsEditing = edits; })
    {
        turnPage();
    }
};

TEST(UIImagePicker, edits_what_was_picked_before_it_hands_it_out)
{
    tests::PhotoLibraryFolders folders;
    folders.folder.write("pictures/map.png", map(40, 20).pngData());
    folders.folder.write(
        "videos/film.mov",
        tests::contentsOf(tests::mediaFixture("mov", tests::countedVideo("4", "-c:v mpeg4"))));
    namespace keys = UIImagePickerInfoKey;
    {
        Picking picking(true);
        picking.tap("map.png");
        picking.tap("Cancel");
        EXPECT_EQ(picking.listener->cancelled, 0) << "back to the library";
        picking.tap("map.png");
        picking.tap("Choose");
        ASSERT_EQ(picking.listener->picked.size(), 1u);
        auto& info = picking.listener->picked.front();
        EXPECT_EQ(std::get<CGRect>(info.at(std::string(keys::cropRect))), CGRect::make(10, 0, 20, 20));
        EXPECT_EQ(std::get<UIImage>(info.at(std::string(keys::originalImage))), map(40, 20));
        EXPECT_EQ(placeOf(std::get<UIImage>(info.at(std::string(keys::editedImage))).pixel(3, 4)),
                  (CGPoint{13, 4}));
        auto file = std::get<URL>(info.at(std::string(keys::imageURL))).path();
        EXPECT_EQ(placeOf(UIImage::fromFile(file).value().pixel(3, 4)), (CGPoint{13, 4})) << "the cut itself";
        EXPECT_TRUE(
            std::get<URL>(info.at(std::string(keys::referenceURL))).path().ends_with("pictures/map.png"));
        EXPECT_TRUE(std::filesystem::exists(folders.folder.path("pictures/map.png")));
        std::filesystem::remove(file);
    }

    struct Case {
        const char* name;
        double end; // seconds
        std::string_view preset;
        bool isCopy;
    };
    for (const auto& test : {Case{"cut", 2, AVAssetExportPresetPassthrough, true},
                             Case{"all of it", 4, AVAssetExportPresetPassthrough, false},
                             Case{"all of it, but smaller", 4, AVAssetExportPreset640x480, true}}) {
        SCOPED_TRACE(test.name);
        Picking film(true);
        film.picker->videoExportPreset = test.preset;
        film.tap("film.mov");
        film.harness.find(Role::slider, "End").setValue(test.end);
        film.harness.press(Key::returnKey);
        film.waitUntil([&] { return !film.listener->picked.empty(); });
        auto path = film.pathOf(keys::mediaURL);
        EXPECT_EQ(path != film.pathOf(keys::referenceURL), test.isCopy);
        EXPECT_NEAR(AVURLAsset(URL::fileURL(path)).duration().seconds(), test.end, 0.15);
        if (test.isCopy)
            std::filesystem::remove(path);
    }
    EXPECT_TRUE(std::filesystem::exists(folders.folder.path("videos/film.mov")));
}

// Answers as the test says.
struct Dialog : MediaFileChooser {
    std::vector<Question> asked;
    Handler handler;
    int takenBack = 0;
    Token ask(const Question& question, Handler told) override
    {
        asked.push_back(question);
        handler = std::move(told);
        return Token([this] { ++takenBack; });
    }
};

TEST(UIImagePicker, asks_the_desktops_dialog_first_and_shows_its_own_where_there_is_none)
{
    using Outcome = MediaFileChooser::Outcome;
    tests::PhotoLibraryFolders folders;
    auto path = folders.folder.file("pictures/map.png", map(40, 20).pngData());
    auto dialog = std::make_shared<Dialog>();
    UIImagePickerController::setFileChooser(dialog);
    struct Case {
        Outcome outcome;
        std::size_t picked, values; // of the dictionary
        int cancelled;
    };
    for (const auto& test : {Case{Outcome::picked, 1, 3, 0}, Case{Outcome::cancelled, 0, 0, 1},
                             Case{Outcome::unusable, 1, 0, 0}, Case{Outcome::unavailable, 0, 0, 0}}) {
        Picking picking(false);
        EXPECT_EQ(dialog->asked.back().kinds, (MediaKinds{true, true}));
        EXPECT_FALSE(picking.harness.tryFind(Role::button, "map.png")) << "the dialog is asked";
        dialog->handler(test.outcome,
                        test.outcome == Outcome::picked ? std::optional(LibraryFile{path}) : std::nullopt);
        picking.turnPage();
        EXPECT_EQ(picking.listener->picked.size(), test.picked);
        EXPECT_EQ(test.picked > 0 ? picking.listener->picked.front().size() : 0, test.values);
        EXPECT_EQ(picking.listener->cancelled, test.cancelled);
        EXPECT_EQ(picking.harness.tryFind(Role::button, "map.png").has_value(),
                  test.outcome == Outcome::unavailable);
    }
    auto former = dialog->takenBack;
    {
        Picking picking(true);
        dialog->handler(Outcome::picked, LibraryFile{path});
        picking.turnPage();
        picking.tap("Cancel"); // of the cut
        EXPECT_EQ(dialog->asked.size(), 6u) << "it is asked again";
        picking.harness.press(Key::escape);
        EXPECT_EQ(picking.listener->cancelled, 1);
    }
    EXPECT_EQ(dialog->takenBack, former + 2) << "nobody waits for it any more";
    UIImagePickerController::setFileChooser(nullptr);
}

} // namespace
