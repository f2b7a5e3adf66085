// SPDX-License-Identifier: MIT
// Exports of broken media: each ends in a file that can be read or in one error, and leaves nothing behind then.
#include "platform/avfoundation/AVAssetTrack.h"
#include "tests/platform/avfoundation/ExportTesting.h"
#include "tests/support/FullDisk.h"

#include <random>

using namespace platform;
using namespace tests;

namespace {

void expectAnEnd(const std::string& input, const ExportWish& wish = {})
{
    TemporaryDirectory folder;
    auto asset = assetAt(input);
    auto session = makeExport(asset, folder.path("out.mov"), wish);
    if (!session)
        return; // nothing to export
    auto error = run(*session);
    EXPECT_EQ(folder.fileCount(), error ? 0 : 1);
    EXPECT_EQ(session->status(),
              error ? AVAssetExportSessionStatus::failed : AVAssetExportSessionStatus::completed);
    EXPECT_TRUE(error || !inspect(folder.path("out.mov")).streams.empty());
}

std::vector<std::string> corpus()
{
    const std::string both = "-f lavfi -i testsrc2=s=48x32:r=10:d=0.8 -f lavfi -i sine=d=0.8 ";
    return {
        mediaFixture("mp4", both + "-c:v libx264 -preset ultrafast -bf 2 -g 4 -c:a aac"),
        mediaFixture("mov", both + "-c:v libx264 -preset ultrafast -g 3 -c:a pcm_s16le -movflags +faststart"),
        mediaFixture("mkv", both + "-c:v libx264 -preset ultrafast -bf 2 -g 4 -c:a libmp3lame"),
        mediaFixture("ts", both + "-c:v libx264 -preset ultrafast -c:a aac"),
    };
}

// The places where boxes begin, those within the index included.
void findBoxes(std::string_view bytes, std::size_t from, std::size_t to, std::vector<std::size_t>& places)
{
    auto number = [&](std::size_t at) {
        std::size_t value = 0;
        for (std::size_t i = 0; i < 4; ++i)
            value = value << 8 | static_cast<std::uint8_t>(bytes[at + i]);
        return value;
    };
    while (from + 8 <= to) {
        const auto size = number(from);
        const auto name = bytes.substr(from + 4, 4);
        if (size < 8 || from + size > to)
            return;
        places.push_back(from);
        for (auto parent : {"moov", "trak", "mdia", "minf", "stbl", "edts"})
            if (name == parent)
                findBoxes(bytes, from + 8, from + size, places);
        from += size;
    }
}

TEST(ExportDamage, a_movie_cut_off_at_any_box_or_within_its_media_ends)
{
    TemporaryDirectory folder;
    for (auto& file : corpus()) {
        SCOPED_TRACE(file);
        const auto bytes = outputOf("cat " + file);
        std::vector<std::size_t> places;
        findBoxes(bytes, 0, bytes.size(), places);
        for (std::size_t part = 1; part < 10; ++part)
            places.push_back(bytes.size() * part / 10);
        for (auto place : places) {
            SCOPED_TRACE(place);
            auto name = "cut" + file.substr(file.rfind('.'));
            expectAnEnd(folder.write(name, std::string_view(bytes).substr(0, place)).path());
        }
    }
}

TEST(ExportDamage, a_file_changed_at_random_ends)
{
    TemporaryDirectory folder;
    std::mt19937 random(1815); // the same files in every run
    for (auto& file : corpus()) {
        SCOPED_TRACE(file);
        const auto original = outputOf("cat " + file);
        for (int round = 0; round < 12; ++round) {
            SCOPED_TRACE(round);
            auto bytes = original;
            for (unsigned change = 0; change < 1 + random() % 8; ++change)
                bytes[random() % bytes.size()] = static_cast<char>(random());
            // A time that was changed may promise hours of silence.
            expectAnEnd(
                folder.write("changed" + file.substr(file.rfind('.')), bytes).path(),
                {.range = seconds(0, 2),
                 .preset = round % 3 ? AVAssetExportPreset1920x1080 : AVAssetExportPresetPassthrough});
        }
    }
}

TEST(ExportDamage, streams_that_change_midway_export_to_their_end)
{
    // Two recordings of other sizes and rates, one after the other in one broadcast; and of other parameters in one movie.
    TemporaryDirectory folder;
    const std::string first = mediaFixture(
        "ts",
        "-f lavfi -i testsrc2=s=64x48:r=10:d=1 -f lavfi -i sine=d=1:r=44100 -c:v libx264 -g 5 -c:a mp2");
    const std::string second =
        mediaFixture("ts",
                     "-f lavfi -i testsrc2=s=96x64:r=10:d=1 -f lavfi -i sine=d=1:r=32000 -c:v libx264 -g 5 "
                     "-c:a mp2 -output_ts_offset 1");
    auto broadcast = folder.write("both.ts", outputOf("cat " + first + " " + second)).path();
    auto asset = std::make_shared<AVURLAsset>(
        URL::fileURL(broadcast), AVURLAssetOptions{.AVURLAssetPreferPreciseDurationAndTimingKey = true});
    ASSERT_FALSE(run(*makeExport(asset, folder.path("whole.mov"))));
    auto movie = inspect(folder.path("whole.mov"));
    EXPECT_NEAR(movie.duration, 2, 0.3);
    EXPECT_EQ(movie.video().parameters.width, 64);

    auto wide = mediaFixture(
        "mp4", "-f lavfi -i testsrc2=s=64x48:r=10:d=1 -c:v libx264 -g 5 -bf 0 -profile:v baseline");
    auto other = mediaFixture(
        "mp4", "-f lavfi -i testsrc2=s=64x48:r=10:d=1 -c:v libx264 -g 5 -bf 2 -x264-params ref=5");
    folder.write("list", "file '" + wide + "'\nfile '" + other + "'\n");
    auto joined = folder.path("joined.mkv");
    outputOf("ffmpeg -v error -f concat -safe 0 -i " + folder.path("list") + " -c copy " + joined);
    auto cut = exported(joined, {.range = seconds(0.15, 1.85)});
    EXPECT_EQ(cut.video().pictures.size(), inspect(joined).video().pictures.size() - 2);
}

TEST(ExportDamage, a_file_that_shrinks_while_it_is_read_is_one_error)
{
    TemporaryDirectory folder;
    auto file =
        folder
            .write("shrinking.mov",
                   outputOf(
                       "cat "
                       + mediaFixture(
                           "mov", "-f lavfi -i testsrc2=s=320x180:r=25:d=4 -c:v mjpeg -movflags +faststart")))
            .path();
    auto asset = assetAt(file);
    ASSERT_FALSE(asset->tracks().empty());
    auto session = makeExport(asset, folder.path("out.mov"));
    std::filesystem::resize_file(file, std::filesystem::file_size(file) / 2);
    EXPECT_TRUE(run(*session));
    EXPECT_EQ(folder.fileCount(), 1);
}

TEST(ExportDamage, a_disk_that_is_full_at_any_moment_is_one_error)
{
    auto asset = assetAt(mediaFixture(
        "mp4", "-f lavfi -i testsrc2=s=320x180:r=25:d=4 -f lavfi -i sine=d=4 -c:v libx264 -g 25 -c:a aac"));
    TemporaryDirectory folder;
    ASSERT_FALSE(run(*makeExport(asset, folder.path("whole.mov"))));
    const auto whole = std::filesystem::file_size(folder.path("whole.mov"));
    for (rlim_t bytes : {std::uintmax_t{0}, std::uintmax_t{30}, whole / 3, whole - 5000, whole - 1}) {
        SCOPED_TRACE(bytes);
        auto session = makeExport(asset, folder.path("out.mov"));
        FullDisk disk(bytes);
        EXPECT_TRUE(run(*session));
        EXPECT_EQ(folder.fileCount(), 1);
    }
}

} // namespace
