// SPDX-License-Identifier: MIT
#include "tests/platform/swiftui/probes.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace probes;
using namespace std::chrono_literals;
using harness::ViewHarness;

constexpr auto frameTolerance = 0.03; // a frame of a second-long movement

// A leaf at the left or right end of a row 120 wide, moved by `animation` when that is set.
auto movable(const Handle<double>& place)
{
    return stateful(place, 0.0, [](double now) {
        return Leaf("a", {20 + now, 10})
            | frame({.width = 120, .alignment = {.horizontal = HorizontalAlignment::leading}});
    });
}

CGFloat shownWidth(ViewHarness& harness)
{
    return harness.find("a").presentationBounds().size.width;
}

TEST(WithAnimation, moves_places_from_where_they_are_to_where_they_go)
{
    auto place = makeHandle<double>();
    Shown harness(movable(place));
    EXPECT_FALSE(harness.find("a").isAnimating()) << "what comes first comes from nowhere";
    withAnimation(Animation::linear(1), [&] { (*place)->set(100); });
    harness.settle();
    EXPECT_EQ(harness.find("a").bounds().size.width, 120);
    EXPECT_NEAR(shownWidth(harness), 20, 100 * frameTolerance);
    harness.advance(500ms);
    EXPECT_NEAR(shownWidth(harness), 70, 100 * frameTolerance);
    harness.advance(600ms);
    EXPECT_EQ(shownWidth(harness), 120);
    EXPECT_FALSE(harness.find("a").isAnimating());
}

TEST(WithAnimation, animates_only_what_is_changed_in_it)
{
    auto place = makeHandle<double>();
    auto other = makeHandle<double>();
    Shown harness(movable(place)
                  | overlay(stateful(other, 5.0, [](double now) { return Leaf("b", {now, 5}); })));
    (*other)->set(50);
    withAnimation(Animation::linear(1), [&] { (*place)->set(100); });
    harness.settle();
    EXPECT_TRUE(harness.find("a").isAnimating());
    EXPECT_EQ(harness.find("b").presentationBounds().size.width, 50);
}

TEST(WithAnimation, shows_the_end_at_once_to_who_wants_no_motion)
{
    auto place = makeHandle<double>();
    Shown harness({200, 100}, {.prefersReducedMotion = true}, movable(place));
    withAnimation(Animation::linear(1), [&] { (*place)->set(100); });
    harness.settle();
    EXPECT_EQ(shownWidth(harness), 120);
}

TEST(WithAnimation, that_repeats_for_ever_goes_on_until_it_is_replaced)
{
    auto faded = makeHandle<bool>();
    Shown harness(stateful(faded, false, [faded](bool isFaded) {
        return Leaf("a") | opacity(isFaded ? 0 : 1) | onAppear([faded] {
                   withAnimation(Animation::linear(1).repeatForever(), [faded] { (*faded)->set(true); });
               });
    }));
    auto& group = *harness.find("a").superview();
    harness.advance(20s + 500ms);
    EXPECT_NEAR(group.presentationAlpha(), 0.5, frameTolerance);
    harness.advance(1s);
    EXPECT_NEAR(group.presentationAlpha(), 0.5, frameTolerance);
    withAnimation(std::nullopt, [&] { (*faded)->set(false); });
    harness.settle();
    EXPECT_EQ(group.presentationAlpha(), 1);
    EXPECT_FALSE(group.isAnimating());
}

TEST(WithAnimation, moves_colours_too)
{
    auto isDark = makeHandle<bool>();
    Shown harness(
        stateful(isDark, false, [](bool now) { return Color{now ? UIColor::black() : UIColor::white()}; }));
    withAnimation(Animation::linear(1), [&] { (*isDark)->set(true); });
    harness.advance(500ms);
    auto shown = harness.controller->view()->subviews().front()->presentationBackgroundColor();
    EXPECT_NEAR(shown.value().components().red, 0.5, frameTolerance);
}

// Notes the transaction that each update comes with.
struct Noting : UIViewRepresentable<Noting> {
    explicit Noting(std::shared_ptr<std::vector<Transaction>> log)
        : transactions(std::move(log))
    {
    }
    std::shared_ptr<std::vector<Transaction>> transactions;
    std::shared_ptr<UIView> makeUIView(const auto&) const { return std::make_shared<UIView>(); }
    void updateUIView(UIView&, const auto& context) const { transactions->push_back(context.transaction); }
};

