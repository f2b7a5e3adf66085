// SPDX-License-Identifier: MIT
#include "platform/services/PHPhotoLibrary.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/VirtualClock.h"
#include "platform/services/PHAsset.h"
#include "platform/services/PHAssetChangeRequest.h"
#include "platform/services/PHPhotosContent_p.h"
#include "platform/services/PHPhotosError.h"
#include "tests/support/FullDisk.h"
#include "tests/support/PhotoLibraryFolders.h"

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace platform;
using Status = PHAuthorizationStatus;
using Level = PHAccessLevel;
using Names = std::set<std::string>;

const auto& library()
{
    return PHPhotoLibrary::shared();
}

struct Wish {
    PHAssetMediaType type;
    URL file;
};
Wish image(URL file)
{
    return {PHAssetMediaType::image, std::move(file)};
}
Wish video(URL file)
{
    return {PHAssetMediaType::video, std::move(file)};
}

const std::string fine = "";
std::string nameOf(PHPhotosError code)
{
    return nsError(code).localizedDescription();
}

// What became of it: the domain and the code of the error.
std::string change(const std::vector<Wish>& wishes)
{
    VirtualClock clock;
    int calls = 0;
    auto result = fine;
    library()->performChanges(
        [&] {
            for (const auto& wish : wishes) {
                if (wish.type == PHAssetMediaType::image)
                    PHAssetChangeRequest::creationRequestForAssetFromImage(wish.file);
                else
                    PHAssetChangeRequest::creationRequestForAssetFromVideo(wish.file);
            }
        },
        [&](bool didSucceed, const std::optional<Error>& error) {
            ++calls;
            if (error)
                result = NSError(error->bridged().domain(), error->bridged().code()).localizedDescription();
            EXPECT_EQ(didSucceed, !error);
            EXPECT_FALSE(isOnMainThread());
        });
    clock.settleWithBackgroundQueues();
    EXPECT_EQ(calls, 1);
    return result;
}

TEST(PHPhotoLibrary, keeps_the_bytes_under_names_that_are_free)
{
    tests::PhotoLibraryFolders folders;
    folders.allow(Status::authorized);
    auto picture = tests::contentsOf(tests::smallPicture().path());
    struct Case {
        const char* name;
        std::string file;     // of the picture to be added
        std::string expected; // that comes into the folder
    };
    const std::string longName(240, 'a');
    const Case cases[] = {
        {"its own name", "beach.png", "beach.png"},
        {"a taken one", "beach.png", "beach 2.png"},
        {"taken again", "beach.png", "beach 3.png"},
        {"another way of writing the extension", "UP.PNG", "UP.PNG"},
        {"an extension that says something else", "photo.tmp", "photo.png"},
        {"none", "photo", "photo 2.png"},
        {"a hidden file", ".secret.png", "secret.png"},
        {"only an extension", ".png", "png.png"},
        {"letters of any script", "קיץ ☀.png", "קיץ ☀.png"},
        {"a line break", "a\nb.png", "a_b.png"},
        {"as long as names can be", longName + ".png", std::string(200, 'a') + ".png"},
    };
    Names expected;
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        EXPECT_EQ(change({image(folders.folder.write("from/" + test.file, picture))}), fine);
        expected.insert(test.expected);
        EXPECT_EQ(folders.names("pictures"), expected);
        EXPECT_EQ(folders.folder.read("pictures/" + test.expected), picture);
    }
    EXPECT_EQ(change({video(tests::smallVideo())}), fine);
    EXPECT_EQ(folders.names("videos").size(), 1u);
    EXPECT_EQ(folders.folder.read("videos/" + *folders.names("videos").begin()),
              tests::contentsOf(tests::smallVideo().path()));
}

