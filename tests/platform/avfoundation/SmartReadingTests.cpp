// SPDX-License-Identifier: MIT
// Cuts through H.264: what is copied is bit for bit the source's, what is encoded shows the source's picture of that moment,
// and no moment is missing or told twice.
#include "platform/avfoundation/AVAssetTrack.h"
#include "platform/avfoundation/SmartReading_p.h"
#include "tests/platform/avfoundation/ExportTesting.h"

#include <ranges>

using namespace platform;
using namespace tests;

namespace {

const std::string scene = "-f lavfi -i testsrc2=s=96x64:r=25:d=3 ";

struct Source {
    const char* name;
    std::string extension = "mp4";
    std::string arguments;
    bool isCut = true; // whether any range of it can be copied from
};

std::vector<Source> sources()
{
    // Pictures 0.04, 0.08 or 0.12 seconds apart.
    const std::string irregular =
        scene + "-vf select='not(eq(mod(n\\,7)\\,3))*not(eq(mod(n\\,11)\\,5))' -fps_mode vfr ";
    return {
        {"b-frames", "mp4", scene + "-c:v libx264 -g 25 -bf 3 -x264-params b-pyramid=normal"},
        {"open groups", "mp4",
         scene + "-c:v libx264 -x264-params keyint=24:min-keyint=24:open-gop=1:bframes=3:scenecut=0"},
        {"variable rate", "mp4", irregular + "-c:v libx264 -g 20 -bf 2"},
        {"variable rate in milliseconds", "mkv", irregular + "-c:v libx264 -g 20 -bf 2"},
        {"one group", "mp4", scene + "-c:v libx264 -g 1000 -bf 2 -x264-params scenecut=0"},
        {"intra refresh", "mp4", scene + "-c:v libx264 -x264-params intra-refresh=1:keyint=25:bframes=0"},
        {"baseline", "mp4", scene + "-c:v libx264 -profile:v baseline -g 30"},
        {"main, full range", "mov",
         scene + "-c:v libx264 -profile:v main -pix_fmt yuvj420p -color_range pc -g 30 -bf 2"},
        {"key pictures only", "mp4", scene + "-c:v libx264 -g 1"},
        {"broad pixels", "mp4", scene + "-vf setsar=4/3 -c:v libx264 -g 25"},
        {"another codec", "mp4", scene + "-c:v mpeg4 -g 25", false},
        {"interlaced", "mp4", scene + "-c:v libx264 -flags +ilme+ildct -x264-params tff=1", false},
        {"4:4:4", "mp4", scene + "-pix_fmt yuv444p -c:v libx264", false},
        {"byte stream", "ts", scene + "-c:v libx264 -g 25", false},
    };
}

// The picture of the source on screen at `time`.
const InspectedPicture& pictureAt(const InspectedStream& source, double time)
{
    auto next =
        std::ranges::find_if(source.pictures, [&](auto& picture) { return picture.time > time + 1e-3; });
    return next == source.pictures.begin() ? *next : *(next - 1);
}

// How many pictures of the cut are the source's to the bit.
int expectCut(const InspectedStream& source, const InspectedStream& cut, double from, double to)
{
    int copied = 0;
    double last = -1;
    for (auto& picture : cut.pictures) {
        EXPECT_GT(picture.time, last);
        last = picture.time;
        auto& original = pictureAt(source, from + picture.time);
        // In place, but for the first, which may have been on screen before.
        EXPECT_TRUE(picture.time == 0 || std::abs(original.time - from - picture.time) < 1.1e-3)
            << picture.time;
        // Broad pixels become square ones where all is encoded.
        const auto distance = picture.distance(original);
        EXPECT_TRUE(distance < 4 || picture.planes.size() != original.planes.size()) << "at " << picture.time;
        copied += distance == 0;
    }
    auto isWithin = [&](auto& picture) { return picture.time > from + 1e-4 && picture.time < to - 1e-4; };
    const auto changes = std::ranges::count_if(source.pictures, isWithin);
    EXPECT_NEAR(static_cast<double>(cut.pictures.size()), static_cast<double>(changes), 1);
    EXPECT_TRUE(!cut.pictures.empty() && cut.pictures.front().time < 1e-3);
    for (std::size_t i = 1; i < cut.packets.size(); ++i)
        EXPECT_GT(cut.packets[i].dts, cut.packets[i - 1].dts);
    for (auto& packet : cut.packets)
        EXPECT_GE(packet.pts, packet.dts);
    return copied;
}

TEST(SmartReading, a_cut_copies_what_it_can_and_shows_every_moment_once)
{
    // All, within groups at both ends, within one; for two sources also too short to hold a key picture, and whole groups.
    constexpr std::pair<double, double> ranges[] = {{0, 3},      {0.5, 2.3}, {1.02, 1.98},
                                                    {0.12, 0.2}, {1, 2},     {0.96, 1.4}};
    for (std::size_t place = 0; auto& source : sources()) {
        SCOPED_TRACE(source.name);
        const auto file = mediaFixture(source.extension, source.arguments);
        auto original = inspect(file);
        for (auto& stream : original.streams) // some containers' clocks begin anywhere
            for (auto& picture : std::views::reverse(stream.pictures))
                picture.time -= stream.pictures.front().time;
        int copied = 0;
        for (auto [from, to] : std::span(ranges).first(!source.isCut ? 2 : place++ < 2 ? 6 : 3)) {
            SCOPED_TRACE(std::to_string(from) + "..." + std::to_string(to));
            auto cut = exported(file, {.range = seconds(from, to)});
            ASSERT_EQ(cut.streams.size(), 1U);
            copied += expectCut(original.video(), cut.video(), from, to);
            EXPECT_EQ(cut.video().parameters.color_range == AVCOL_RANGE_JPEG,
                      original.video().parameters.color_range == AVCOL_RANGE_JPEG);
        }
        EXPECT_EQ(copied > 0, source.isCut);
    }
}

TEST(SmartReading, only_the_ends_are_encoded)
{
    const auto file = mediaFixture("mp4", scene + "-c:v libx264 -g 25 -bf 3 -x264-params b-pyramid=normal");
    const auto original = inspect(file);
    auto cut = exported(file, {.range = seconds(0.5, 2.5)});
    for (auto& picture : cut.video().pictures) {
        const bool isBetween =
            picture.time >= 0.5 && picture.time < 1.4; // a key picture, and a little before the end
        EXPECT_TRUE(!isBetween || picture.distance(pictureAt(original.video(), picture.time + 0.5)) == 0)
            << picture.time;
    }
    auto encoded = exported(file, {.range = seconds(0.5, 2.5), .copies = false});
    EXPECT_EQ(expectCut(original.video(), encoded.video(), 0.5, 2.5), 0);
}

TEST(SmartReading, a_track_that_is_shorter_than_the_sound_is_cut_all_the_same)
{
    const auto file = mediaFixture("mp4", scene + "-f lavfi -i sine=d=4 -c:v libx264 -g 25 -c:a aac");
    const auto original = inspect(file);
    auto cut = exported(file, {.range = seconds(0.5, 9)});
    EXPECT_GT(expectCut(original.video(), cut.video(), 0.5, 3), 40);
    EXPECT_NEAR(cut.duration, 3.5, 0.03);
}

TEST(SmartReading, the_source_s_parameters_stay_valid_beside_the_encoder_s)
{
    for (auto& source : sources()) {
        SCOPED_TRACE(source.name);
        auto asset = assetAt(mediaFixture(source.extension, source.arguments));
        auto track = asset->tracks().at(0);
        auto plan = planSmartReading(*track, CMTimeRange(CMTime::zero(), asset->duration()), {1920, 1080});
        ASSERT_EQ(plan.has_value(), source.isCut);
        EXPECT_FALSE(planSmartReading(*track, CMTimeRange(CMTime::zero(), asset->duration()), {90, 60}));
        if (!plan)
            continue;
        EXPECT_FALSE(plan->source.usesID(plan->encoderID));
        EXPECT_TRUE(plan->encoder.usesID(plan->encoderID));
        EXPECT_EQ(plan->source.profile, plan->encoder.profile);
    }
}

} // namespace