TEST(WithAnimation, tells_representable_views_how_they_are_updated)
{
    auto handle = makeHandle<int>();
    auto log = std::make_shared<std::vector<Transaction>>();
    Shown harness(stateful(handle, 0, [log](int) { return Noting(log); }));
    withAnimation(Animation::linear(1), [&] { (*handle)->set(1); });
    harness.settle();
    harness.set(handle, 2);
    EXPECT_EQ(*log, (std::vector<Transaction>{{}, {.animation = Animation::linear(1)}, {}}));
}

TEST(RotationEffect, goes_round_when_it_is_animated)
{
    auto turned = makeHandle<bool>();
    Shown harness(stateful(turned, false, [](bool isTurned) {
        return Leaf("a") | rotationEffect(Angle::degrees(isTurned ? 360 : 0));
    }));
    auto& group = *harness.find("a").superview();
    withAnimation(Animation::linear(1), [&] { (*turned)->set(true); });
    harness.advance(500ms);
    EXPECT_NEAR(group.transform().a, -1, 0.1);
    harness.advance(600ms);
    EXPECT_NEAR(group.transform().a, 1, 1e-9);
}

TEST(AnimationModifier, animates_the_updates_in_which_its_value_changed)
{
    struct Model {
        double width = 0;
        int trigger = 0;
        bool operator==(const Model&) const = default;
    };
    auto model = makeHandle<Model>();
    Shown harness(stateful(model, Model{}, [](const Model& now) {
        return Leaf("a", {20 + now.width, 10}) | animation(Animation::linear(1), now.trigger)
            | overlay(Leaf("outside", {5 + now.width, 5}));
    }));
    harness.set(model, {.width = 50});
    EXPECT_EQ(shownWidth(harness), 70);
    (*model)->set({.width = 100, .trigger = 1});
    harness.advance(500ms);
    EXPECT_NEAR(shownWidth(harness), 95, 50 * frameTolerance);
    EXPECT_EQ(harness.find("outside").presentationBounds().size.width, 105);
}

TEST(AnimationModifier, without_an_animation_keeps_the_content_out_of_a_surrounding_one)
{
    auto width = makeHandle<double>();
    Shown harness(stateful(width, 0.0, [](double now) {
        return Leaf("a", {20 + now, 10}) | animation(std::nullopt, now)
            | overlay(Leaf("outside", {5 + now, 5}));
    }));
    withAnimation(Animation::linear(1), [&] { (*width)->set(100); });
    harness.settle();
    EXPECT_EQ(shownWidth(harness), 120);
    EXPECT_TRUE(harness.find("outside").isAnimating());
}

TEST(TransactionModifier, changes_what_updates_below_come_with)
{
    auto width = makeHandle<double>();
    Shown harness(
        stateful(width, 0.0, [](double now) { return Leaf("a", {20 + now, 10}); })
        | transaction([](Transaction& transaction) { transaction.animation = Animation::linear(2); }));
    (*width)->set(100);
    harness.advance(1s);
    EXPECT_NEAR(shownWidth(harness), 70, 100 * frameTolerance);
}

// --- Transitions -------------------------------------------------------------------------------------

auto arriving(const Handle<bool>& shown, AnyTransition how)
{
    return stateful(shown, false, [how](bool isShown) {
        return when(
            isShown, [&] { return Leaf("a", {40, 20}) | transition(how); }, [] { return Leaf("none"); });
    });
}

TEST(Transition, moves_what_comes_and_keeps_what_goes_until_it_has_gone)
{
    auto shown = makeHandle<bool>();
    Shown harness(arriving(shown, AnyTransition::opacity()));
    withAnimation(Animation::linear(1), [&] { (*shown)->set(true); });
    harness.advance(500ms);
    std::weak_ptr<UIView> group = harness.find("a").superview();
    EXPECT_NEAR(group.lock()->presentationAlpha(), 0.5, frameTolerance);
    harness.advance(1s);
    EXPECT_EQ(group.lock()->presentationAlpha(), 1);

    withAnimation(Animation::linear(1), [&] { (*shown)->set(false); });
    harness.advance(500ms);
    ASSERT_FALSE(group.expired());
    EXPECT_NEAR(group.lock()->presentationAlpha(), 0.5, frameTolerance);
    EXPECT_EQ(harness.controller->view()->subviews().back(), group.lock()) << "in front of what stays";
    EXPECT_TRUE(group.lock()->accessibility().isHidden) << "readers hear of what stays";
    harness.advance(600ms);
    EXPECT_TRUE(group.expired());
    EXPECT_EQ(harness.names(), Log{"none"});
}

