// SPDX-License-Identifier: MIT
#include "tests/platform/swiftui/probes.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace probes;
using namespace std::chrono_literals;
using harness::ViewHarness;

auto say(const std::shared_ptr<Log>& log, const std::string& what)
{
    return [log, what] { log->push_back(what); };
}

// What the gesture is on stands in the middle of 100 by 100 and is 40 wide and high.
Leaf target()
{
    return Leaf("target", {40, 40});
}

TEST(TapGesture, is_taken_by_the_content_and_by_nothing_beside_it)
{
    auto log = std::make_shared<Log>();
    Shown harness({100, 100}, target() | frame({.width = 80, .height = 80}) | onTapGesture(say(log, "tap")));
    harness.tap({50, 50});
    EXPECT_EQ(*log, Log{"tap"});
    harness.tap({15, 15});
    EXPECT_EQ(*log, Log{"tap"}) << "the frame around it is empty";
    harness.tap({5, 5});
    EXPECT_EQ(*log, Log{"tap"});
}

TEST(TapGesture, is_taken_in_all_of_a_content_shape)
{
    auto log = std::make_shared<Log>();
    Shown harness({100, 100},
                  target() | frame({.width = 80, .height = 80}) | contentShape()
                      | onTapGesture(say(log, "tap")));
    harness.tap({15, 15});
    EXPECT_EQ(*log, Log{"tap"});
}

TEST(TapGesture, is_taken_where_content_is_seen_that_takes_no_touches_itself)
{
    auto log = std::make_shared<Log>();
    Shown harness({100, 100},
                  target() | allowsHitTesting(HitTesting::allowed) | onTapGesture(say(log, "tap")));
    harness.find("target").setUserInteractionEnabled(false); // as texts and colours are
    harness.tap({50, 50});
    EXPECT_EQ(*log, Log{"tap"});
}

TEST(TapGesture, waits_for_a_double_tap_on_the_same_place_whichever_is_outside)
{
    for (bool isDoubleOutside : {false, true}) {
        auto log = std::make_shared<Log>();
        ViewHarness harness({100, 100});
        auto show = [&](int inner, int outer) {
            harness.show(host(target() | onTapGesture(inner, say(log, std::to_string(inner)))
                              | onTapGesture(outer, say(log, std::to_string(outer)))));
        };
        isDoubleOutside ? show(1, 2) : show(2, 1);
        harness.tap({50, 50}, {.tapCount = 2});
        harness.advance(1s);
        EXPECT_EQ(*log, Log{"2"}) << isDoubleOutside;
        harness.tap({50, 50});
        harness.advance(1s);
        EXPECT_EQ(*log, (Log{"2", "1"})) << isDoubleOutside;
    }
}

TEST(TapGesture, runs_the_action_of_the_latest_description)
{
    auto handle = makeHandle<int>();
    auto log = std::make_shared<Log>();
    Shown harness({100, 100}, stateful(handle, 1, [=](int now) {
                      return target() | onTapGesture([=] {
                                 log->push_back(std::to_string(now));
                                 (*handle)->set(now + 1);
                             });
                  }));
    harness.tap({50, 50});
    harness.advance(1s);
    harness.tap({50, 50});
    EXPECT_EQ(*log, (Log{"1", "2"}));
}

TEST(TapGesture, of_disabled_content_does_nothing)
{
    auto isOff = makeHandle<bool>();
    auto log = std::make_shared<Log>();
    Shown harness({100, 100}, stateful(isOff, true, [log](bool now) {
                      return target() | onTapGesture(say(log, "tap")) | disabled(now);
                  }));
    harness.tap({50, 50});
    EXPECT_TRUE(log->empty());
    harness.set(isOff, false);
    harness.tap({50, 50});
    EXPECT_EQ(*log, Log{"tap"});
}

TEST(GesturePriority, decides_who_is_first_of_two_on_one_place)
{
    struct Case {
        std::string_view name;
        GesturePriority outer;
        Log expected;
    };
    for (auto& [name, outer, expected] : {
             Case{"the inner one is first", GesturePriority::normal, {"inner"}},
             Case{"a high one is first", GesturePriority::high, {"outer"}},
             Case{"simultaneous ones both", GesturePriority::simultaneous, {"inner", "outer"}},
         }) {
        auto log = std::make_shared<Log>();
        Shown harness({100, 100},
                      target() | onTapGesture(say(log, "inner"))
                          | GestureModifier<TapGesture>{TapGesture{}.onEnded(say(log, "outer")), outer});
        harness.tap({50, 50});
        harness.advance(1s);
        EXPECT_EQ(*log, expected) << name;
    }
}

