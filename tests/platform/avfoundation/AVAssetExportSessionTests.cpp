// SPDX-License-Identifier: MIT
// What an export makes of media, read back with the codec library and the command-line prober.
#include "platform/avfoundation/AVAssetExportSession.h"
#include "platform/avfoundation/AVAssetTrack.h"
#include "platform/avfoundation/AVComposition.h"
#include "tests/platform/avfoundation/ExportTesting.h"

#include <atomic>
#include <thread>

using namespace platform;
using namespace tests;

namespace {

// White flashes in black, each with a beep; 0.1 seconds from 1.0, 2.5 and 3.2 on.
const std::string flashes = "between(t,1,1.099)+between(t,2.5,2.599)+between(t,3.2,3.299)";
const std::string flashing =
    "-f lavfi -i \"color=black:s=64x48:r=50:d=4,drawbox=t=fill:color=white:enable='" + flashes + "'\" ";
const std::string beeping = "-f lavfi -i \"aevalsrc='0.8*sin(2*PI*1000*t)*(" + flashes + ")':s=48000:d=4\" ";
const std::string both = flashing + beeping;

TEST(AVAssetExportSession, a_beep_stays_with_its_flash_to_within_one_frame_of_sound)
{
    struct Source {
        std::string extension, arguments;
        double lead = 0; // seconds by which the encoder of the sound makes it begin before the pictures
    };
    const Source sources[] = {
        {"mp4", "-c:v libx264 -g 40 -bf 2 -c:a aac"},      {"mov", "-c:v mpeg4 -c:a pcm_s16le"},
        {"mkv", "-c:v libx264 -bf 2 -c:a libopus", 0.007}, {"ts", "-c:v mpeg2video -c:a mp2", 0.010},
        {"avi", "-c:v mjpeg -q:v 2 -c:a pcm_s16le"},
    };
    constexpr std::pair<double, double> ranges[] = {{0, 4}, {0.6, 3.9}, {0.99, 3.05}, {1.777, 3.4}};
    for (auto& [extension, arguments, lead] : sources) {
        const auto file = mediaFixture(extension, both + arguments);
        for (auto [from, to] : ranges) {
            SCOPED_TRACE(extension + " from " + std::to_string(from));
            auto movie = exported(file, {.range = seconds(from, to)});
            ASSERT_EQ(movie.streams.size(), 2U);
            auto& video = movie.video();
            auto& audio = movie.audio();
            EXPECT_NEAR(movie.duration, to - from, 0.022);
            EXPECT_EQ(video.parameters.codec_id, AV_CODEC_ID_H264);
            EXPECT_EQ(audio.parameters.codec_id, AV_CODEC_ID_AAC);
            EXPECT_LE(std::abs(video.pictures.at(0).time - audio.soundStart), 1024 / 48000.0);
            for (double moment : {1.0, 2.5, 3.2}) {
                if (moment < from || moment > to - 0.1)
                    continue;
                auto lit = std::ranges::find_if(video.pictures, [&](auto& picture) {
                    return picture.y() > 120 && picture.time > moment - from - 0.2;
                });
                ASSERT_NE(lit, video.pictures.end()) << moment;
                EXPECT_NEAR(lit->time, moment + lead - from, 2e-3);
                EXPECT_NEAR(audio.onset(moment - from - 0.2), moment - from, 1024 / 48000.0);
            }
        }
    }
}

TEST(AVAssetExportSession, pictures_are_fitted_without_being_enlarged)
{
    struct Case {
        const char* source;
        std::string_view preset;
        int width, height;
        double rotation = 0;
    };
    const Case cases[] = {
        {"testsrc=s=160x90", AVAssetExportPreset1920x1080, 160, 90},
        {"testsrc=s=161x91", AVAssetExportPreset1920x1080, 160, 90}, // even
        {"testsrc=s=3840x2160:r=5", AVAssetExportPreset1920x1080, 1920, 1080},
        {"testsrc=s=1920x1080:r=5", AVAssetExportPreset1280x720, 1280, 720},
        {"testsrc=s=1080x1920:r=5", AVAssetExportPreset1920x1080, 608, 1080},
        {"testsrc=s=4000x100:r=5", AVAssetExportPreset640x480, 640, 16},
        {"testsrc=s=160x120,setsar=16/15", AVAssetExportPreset1920x1080, 170, 120}, // square pixels
        {"testsrc=s=2x2", AVAssetExportPreset1920x1080, 2, 2},
    };
    for (auto& test : cases) {
        SCOPED_TRACE(test.source);
        auto file = mediaFixture(
            "mkv", "-f lavfi -i " + std::string(test.source) + " -t 0.4 -c:v mpeg4 -q:v 3 -strict -1");
        auto movie = exported(file, {.preset = test.preset});
        EXPECT_EQ(movie.video().parameters.width, test.width);
        EXPECT_EQ(movie.video().parameters.height, test.height);
        EXPECT_TRUE(movie.video().aspect.num == movie.video().aspect.den);
    }
}

TEST(AVAssetExportSession, rotation_colours_language_title_and_dates_are_kept)
{
    TemporaryDirectory folder;
    auto plain = mediaFixture(
        "mp4",
        both + "-c:v libx264 -g 25 -c:a aac -color_primaries bt709 -color_trc bt709 -colorspace bt709");
    auto file = folder.path("turned.mov");
    outputOf("ffmpeg -v error -i " + plain
             + " -c copy -metadata title='A day' -metadata date=2021-03-04 -metadata "
               "creation_time=2022-05-06T07:08:09Z"
               " -metadata:s:a language=heb -metadata:s:v rotate=90 "
             + file);
    ASSERT_NE(inspect(file).video().rotation, 0);
    for (bool copies : {true, false}) {
        auto movie = exported(file, {.range = seconds(0.5, 2), .copies = copies});
        EXPECT_EQ(movie.video().rotation, inspect(file).video().rotation);
        EXPECT_EQ(movie.video().parameters.color_space, AVCOL_SPC_BT709);
        EXPECT_EQ(movie.video().parameters.color_trc, AVCOL_TRC_BT709);
        EXPECT_EQ(movie.video().parameters.color_primaries, AVCOL_PRI_BT709);
        EXPECT_EQ(movie.audio().tags.at("language"), "heb");
        EXPECT_EQ(movie.tags.at("title"), "A day");
        EXPECT_EQ(movie.tags.at("date"), "2021-03-04");
        EXPECT_EQ(movie.tags.at("creation_time").substr(0, 19), "2022-05-06T07:08:09");
    }
}

TEST(AVAssetExportSession, irregular_times_and_colours_are_those_of_the_source)
{
    // Red, green, then blue, at 0, 0.3 and 1.9 seconds.
    auto file = mediaFixture(
        "mkv",
        "-f lavfi -i color=red:s=32x32:r=10:d=3 -vf \"drawbox=t=fill:color=0x008000:enable='gte(t,0.3)',"
        "drawbox=t=fill:color=blue:enable='gte(t,1.9)',select='eq(n,0)+eq(n,3)+eq(n,19)'\" -fps_mode vfr "
        "-c:v mpeg4 -q:v 2");
    auto original = inspect(file);
    auto movie = exported(file);
    ASSERT_EQ(movie.video().pictures.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        auto& was = original.video().pictures[i];
        auto& is = movie.video().pictures[i];
        EXPECT_NEAR(is.time, was.time, 1e-3);
        EXPECT_NEAR(is.y(), was.y(), 3);
        EXPECT_NEAR(is.u(), was.u(), 3);
        EXPECT_NEAR(is.v(), was.v(), 3);
    }
}

TEST(AVAssetExportSession, every_sound_track_keeps_its_place)
{
    // Three tracks, of 2, 1 and 6 channels; the second starts 0.5 seconds late.
    auto file = mediaFixture(
        "mov",
        both
            + "-itsoffset 0.5 -f lavfi -i \"aevalsrc='0.5*sin(2*PI*500*t)*gte(t,0.25)':s=44100:d=2\""
              " -f lavfi -i \"aevalsrc='0.3*gte(t,1.5)|0|0|0|0|0':s=48000:d=4:c=5.1\""
              " -map 0 -map 1 -map 2 -map 3 -c:v libx264 -g 25 -c:a pcm_s16le -ac:a:0 2");
    for (double from : {0.0, 0.3, 0.6}) {
        SCOPED_TRACE(from);
        auto movie = exported(file, {.range = seconds(from, 3)});
        auto sound = movie.ofType(AVMEDIA_TYPE_AUDIO);
        ASSERT_EQ(sound.size(), 3U);
        const double onsets[] = {1, 0.75, 1.5};
        const int channels[] = {2, 1, 6};
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_EQ(sound[i]->parameters.ch_layout.nb_channels, channels[i]);
            EXPECT_NEAR(sound[i]->onset(), onsets[i] - from, 1024 / 44100.0) << i;
        }
    }
}

