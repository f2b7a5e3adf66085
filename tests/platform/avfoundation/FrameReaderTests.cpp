// SPDX-License-Identifier: MIT
#include "platform/avfoundation/FrameReader_p.h"

#include "platform/avfoundation/CMFormatDescription_p.h"
#include "platform/avfoundation/GroupReader_p.h"
#include "tests/support/MediaFixtures.h"

#include <numeric>

using namespace platform;
using namespace tests;

namespace {

struct Seen {
    std::int64_t pts;
    int mark; // of what the frame holds
};

std::optional<Seen> next(FrameReader& reader)
{
    auto frame = makeFrame();
    auto more = reader.next(*frame);
    EXPECT_TRUE(more) << more.error().localizedDescription();
    if (!more.value_or(false))
        return std::nullopt;
    int mark = frame->nb_samples;
    for (int column = 0; column < frame->width; ++column)
        mark += frame->data[0][frame->linesize[0] * (frame->height / 2) + column];
    return Seen{frame->pts, mark};
}

// From a seek on to the frame on screen at that time.
std::optional<Seen> at(FrameReader& reader, std::int64_t time)
{
    EXPECT_TRUE(reader.seek(time));
    std::optional<Seen> found;
    for (auto seen = next(reader); seen && seen->pts <= time; seen = next(reader))
        found = seen;
    return found;
}

TEST(FrameReader, finds_each_frame_again_in_whatever_order_they_are_sought)
{
    const std::string video = "-f lavfi -i testsrc2=s=64x48:r=25:d=5 -pix_fmt yuv420p ";
    const std::string cases[][2] = {
        {"mp4", video + "-c:v libx264 -preset fast -g 20 -bf 3 -x264opts open-gop=1"},
        {"mkv", video + "-c:v libx264 -preset fast -g 20 -bf 3"},
        {"webm", video + "-c:v libvpx -deadline realtime -g 20"},
        {"ts", video + "-c:v libx264 -preset fast -g 20 -bf 2"},
        {"mpg", video + "-c:v mpeg2video -g 12 -bf 2"},
        {"avi", video + "-c:v mpeg4 -bf 2 -g 20"},
        {"flv", video + "-c:v libx264 -preset fast -g 20"},
        {"ogv", video + "-c:v libtheora -g 20"},
    };
    for (auto& [extension, arguments] : cases) {
        SCOPED_TRACE(extension);
        auto file = mediaFixture(extension, arguments);
        auto source = MediaSource::open(file, PreciseTiming::no);
        ASSERT_TRUE(source);
        auto reader = FrameReader::open(**source, 0, {});
        ASSERT_TRUE(reader);
        std::vector<Seen> all;
        while (auto seen = next(**reader))
            all.push_back(*seen);
        auto count = outputOf(
            "ffprobe -v error -count_frames -show_entries stream=nb_read_frames -of csv=p=0 " + file);
        EXPECT_EQ(all.size(), std::stoul(count));
        EXPECT_EQ(all.front().pts, 0) << "the timeline begins with the first picture";
        for (auto index : {std::size_t{60}, std::size_t{0}, all.size() - 1, std::size_t{19}, std::size_t{20},
                           std::size_t{21}, std::size_t{1}, std::size_t{90}, std::size_t{89}}) {
            auto again = at(**reader, all[index].pts);
            ASSERT_TRUE(again) << index;
            EXPECT_EQ(again->pts, all[index].pts) << index;
            EXPECT_EQ(again->mark, all[index].mark) << index;
        }
    }
}

TEST(FrameReader, lets_a_clock_that_wraps_around_go_on)
{
    // 33 bits of 90 kHz end after 95443.7 s.
    auto file =
        mediaFixture("ts",
                     "-f lavfi -i testsrc2=s=64x48:r=25:d=8 -c:v mpeg2video -g 10 -copyts -muxdelay 0 "
                     "-output_ts_offset 95440");
    auto source = MediaSource::open(file, PreciseTiming::no);
    ASSERT_TRUE(source);
    EXPECT_NEAR((*source)->duration().seconds(), 8, 0.1);
    auto reader = FrameReader::open(**source, 0, {});
    ASSERT_TRUE(reader);
    std::int64_t expected = 0;
    int count = 0;
    while (auto seen = next(**reader)) {
        EXPECT_EQ(seen->pts, expected);
        expected += 3600;
        ++count;
    }
    EXPECT_EQ(count, 200);
}

} // namespace

namespace {

TEST(GroupReader, reads_each_packet_that_is_needed_once)
{
    for (std::string extension : {"mp4", "mkv", "ts"}) {
        SCOPED_TRACE(extension);
        auto file = mediaFixture(
            extension, "-f lavfi -i testsrc2=s=64x48:r=25:d=8 -c:v libx264 -preset fast -g 25 -bf 3");
        auto source = *MediaSource::open(file, PreciseTiming::no);
        const auto base = source->streams()[0].format->parameters().timeBase;
        auto packetsFor = [&](const std::vector<double>& times) {
            StillSession session{.source = source};
            for (double time : times) {
                auto ticks = platform::ticks(CMTime::makeWithSeconds(time, 90000), base);
                session.moments.push_back(
                    {.time = ticks, .earliest = ticks, .latest = ticks, .seekTime = ticks});
            }
            auto reader = GroupReader::open(session, {});
            EXPECT_TRUE(reader);
            std::map<std::int64_t, int> seen;
            std::size_t moments = 0;
            while (auto group = (*reader)->next()) {
                EXPECT_FALSE(group->error);
                moments += group->moments.size();
                for (auto& packet : group->packets)
                    ++seen[packet->pts];
            }
            EXPECT_EQ(moments, times.size());
            for (auto& [pts, count] : seen)
                EXPECT_EQ(count, 1) << pts;
            return seen.size();
        };
        EXPECT_GE(packetsFor({7.9, 0.1, 4.01, 0.5, 6.3, 4, 4.9, 0, 2.2, 2.3}), 10U);
        EXPECT_LE(packetsFor({5.2}), 12U) << "only of the group that the moment is in";
        EXPECT_LE(packetsFor({5.2, 0.2}), 24U);
    }
}

} // namespace
