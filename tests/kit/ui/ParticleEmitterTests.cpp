// SPDX-License-Identifier: MIT
#include "kit/ui/ParticleEmitterView.h"
#include "platform/dispatch/DisplayLink.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/VirtualClock.h"
#include "platform/foundation/ProcessInfo.h"
#include "platform/swiftui/swiftui.h"
#include "tests/support/harness/DeclarativeHarness.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using zelk::ParticleEmitterView;
using Model = zelk::ParticleEmitterViewModel;

// Gives the same number again and again.
struct Constant : RandomNumberGenerator {
    std::uint64_t number = 0;
    std::uint64_t next() override { return number; }
};

std::shared_ptr<Model> measured(std::vector<std::string> names = {"star"}, CGSize size = {100, 200})
{
    auto model = std::make_shared<Model>(std::move(names));
    model->viewSize = size;
    return model;
}

TEST(ParticleEmitterViewModel, emits_five_then_one_each_interval_and_takes_each_away_after_31_seconds)
{
    const struct {
        Duration time;
        std::size_t once, startedTwice;
    } cases[]{{0ms, 1, 2},       {749ms, 1, 2},     {750ms, 2, 4},   {3000ms, 5, 10},
              {3499ms, 5, 10},   {3500ms, 6, 11},   {7000ms, 7, 12}, {30999ms, 13, 18},
              {31000ms, 12, 16}, {31500ms, 13, 17}, {34000ms, 9, 9}, {34500ms, 8, 8}};
    for (bool twice : {false, true}) {
        VirtualClock clock;
        auto model = measured();
        model->start();
        if (twice)
            model->start();
        Duration passed{};
        clock.settle();
        for (auto& each : cases) {
            clock.advance(each.time - std::exchange(passed, each.time));
            EXPECT_EQ(model->particles->size(), twice ? each.startedTwice : each.once)
                << each.time.count() / 1'000'000 << " ms" << (twice ? ", started twice" : "");
        }
        EXPECT_FALSE(model->isRunning);
    }
}

TEST(ParticleEmitterViewModel, draws_from_closed_ranges_of_its_size)
{
    VirtualClock clock;
    Constant random;
    auto emitted = [&](std::uint64_t number) {
        random.number = number;
        auto owner = std::make_shared<Model>(std::vector<std::string>{"first", "second"}, random);
        owner->viewSize = {100, 200};
        std::vector<CGPoint> positions;
        auto watching = owner->particles.publisher().sink([&](const auto& all) {
            if (!all.empty())
                positions.push_back(all.back().position);
        });
        owner->emit();
        return std::tuple{positions, owner->particles->back().color.color,
                          owner->particles->back().systemImageName};
    };
    using Positions = std::vector<CGPoint>;
    // A product that is small enough is drawn again, so the lowest number is a little more than nothing.
    constexpr auto lowest = std::uint64_t{1} << 10;
    EXPECT_EQ(emitted(lowest), (std::tuple{Positions{{0, 220}, {-20, -20}}, UIColor::systemBlue(), "first"}));
    EXPECT_EQ(emitted(~0ULL),
              (std::tuple{Positions{{100, 220}, {120, -20}}, UIColor::systemCyan(), "second"}));
    SystemVersionOverride older({14, 0, 0});
    EXPECT_EQ(std::get<1>(emitted(~0ULL)), UIColor::systemBrown());
}

TEST(ParticleEmitterViewModel, waits_for_a_size_and_a_name)
{
    const struct {
        const char* name;
        std::vector<std::string> names;
        CGSize size;
    } cases[]{{"no size", {"star"}, {}},
              {"no height", {"star"}, {100, 0}},
              {"less than no width", {"star"}, {-1, 100}},
              {"no number", {"star"}, {std::nan(""), 100}},
              {"no end", {"star"}, {100, std::numeric_limits<double>::infinity()}},
              {"no names", {}, {100, 100}}};
    for (auto& each : cases) {
        VirtualClock clock;
        auto model = measured(each.names, each.size);
        model->start();
        clock.advance(20s);
        EXPECT_TRUE(model->particles->empty()) << each.name;
        if (each.names.empty())
            continue;
        model->viewSize = {10, 10};
        clock.advance(1s);
        EXPECT_EQ(model->particles->size(), 1) << each.name << ", then measured";
    }
}

TEST(ParticleEmitterViewModel, that_is_stopped_still_emits_what_was_begun_and_ends_by_itself)
{
    VirtualClock clock;
    auto model = measured();
    std::weak_ptr watched = model;
    model->start();
    clock.advance(1s);
    model->stop();
    EXPECT_TRUE(model->particles->empty());
    clock.advance(9s);
    EXPECT_EQ(model->particles->size(), 3);
    model.reset();
    EXPECT_FALSE(watched.expired()) << "its removals hold it";
    clock.advance(31s);
    EXPECT_TRUE(watched.expired());
}

// --- On screen -------------------------------------------------------------------------------------

TEST(ParticleEmitterView, raises_a_picture_from_below_its_bottom_edge_to_above_its_top)
{
    harness::DeclarativeHarness harness({200, 200});
    harness.show(ParticleEmitterView{{"circle.fill"}});
    constexpr double speed = 240.0 / 30;      // points a second
    constexpr double radius = 40 * 10.1 / 24; // of the picture's ink
    harness.settle();
    for (int seconds = 5; seconds <= 25; seconds += 5) {
        harness.advance(5s);
        auto top = harness::inkBounds(harness.snapshot()).minY();
        // Some of the five drift out at a side, whole or in part: then one is the highest that came later, by 0.75 seconds
        // each.
        auto behind = top - std::max(0.0, 220 - speed * seconds - radius);
        EXPECT_GE(behind, -1.5) << seconds << " s";
        EXPECT_LE(behind, 4 * 6 + 1.5) << seconds << " s";
    }
}

TEST(ParticleEmitterView, leaves_nothing_behind_when_it_goes)
{
    harness::DeclarativeHarness harness({200, 200});
    auto root = [](bool isShown) {
        return when(isShown, [] { return ParticleEmitterView{{"star.fill", "no such symbol"}}; });
    };
    auto controller = harness.show(root(true));
    harness.advance(10s);
    EXPECT_TRUE(DisplayLink::shared().isRunning());
    controller->setRootView(root(false));
    harness.advance(100ms);
    EXPECT_FALSE(DisplayLink::shared().isRunning());
    EXPECT_TRUE(harness::inkBounds(harness.snapshot()).isEmpty());
    harness.advance(32s);
    EXPECT_FALSE(RunLoop::main().nextDeadline()) << "no timer is left";
}

} // namespace