TEST(AVAssetExportSession, a_composition_of_several_pieces_exports_as_what_it_says)
{
    auto asset = assetAt(mediaFixture("mp4", both + "-c:v libx264 -g 25 -c:a aac"));
    auto composition = std::make_shared<AVMutableComposition>();
    // The flash at 2.5, then half a second of nothing, then the flash at 1.
    for (auto type : {platform::AVMediaType::video, platform::AVMediaType::audio}) {
        auto source = asset->tracksWithMediaType(type).at(0);
        auto track = composition->addMutableTrack(type, kCMPersistentTrackID_Invalid);
        ASSERT_TRUE(track->insertTimeRange(seconds(2.3, 2.9), *source, CMTime::zero()));
        ASSERT_TRUE(track->insertTimeRange(seconds(0.9, 1.5), *source, CMTime(11, 10)));
    }
    TemporaryDirectory folder;
    ASSERT_FALSE(run(*makeExport(composition, folder.path("out.mov"))));
    EXPECT_EQ(proberWarnings(folder.path("out.mov")), "");
    auto movie = inspect(folder.path("out.mov"));
    EXPECT_NEAR(movie.duration, 1.7, 0.03);
    EXPECT_NEAR(movie.audio().onset(), 0.2, 0.022);
    EXPECT_NEAR(movie.audio().onset(0.6), 1.2, 0.022);
    std::vector<double> lit;
    for (auto& picture : movie.video().pictures)
        if (picture.y() > 120 && (lit.empty() || picture.time > lit.back() + 0.3))
            lit.push_back(picture.time);
    ASSERT_EQ(lit.size(), 2U);
    EXPECT_NEAR(lit[0], 0.2, 0.021);
    EXPECT_NEAR(lit[1], 1.2, 0.021);
}

