// SPDX-License-Identifier: MIT
#include "platform/services/UIImagePickerController.h"

#include "platform/avfoundation/AVAssetImageGenerator.h"
#include "platform/avfoundation/AVURLAsset.h"
#include "platform/services/MediaGridView.h"
#include "platform/services/UIVideoEditorController.h"
#include "platform/uikit/UIImageView.h"
#include "tests/support/CountedVideo.h"
#include "tests/support/PhotoLibraryFolders.h"
#include "tests/support/ShownPicker.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using harness::ViewHarness;
using Role = AccessibilityRole;
using Key = UIKeyCode;

const std::vector<std::string_view> both{kUTTypeImage, kUTTypeMovie};

// A film of four seconds with pictures that say which they are.
std::string film()
{
    return tests::mediaFixture("mov", tests::countedVideo("4", "-c:v libx264 -qp 8 -g 10"));
}

// Pictures "0.png" (the oldest) to "5.png", a text that says it is one, and a film, which is the newest.
struct Library {
    tests::PhotoLibraryFolders folders;

    Library()
    {
        auto picture = tests::contentsOf(tests::smallPicture().path());
        for (int i = 0; i < 6; ++i)
            add("pictures/trip/" + std::to_string(i) + ".png", picture, i);
        add("pictures/.hidden/secret.png", picture, 20);
        add("pictures/note.txt", "text", 20);
        add("pictures/text.JPG", "no picture", 6);
        add("videos/film.mov", tests::contentsOf(film()), 7);
    }
    void add(const std::string& name, const std::string& contents, int minutes) const
    {
        folders.folder.write(name, contents);
        namespace files = std::filesystem;
        files::last_write_time(
            folders.folder.path(name),
            files::file_time_type(std::chrono::hours(400'000) + std::chrono::minutes(minutes)));
    }
    URL url(const std::string& name) const
    {
        return URL::fileURL(std::filesystem::canonical(folders.folder.path(name)).string());
    }
};

using Shown = tests::ShownPicker;

std::string namesIn(Shown& shown)
{
    std::string all;
    for (const auto& cell : shown.harness.find(Role::list).findAll(Role::button))
        all += cell.label() + (cell.isEnabled() ? " " : "! ");
    return all;
}

TEST(UIImagePicker, offers_the_media_of_the_users_folders_newest_first)
{
    Library library;
    struct Case {
        const char* name;
        std::vector<std::string_view> types;
        std::string shown;
    };
    const Case cases[] = {
        {"photos", {both[0]}, "text.JPG! 5.png 4.png 3.png 2.png 1.png 0.png "},
        {"videos", {both[1]}, "film.mov "},
        {"both", both, "film.mov text.JPG! 5.png 4.png 3.png 2.png 1.png 0.png "},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        Shown shown(each.types);
        EXPECT_EQ(namesIn(shown), each.shown);
        if (auto videos = shown.harness.tryFind(Role::radioButton, "Videos")) {
            videos->tap();
            shown.settle();
            EXPECT_EQ(namesIn(shown), "film.mov ");
            EXPECT_EQ(shown.harness.find(Role::button, "film.mov").value(), "0:04");
        }
    }
}

TEST(UIImagePicker, hands_out_the_file_by_pointer_and_keys_and_tells_once)
{
    Library library;
    struct Case {
        const char* name;
        std::function<void(ViewHarness&)> act;
        std::string picked; // empty: cancelled
    };
    const Case cases[] = {
        {"a tap", [](auto& harness) { harness.find(Role::button, "4.png").tap(); }, "pictures/trip/4.png"},
        {"assistive technology", [](auto& harness) { harness.find(Role::button, "4.png").activate(); },
         "pictures/trip/4.png"},
        {"Return on the first", [](auto& harness) { harness.press(Key::returnKey); }, "videos/film.mov"},
        {"arrows, of three columns",
         [](auto& harness) {
             for (auto key : {Key::right, Key::right, Key::down, Key::left, Key::space})
                 harness.press(key);
         },
         "pictures/trip/3.png"},
        {"the end",
         [](auto& harness) {
             harness.press(Key::end);
             harness.press(Key::returnKey);
         },
         "pictures/trip/0.png"},
        {"no picture at all",
         [](auto& harness) {
             harness.press(Key::right);
             harness.press(Key::returnKey);
             harness.press(Key::escape);
         },
         ""},
        {"the button", [](auto& harness) { harness.find(Role::button, "Cancel").tap(); }, ""},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        Shown shown(both);
        each.act(shown.harness);
        shown.harness.press(Key::returnKey);
        shown.harness.press(Key::escape);
        shown.settle();
        ASSERT_EQ(shown.listener->picked.size(), each.picked.empty() ? 0u : 1u);
        EXPECT_EQ(shown.listener->cancelled, each.picked.empty() ? 1 : 0);
        if (each.picked.empty())
            continue;
        auto isVideo = each.picked.ends_with("mov");
        auto file = library.url(each.picked);
        EXPECT_EQ(shown.listener->picked[0],
                  (UIImagePickerInfo{
                      {"UIImagePickerControllerMediaType", std::string(both[isVideo])},
                      {isVideo ? "UIImagePickerControllerMediaURL" : "UIImagePickerControllerImageURL", file},
                      {"UIImagePickerControllerReferenceURL", file}}));
    }
}

TEST(UIImagePicker, says_that_there_is_nothing)
{
    tests::PhotoLibraryFolders folders;
    struct Case {
        UIImagePickerControllerSourceType source;
        std::vector<std::string_view> types;
        std::string message;
    };
    using Source = UIImagePickerControllerSourceType;
    const Case cases[] = {{Source::photoLibrary, both, "No Photos or Videos"},
                          {Source::photoLibrary, {"public.audio"}, "No Photos or Videos"},
                          {Source::camera, both, "No Camera"}};
    for (const auto& each : cases) {
        Shown shown(each.types, [&](auto& picker) { picker.sourceType = each.source; });
        EXPECT_TRUE(shown.harness.tryFind(Role::staticText, each.message)) << shown.harness.describe();
        shown.harness.press(Key::escape);
        EXPECT_EQ(shown.listener->cancelled, 1);
    }
}

TEST(MediaGrid, makes_only_the_cells_in_sight_of_ten_thousand)
{
    ViewHarness harness({380, 400}, {.layoutDirection = UIUserInterfaceLayoutDirection::rightToLeft});
    auto grid = std::make_shared<MediaGridView>();
    std::vector<LibraryFile> files;
    for (int i = 0; i < 10'000; ++i)
        files.push_back({"/nowhere/" + std::to_string(i) + ".png", false, i});
    harness.show(std::shared_ptr<UIView>(grid));
    grid->setFiles(files);
    harness.settle();
    EXPECT_LT(grid->cellCount(), 25u);
    EXPECT_GT(harness.find(Role::button, "0.png").frame().minX(),
              harness.find(Role::button, "1.png").frame().minX());
    harness.scroll({100, 100}, {0, 200'000});
    harness.advance(1s);
    EXPECT_LT(grid->cellCount(), 25u);
    harness.press(Key::end);
    grid->becomeFirstResponder();
    harness.press(Key::end);
    EXPECT_TRUE(harness.tryFind(Role::button, "9999.png"));
    harness.clock().settleWithBackgroundQueues();
    EXPECT_FALSE(harness.find(Role::button, "9999.png").isEnabled()) << "there is no such file";
}

TEST(MediaGrid, shows_pictures_that_have_a_pixel_for_each_of_the_cells)
{
    auto file = tests::mediaFixture("png", "-f lavfi -i testsrc=s=640x480:r=1 -frames:v 1");
    ViewHarness harness({380, 400});
    auto grid = std::make_shared<MediaGridView>();
    harness.show(std::shared_ptr<UIView>(grid));
    grid->setFiles({{file, false, 0}});
    auto pixels = [&] {
        harness.settle();
        harness.clock().settleWithBackgroundQueues();
        for (const auto& cell : grid->subviews()) {
            for (const auto& part : cell->subviews()) {
                if (auto* picture = dynamic_cast<UIImageView*>(part.get()))
                    return picture->image().pixelWidth();
            }
        }
        return 0;
    };
    EXPECT_EQ(pixels(), 126) << "a third of what two gaps leave, rounded up";
    harness.resize({460, 400});
    EXPECT_EQ(pixels(), 152);
    harness.changeTraits([](auto& traits) { traits.displayScale = 2; });
    EXPECT_EQ(pixels(), 304);
}

TEST(MediaGrid, tells_of_what_is_tapped_early_once_it_is_a_medium)
{
    Library library;
    for (std::string name : {"text.JPG", "trip/5.png"}) {
        ViewHarness harness({380, 400});
        auto grid = std::make_shared<MediaGridView>();
        std::vector<std::string> picked;
        grid->onPick = [&](const LibraryFile& file) { picked.push_back(file.path); };
        harness.show(std::shared_ptr<UIView>(grid));
        auto path = library.url("pictures/" + name).path();
        grid->setFiles({{path, false, 0}});
        grid->layoutIfNeeded();
        harness.find(Role::list).findAll(Role::button).front().tap();
        harness.clock().settleWithBackgroundQueues();
        EXPECT_EQ(picked, name == "text.JPG" ? std::vector<std::string>{} : std::vector{path});
    }
}

struct EditorListener : UIVideoEditorControllerDelegate {
    std::vector<std::string> saved, failed;
    int cancelled = 0;
    void videoEditorControllerDidSaveEditedVideo(UIVideoEditorController&, const std::string& path) override
    {
        saved.push_back(path);
    }
    void videoEditorControllerDidFail(UIVideoEditorController&, const Error& error) override
    {
        failed.push_back(error.localizedDescription());
    }
    void videoEditorControllerDidCancel(UIVideoEditorController&) override { ++cancelled; }
};

TEST(UIVideoEditor, writes_the_part_between_the_handles)
{
    struct Case {
        const char* name;
        std::function<void(ViewHarness&)> act;
        double length;
        int first; // picture
        double longest = 0;
    };
    auto handle = [](ViewHarness& harness, const char* name) { return harness.find(Role::slider, name); };
    const Case cases[] = {
        {"all", [](auto&) {}, 4, 0},
        {"from the second second, by assistive technology",
         [&](auto& harness) { handle(harness, "Beginning").setValue(1); }, 3, 25},
        {"keys",
         [&](auto& harness) {
             handle(harness, "End").tap();
             harness.press(Key::left, UIKeyModifierFlags::shift);
         },
         3, 0},
        {"at most two seconds", [&](auto& harness) { handle(harness, "End").setValue(3); }, 2, 25, 2},
        {"dragged to the middle",
         [&](auto& harness) {
             auto from = handle(harness, "Beginning").frame(), to = handle(harness, "End").frame();
             harness.drag(from.center(), {from.center().x + (to.minX() - from.maxX()) / 2, from.midY()});
         },
         2, 50},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        ViewHarness harness({420, 420});
        auto listener = std::make_shared<EditorListener>();
        auto editor = std::make_shared<UIVideoEditorController>();
        editor->videoPath = film();
        editor->videoMaximumDuration = each.longest;
        editor->videoQuality = UIImagePickerControllerQualityType::high;
        editor->setDelegate(listener);
        harness.show(editor);
        harness.clock().settleWithBackgroundQueues();
        each.act(harness);
        harness.find(Role::button, "OK").tap();
        for (int turn = 0; listener->saved.empty() && listener->failed.empty() && turn < 1'000'000; ++turn)
            harness.clock().settleWithBackgroundQueues();
        ASSERT_EQ(listener->saved.size(), 1u) << testing::PrintToString(listener->failed);
        auto asset = std::make_shared<AVURLAsset>(URL::fileURL(listener->saved[0]));
        EXPECT_NEAR(asset->duration().seconds(), each.length, 0.15);
        AVAssetImageGenerator generator(asset);
        generator.setRequestedTimeToleranceBefore(CMTime::zero());
        generator.setRequestedTimeToleranceAfter(CMTime::zero());
        EXPECT_NEAR(tests::countOf(generator.copyCGImage(CMTime::zero()).value_or(UIImage())), each.first, 1);
        std::filesystem::remove(listener->saved[0]);
    }
}

TEST(UIVideoEditor, gives_up_on_what_is_no_video_and_leaves_nothing_when_cancelled)
{
    tests::TemporaryDirectory folder;
    auto cutOff = tests::contentsOf(film()).substr(0, 900);
    for (const auto& path :
         {folder.path("missing.mov"), folder.file("text.mov", "text"), folder.file("cut.mov", cutOff)}) {
        SCOPED_TRACE(path);
        EXPECT_FALSE(UIVideoEditorController::canEditVideo(path));
        ViewHarness harness({420, 420});
        auto listener = std::make_shared<EditorListener>();
        auto editor = std::make_shared<UIVideoEditorController>();
        editor->videoPath = path;
        editor->setDelegate(listener);
        harness.show(editor);
        harness.clock().settleWithBackgroundQueues();
        harness.press(Key::escape);
        EXPECT_EQ(listener->failed.size(), 1u);
        EXPECT_EQ(listener->cancelled, 0) << "one of them is told";
    }
    EXPECT_TRUE(UIVideoEditorController::canEditVideo(film()));
}

} // namespace
