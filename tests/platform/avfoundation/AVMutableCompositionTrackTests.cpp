// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVComposition.h"
#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/AVURLAsset.h"
#include "tests/support/MediaFixtures.h"

#include <sstream>

using namespace platform;
using namespace tests;

namespace {

// "3-5@0 empty@2" : source seconds, or emptiness, and where it plays.
std::string layoutOf(const AVCompositionTrack& track)
{
    std::ostringstream text;
    auto end = CMTime::zero();
    for (auto& segment : track.segments()) {
        EXPECT_EQ(segment.targetTimeRange.start, end) << "segments leave no gap";
        end = segment.targetTimeRange.end();
        if (!text.str().empty())
            text << ' ';
        if (segment.isEmpty())
            text << "empty";
        else
            text << segment.sourceTimeRange.start.seconds() << '-' << segment.sourceTimeRange.end().seconds();
        text << '@' << segment.targetTimeRange.start.seconds();
    }
    return text.str();
}

struct Stage {
    std::shared_ptr<AVURLAsset> source = std::make_shared<AVURLAsset>(
        mediaURL("wav", "-f lavfi -i sine=d=10:r=8000 -c:a pcm_s16le -metadata title=Ten"));
    std::shared_ptr<AVAssetTrack> ten = source->tracks().at(0);
    std::shared_ptr<AVMutableComposition> composition = std::make_shared<AVMutableComposition>();
    std::shared_ptr<AVMutableCompositionTrack> track = composition->addMutableTrack(AVMediaType::audio, 0);
};

CMTime at(double seconds)
{
    return CMTime::makeWithSeconds(seconds, 600);
}

CMTimeRange from(double start, double duration)
{
    return {at(start), at(duration)};
}

TEST(AVMutableCompositionTrack, keeps_its_segments_in_order_whatever_is_done_to_them)
{
    using Step = std::function<bool(Stage&)>;
    auto insert = [](CMTimeRange range, CMTime place) -> Step {
        return
            [=](Stage& stage) { return stage.track->insertTimeRange(range, *stage.ten, place).has_value(); };
    };
    auto remove = [](CMTimeRange range) -> Step {
        return [=](Stage& stage) { return stage.track->removeTimeRange(range), true; };
    };
    auto open = [](CMTimeRange range) -> Step {
        return [=](Stage& stage) { return stage.track->insertEmptyTimeRange(range), true; };
    };
    struct Case {
        std::string_view name;
        std::vector<Step> steps;
        std::string_view layout;
    };
    const Case cases[] = {
        {"one piece at its own place", {insert(from(2, 3), at(2))}, "empty@0 2-5@2"},
        {"an insertion pushes what is later",
         {insert(from(0, 4), at(0)), insert(from(8, 1), at(1))},
         "0-1@0 8-9@1 1-4@2"},
        {"an insertion at the end, named by no time",
         {insert(from(0, 1), at(0)), insert(from(5, 1), CMTime::invalid())},
         "0-1@0 5-6@1"},
        {"a piece put into a gap widens it",
         {insert(from(0, 1), at(4)), insert(from(2, 1), at(1))},
         "empty@0 2-3@1 empty@2 0-1@5"},
        {"a range beyond the source is cut", {insert(from(9, 5), at(0))}, "9-10@0"},
        {"a range that starts before zero is cut", {insert(from(-2, 3), at(0))}, "0-1@0"},
        {"an endless range", {insert({at(6), CMTime::positiveInfinity()}, at(0))}, "6-10@0"},
        {"removing across a seam",
         {insert(from(0, 2), at(0)), insert(from(5, 2), at(2)), remove(from(1, 2))},
         "0-1@0 6-7@1"},
        {"removing the end leaves no empty tail", {insert(from(0, 1), at(3)), remove(from(3, 9))}, ""},
        {"a gap opened within", {insert(from(0, 2), at(0)), open(from(1, 3))}, "0-1@0 empty@1 1-2@4"},
        {"a gap at the end is none", {insert(from(0, 2), at(0)), open(from(2, 3))}, "0-2@0"},
    };
    for (auto& [name, steps, layout] : cases) {
        SCOPED_TRACE(name);
        Stage stage;
        for (auto& step : steps)
            EXPECT_TRUE(step(stage));
        EXPECT_EQ(layoutOf(*stage.track), layout);
    }
}

TEST(AVMutableCompositionTrack, refuses_what_it_cannot_play_and_stays_as_it_was)
{
    Stage stage;
    ASSERT_TRUE(stage.track->insertTimeRange(from(0, 1), *stage.ten, at(0)));
    auto video = stage.composition->addMutableTrack(AVMediaType::video, 7);
    struct Case {
        AVMutableCompositionTrack& track;
        CMTimeRange range;
        CMTime place;
        AVError error;
    };
    const Case cases[] = {
        {*stage.track, CMTimeRange::invalid(), at(0), AVError::invalidCompositionTrackSegmentSourceStartTime},
        {*stage.track, from(10, 1), at(0), AVError::invalidCompositionTrackSegmentSourceStartTime},
        {*stage.track, from(1, 0), at(0), AVError::invalidCompositionTrackSegmentSourceDuration},
        {*stage.track, from(-3, 2), at(0), AVError::invalidCompositionTrackSegmentSourceDuration},
        {*stage.track, from(1, 1), at(-1), AVError::invalidCompositionTrackSegmentDuration},
        {*stage.track, from(1, 1), CMTime::positiveInfinity(),
         AVError::invalidCompositionTrackSegmentDuration},
        {*video, from(1, 1), at(0), AVError::operationNotSupportedForAsset},
    };
    for (auto& [track, range, place, error] : cases) {
        auto result = track.insertTimeRange(range, *stage.ten, place);
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().bridged(), nsError(error));
    }
    EXPECT_EQ(layoutOf(*stage.track), "0-1@0");
}

TEST(AVMutableComposition, gives_each_track_an_identifier_and_is_as_long_as_the_longest)
{
    Stage stage;
    EXPECT_EQ(stage.track->trackID(), 1);
    EXPECT_EQ(stage.composition->addMutableTrack(AVMediaType::audio, 1), nullptr);
    EXPECT_EQ(stage.composition->addMutableTrack(AVMediaType::audio, -4), nullptr);
    auto third = stage.composition->addMutableTrack(AVMediaType::audio, 3);
    EXPECT_EQ(stage.composition->addMutableTrack(AVMediaType::video, 0)->trackID(), 2);
    EXPECT_FALSE(stage.composition->isExportable());
    EXPECT_EQ(stage.composition->duration(), CMTime::zero());

    ASSERT_TRUE(stage.track->insertTimeRange(from(0, 1), *stage.ten, at(0)));
    ASSERT_TRUE(third->insertTimeRange(from(4, 1), *stage.ten, at(4)));
    EXPECT_EQ(stage.composition->duration(), at(5));
    EXPECT_EQ(third->timeRange(), from(4, 1));
    EXPECT_EQ(third->asset(), stage.composition);
    EXPECT_TRUE(stage.composition->isExportable());
    ASSERT_FALSE(stage.composition->metadata().empty()) << "what is known of the source";

    // A composition's track is a source like any other; its gap stays one.
    auto outer = std::make_shared<AVMutableComposition>();
    auto copy = outer->addMutableTrack(AVMediaType::audio, 0);
    ASSERT_TRUE(copy->insertTimeRange(from(3, 1.5), *third, at(0)));
    EXPECT_EQ(layoutOf(*copy), "empty@0 4-4.5@1");
    stage.composition->removeTrack(*third);
    EXPECT_EQ(stage.composition->duration(), at(1));
}

} // namespace