TEST(AVAssetExportSession, passthrough_keeps_the_samples_and_hides_what_is_before_the_range)
{
    const auto file = mediaFixture("mp4", both + "-c:v libx264 -g 25 -bf 2 -c:a aac");
    auto movie = exported(file, {.range = seconds(1.3, 3.4), .preset = AVAssetExportPresetPassthrough});
    EXPECT_NEAR(movie.audio().onset(), 1.2, 0.022);
    auto original = inspect(file);
    for (auto& picture : movie.video().pictures)
        EXPECT_TRUE(std::ranges::any_of(original.video().pictures,
                                        [&](auto& other) { return picture.distance(other) == 0; }));
    auto lit = std::ranges::find_if(movie.video().pictures, [](auto& picture) { return picture.y() > 120; });
    ASSERT_NE(lit, movie.video().pictures.end());
    EXPECT_NEAR(lit->time, 1.2, 0.021);
}

TEST(AVAssetExportSession, ranges_are_cut_to_the_asset_or_fail)
{
    auto asset = assetAt(mediaFixture("mp4", both + "-c:v libx264 -g 25 -c:a aac"));
    const CMTime never = CMTime::invalid(), forever = CMTime::positiveInfinity();
    struct Case {
        const char* name;
        CMTimeRange range;
        double duration; // 0: fails
    };
    const Case cases[] = {
        {"before the start", seconds(-2, 1), 1},
        {"beyond the end", seconds(3, 100), 1},
        {"without an end", {CMTime(3, 1), forever}, 1},
        {"empty", seconds(1, 1), 0},
        {"before all", seconds(-3, -1), 0},
        {"behind all", seconds(4.5, 6), 0},
        {"invalid", {never, never}, 0},
        {"of a negative length", {CMTime(2, 1), CMTime(-1, 1)}, 0},
        {"shorter than a picture", seconds(1, 1.001), 0.02},
    };
    for (auto& test : cases) {
        SCOPED_TRACE(test.name);
        TemporaryDirectory folder;
        auto session = makeExport(asset, folder.path("out.mov"), {.range = test.range});
        auto error = run(*session);
        EXPECT_EQ(error.has_value(), test.duration == 0);
        EXPECT_EQ(folder.fileCount(), test.duration == 0 ? 0 : 1);
        if (error)
            EXPECT_EQ(*error, Error(AVError::exportFailed));
        else
            EXPECT_NEAR(inspect(folder.path("out.mov")).duration, test.duration, 0.03);
    }
}

