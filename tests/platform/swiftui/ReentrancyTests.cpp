// SPDX-License-Identifier: MIT
// Views that change the tree they stand in at the worst moment.
#include "tests/platform/swiftui/probes.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace probes;
using namespace std::chrono_literals;
using harness::ViewHarness;

// A leaf with what `decorate` makes of it, in the middle of 100 by 100, until `shown` says no.
template <class Decorate>
auto removable(const Handle<bool>& shown, Decorate decorate)
{
    return stateful(shown, true, [=](bool isShown) {
        return when(
            isShown, [&] { return decorate(Leaf("a", {40, 40})); }, [] { return Leaf("gone", {40, 40}); });
    });
}

template <class Decorate, class Act>
Log afterRemoving(Decorate decorate, Act act)
{
    auto shown = makeHandle<bool>();
    Shown harness({100, 100}, removable(shown, [&](Leaf leaf) {
                      return decorate(leaf, [shown] { (*shown)->set(false); });
                  }));
    act(harness);
    harness.advance(5s);
    harness.paintFrame();
    return harness.names();
}

TEST(View, can_be_removed_by_what_happens_to_itself)
{
    auto nothing = [](ViewHarness&) { };
    auto tap = [](ViewHarness& harness) { harness.tap({50, 50}); };
    auto drag = [](ViewHarness& harness) { harness.drag({50, 50}, {90, 50}); };
    auto press = [](ViewHarness& harness) {
        harness.down({50, 50});
        harness.advance(2s);
        harness.up();
    };
    using Remove = std::function<void()>;
    const Log gone{"gone"};
    EXPECT_EQ(afterRemoving([](Leaf leaf, Remove remove) { return leaf | onTapGesture(remove); }, tap), gone);
    EXPECT_EQ(
        afterRemoving([](Leaf leaf, Remove remove) { return leaf | onLongPressGesture(remove); }, press),
        gone);
    EXPECT_EQ(afterRemoving(
                  [](Leaf leaf, Remove remove) {
                      return leaf | gesture(DragGesture{}.onChanged([remove](auto&) { remove(); }))
                          | highPriorityGesture(TapGesture{}) | simultaneousGesture(DragGesture{});
                  },
                  drag),
              gone);
    EXPECT_EQ(afterRemoving(
                  [](Leaf leaf, Remove remove) {
                      return leaf | gesture(DragGesture{}.onCancelled(remove)) | onTapGesture(2, remove);
                  },
                  [](ViewHarness& harness) {
                      harness.down({50, 50});
                      harness.moveTo({80, 50});
                      harness.cancel();
                  }),
              gone);
    EXPECT_EQ(afterRemoving([](Leaf leaf, Remove remove) { return leaf | onAppear(remove); }, nothing), gone);
    EXPECT_EQ(afterRemoving(
                  [](Leaf leaf, Remove remove) {
                      return leaf | onAppear(remove) | onDisappear(remove)
                          | transition(AnyTransition::opacity().combined(AnyTransition::scale()));
                  },
                  nothing),
              gone);
    EXPECT_EQ(afterRemoving(
                  [](Leaf leaf, Remove remove) {
                      return leaf | onAppear([remove] { withAnimation(Animation::linear(1), remove); })
                          | transition(AnyTransition::slide());
                  },
                  nothing),
              gone);
    // By the completion of its own animation, and while that runs.
    for (auto time : {200ms, 2000ms}) {
        auto shown = makeHandle<bool>();
        Shown harness({100, 100}, removable(shown, [](Leaf leaf) { return leaf; }));
        UIView::animate(
            AnimationTiming::linear(1), [&] { harness.find("a").setAlpha(0); },
            [&](bool) { (*shown)->set(false); });
        harness.advance(time);
        (*shown)->set(false);
        harness.advance(5s);
        EXPECT_EQ(harness.names(), gone);
    }
}

TEST(View, can_be_removed_with_its_window_by_its_own_tap)
{
    ViewHarness harness({100, 100});
    harness.show(
        host(Leaf("a", {40, 40}) | onTapGesture([&] { harness.dropWindow(); }) | onDisappear([] {})));
    harness.down({50, 50});
    harness.up();
    harness.advance(1s);
}

