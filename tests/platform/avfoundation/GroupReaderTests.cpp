// SPDX-License-Identifier: MIT
#include "platform/avfoundation/GroupReader_p.h"

#include "platform/avfoundation/CMFormatDescription_p.h"
#include "tests/support/MediaFixtures.h"

using namespace platform;
using namespace tests;

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
