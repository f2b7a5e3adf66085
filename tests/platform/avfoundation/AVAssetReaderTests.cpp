// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVComposition.h"
#include "platform/avfoundation/AVError.h"
#include "tests/platform/avfoundation/ReaderTesting.h"
#include "tests/support/MediaFixtures.h"
#include "tests/support/TemporaryDirectory.h"

#include <thread>

using namespace platform;
using namespace tests;

namespace {

// Picture n of 25 a second is grey of brightness 2n; several groups of pictures, B pictures among them.
const std::string greySource =
    "-f lavfi -i \"color=black:s=64x48:r=25:d=4,format=yuv420p,geq=lum='16+2*N':cb=128:cr=128\" ";
const std::string greyEncoding = "-c:v libx264 -preset fast -qp 4 -g 20 -bf 2 ";
const std::string greys = greySource + greyEncoding;

int brightness(const CMSampleBuffer& buffer)
{
    auto& picture = *buffer.imageBuffer;
    return std::to_integer<int>(picture.baseAddress(0)[24 * picture.bytesPerRow(0) + 32]);
}

const PixelBufferAttributes planar{.kCVPixelBufferPixelFormatTypeKey = CVPixelFormatType::planar420YpCbCr8};

TEST(AVAssetReader, gives_the_pictures_of_a_range_from_the_one_on_screen_at_its_start)
{
    for (auto extension : {"mp4", "mkv", "ts", "avi"}) {
        SCOPED_TRACE(extension);
        auto file = mediaFixture(extension, greys + (extension == std::string_view("avi") ? "-bf 0" : ""));
        auto all = readFile(file, AVMediaType::video, planar);
        EXPECT_EQ(all.status, AVAssetReaderStatus::completed);
        ASSERT_EQ(all.buffers.size(), 100U);
        for (int index = 0; index < 100; ++index)
            EXPECT_NEAR(brightness(*all.buffers[static_cast<std::size_t>(index)]), 16 + 2 * index, 1);

        // Picture 31 is on screen from 1.24 to 1.28, picture 40 from 1.6.
        const CMTimeRange range({125, 100}, {36, 100});
        auto part = readFile(file, AVMediaType::video, planar, range);
        ASSERT_EQ(part.buffers.size(), 10U);
        for (int index = 0; index < 10; ++index)
            EXPECT_NEAR(brightness(*part.buffers[static_cast<std::size_t>(index)]), 16 + 2 * (31 + index), 1);
        EXPECT_EQ(part.buffers.front()->presentationTimeStamp, range.start);
        auto end = part.buffers.back()->presentationTimeStamp + part.buffers.back()->duration;
        EXPECT_EQ(end, range.end());
    }
}

TEST(AVAssetReader, converts_pictures_by_their_colour_tags)
{
    struct Case {
        std::string_view name, arguments;
        int blue, green, red;
    };
    const Case cases[] = {
        {"BT.601", "-vf scale=out_color_matrix=bt601,format=yuv420p -colorspace smpte170m", 20, 150, 200},
        {"BT.709", "-vf scale=out_color_matrix=bt709,format=yuv420p -colorspace bt709", 20, 150, 200},
        {"full range",
         "-vf scale=out_range=full:out_color_matrix=bt709,format=yuv420p -colorspace bt709 -color_range pc",
         20, 150, 200},
        {"ten bits", "-vf scale=out_color_matrix=bt709,format=yuv420p10 -colorspace bt709", 20, 150, 200},
    };
    for (auto& [name, arguments, blue, green, red] : cases) {
        SCOPED_TRACE(name);
        auto file =
            mediaFixture("mkv",
                         "-f lavfi -i color=0xc89614:s=64x64:r=5:d=0.4,format=rgb24 -c:v libx264 -qp 1 "
                             + std::string(arguments));
        auto reading =
            readFile(file, AVMediaType::video, PixelBufferAttributes{.kCVPixelBufferWidthKey = 32});
        ASSERT_FALSE(reading.buffers.empty());
        auto& picture = *reading.buffers.front()->imageBuffer;
        EXPECT_EQ(picture.width(), 32);
        auto* pixel = picture.baseAddress(0) + 30 * picture.bytesPerRow(0) + 16 * 4;
        EXPECT_NEAR(std::to_integer<int>(pixel[0]), blue, 3);
        EXPECT_NEAR(std::to_integer<int>(pixel[1]), green, 3);
        EXPECT_NEAR(std::to_integer<int>(pixel[2]), red, 3);
    }
}

TEST(AVAssetReader, gives_stored_samples_from_a_sync_sample_on)
{
    auto file = mediaFixture("mp4", greys);
    auto reading = readFile(file, AVMediaType::video, {}, {{125, 100}, {10, 100}});
    ASSERT_FALSE(reading.buffers.empty());
    EXPECT_TRUE(reading.buffers.front()->isSync);
    EXPECT_EQ(reading.buffers.front()->presentationTimeStamp, CMTime(20, 25)); // groups of 20
    EXPECT_EQ(std::ranges::count_if(reading.buffers, &CMSampleBuffer::isSync), 1);
    // Every picture up to 1.35 s is there, and the first one's bytes are the file's.
    auto needed = std::ranges::count_if(
        reading.buffers, [](auto& buffer) { return buffer->presentationTimeStamp < CMTime(135, 100); });
    EXPECT_EQ(needed, 14);
    auto stored = outputOf("cat " + file);
    EXPECT_NE(stored.find(reading.bytes().substr(0, reading.buffers.front()->data.bytes.size())),
              std::string::npos);
}

TEST(AVAssetReader, takes_only_outputs_that_it_can_read)
{
    auto asset = std::make_shared<AVURLAsset>(mediaURL("mp4", greys));
    auto other = std::make_shared<AVURLAsset>(asset->url());
    auto track = asset->tracks().at(0);
    auto reader = *AVAssetReader::make(asset);
    using Output = AVAssetReaderTrackOutput;
    EXPECT_TRUE(reader->canAdd(Output(track, planar)));
    EXPECT_TRUE(reader->canAdd(Output(track, {})));
    EXPECT_FALSE(reader->canAdd(Output(other->tracks().at(0), {})));
    EXPECT_FALSE(reader->canAdd(Output(track, AudioSettings{})));
    auto song = std::make_shared<AVURLAsset>(mediaURL("wav", "-f lavfi -i sine=d=1 -c:a pcm_s16le"));
    auto songReader = *AVAssetReader::make(song);
    for (auto& [settings, fits] : std::initializer_list<std::pair<AudioSettings, bool>>{
             {{}, true},
             {{.AVLinearPCMBitDepthKey = 12}, false},
             {{.AVLinearPCMBitDepthKey = 24, .AVLinearPCMIsFloatKey = true}, false},
             {{.AVSampleRateKey = 0}, false},
             {{.AVNumberOfChannelsKey = 65}, false},
             {{.AVFormatIDKey = kAudioFormatMPEG4AAC}, false}})
        EXPECT_EQ(songReader->canAdd(Output(song->tracks().at(0), settings)), fits);
    EXPECT_FALSE(reader->startReading()) << "nothing to read";
    EXPECT_EQ(reader->status(), AVAssetReaderStatus::failed);

    auto locked = std::make_shared<AVURLAsset>(
        mediaURL("mp4",
                 "-f lavfi -i sine=d=1 -c:a aac -encryption_scheme cenc-aes-ctr -encryption_key "
                 "00112233445566778899aabbccddeeff -encryption_kid 00112233445566778899aabbccddeeff"));
    auto refused = read(locked, locked->tracks().at(0), mono16k);
    ASSERT_TRUE(refused.error);
    EXPECT_EQ(refused.error->bridged(), nsError(AVError::contentIsProtected))
        << refused.error->bridged().code();
}

TEST(AVAssetReader, reads_outputs_at_any_pace_on_any_thread_and_stops_when_cancelled)
{
    auto asset = std::make_shared<AVURLAsset>(
        mediaURL("mp4", greySource + "-f lavfi -i sine=d=4 -map 0 -map 1 -c:a aac " + greyEncoding));
    auto video = std::make_shared<AVAssetReaderTrackOutput>(
        asset->tracksWithMediaType(AVMediaType::video).at(0), planar);
    auto audio = std::make_shared<AVAssetReaderTrackOutput>(
        asset->tracksWithMediaType(AVMediaType::audio).at(0), mono16k);
    auto reader = *AVAssetReader::make(asset);
    EXPECT_EQ(video->copyNextSampleBuffer(), nullptr) << "not started";
    reader->add(video);
    reader->add(audio);
    ASSERT_TRUE(reader->startReading());
    int pictures = 0;
    double progress = 0;
    std::thread other([&] {
        while (video->copyNextSampleBuffer()) {
            ++pictures;
            EXPECT_GE(reader->progress(), progress);
            progress = reader->progress();
        }
    });
    while (audio->copyNextSampleBuffer()) { }
    other.join();
    EXPECT_EQ(pictures, 100);
    EXPECT_EQ(reader->status(), AVAssetReaderStatus::completed);
    EXPECT_EQ(reader->progress(), 1);

    auto cancelled = *AVAssetReader::make(asset);
    auto output = std::make_shared<AVAssetReaderTrackOutput>(
        asset->tracksWithMediaType(AVMediaType::audio).at(0), AudioSettings{.AVSampleRateKey = 384000});
    cancelled->add(output);
    ASSERT_TRUE(cancelled->startReading());
    EXPECT_NE(output->copyNextSampleBuffer(), nullptr);
    std::thread([&] { cancelled->cancelReading(); }).join();
    EXPECT_EQ(output->copyNextSampleBuffer(), nullptr);
    EXPECT_EQ(cancelled->status(), AVAssetReaderStatus::cancelled);
    EXPECT_FALSE(cancelled->error());
}

TEST(AVAssetReader, fails_once_when_the_file_shrinks_or_was_cut_within_its_data)
{
    TemporaryDirectory folder;
    auto movie = mediaFixture("mp4", "-f lavfi -i sine=d=30 -c:a aac -movflags +faststart");
    auto bytes = outputOf("cat " + movie);
    folder.write("cut.mp4", bytes.substr(0, bytes.size() / 2));
    auto cut = readFile(folder.path("cut.mp4"), AVMediaType::audio, mono16k);
    EXPECT_EQ(cut.status, AVAssetReaderStatus::failed);
    ASSERT_TRUE(cut.error);
    EXPECT_EQ(cut.error->bridged(), nsError(AVError::fileFailedToParse));
    auto start = readFile(folder.path("cut.mp4"), AVMediaType::audio, mono16k, {{1, 1}, {5, 1}});
    EXPECT_EQ(start.status, AVAssetReaderStatus::completed) << "what lies before the cut is there";
    EXPECT_EQ(start.samples<std::int16_t>().size(), 80000U);

    folder.write("shrinks.mp4", bytes);
    auto asset = std::make_shared<AVURLAsset>(folder.url("shrinks.mp4"));
    auto output = std::make_shared<AVAssetReaderTrackOutput>(asset->tracks().at(0), AudioSettings{});
    auto reader = *AVAssetReader::make(asset);
    reader->add(output);
    ASSERT_TRUE(reader->startReading());
    ASSERT_NE(output->copyNextSampleBuffer(), nullptr);
    std::filesystem::resize_file(folder.path("shrinks.mp4"), bytes.size() / 3);
    while (output->copyNextSampleBuffer()) { }
    EXPECT_EQ(reader->status(), AVAssetReaderStatus::failed);
    ASSERT_TRUE(reader->error());
    EXPECT_EQ(reader->error()->bridged().domain(), NSPOSIXErrorDomain);
}

} // namespace