TEST(LongPressGesture, ends_when_the_time_is_over_and_not_if_it_moved_or_left)
{
    auto log = std::make_shared<Log>();
    Shown harness({100, 100}, target() | onLongPressGesture(say(log, "pressed")));
    harness.down({50, 50});
    harness.advance(400ms);
    harness.up();
    EXPECT_TRUE(log->empty());
    harness.down({50, 50});
    harness.moveTo({65, 50});
    harness.advance(1s);
    harness.up();
    EXPECT_TRUE(log->empty());
    harness.down({50, 50});
    harness.advance(600ms);
    EXPECT_EQ(*log, Log{"pressed"});
    harness.up();
    EXPECT_EQ(log->size(), 1u);
}

// --- Drags -------------------------------------------------------------------------------------------

TEST(DragGesture, tells_of_its_way_in_the_views_or_in_the_windows_coordinates)
{
    struct Case {
        std::string_view name;
        CoordinateSpace space;
        CGPoint start;
    };
    for (auto& [name, space, start] : {
             Case{"local", CoordinateSpace::local, {20, 20}},
             Case{"global", CoordinateSpace::global, {50, 50}},
         }) {
        std::vector<DragGesture::Value> changes, ends;
        Shown harness({100, 100},
                      target()
                          | gesture(DragGesture{.minimumDistance = 5, .coordinateSpace = space}
                                        .onChanged([&](auto& value) { changes.push_back(value); })
                                        .onEnded([&](auto& value) { ends.push_back(value); })));
        harness.drag({50, 50}, {90, 70});
        ASSERT_EQ(ends.size(), 1u) << name;
        EXPECT_GE(changes.size(), 5u) << name;
        auto& end = ends.front();
        EXPECT_EQ(end.startLocation, start) << name;
        EXPECT_EQ(end.location, start + (CGPoint{40, 20})) << name;
        EXPECT_EQ(end.translation, (CGVector{40, 20})) << name;
        EXPECT_NEAR(end.velocity.dx, 200, 30) << name;
        EXPECT_GT(end.predictedEndTranslation.dx, 60) << name;
        EXPECT_GT(end.time, changes.front().time) << name;
    }
}

TEST(DragGesture, begins_after_its_distance_or_with_the_press_itself)
{
    for (auto distance : {0.0, 15.0}) {
        int changes = 0;
        Shown harness({100, 100},
                      target() | gesture(DragGesture{.minimumDistance = distance}.onChanged([&](auto&) {
                          ++changes;
                      })));
        harness.down({50, 50});
        EXPECT_EQ(changes, distance == 0 ? 1 : 0);
        harness.moveTo({60, 50});
        EXPECT_EQ(changes, distance == 0 ? 2 : 0);
        harness.moveTo({66, 50});
        EXPECT_EQ(changes, distance == 0 ? 3 : 1);
        harness.up();
    }
}

TEST(DragGesture, keeps_going_while_it_moves_its_own_view)
{
    auto place = makeHandle<double>();
    Shown harness(
        {200, 100}, stateful(place, 0.0, [place](double now) {
            return target() | offset({.x = now})
                | gesture(DragGesture{.minimumDistance = 0, .coordinateSpace = CoordinateSpace::global}
                              .onChanged([place](auto& value) { (*place)->set(value.translation.dx); }));
        }));
    harness.drag({100, 50}, {150, 50});
    EXPECT_EQ((*place)->get(), 50);
    EXPECT_EQ(harness.find("target").convertTo(CGPoint{}, nullptr).x, 130);
}

TEST(DragGesture, ends_in_exactly_one_of_end_and_cancellation)
{
    auto shown = makeHandle<bool>();
    auto log = std::make_shared<Log>();
    auto drag =
        DragGesture{}.onEnded([log](auto&) { log->push_back("end"); }).onCancelled(say(log, "cancel"));
    Shown harness({100, 100}, stateful(shown, true, [=](bool isShown) {
                      return when(
                          isShown, [&] { return target() | gesture(drag); }, [] { return Leaf("none"); });
                  }));
    harness.drag({50, 50}, {80, 50});
    harness.down({50, 50});
    harness.moveTo({80, 50});
    harness.cancel();
    EXPECT_EQ(*log, (Log{"end", "cancel"}));
    harness.down({50, 50});
    harness.moveTo({80, 50});
    harness.set(shown, false);
    harness.up();
    EXPECT_EQ(*log, (Log{"end", "cancel", "cancel"}));
}

} // namespace
