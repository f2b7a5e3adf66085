// SPDX-License-Identifier: MIT
// The kit's exports, their files read back with the codec library and the command-line prober.
#include "kit/media/AVAssetError.h"
#include "kit/media/exportAudio.h"
#include "kit/media/exportVideo.h"
#include "kit/media/hasTracks.h"
#include "kit/media/urlAsset.h"

#include "platform/avfoundation/AVComposition.h"
#include "platform/avfoundation/AVError.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/FileManager.h"
#include "tests/support/EnvironmentOverride.h"
#include "tests/support/FullDisk.h"
#include "tests/support/MediaInspection.h"
#include "tests/support/TemporaryDirectory.h"

#include <atomic>
#include <future>

using namespace platform;
using namespace tests;

namespace zelk {

namespace {

using Export = void(std::shared_ptr<AVAsset>, const CMTimeRange&, ExportCompletion);
using Outcome = Result<URL>;

const CMTimeRange everything{CMTime::zero(), CMTime::positiveInfinity()};
const std::string film = "-f lavfi -i testsrc2=s=96x64:r=25:d=2 -f lavfi -i sine=1000:d=2:r=48000 ";

// Exports to a temporary folder of its own.
struct Exports {
    static Outcome run(Export* operation, const std::shared_ptr<AVAsset>& asset,
                       const CMTimeRange& range = everything)
    {
        std::promise<Outcome> promise;
        operation(asset, range, [&](Outcome outcome) { promise.set_value(std::move(outcome)); });
        return promise.get_future().get();
    }

    static std::string place() { return FileManager::defaultManager().temporaryDirectory().path(); }
    static std::ptrdiff_t fileCount()
    {
        return std::ranges::distance(std::filesystem::directory_iterator(place()));
    }