TEST(Transition, without_an_animation_takes_no_time)
{
    auto shown = makeHandle<bool>();
    Shown harness(arriving(shown, AnyTransition::opacity()));
    harness.set(shown, true);
    EXPECT_EQ(harness.find("a").superview()->presentationAlpha(), 1);
    harness.set(shown, false);
    EXPECT_EQ(harness.names(), Log{"none"});
}

TEST(Transition, comes_from_its_edge_and_goes_where_it_is_told)
{
    struct Case {
        std::string_view name;
        AnyTransition transition;
        CGRect before, after; // of a view 40 by 20 in the middle of 100 by 100
        LayoutDirection direction = LayoutDirection::leftToRight;
    };
    for (auto& [name, how, before, after, direction] : {
             Case{"from above", AnyTransition::move(Edge::top), CGRect::make(30, 20, 40, 20),
                  CGRect::make(30, 20, 40, 20)},
             Case{"from below", AnyTransition::move(Edge::bottom), CGRect::make(30, 60, 40, 20),
                  CGRect::make(30, 60, 40, 20)},
             Case{"across", AnyTransition::slide(), CGRect::make(-10, 40, 40, 20),
                  CGRect::make(70, 40, 40, 20)},
             Case{"across, as Hebrew is read", AnyTransition::slide(), CGRect::make(70, 40, 40, 20),
                  CGRect::make(-10, 40, 40, 20), LayoutDirection::rightToLeft},
             Case{"from nothing", AnyTransition::scale(), CGRect::make(50, 50, 0, 0),
                  CGRect::make(50, 50, 0, 0)},
             Case{"small and aside", AnyTransition::scale(0.5).combined(AnyTransition::offset({10, 0})),
                  CGRect::make(50, 45, 20, 10), CGRect::make(50, 45, 20, 10)},
             Case{
                 "up and away",
                 AnyTransition::asymmetric(AnyTransition::move(Edge::bottom), AnyTransition::move(Edge::top)),
                 CGRect::make(30, 60, 40, 20), CGRect::make(30, 20, 40, 20)},
         }) {
        auto shown = makeHandle<bool>();
        Shown harness({100, 100},
                      arriving(shown, how) | platform::environment<LayoutDirectionKey>(direction));
        withAnimation(Animation::linear(1), [&] { (*shown)->set(true); });
        harness.settle();
        auto group = harness.find("a").superview();
        EXPECT_EQ(group->presentationFrame(), before) << name;
        harness.advance(2s);
        EXPECT_EQ(group->presentationFrame(), CGRect::make(30, 40, 40, 20)) << name;
        withAnimation(Animation::linear(1), [&] { (*shown)->set(false); });
        harness.settle();
        EXPECT_EQ(group->frame(), after) << name;
    }
}

TEST(Transition, of_views_that_follow_state_is_safe_while_they_go_and_after)
{
    auto shown = makeHandle<bool>();
    auto inner = makeHandle<int>();
    auto log = std::make_shared<Log>();
    Shown harness(stateful(shown, true, [=](bool isShown) {
        return when(
                   isShown,
                   [&] {
                       return stateful(inner, 0, [](int now) { return Leaf(std::to_string(now)); })
                           | onDisappear([log] { log->push_back("gone"); })
                           | transition(AnyTransition::opacity());
                   },
                   [] { return Leaf("none"); })
            | clipped();
    }));
    withAnimation(Animation::linear(1), [&] { (*shown)->set(false); });
    harness.advance(300ms);
    (*inner)->set(1);
    harness.advance(300ms);
    EXPECT_TRUE(log->empty());
    harness.advance(1s);
    EXPECT_EQ(*log, Log{"gone"});
    harness.set(inner, 2);
}

TEST(Transition, ends_with_the_group_or_the_host_that_it_happens_in)
{
    for (bool removesHost : {false, true}) {
        auto outer = makeHandle<bool>();
        auto shown = makeHandle<bool>();
        std::weak_ptr<UIView> group;
        Shown harness(stateful(outer, true, [=](bool isOuter) {
            return when(
                isOuter, [&] { return arriving(shown, AnyTransition::opacity()) | clipped(); },
                [] { return Leaf("x"); });
        }));
        harness.set(shown, true);
        group = harness.find("a").superview();
        withAnimation(Animation::linear(1), [&] { (*shown)->set(false); });
        harness.advance(100ms);
        EXPECT_FALSE(group.expired());
        harness.controller.reset();
        if (removesHost)
            harness.window().setRootViewController(std::make_shared<UIViewController>());
        else
            (*outer)->set(false);
        harness.settle();
        EXPECT_TRUE(group.expired()) << removesHost;
        harness.advance(2s);
    }
}

} // namespace
