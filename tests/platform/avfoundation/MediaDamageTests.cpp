// SPDX-License-Identifier: MIT
// Files that are cut off or changed at random: each is read to an end or refused with one error. Meant to be run under
// the sanitizers too.
#include "tests/platform/avfoundation/ReaderTesting.h"
#include "tests/support/MediaFixtures.h"
#include "tests/support/TemporaryDirectory.h"

#include <random>

using namespace platform;
using namespace tests;

namespace {

constexpr int buffersRead = 40; // of each track: a hostile header may promise hours

void expectAnEnd(const URL& file)
{
    auto asset = std::make_shared<AVURLAsset>(file);
    EXPECT_EQ(asset->loadError().has_value(), asset->tracks().empty());
    for (auto& track : asset->tracks()) {
        const bool isSound = track->mediaType() == AVMediaType::audio;
        const AVAssetReaderTrackOutput::OutputSettings forms[] = {
            std::monostate{},
            isSound ? AVAssetReaderTrackOutput::OutputSettings(mono16k) : PixelBufferAttributes{}};
        for (auto& form : forms) {
            auto reader = AVAssetReader::make(asset);
            ASSERT_TRUE(reader);
            auto output = std::make_shared<AVAssetReaderTrackOutput>(track, form);
            if (!(*reader)->canAdd(*output))
                continue;
            (*reader)->add(output);
            int count = 0;
            if ((*reader)->startReading())
                while (count < buffersRead && output->copyNextSampleBuffer())
                    ++count;
            auto expected = (*reader)->error() ? AVAssetReaderStatus::failed
                : count == buffersRead         ? AVAssetReaderStatus::reading
                                               : AVAssetReaderStatus::completed;
            EXPECT_EQ((*reader)->status(), expected);
        }
    }
}

std::vector<std::string> corpus()
{
    const std::string both = "-f lavfi -i testsrc2=s=48x32:r=10:d=0.6 -f lavfi -i sine=d=0.6 ";
    return {
        mediaFixture("mp4", both + "-c:v libx264 -preset ultrafast -c:a aac"),
        mediaFixture("mov", both + "-c:v mpeg4 -c:a pcm_s16be -movflags +faststart"),
        mediaFixture("mp4", both + "-c:v libx264 -bf 2 -c:a aac -movflags +frag_keyframe+empty_moov"),
        mediaFixture("mkv", both + "-c:v libx264 -preset ultrafast -c:a libopus"),
        mediaFixture("avi", both + "-c:v mjpeg -c:a libmp3lame"),
        mediaFixture("ts", both + "-c:v mpeg2video -c:a mp2"),
        mediaFixture("ogg", "-f lavfi -i sine=d=0.6 -c:a libvorbis"),
        mediaFixture("flac", "-f lavfi -i sine=d=0.6 -c:a flac"),
        mediaFixture("mp3", "-f lavfi -i sine=d=0.6 -c:a libmp3lame"),
        mediaFixture("wav", "-f lavfi -i sine=d=0.6:r=8000 -c:a pcm_s16le"),
    };
}

std::string extensionOf(const std::string& file)
{
    return file.substr(file.rfind('.'));
}

TEST(MediaDamage, a_file_cut_off_anywhere_is_read_to_an_end)
{
    TemporaryDirectory folder;
    for (auto& file : corpus()) {
        SCOPED_TRACE(file);
        auto bytes = outputOf("cat " + file);
        // Densely in the headers at both ends, here and there between.
        for (std::size_t length = 1; length < bytes.size(); length +=
             length < 64 || bytes.size() - length < 64 ? 8 : std::max<std::size_t>(bytes.size() / 24, 8)) {
            auto name = std::to_string(length) + extensionOf(file);
            expectAnEnd(folder.write(name, std::string_view(bytes).substr(0, length)));
            std::filesystem::remove(folder.path(name));
        }
    }
}

TEST(MediaDamage, a_file_changed_at_random_is_read_to_an_end)
{
    TemporaryDirectory folder;
    std::mt19937 random(20240229); // the same files in every run
    for (auto& file : corpus()) {
        SCOPED_TRACE(file);
        const auto original = outputOf("cat " + file);
        for (int round = 0; round < 24; ++round) {
            auto bytes = original;
            // Headers lie at the ends; changes there reach further than those in the data.
            const auto reach = round % 3 == 0 ? bytes.size() : std::min<std::size_t>(bytes.size(), 2000);
            for (unsigned change = 0; change < 1 + random() % 12; ++change) {
                auto place = random() % reach;
                place = round % 2 ? bytes.size() - 1 - place : place;
                const char values[] = {'\0', '\xff', '\x7f', '\x80', static_cast<char>(random())};
                bytes[place] = values[random() % 5];
            }
            if (random() % 4 == 0)
                bytes.erase(random() % bytes.size(), random() % 100);
            auto name = std::to_string(round) + extensionOf(file);
            expectAnEnd(folder.write(name, bytes));
            std::filesystem::remove(folder.path(name));
        }
    }
}

} // namespace