// --- Changes during layout ---------------------------------------------------------------------------

// Counts itself up to a limit each time it is laid out.
struct Restless {
    int limit = 0;
    State<int> count{0};
    auto dynamicProperties() { return std::tie(count); }
    auto body() const
    {
        auto seen = count.get();
        return GeometryReader{[seen, most = limit, cell = count](const GeometryProxy&) {
            if (seen < most)
                cell.set(seen + 1);
            return Leaf(std::to_string(seen), {20.0 + seen % 2, 10});
        }};
    }
};

TEST(Layout, that_changes_state_comes_to_rest_where_the_state_does)
{
    Shown harness({100, 100}, Restless{.limit = 30});
    harness.settle();
    harness.find("30");
}

TEST(Layout, that_never_comes_to_rest_is_a_fault_that_stops_a_test_and_slows_a_program)
{
    EXPECT_DEATH(
        {
            Shown harness({100, 100}, Restless{.limit = 1'000'000'000});
            harness.advance(10s);
        },
        "rest");
}

// --- Interruption -----------------------------------------------------------------------------------

double brightnessAt(ViewHarness& harness, double x)
{
    return std::stoi(harness::colorAt(harness.snapshot(), {x, 5}).substr(0, 2), nullptr, 16) / 255.0;
}

TEST(LinearGradient, that_is_interrupted_goes_on_from_where_it_is_with_a_springs_speed)
{
    auto end = makeHandle<double>();
    Shown harness({100, 10}, stateful(end, 0.0, [](double now) {
                      return LinearGradient::ofColors({UIColor::black(), UIColor::white()}, {now - 1, 0},
                                                      {now, 0});
                  }));
    auto edge = [&] { return 100.0 * (1 - brightnessAt(harness, 0)); }; // where it is white
    withAnimation(Animation::linear(1), [&] { (*end)->set(0.8); });
    harness.advance(500ms);
    EXPECT_NEAR(edge(), 40, 2);
    withAnimation(Animation::spring(1, 1), [&] { (*end)->set(0); });
    harness.advance(0ms);
    EXPECT_NEAR(edge(), 40, 2);
    harness.advance(50ms);
    EXPECT_GT(edge(), 40) << "it overshoots before it turns";
    harness.advance(3s);
    EXPECT_NEAR(edge(), 0, 1);

    // Without an animation it is there at once, and what moved it moves it no more.
    withAnimation(Animation::linear(1), [&] { (*end)->set(0.8); });
    harness.advance(500ms);
    (*end)->set(0.2);
    EXPECT_NEAR(edge(), 20, 2);
    harness.advance(200ms);
    EXPECT_NEAR(edge(), 20, 2);
}

// --- Matched -----------------------------------------------------------------------------------------

TEST(Matched, begins_where_the_view_it_replaces_was)
{
    auto open = makeHandle<bool>();
    Shown harness({100, 100}, stateful(open, false, [](bool isOpen) {
                      return when(
                          isOpen, [] { return Leaf("large", {80, 40}) | matched("card"); },
                          [] { return Leaf("small", {20, 20}) | matched("card") | position({10, 10}); });
                  }));
    auto place = [&](std::string_view name) {
        auto& view = harness.find(name);
        return view.superview()->presentationFrame();
    };
    withAnimation(Animation::linear(1), [&] { (*open)->set(true); });
    harness.settle();
    EXPECT_EQ(place("large"), CGRect::make(0, 0, 20, 20));
    harness.advance(500ms);
    EXPECT_NEAR(place("large").midX(), 30, 1);
    EXPECT_NEAR(place("large").width(), 50, 1);
    withAnimation(Animation::linear(1), [&] { (*open)->set(false); });
    harness.settle();
    EXPECT_NEAR(place("small").midX(), 30, 1) << "from where the other one was on its way";
    harness.advance(2s);
    EXPECT_EQ(place("small"), CGRect::make(0, 0, 20, 20));
    harness.set(open, true);
    EXPECT_EQ(place("large"), CGRect::make(10, 30, 80, 40)) << "at once without an animation";
}

} // namespace