    TemporaryDirectory folder;
    EnvironmentOverride environment{"TMPDIR", folder.path()};
};

std::shared_ptr<AVAsset> assetAt(const std::string& path)
{
    return urlAsset(URL::fileURL(path), {.preferPreciseTiming = true});
}

CMTimeRange samples(std::int64_t from, std::int64_t to, std::int32_t rate)
{
    return CMTimeRange::fromTimeToTime(CMTime(from, rate), CMTime(to, rate));
}

TEST(ExportTests, A_failure_describes_itself_and_one_of_them_never_in_another_language)
{
    constexpr AVAssetError all[] = {
        AVAssetError::assetNotExportable,           AVAssetError::missingAudioTrack,
        AVAssetError::couldNotAddMutableAudioTrack, AVAssetError::assetExportSessionCreationFailure,
        AVAssetError::couldNotAddAudioOutputReader, AVAssetError::unsupportedFileFormat};
    for (long place = 0; auto code : all) {
        Error error(code);
        EXPECT_EQ(error.bridged().code(), place++);
        EXPECT_FALSE(error.localizedDescription().empty());
        EXPECT_EQ(error.localizedDescription().find("AVASSET"), std::string::npos) << "no text for it";
        ASSERT_TRUE(error.localized());
        EXPECT_EQ(*error.localized(), (LocalizedError{.errorDescription = error.localizedDescription()}));
    }
    EXPECT_EQ(Error(AVAssetError::couldNotAddAudioOutputReader).localizedDescription(),
              "Could Not Add Audio Output Reader");
}

TEST(ExportTests, A_wave_file_has_exactly_the_samples_of_the_range)
{
    // A count of 16000 samples a second, from 0 on, so that each sample says where it was.
    auto asset =
        assetAt(mediaFixture("wav", "-f lavfi -i \"aevalsrc='n/32768':s=16000:d=2\" -c:a pcm_s16le"));
    struct Case {
        const char* name;
        CMTimeRange range;
        int first, count; // no samples: fails
    };
    const Case cases[] = {
        {"all", everything, 0, 32000},
        {"from within", samples(1600, 4801, 16000), 1600, 3201},
        {"from before the start", samples(-500, 1000, 16000), 0, 1000},
        {"beyond the end", samples(31000, 99000, 16000), 31000, 1000},
        {"rounded once at 1/3 seconds", samples(1, 2, 3), 5333, 5333},
        {"rounded once at 30000/1001 a second", {CMTime(1001, 30000), CMTime(10010, 30000)}, 534, 5339},
        {"one sample", samples(7, 8, 16000), 7, 1},
        {"empty", samples(100, 100, 16000), 0, 0},
        {"behind all", samples(3, 4, 1), 0, 0},
        {"before all", samples(-4, -3, 1), 0, 0},
        {"invalid", CMTimeRange::invalid(), 0, 0},
        {"of a negative length", {CMTime(1, 1), CMTime(-1, 1)}, 0, 0},
    };
    for (auto& test : cases) {
        SCOPED_TRACE(test.name);
        Exports exports;
        auto outcome = exports.run(exportAudio, asset, test.range);
        ASSERT_EQ(outcome.has_value(), test.count > 0);
        if (!outcome)
            continue;
        EXPECT_EQ(proberWarnings(outcome->path()), "");
        auto file = inspect(outcome->path());
        ASSERT_EQ(file.streams.size(), 1U);
        auto& track = file.audio();
        EXPECT_EQ(track.parameters.codec_id, AV_CODEC_ID_PCM_S16LE);
        EXPECT_EQ(track.parameters.sample_rate, 16000);
        ASSERT_EQ(track.sound.size(), 1U);
        ASSERT_EQ(track.sound[0].size(), static_cast<std::size_t>(test.count));
        EXPECT_EQ(std::lround(track.sound[0].front() * 32768), test.first);
        EXPECT_EQ(std::lround(track.sound[0].back() * 32768), test.first + test.count - 1);
    }
}

TEST(ExportTests, Channels_are_mixed_without_clipping_and_rates_brought_to_16_kHz)
{
    struct Case {
        const char* name;
        std::string extension, arguments;
        double peak; // of the tone of 1 kHz that comes out
    };
    const Case cases[] = {
        {"two full channels", "flac",
         "-f lavfi -i \"aevalsrc='0.99*sin(2000*PI*t)|0.99*sin(2000*PI*t)':s=44100:d=1\"", 0.99},
        {"one of two channels", "wav", "-f lavfi -i \"aevalsrc='0.8*sin(2000*PI*t)|0':s=48000:d=1\"", 0.4},
        {"AAC", "m4a", "-f lavfi -i \"aevalsrc='0.5*sin(2000*PI*t)':s=48000:d=1\" -c:a aac", 0.5},
        {"64 channels", "wav",
         "-f lavfi -i \"aevalsrc='0.6*sin(2000*PI*t)':s=32000:d=1\" -af 'pan=64C" +
             [] {
                 std::string places;
                 for (int channel = 0; channel < 64; ++channel)
                     places += "|c" + std::to_string(channel) + "=c0";
                 return places + "'";
             }(),
         0.6},
    };
    for (auto& test : cases) {
        SCOPED_TRACE(test.name);
        Exports exports;
        auto outcome = exports.run(exportAudio, assetAt(mediaFixture(test.extension, test.arguments)));
        ASSERT_TRUE(outcome);
        auto file = inspect(outcome->path());
        auto& sound = file.audio().sound.at(0);
        EXPECT_EQ(sound.size(), 16000U);
        // The tone alone: its part in 4096 samples, and that there is no other.
        double sine = 0, cosine = 0, power = 0;
        for (std::size_t i = 4000; i < 12000; ++i) {
            sine += sound[i] * std::sin(M_PI / 8 * static_cast<double>(i)) / 4000;
            cosine += sound[i] * std::cos(M_PI / 8 * static_cast<double>(i)) / 4000;
            power += sound[i] * sound[i] / 4000;
        }
        EXPECT_NEAR(std::hypot(sine, cosine), test.peak, 0.02);
        EXPECT_NEAR(power, test.peak * test.peak, 0.02);
    }
}

TEST(ExportTests, A_movie_keeps_all_sound_and_the_wave_file_has_the_first)
{
    auto file = mediaFixture(
        "mov", film + "-f lavfi -i sine=440:d=2 -map 0 -map 1 -map 2 -c:v libx264 -g 25 -c:a aac");
    auto asset = assetAt(file);
    EXPECT_TRUE(hasAudioTrack(*asset));
    EXPECT_TRUE(hasVideoTrack(*asset));
    Exports exports;
    auto movie = exports.run(exportVideo, asset, samples(1, 3, 2));
    ASSERT_TRUE(movie);
    EXPECT_EQ(movie->pathExtension(), "mov");
    EXPECT_EQ(proberWarnings(movie->path()), "");
    auto inspected = inspect(movie->path());
    EXPECT_EQ(inspected.ofType(AVMEDIA_TYPE_AUDIO).size(), 2U);
    EXPECT_NEAR(inspected.duration, 1, 0.03);
    EXPECT_EQ(inspected.video().pictures.size(), 26U) << "the one on screen at the start is the first";

    auto wave = exports.run(exportAudio, asset);
    auto again = exports.run(exportAudio, asset);
    ASSERT_TRUE(wave && again);
    EXPECT_NE(wave->path(), again->path());
    // The temporary folder, a UUID in upper case, the extension.
    EXPECT_EQ(wave->deletingLastPathComponent().path(), exports.place());
    auto name = wave->lastPathComponent();
    EXPECT_EQ(name.size(), 36 + 4U);
    EXPECT_TRUE(std::ranges::none_of(name.substr(0, 36), [](char c) { return c >= 'a' && c <= 'z'; }));
    EXPECT_EQ(inspect(wave->path()).audio().sound.at(0).size(), 32000U);
}

TEST(ExportTests, What_cannot_be_exported_is_refused_with_the_reason)
{
    TemporaryDirectory other;
    auto silent = assetAt(mediaFixture("mp4", "-f lavfi -i testsrc2=s=96x64:r=25:d=1 -c:v libx264"));
    auto soundOnly = assetAt(mediaFixture("m4a", "-f lavfi -i sine=d=1 -c:a aac"));
    auto text = assetAt(other.write("text.mp4", "these are only words").path());
    auto empty = assetAt(other.write("empty.mp4", "").path());
    auto missing = assetAt(other.path("missing.mov"));
    EXPECT_FALSE(hasAudioTrack(*silent));
    EXPECT_FALSE(hasVideoTrack(*soundOnly));
    EXPECT_FALSE(hasVideoTrack(*text));
    struct Case {
        const char* name;
        Export* operation;
        std::shared_ptr<AVAsset> asset;
        std::optional<AVAssetError> error;
    };
    const Case cases[] = {
        {"a movie without sound", exportVideo, silent, std::nullopt},
        {"its sound", exportAudio, silent, AVAssetError::missingAudioTrack},
        {"sound as a movie", exportVideo, soundOnly, std::nullopt},
        {"text, as a movie", exportVideo, text, AVAssetError::assetNotExportable},
        {"text, as sound", exportAudio, text, AVAssetError::missingAudioTrack},
        {"no bytes", exportAudio, empty, AVAssetError::missingAudioTrack},
        {"no file", exportVideo, missing, AVAssetError::assetNotExportable},
        {"nothing", exportVideo, std::make_shared<AVMutableComposition>(), AVAssetError::assetNotExportable},
    };
    for (auto& test : cases) {
        SCOPED_TRACE(test.name);
        Exports exports;
        auto outcome = exports.run(test.operation, test.asset);
        ASSERT_EQ(outcome.has_value(), !test.error);
        if (test.error) {
            ASSERT_TRUE(outcome.error().as<AVAssetError>());
            EXPECT_EQ(*outcome.error().as<AVAssetError>(), *test.error);
        }
        EXPECT_EQ(exports.fileCount(), test.error ? 0 : 1);
    }
    EXPECT_EQ(_exportAudio(silent, everything, nullptr).error(), Error(AVAssetError::missingAudioTrack));
}

TEST(ExportTests, A_folder_that_takes_no_file_and_a_disk_that_is_full_are_one_error_each)
{
    auto asset = assetAt(mediaFixture("mov", film + "-c:v mjpeg -c:a pcm_s16le"));
    Exports exports;
    {
        EnvironmentOverride environment("TMPDIR", "/proc/self"); // where nobody can make one
        EXPECT_FALSE(exports.run(exportAudio, asset));
        EXPECT_FALSE(exports.run(exportVideo, asset));
    }

    FullDisk disk(20'000);
    EXPECT_FALSE(exports.run(exportAudio, asset));
    EXPECT_FALSE(exports.run(exportVideo, asset));
    EXPECT_EQ(exports.fileCount(), 1); // what was written of the sound; the movie is gone
    EXPECT_LE(std::filesystem::file_size(std::filesystem::directory_iterator(exports.place())->path()),
              20'000U);
}

// An asset's last owner is its export: when that is over, nothing may hold it.
TEST(ExportTests, A_thousand_exports_at_once_each_complete_once_and_let_go_of_all)
{
    const auto good = mediaFixture(
        "mp4", "-f lavfi -i testsrc2=s=32x32:r=5:d=0.4 -f lavfi -i sine=d=0.4 -c:v libx264 -c:a aac");
    Exports exports;
    constexpr int count = 1000;
    std::vector<std::weak_ptr<AVAsset>> assets;
    std::vector<std::atomic<int>> completions(count);
    std::atomic<int> left = count, files = 0;
    std::promise<void> done;
    for (int i = 0; i < count; ++i) {
        auto asset = i % 10 == 9 ? assetAt(exports.folder.path("missing")) : assetAt(good);
        assets.push_back(asset);
        auto* operation = i % 40 == 0 ? exportVideo : exportAudio;
        // Some ranges fail where the reading starts, when the file is there already.
        operation(asset, i % 7 == 3 ? samples(1, 1, 1) : everything, [&, i, asset](const Outcome& outcome) {
            ++completions[static_cast<std::size_t>(i)];
            files += outcome.has_value();
            if (--left == 0)
                done.set_value();
        });
    }
    done.get_future().wait();
    int expected = 0;
    for (int i = 0; i < count; ++i) {
        EXPECT_EQ(completions[static_cast<std::size_t>(i)], 1);
        expected += i % 10 != 9 && i % 7 != 3;
    }
    EXPECT_EQ(files, expected);
    // What an export holds is let go of after its completion, on other threads.
    auto isHeld = [](auto& asset) { return !asset.expired(); };
    for (int waits = 0; waits < 10'000 && std::ranges::any_of(assets, isHeld); ++waits)
        DispatchQueue::make("org.zelk.tests.turn")->sync([] { });
    EXPECT_EQ(std::ranges::count_if(assets, isHeld), 0);
}

} // namespace

} // namespace zelk
