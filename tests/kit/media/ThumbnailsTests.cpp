// SPDX-License-Identifier: MIT
#include "kit/media/fetchFrame.h"
#include "kit/media/thumbnailsPublisher.h"

#include "platform/avfoundation/AVError.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/VirtualClock.h"
#include "platform/foundation/Logger.h"
#include "tests/support/CountedVideo.h"

using namespace platform;
using namespace tests;

namespace {

// An asset that is nothing but long.
class LongAsset final : public AVAsset {
public:
    explicit LongAsset(CMTime duration)
        : duration_(duration)
    {
    }
    CMTime duration() const override { return duration_; }
    std::vector<std::shared_ptr<AVAssetTrack>> tracks() const override { return {}; }
    std::vector<AVMetadataItem> metadata() const override { return {}; }

private:
    const CMTime duration_;
};

const std::string allKeys = "-c:v libx264 -preset fast -qp 8 -g 1";

struct Received {
    std::vector<std::vector<UIImage>> values;
    std::optional<Completion> completion;
    AnyCancellable subscription;

    explicit Received(const zelk::ThumbnailsPublisher& publisher)
        : subscription(publisher.sink(
              [this](auto& images) {
                  EXPECT_TRUE(isOnMainThread());
                  values.push_back(images);
              },
              [this](auto& end) {
                  EXPECT_TRUE(isOnMainThread());
                  EXPECT_FALSE(completion) << "a stream ends once";
                  completion = end;
              }))
    {
    }
    std::vector<int> counts() const
    {
        std::vector<int> result;
        for (auto& image : values.empty() ? std::vector<UIImage>() : values.back())
            result.push_back(countOf(image));
        return result;
    }
};

zelk::ThumbnailsByCount byCount(int count, CGSize size = {32, 32})
{
    return {.count = count,
            .maximumSize = size,
            .requestedTimeToleranceBefore = CMTime::zero(),
            .requestedTimeToleranceAfter = CMTime::zero()};
}

TEST(fetchFrame, picks_a_moment_by_the_length_of_the_asset)
{
    const struct {
        std::string seconds;
        int expected; // picture, 25 a second, modulo 256
    } cases[] = {{"0.8", 10}, {"1", 12}, {"1.04", 25}, {"15", 25}, {"15.04", 375 - 256}};
    for (auto& [seconds, expected] : cases) {
        auto asset = videoAsset("mp4", countedVideo(seconds, allKeys));
        auto frame = zelk::fetchFrame(asset, {.maximumSize = CGSize{32, 0}});
        ASSERT_TRUE(frame) << seconds;
        EXPECT_EQ(countOf(*frame), expected) << seconds;
        EXPECT_EQ(frame->size(), (CGSize{32, 24}));
    }
    auto asset = videoAsset("mp4", countedVideo("1", allKeys));
    auto frame = zelk::fetchFrame(asset, {.at = CMTime(7, 25)});
    ASSERT_TRUE(frame);
    EXPECT_EQ(countOf(*frame), 7);
    EXPECT_EQ(frame->size(), (CGSize{64, 48}));
    auto missing = zelk::fetchFrame(std::make_shared<LongAsset>(CMTime(5, 1)));
    EXPECT_EQ(missing.error(), Error(AVError::noSourceTrack));
}

TEST(thumbnailsPublisher, grows_by_one_thumbnail_from_the_start_to_a_step_before_the_end_and_stays_open)
{
    VirtualClock clock;
    auto asset = videoAsset("mp4", countedVideo("10", allKeys));
    const struct {
        int count;
        std::vector<int> expected;
    } cases[] = {{4, {0, 62, 125, 187}}, {1, {0}}, {0, {}}, {-3, {}}};
    for (auto& [count, expected] : cases) {
        SCOPED_TRACE(count);
        Received received(zelk::thumbnailsPublisher(asset, byCount(count)));
        EXPECT_TRUE(received.values.empty()) << "nothing comes before the main queue has its turn";
        clock.settleWithBackgroundQueues();
        EXPECT_EQ(received.counts(), expected);
        EXPECT_EQ(received.values.size(), expected.size());
        for (std::size_t i = 0; i < received.values.size(); ++i)
            EXPECT_EQ(received.values[i].size(), i + 1);
        EXPECT_FALSE(received.completion);
    }
}

TEST(thumbnailsPublisher, delivers_times_in_their_order_and_fails_at_the_first_without_a_picture)
{
    VirtualClock clock;
    auto asset = videoAsset("mp4", countedVideo("10", allKeys));
    zelk::ThumbnailsAtTimes request{.times = {9, 0.04, 5, 0.04},
                                    .maximumSize = {-1, 24},
                                    .requestedTimeToleranceBefore = CMTime::zero(),
                                    .requestedTimeToleranceAfter = CMTime::zero()};
    Received received(zelk::thumbnailsPublisher(asset, request));
    Received cancelled(zelk::thumbnailsPublisher(asset, request));
    cancelled.subscription.cancel();
    clock.settleWithBackgroundQueues();
    EXPECT_EQ(received.counts(), (std::vector{1, 1, 125, 225}));
    EXPECT_EQ(received.values.back().front().size(), (CGSize{32, 24}));
    EXPECT_TRUE(cancelled.values.empty());

    request.times = {0, 30, 40};
    Received failing(zelk::thumbnailsPublisher(asset, request));
    clock.settleWithBackgroundQueues();
    EXPECT_EQ(failing.values.size(), 1U);
    ASSERT_TRUE(failing.completion && failing.completion->error());
    EXPECT_EQ(*failing.completion->error(), Error(AVError::noImageAtTime));
}

TEST(thumbnailsPublisher, finishes_with_nothing_and_a_line_in_the_log_when_there_is_nothing_to_spread)
{
    VirtualClock clock;
    const struct {
        CMTime duration;
        CGSize size;
        std::string expected;
    } cases[] = {
        {CMTime::zero(), {0, 0}, "invalid duration: 0.000000"},
        {CMTime(-3, 2), {9, 9}, "invalid duration: -1.500000"},
        {CMTime::invalid(), {9, 9}, "invalid duration: nan"},
        {CMTime::indefinite(), {9, 9}, "invalid duration: nan"},
        {CMTime::positiveInfinity(), {9, 9}, "invalid duration: inf"},
        {CMTime(1, 1), {0, 100}, "invalid size: (0.0, 100.0)"},
        {CMTime(1, 1), {12.5, -0.0}, "invalid size: (12.5, -0.0)"},
    };
    for (auto& [duration, size, expected] : cases) {
        SCOPED_TRACE(expected);
        std::vector<std::string> lines;
        LogCapture capture([&lines](const LogRecord& record) {
            if (record.level == LogLevel::error)
                lines.push_back(std::string(record.subsystem) + " " + std::string(record.category) + ": "
                                + std::string(record.message));
        });
        Received received(zelk::thumbnailsPublisher(std::make_shared<LongAsset>(duration), byCount(3, size)));
        ASSERT_EQ(received.values.size(), 1U);
        EXPECT_TRUE(received.values[0].empty());
        EXPECT_TRUE(received.completion && received.completion->isFinished());
        ASSERT_EQ(lines.size(), 1U);
        EXPECT_TRUE(lines[0].ends_with(".zelkKit main: asked to generate thumbnails with " + expected))
            << lines[0];
    }
}

} // namespace