TEST(PHPhotoLibrary, carries_out_all_changes_of_a_block_or_none)
{
    tests::PhotoLibraryFolders folders;
    folders.allow(Status::authorized);
    auto png = tests::contentsOf(tests::smallPicture().path());
    auto mp4 = tests::contentsOf(tests::smallVideo().path());
    auto good = folders.folder.write("from/good.png", png);
    auto in = [&](std::string name, std::string_view bytes) {
        return folders.folder.write("from/" + name, bytes);
    };
    struct Case {
        const char* name;
        Wish bad;
        PHPhotosError error;
    };
    const Case cases[] = {
        {"no file", image(folders.folder.url("nothing.png")), PHPhotosError::missingResource},
        {"a folder", image(folders.folder.url("from")), PHPhotosError::missingResource},
        {"another machine's", image(*URL::parse("https://example.org/a.png")),
         PHPhotosError::missingResource},
        {"an empty file", image(in("empty.png", "")), PHPhotosError::invalidResource},
        {"a text", image(in("text.png", "not a picture")), PHPhotosError::invalidResource},
        {"a drawing made of text",
         image(in("drawing.png", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>")),
         PHPhotosError::invalidResource},
        {"a picture that ends in its head", image(in("head.png", png.substr(0, 20))),
         PHPhotosError::invalidResource},
        {"a video as a picture", image(tests::smallVideo()), PHPhotosError::invalidResource},
        {"a picture as a video", video(tests::smallPicture()), PHPhotosError::invalidResource},
        {"a video that ends in its head", video(in("head.mp4", mp4.substr(0, 100))),
         PHPhotosError::invalidResource},
        {"a video without its last byte", video(in("cut.mp4", mp4.substr(0, mp4.size() - 1))),
         PHPhotosError::invalidResource},
        {"a photo that ends in its head", image(in("cut.heic", std::string("\0\0\1\0ftypheic\0\0\0\0", 16))),
         PHPhotosError::invalidResource},
        {"only sound", video(tests::mediaURL("m4a", "-f lavfi -i sine=duration=1 -c:a aac")),
         PHPhotosError::invalidResource},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        auto error = change({image(good), test.bad, image(good)});
        EXPECT_EQ(error, nameOf(test.error));
        EXPECT_EQ(folders.names("pictures"), Names{});
        EXPECT_EQ(folders.names("videos"), Names{});
    }
    EXPECT_EQ(change({image(good), video(tests::smallVideo()), image(good)}), fine);
    EXPECT_EQ(folders.names("pictures"), (Names{"good.png", "good 2.png"}));
    EXPECT_EQ(change({}), fine) << "nothing is asked for";
}

TEST(PHPhotoLibrary, takes_nothing_that_is_cut_off)
{
    tests::TemporaryDirectory folder;
    struct Case {
        const char* extension;
        std::string encoding;
    };
    const std::string still = "-frames:v 1 ";
    const Case cases[] = {
        {"png", still},
        {"jpg", still},
        {"bmp", still},
        {"webp", still + "-quality 60"},
        {"gif", ""},
        {"avi", "-c:v mpeg4"},
        {"mkv", "-c:v libx264"},
        {"webm", "-c:v libvpx -b:v 100k"},
        {"ogv", "-c:v libtheora"},
        {"mp4", "-c:v mpeg4 -movflags +faststart"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.extension);
        auto whole = tests::contentsOf(tests::mediaFixture(
            test.extension, "-f lavfi -i testsrc=size=160x96:rate=4:d=1 " + test.encoding));
        auto isTaken = [&](std::string bytes) {
            return photosContentOf(folder.file("it", std::move(bytes))).has_value();
        };
        EXPECT_TRUE(isTaken(whole));
        for (std::size_t sixteenths = 0; sixteenths < 16; ++sixteenths)
            EXPECT_FALSE(isTaken(whole.substr(0, whole.size() * sixteenths / 16))) << sixteenths;
        EXPECT_FALSE(isTaken(whole.substr(0, whole.size() - 1)));
    }
    auto jpeg =
        tests::contentsOf(tests::mediaFixture("jpg", "-f lavfi -i testsrc=size=160x96:rate=4:d=1 " + still));
    EXPECT_TRUE(photosContentOf(folder.file("it", jpeg + "what cameras add"))) << "the picture is whole";
}

TEST(PHPhotoLibrary, leaves_nothing_where_it_cannot_write)
{
    tests::PhotoLibraryFolders folders;
    folders.allow(Status::authorized);
    auto noise = tests::mediaURL("bmp", "-f lavfi -i testsrc=size=640x480:rate=1 -frames:v 1");
    auto pictures = folders.folder.path("pictures");

    {
        tests::FullDisk disk(100'000);
        EXPECT_EQ(change({image(tests::smallPicture()), image(noise)}),
                  nameOf(PHPhotosError::notEnoughSpace));
    }
    EXPECT_EQ(folders.names("pictures"), Names{});

    std::filesystem::remove(pictures);
    EXPECT_EQ(change({image(noise)}), fine) << "a folder that is missing is made";
    EXPECT_EQ(folders.names("pictures").size(), 1u);
    folders.setPlaces(folders.folder.path("gone/pictures"), "");
    EXPECT_EQ(change({image(noise)}), nameOf(PHPhotosError::libraryVolumeOffline));
    folders.setPlaces(folders.folder.file("a file", ""), "");
    EXPECT_EQ(change({image(noise)}), nameOf(PHPhotosError::libraryVolumeOffline));
    folders.setPlaces("/proc/self", ""); // where nobody writes, whoever they are
    auto refused = change({image(noise)});
    EXPECT_NE(refused, fine);
    EXPECT_NE(refused.find(PHPhotosErrorDomain), std::string::npos) << refused;
}

TEST(PHPhotoLibrary, is_asked_about_once_and_remembers_until_it_is_taken_back)
{
    tests::PhotoLibraryFolders folders;
    auto ask = [&](Level level, int times = 1) {
        VirtualClock clock;
        std::vector<Status> answers;
        std::mutex mutex;
        for (int i = 0; i < times; ++i)
            library()->requestAuthorization(level, [&](Status status) {
                EXPECT_FALSE(isOnMainThread());
                std::lock_guard lock(mutex);
                answers.push_back(status);
            });
        clock.settleWithBackgroundQueues();
        EXPECT_EQ(answers.size(), static_cast<std::size_t>(times));
        return answers.empty() ? Status::notDetermined : answers.back();
    };
    auto& question = *folders.question;
    auto& authorization = PHPhotosAuthorization::shared();
    auto status = [](Level level) { return PHPhotoLibrary::authorizationStatus(level); };

    question.next = Status::notDetermined;
    EXPECT_EQ(ask(Level::addOnly), Status::denied) << "nobody answered";
    EXPECT_EQ(status(Level::addOnly), Status::notDetermined) << "and nothing is remembered";
    EXPECT_EQ(change({image(tests::smallPicture())}), nameOf(PHPhotosError::accessUserDenied));

    struct Case {
        const char* name;
        Level asked;
        Status answer;
        Status adding, reading; // afterwards
    };
    const Case cases[] = {
        {"adding refused", Level::addOnly, Status::denied, Status::denied, Status::notDetermined},
        {"adding allowed", Level::addOnly, Status::authorized, Status::authorized, Status::notDetermined},
        {"reading refused", Level::readWrite, Status::denied, Status::notDetermined, Status::denied},
        {"reading limited", Level::readWrite, Status::limited, Status::authorized, Status::limited},
        {"reading allowed", Level::readWrite, Status::authorized, Status::authorized, Status::authorized},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        folders.allow(Status::notDetermined);
        question.asked.clear();
        question.next = test.answer;
        EXPECT_EQ(ask(test.asked), test.answer);
        EXPECT_EQ(ask(test.asked, 3), test.answer);
        EXPECT_EQ(question.asked, std::vector{test.asked});
        EXPECT_EQ(status(Level::addOnly), test.adding);
        EXPECT_EQ(status(Level::readWrite), test.reading);
        authorization.setStatus(Status::notDetermined, test.asked);
        EXPECT_EQ(status(test.asked), Status::notDetermined);
        EXPECT_EQ(ask(test.asked), test.answer);
        EXPECT_EQ(question.asked.size(), 2u);
    }

    question.asked.clear();
    folders.folder.write(
        "etc/zelk/restrictions.plist",
        "<plist version=\"1.0\"><dict><key>PhotoLibraryRestricted</key><true/></dict></plist>");
    EXPECT_EQ(ask(Level::addOnly), Status::restricted);
    EXPECT_EQ(ask(Level::readWrite), Status::restricted);
    EXPECT_EQ(change({image(tests::smallPicture())}), nameOf(PHPhotosError::accessRestricted));
    EXPECT_TRUE(question.asked.empty());
    NSUserDefaults::standardUserDefaults()->setObject("yes, please", "PHPhotoLibrary.addOnly");
    folders.folder.write("etc/zelk/restrictions.plist", "damaged");
    EXPECT_EQ(status(Level::addOnly), Status::authorized)
        << "reading is allowed still; the rest is no answer";
}

TEST(PHPhotoLibrary, shares_one_question_among_those_who_wait)
{
    tests::PhotoLibraryFolders folders;
    VirtualClock clock;
    std::atomic<int> answered = 0;
    for (int i = 0; i < 3; ++i)
        library()->requestAuthorization(Level::addOnly, [&](Status status) {
            EXPECT_EQ(status, Status::authorized);
            ++answered;
        });
    clock.settleWithBackgroundQueues();
    EXPECT_EQ(folders.question->asked.size(), 1u);
    EXPECT_EQ(answered, 0);
    auto answer = folders.question->standing.front();
    answer(Status::authorized);
    answer(Status::denied); // too late
    clock.settleWithBackgroundQueues();
    EXPECT_EQ(answered, 3);
    EXPECT_EQ(PHPhotoLibrary::authorizationStatus(Level::addOnly), Status::authorized);
}

TEST(PHPhotoLibrary, DISABLED_adds_as_one_of_several_programs)
{
    PHPhotosAuthorization::shared().setStatus(Status::authorized, Level::addOnly);
    auto folder = std::string(std::getenv("ZELK_TEST_SOURCES"));
    for (int i = 0; i < 40; ++i)
        EXPECT_EQ(
            change({image(URL::fileURL(folder + "/same.png")), image(URL::fileURL(folder + "/other.png"))}),
            fine);
}

TEST(PHPhotoLibrary, takes_changes_of_several_programs_at_once)
{
    tests::PhotoLibraryFolders folders;
    auto png = tests::contentsOf(tests::smallPicture().path());
    folders.folder.write("from/same.png", png);
    folders.folder.write("from/other.png", png);
    ::setenv("ZELK_TEST_SOURCES", folders.folder.path("from").c_str(), 1);
    std::vector<pid_t> children;
    for (int i = 0; i < 2; ++i) {
        auto child = ::fork();
        if (child == 0) {
            ::execl("/proc/self/exe", "tests", "--gtest_also_run_disabled_tests",
                    "--gtest_filter=PHPhotoLibrary.DISABLED_adds_as_one_of_several_programs", nullptr);
            ::_exit(127);
        }
        children.push_back(child);
    }
    for (auto child : children) {
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    auto names = folders.names("pictures");
    EXPECT_EQ(names.size(), 160u);
    for (const auto& name : names)
        EXPECT_EQ(folders.folder.read("pictures/" + name), png) << name;
}

TEST(PHAsset, is_seen_by_whom_the_user_lets_see_it)
{
    tests::PhotoLibraryFolders folders;
    auto& files = folders.folder;
    for (const auto* name : {"pictures/theirs.jpg", "pictures/trip/day 1/old.PNG", "pictures/.hidden.png",
                             "pictures/.cache/thumb.png", "pictures/notes.txt", "videos/clip.mkv"})
        files.write(name, "x");
    std::filesystem::create_symlink(files.path("videos"), files.path("pictures/loop"));
    folders.allow(Status::authorized);
    EXPECT_EQ(change({image(files.write("from/mine.png", tests::contentsOf(tests::smallPicture().path())))}),
              fine);
    const auto epoch = std::filesystem::file_time_type::clock::now();
    using std::chrono::hours;
    int age = 0;
    for (const auto* name :
         {"pictures/mine.png", "videos/clip.mkv", "pictures/theirs.jpg", "pictures/trip/day 1/old.PNG"})
        std::filesystem::last_write_time(files.path(name), epoch - hours(++age));

    auto seen = [&](std::optional<PHAssetMediaType> type = {}) {
        std::string names;
        for (const auto& asset : PHAsset::fetchAssets(type))
            names += asset.fileURL.lastPathComponent() + " ";
        return names;
    };
    EXPECT_EQ(seen(), "") << "adding is not seeing";
    PHPhotosAuthorization::shared().setStatus(Status::authorized, Level::readWrite);
    EXPECT_EQ(seen(), "mine.png clip.mkv theirs.jpg old.PNG ");
    EXPECT_EQ(seen(PHAssetMediaType::video), "clip.mkv ");
    auto newest =
        std::chrono::duration<double>(std::chrono::file_clock::to_sys(epoch - hours(1)).time_since_epoch());
    EXPECT_NEAR(PHAsset::fetchAssets().front().modificationDate.timeIntervalSince1970, newest.count(), 1);
    PHPhotosAuthorization::shared().setStatus(Status::limited, Level::readWrite);
    EXPECT_EQ(seen(), "mine.png ");
    folders.setPlaces(files.path("gone"), files.path("videos"));
    PHPhotosAuthorization::shared().setStatus(Status::authorized, Level::readWrite);
    EXPECT_EQ(seen(), "clip.mkv ");
}

TEST(PHPhotoLibraryDeathTest, wants_requests_inside_of_a_block)
{
    EXPECT_DEATH(PHAssetChangeRequest::creationRequestForAssetFromImage(URL::fileURL("/a.png")),
                 "in a block of PHPhotoLibrary::performChanges");
}

} // namespace