TEST(AVAssetExportSession, a_file_that_exists_is_not_touched)
{
    TemporaryDirectory folder;
    auto asset = assetAt(mediaFixture("mp4", both + "-c:v libx264 -g 25 -c:a aac"));
    folder.write("mine.mov", "not to be lost");
    auto session = makeExport(asset, folder.path("mine.mov"));
    EXPECT_EQ(run(*session), Error(AVError::fileAlreadyExists));
    EXPECT_EQ(session->status(), AVAssetExportSessionStatus::failed);
    EXPECT_EQ(folder.read("mine.mov"), "not to be lost");
    EXPECT_EQ(run(*makeExport(asset, folder.path("no/such/folder.mov")))->bridged().domain(),
              NSCocoaErrorDomain);
    EXPECT_EQ(AVAssetExportSession::make(asset, "AVAssetExportPresetOfMine"), nullptr);
    EXPECT_EQ(
        AVAssetExportSession::make(std::make_shared<AVMutableComposition>(), AVAssetExportPreset1920x1080),
        nullptr);
}

TEST(AVAssetExportSession, a_cancelled_export_completes_once_and_leaves_nothing)
{
    TemporaryDirectory folder;
    auto asset = assetAt(mediaFixture(
        "mp4", "-f lavfi -i testsrc2=s=320x180:r=25:d=12 -f lavfi -i sine=d=12 -c:v libx264 -g 50 -c:a aac"));
    // Before it starts, while it waits or begins, and from some progress on.
    for (double stage : {-2.0, -1.0, 0.0, 0.05, 0.3, 0.8}) {
        SCOPED_TRACE(stage);
        auto session = makeExport(asset, folder.path("out.mov"), {.copies = false});
        std::atomic<int> completions = 0;
        std::promise<void> done;
        if (stage == -2)
            session->cancelExport();
        session->exportAsynchronously([&] {
            ++completions;
            done.set_value();
        });
        double last = 0;
        while (stage >= 0 && session->progress() <= stage
               && session->status() <= AVAssetExportSessionStatus::exporting) {
            const auto progress = session->progress();
            EXPECT_GE(progress, last);
            last = progress;
            std::this_thread::yield();
        }
        session->cancelExport();
        done.get_future().wait();
        session->cancelExport();
        EXPECT_EQ(session->status(), AVAssetExportSessionStatus::cancelled);
        EXPECT_EQ(session->error(), Error(AVError::operationCancelled));
        EXPECT_EQ(folder.fileCount(), 0);
        EXPECT_EQ(completions, 1);
    }
}

TEST(AVAssetExportSession, one_that_waits_for_its_turn_is_cancelled_at_once)
{
    TemporaryDirectory folder;
    auto asset = assetAt(mediaFixture(
        "mp4", "-f lavfi -i testsrc2=s=320x180:r=25:d=12 -f lavfi -i sine=d=12 -c:v libx264 -g 50 -c:a aac"));
    std::vector<std::shared_ptr<AVAssetExportSession>> sessions;
    std::vector<std::promise<void>> done(6);
    for (std::size_t i = 0; i < done.size(); ++i) {
        sessions.push_back(makeExport(asset, folder.path(std::to_string(i)), {.copies = false}));
        sessions[i]->exportAsynchronously([&, i] { done[i].set_value(); });
    }
    sessions.back()->cancelExport();
    done.back().get_future().wait();
    EXPECT_EQ(sessions.back()->status(), AVAssetExportSessionStatus::cancelled);
    EXPECT_EQ(sessions[4]->status(), AVAssetExportSessionStatus::waiting); // the first two are at work
    for (std::size_t i = 0; i + 1 < done.size(); ++i) {
        sessions[i]->cancelExport();
        done[i].get_future().wait();
    }
    EXPECT_EQ(folder.fileCount(), 0);
}

} // namespace
