// SPDX-License-Identifier: MIT
#include "tests/platform/avfoundation/ImageGeneratorTesting.h"

#include "platform/avfoundation/AVComposition.h"
#include "tests/support/TemporaryDirectory.h"

#include <random>

using namespace platform;
using namespace tests;

namespace {

const std::string x264 = "-c:v libx264 -preset fast -qp 8 -g 25 -sc_threshold 0 -bf 3 ";

CMTime at(double seconds)
{
    return CMTime::makeWithSeconds(seconds, 90000);
}

TEST(AVAssetImageGenerator, gives_the_picture_on_screen_whatever_the_order_codec_and_container)
{
    const std::string cases[][2] = {
        {"mp4", x264 + "-x264opts open-gop=1"},
        {"mp4", "-c:v libx264 -preset fast -qp 8 -g 1000 -bf 3 -x264opts b-pyramid=strict"},
        {"mp4", "-c:v libx265 -preset ultrafast -x265-params log-level=none:qp=8:bframes=3:keyint=50"},
        {"mkv", "-c:v libx264 -preset fast -qp 8 -g 40 -bf 2 -x264opts interlaced=1"},
        {"webm", "-c:v libvpx-vp9 -deadline realtime -cpu-used 8 -crf 5 -b:v 0 -g 30"},
        {"ts", x264},
        {"ts", "-c:v mpeg2video -q:v 1 -g 12 -bf 2"},
        {"avi", "-c:v mpeg4 -q:v 1 -bf 2 -g 30"},
        {"mov", "-c:v prores_ks -profile:v 1"},
    };
    std::vector<AVRequestedTime> times;
    for (int index : {190, 3, 0, 1, 60, 199, 24, 25, 26, 60, 110, 111, 112, 113, 114, 49, 50, 51, 74, 75}) {
        times.emplace_back(CMTime(index, 25));
        times.emplace_back(index / 25.0); // less than the picture's time, or more
        times.emplace_back(CMTime(index * 4 + 3, 100));
    }
    for (auto& [extension, encoding] : cases) {
        SCOPED_TRACE(extension + " " + encoding);
        auto generator = exactGenerator(videoAsset(extension, countedVideo("8", encoding)));
        auto stills = generate(*generator, times);
        ASSERT_EQ(stills.size(), times.size());
        CMTime before = CMTime::zero();
        for (auto& still : stills) {
            ASSERT_TRUE(still.image) << still.error->localizedDescription();
            const int expected = static_cast<int>(std::floor(still.requested.seconds() * 25 + 1e-4));
            EXPECT_EQ(countOf(*still.image), expected) << still.requested.debugDescription();
            EXPECT_NEAR(still.actual.seconds(), expected / 25.0, 0.001);
            EXPECT_LE(before, still.requested);
            before = still.requested;
        }
    }
}

TEST(AVAssetImageGenerator, goes_through_a_group_that_is_longer_than_what_is_held_at_once)
{
    auto asset =
        videoAsset("mp4", countedVideo("100", "-c:v libx264 -preset fast -qp 8 -g 9999 -sc_threshold 0"));
    std::vector<AVRequestedTime> times;
    for (int index : {2499, 1, 998, 999, 1000, 1001, 1002, 1700, 2001, 2002})
        times.emplace_back(CMTime(index, 25));
    for (auto& still : generate(*exactGenerator(asset), times)) {
        ASSERT_TRUE(still.image);
        EXPECT_EQ(countOf(*still.image), std::lround(still.requested.seconds() * 25) % 256);
    }
}

TEST(AVAssetImageGenerator, takes_a_picture_within_the_tolerances_and_key_pictures_where_they_are_wide)
{
    auto asset = videoAsset("mp4", countedVideo("8", x264));
    auto infinity = CMTime::positiveInfinity();
    const struct {
        const char* name;
        CMTime before, after;
        bool isKey;
    } cases[] = {
        {"any", infinity, infinity, true},
        {"a second", at(1), at(1), true},
        {"earlier only", infinity, CMTime::zero(), true},
        {"later only", CMTime::zero(), at(1), true},
        {"half a second", at(0.5), at(0.5), true},
        {"a little", at(0.1), at(0.1), false},
    };
    for (auto& [name, before, after, isKey] : cases) {
        SCOPED_TRACE(name);
        AVAssetImageGenerator generator(asset);
        generator.setRequestedTimeToleranceBefore(before);
        generator.setRequestedTimeToleranceAfter(after);
        std::vector<AVRequestedTime> times;
        for (double time = 0.02; time < 6.9; time += 0.3)
            times.emplace_back(at(time));
        for (auto& still : generate(generator, times)) {
            ASSERT_TRUE(still.image);
            const auto count = countOf(*still.image);
            EXPECT_NEAR(still.actual.seconds(), count / 25.0, 0.001) << "it says which one it took";
            const bool isOnScreen =
                still.actual <= still.requested && still.requested < still.actual + at(0.04);
            EXPECT_TRUE(
                isOnScreen
                || (still.requested - before <= still.actual && still.actual <= still.requested + after));
            EXPECT_TRUE(!isKey || count % 25 == 0) << count;
        }
    }
}

TEST(AVAssetImageGenerator, knows_where_the_asset_begins_and_ends)
{
    // 2 s of pictures, 3 s of sound.
    auto asset = videoAsset("mov", "-f lavfi -i sine=d=3 " + countedVideo("2", x264 + "-c:a pcm_s16le"));
    ASSERT_EQ(asset->duration().seconds(), 3);
    const double nan = std::nan("");
    const struct {
        const char* name;
        double time, before, after;
        int expected; // -1: none
    } cases[] = {
        {"the very first", 0, 0, 0, 0},
        {"the very last", 1.96, 0, 0, 49},
        {"the last picture lasts to the end of the sound", 2.999, 0, 0, 49},
        {"the end is outside", 3, 0, 0, -1},
        {"a tolerance reaches back in", 3.5, 0.6, 0, 49},
        {"a tolerance does not", 3.5, 0.5, 0, -1},
        {"before zero is outside", -0.1, 0, 0, -1},
        {"a tolerance reaches forward", -0.1, 0, 0.1, 0},
        {"a tolerance in the wrong direction", -0.1, 1, 0, -1},
        {"a negative tolerance is none", 1, -1, -1, 25},
        {"no number", nan, 9, 9, -1},
        {"beyond all time", 1e300, 9, 9, -1},
    };
    for (auto& [name, time, before, after, expected] : cases) {
        SCOPED_TRACE(name);
        AVAssetImageGenerator generator(asset);
        generator.setRequestedTimeToleranceBefore(at(before));
        generator.setRequestedTimeToleranceAfter(at(after));
        auto stills = generate(generator, {time});
        ASSERT_EQ(stills.size(), 1U);
        EXPECT_EQ(stills[0].image ? countOf(*stills[0].image) : -1, expected);
        EXPECT_EQ(stills[0].error.has_value(), expected < 0);
        if (stills[0].error) {
            EXPECT_EQ(*stills[0].error, Error(AVError::noImageAtTime));
        }
        CMTime actual(1, 1);
        auto one = generator.copyCGImage(at(time), &actual);
        EXPECT_EQ(one ? countOf(*one) : -1, expected) << "alone, too";
        EXPECT_EQ(actual.isValid(), expected >= 0);
    }
}

TEST(AVAssetImageGenerator, follows_a_variable_rate)
{
    // Picture n at n * n / 100 seconds.
    for (std::string extension : {"mp4", "mkv"}) {
        auto asset = videoAsset(extension,
                                countedVideo("1", x264 + "-vsync passthrough -enc_time_base 1:1000",
                                             "settb=1/1000,setpts='N*N/100/TB'"));
        std::vector<AVRequestedTime> times;
        for (double time : {0.005, 0.011, 0.5, 0.63, 0.64, 3.99, 4.0, 4.4, 4.83, 4.85})
            times.emplace_back(at(time));
        for (auto& still : generate(*exactGenerator(asset), times)) {
            ASSERT_TRUE(still.image);
            EXPECT_EQ(countOf(*still.image),
                      static_cast<int>(std::sqrt(still.requested.seconds() * 100 + 1e-3)))
                << still.requested.seconds();
        }
    }
}

TEST(AVAssetImageGenerator, plays_the_pieces_of_a_composition_and_leaves_its_gaps_empty)
{
    auto one = videoAsset("mp4", countedVideo("8", x264));
    auto other = videoAsset("ts", countedVideo("8", x264));
    auto composition = std::make_shared<AVMutableComposition>();
    auto track = composition->addMutableTrack(AVMediaType::video, 1);
    // 0...1: pictures 150 on; 1...2: a gap; 2...3: pictures 10 on; 3...4: pictures 60 on of the other
    ASSERT_TRUE(track->insertTimeRange({CMTime(6, 1), CMTime(1, 1)}, *one->tracks().front(), CMTime::zero()));
    ASSERT_TRUE(track->insertTimeRange({CMTime(2, 5), CMTime(1, 1)}, *one->tracks().front(), CMTime(2, 1)));
    ASSERT_TRUE(
        track->insertTimeRange({CMTime(12, 5), CMTime(1, 1)}, *other->tracks().front(), CMTime(3, 1)));
    auto generator = exactGenerator(composition);
    std::map<double, int> expected{{0, 150},  {0.99, 174}, {1, -1}, {1.5, -1}, {2, 10},
                                   {2.5, 22}, {2.99, 34},  {3, 60}, {3.99, 84}};
    std::vector<AVRequestedTime> times;
    for (auto& [time, count] : expected)
        times.emplace_back(at(time));
    std::ranges::shuffle(times, std::minstd_rand(1));
    for (auto& still : generate(*generator, times)) {
        SCOPED_TRACE(still.requested.seconds());
        EXPECT_EQ(still.image ? countOf(*still.image) : -1, expected.at(still.requested.seconds()));
    }
    generator->setRequestedTimeToleranceBefore(at(0.5));
    generator->setRequestedTimeToleranceAfter(at(0.5));
    CMTime actual;
    ASSERT_TRUE(generator->copyCGImage(at(1.2), &actual)) << "what is before the gap is near enough";
    EXPECT_LT(actual.seconds(), 1);
    ASSERT_TRUE(generator->copyCGImage(at(1.8), &actual));
    EXPECT_GE(actual.seconds(), 2) << "no picture is taken from outside of its piece";
}

TEST(AVAssetImageGenerator, ends_each_time_once_when_it_is_cancelled_midway)
{
    auto generator = exactGenerator(videoAsset("mp4", countedVideo("8", x264)));
    std::vector<AVRequestedTime> times;
    for (int index = 199; index >= 0; --index)
        times.emplace_back(CMTime(index, 25));
    auto stills = generate(*generator, times, [&] { generator->cancelAllCGImageGeneration(); });
    ASSERT_EQ(stills.size(), 200U);
    int succeeded = 0;
    for (auto& still : stills) {
        const bool isCancelled = still.result == AVAssetImageGeneratorResult::cancelled;
        EXPECT_EQ(isCancelled, still.error == Error(AVError::operationCancelled));
        EXPECT_NE(isCancelled, still.image.has_value());
        succeeded += !isCancelled;
    }
    EXPECT_GE(succeeded, 1);
    EXPECT_LT(succeeded, 200) << "the rest of the first group was not decoded any more";
    EXPECT_EQ(generate(*generator, {1.0}).front().result, AVAssetImageGeneratorResult::succeeded)
        << "later calls are not";
}

TEST(AVAssetImageGenerator, says_why_there_is_no_picture)
{
    auto failureOf = [](std::shared_ptr<AVAsset> asset) {
        auto generator = exactGenerator(std::move(asset));
        auto stills = generate(*generator, {0.5, 0.1, 0.5});
        EXPECT_EQ(stills.size(), 3U);
        for (auto& still : stills)
            EXPECT_EQ(still.result, AVAssetImageGeneratorResult::failed);
        auto one = generator->copyCGImage(at(0.1));
        EXPECT_FALSE(one);
        return one ? Error(AVError::unknown) : one.error();
    };
    EXPECT_EQ(failureOf(videoAsset("wav", "-f lavfi -i sine=d=1")), Error(AVError::noSourceTrack));
    EXPECT_EQ(failureOf(videoAsset("mp3",
                                   "-f lavfi -i sine=d=1 -f lavfi -i color=s=32x32 -frames:v 1 -c:v png "
                                   "-disposition:v attached_pic")),
              Error(AVError::noSourceTrack))
        << "a cover is no video";
    EXPECT_EQ(failureOf(videoAsset(
                  "mp4",
                  countedVideo(
                      "1",
                      "-c:v libx264 -encryption_scheme cenc-aes-ctr -encryption_key "
                      "76a6c65c5ea762046bd749a2e632ccbb -encryption_kid a7e61c373e219033c21091fa607bf3b8"))),
              Error(AVError::contentIsProtected));
    EXPECT_EQ(failureOf(std::make_shared<AVURLAsset>(URL::fileURL("/nowhere.mp4"))).bridged().domain(),
              "NSCocoaErrorDomain");
}

TEST(AVAssetImageGenerator, gives_right_pictures_or_errors_of_damaged_files)
{
    auto file = mediaFixture("mp4", countedVideo("8", x264 + "-movflags faststart"));
    std::string whole = outputOf("cat " + file);
    TemporaryDirectory folder;
    std::vector<AVRequestedTime> times;
    for (int index = 0; index < 200; index += 7)
        times.emplace_back(CMTime(index, 25));
    auto stillsOf = [&](const std::string& bytes) {
        return generate(*exactGenerator(std::make_shared<AVURLAsset>(folder.write("damaged.mp4", bytes))),
                        times);
    };
    for (std::size_t part = 1; part < 16; ++part) {
        auto stills = stillsOf(whole.substr(0, whole.size() * part / 16));
        ASSERT_EQ(stills.size(), times.size());
        std::size_t count = 0;
        for (auto& still : stills) {
            EXPECT_NE(still.image.has_value(), still.error.has_value());
            count += still.image.has_value();
            EXPECT_TRUE(!still.image || countOf(*still.image) == std::lround(still.requested.seconds() * 25))
                << part;
        }
        EXPECT_TRUE(part < 12 || count >= times.size() / 2) << "what is before the cut can be had";
    }
    std::minstd_rand random(7);
    for (int round = 0; round < 24; ++round) {
        auto bytes = whole;
        for (int change = 0; change < 1 << round % 8; ++change)
            bytes[random() % bytes.size()] = static_cast<char>(random());
        EXPECT_EQ(stillsOf(bytes).size(), times.size()) << round;
    }
}

} // namespace
