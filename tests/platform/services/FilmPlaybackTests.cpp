// SPDX-License-Identifier: MIT
#include "platform/services/FilmPlayback.h"

#include "platform/dispatch/VirtualClock.h"
#include "tests/support/CountedVideo.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;

struct Playing {
    VirtualClock clock;
    FilmPlayback playback;

    explicit Playing(const std::shared_ptr<AVURLAsset>& asset, double start = 0, CGSize size = {64, 48})
        : playback({.asset = asset,
                    .track = asset->tracksWithMediaType(AVMediaType::video).front(),
                    .start = start,
                    .end = 4,
                    .size = size})
    {
        clock.settleWithBackgroundQueues();
        EXPECT_FALSE(playback.isStarting());
    }
    std::optional<UIImage> at(double seconds)
    {
        auto picture = playback.pictureAt(seconds);
        clock.settleWithBackgroundQueues();
        return picture;
    }
};

TEST(FilmPlayback, gives_the_picture_of_each_moment_once)
{
    auto film = tests::videoAsset("mov", tests::countedVideo("4", "-c:v libx264 -qp 8 -g 10"));
    for (double start : {0.0, 1.3}) {
        Playing film_(film, start);
        for (double time = start; time < 3.9; time += 0.1) {
            auto picture = film_.at(time + 0.001);
            ASSERT_TRUE(picture) << time;
            EXPECT_NEAR(tests::countOf(*picture), std::floor(time * 25 + 0.025), 1);
            EXPECT_FALSE(film_.at(time + 0.002)) << "it was given";
        }
        EXPECT_TRUE(film_.at(10)) << "the last one stays to the end";
        EXPECT_FALSE(film_.at(11));
    }
}

TEST(FilmPlayback, goes_on_where_the_moment_is_when_it_has_fallen_behind)
{
    Playing film(tests::videoAsset("mov", tests::countedVideo("4", "-c:v libx264 -qp 8 -g 10")));
    EXPECT_TRUE(film.at(3)) << "what there was by then, though late";
    auto picture = film.at(3.05);
    ASSERT_TRUE(picture);
    EXPECT_NEAR(tests::countOf(*picture), 76, 1);
}

TEST(FilmPlayback, makes_pictures_upright_and_no_larger_than_they_are_shown)
{
    auto lying = tests::mediaFixture("mov", tests::countedVideo("4", "-c:v mpeg4"));
    auto turned = tests::videoAsset("mov", "-i " + lying + " -c copy -metadata:s:v:0 rotate=90");
    Playing film(turned, 0, {24, 24});
    auto picture = film.at(0);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->pixelWidth(), 18);
    EXPECT_EQ(picture->pixelHeight(), 24);
}

} // namespace
