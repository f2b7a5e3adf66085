// SPDX-License-Identifier: MIT
#include "platform/uikit/UIScrollView.h"

#include "platform/dispatch/DisplayLink.h"
#include "platform/uikit/ScrollIndicatorView.h"
#include "platform/uikit/UIPanGestureRecognizer.h"
#include "tests/platform/uikit/TouchTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>

namespace platform {
namespace {

constexpr auto nan = std::numeric_limits<CGFloat>::quiet_NaN();

UITraitCollection still()
{
    return {.prefersReducedMotion = true};
}

struct Scrolling : Stage {
    std::shared_ptr<UIScrollView> view;

    explicit Scrolling(UITraitCollection traits = {}, CGSize content = {200, 2000})
        : Stage({400, 400}, traits)
        , view(add<UIScrollView>(CGRect::make(0, 0, 200, 200)))
    {
        view->setContentSize(content);
        window->layoutNow();
    }
    CGFloat y() const { return view->contentOffset().y; }
    bool wheel(CGFloat dy, bool isPrecise = false, CGFloat dx = 0)
    {
        return window->sendScroll(
            {.delta = {dx, -dy}, .isPrecise = isPrecise, .modifiers = {}, .windowLocation = {100, 100}});
    }
    std::shared_ptr<ScrollIndicatorView> bar() const
    {
        for (auto& subview : view->subviews())
            if (auto found = std::dynamic_pointer_cast<ScrollIndicatorView>(subview))
                return found;
        return nullptr;
    }
};

TEST(UIScrollView, TheOffsetStaysInsideOfTheContent)
{
    const std::tuple<std::string_view, CGPoint, CGPoint> cases[] = {
        {"inside", {0, 500}, {0, 500}},
        {"the end", {0, 1800}, {0, 1800}},
        {"past the end", {0, 1e9}, {0, 1800}},
        {"before the start", {-50, -50}, {0, 0}},
        {"no number", {nan, 7}, {0, 0}},
        {"infinite", {0, std::numeric_limits<CGFloat>::infinity()}, {0, 0}},
    };
    for (auto& [name, wanted, got] : cases) {
        Scrolling stage;
        stage.view->setContentOffset(wanted);
        EXPECT_EQ(stage.view->contentOffset(), got) << name;
    }
}

TEST(UIScrollView, ContentThatShrinksBringsItsEndBack)
{
    Scrolling stage;
    stage.view->setContentOffset({0, 1800});
    stage.view->setContentSize({200, 1000});
    EXPECT_EQ(stage.y(), 800);
    stage.view->setFrame(CGRect::make(0, 0, 200, 500));
    stage.window->layoutNow();
    EXPECT_EQ(stage.y(), 500);
    stage.view->setContentSize({-5, nan});
    EXPECT_EQ(stage.view->contentSize(), CGSize{});
    EXPECT_EQ(stage.y(), 0);
}

TEST(UIScrollView, InsetsAndTheSafeAreaExtendWhereItScrolls)
{
    Scrolling stage({}, {200, 400});
    stage.view->setContentInset({10, 0, 30, 0});
    EXPECT_EQ(stage.y(), -10); // the start stays the start
    stage.view->setContentOffset({0, 1000});
    EXPECT_EQ(stage.y(), 230);
    stage.window->setBaseSafeAreaInsets({20, 0, 0, 0});
    stage.view->setContentOffset({0, -1000});
    EXPECT_EQ(stage.y(), -30);
    stage.view->setContentInsetAdjustmentBehavior(ContentInsetAdjustmentBehavior::never);
    EXPECT_EQ(stage.y(), -10);
    stage.view->setContentSize({200, 50}); // does not scroll
    stage.view->setContentInsetAdjustmentBehavior(ContentInsetAdjustmentBehavior::automatic);
    EXPECT_EQ(stage.view->adjustedContentInset().top, 10);
}

TEST(UIScrollView, ScrollsAsLittleAsNeededToShowARectangle)
{
    const std::tuple<std::string_view, CGFloat, CGRect, CGFloat> cases[] = {
        {"seen already", 100, CGRect::make(0, 150, 10, 10), 100},
        {"above", 100, CGRect::make(0, 50, 10, 10), 50},
        {"below", 100, CGRect::make(0, 350, 10, 10), 160},
        {"larger than the view shows its start", 100, CGRect::make(0, 150, 10, 900), 150},
        {"nowhere", 100, CGRect::null(), 100},
        {"no number", 100, CGRect::make(0, nan, 10, 10), 100},
    };
    for (auto& [name, from, rect, to] : cases) {
        Scrolling stage;
        stage.view->setContentOffset({0, from});
        stage.view->scrollRectToVisible(rect);
        EXPECT_EQ(stage.y(), to) << name;
    }
}

TEST(UIScrollView, AnAnimatedOffsetArrivesInTimeAndTellsSo)
{
    struct Delegate : UIScrollViewDelegate {
        int scrolls = 0, ends = 0;
        void scrollViewDidScroll(UIScrollView&) override { ++scrolls; }
        void scrollViewDidEndScrollingAnimation(UIScrollView&) override { ++ends; }
    };
    Scrolling stage;
    auto delegate = std::make_shared<Delegate>();
    stage.view->setDelegate(delegate);
    stage.view->setContentOffset({0, 500}, Animated::yes);
    EXPECT_EQ(stage.y(), 0);
    stage.clock.advance(100ms);
    EXPECT_GT(stage.y(), 10);
    EXPECT_LT(stage.y(), 490);
    stage.clock.advance(1s);
    EXPECT_EQ(stage.y(), 500);
    EXPECT_GT(delegate->scrolls, 5);
    EXPECT_EQ(delegate->ends, 1);
    stage.clock.advance(5s);
    EXPECT_FALSE(DisplayLink::shared().isRunning()); // indicators included
}

TEST(UIScrollView, WheelNotchesAddUpSmoothlyAndTouchpadsMoveItAtOnce)
{
    Scrolling stage;
    EXPECT_TRUE(stage.wheel(51));
    EXPECT_EQ(stage.y(), 0);
    stage.clock.advance(20ms);
    EXPECT_GT(stage.y(), 0);
    EXPECT_LT(stage.y(), 51);
    stage.wheel(51);
    stage.clock.advance(1s);
    EXPECT_EQ(stage.y(), 102);
    for (int i = 0; i < 10; ++i)
        stage.wheel(0.3, true); // parts of pixels add up
    EXPECT_EQ(stage.y(), 105);
}

TEST(UIScrollView, AWheelThatItCannotUseIsLeftToOthers)
{
    Scrolling stage(still());
    EXPECT_FALSE(stage.wheel(-51));          // at the start
    EXPECT_FALSE(stage.wheel(0, false, 30)); // nothing to scroll sideways
    EXPECT_FALSE(stage.wheel(nan));
    stage.view->setScrollEnabled(false);
    EXPECT_FALSE(stage.wheel(51));
    EXPECT_EQ(stage.y(), 0);
}

TEST(UIScrollView, WhatTheInnerOneCannotUseMovesTheOuterOne)
{
    Scrolling stage(still());
    auto inner = std::make_shared<UIScrollView>(CGRect::make(0, 0, 200, 150));
    inner->setContentSize({200, 200});
    stage.view->addSubview(inner);
    stage.window->layoutNow();
    stage.wheel(30);
    EXPECT_EQ(inner->contentOffset().y, 30);
    EXPECT_EQ(stage.y(), 0);
    stage.wheel(30);
    EXPECT_EQ(inner->contentOffset().y, 50);
    EXPECT_EQ(stage.y(), 10);
    stage.wheel(40);
    EXPECT_EQ(stage.y(), 50);
}

TEST(UIScrollView, AFingerDragsItAndItRunsOnAsPublished)
{
    Scrolling stage;
    stage.view->setContentSize({200, 100000});
    Finger finger(stage);
    finger.down({100, 180}).drag({100, 80});
    auto dragged = stage.y();
    EXPECT_NEAR(dragged, 100, 1); // from where the finger came down
    finger.up();
    EXPECT_TRUE(stage.view->isDecelerating());
    stage.clock.advance(10s);
    EXPECT_FALSE(stage.view->isDecelerating());
    EXPECT_NEAR(stage.y() - dragged, 1000 / (1000 * -std::log(0.998)), 30); // 1000 points a second
}

TEST(UIScrollView, ATouchHoldsWhatRunsAndAMouseDragMovesNothing)
{
    Scrolling stage;
    Finger finger(stage);
    finger.down({100, 180}).drag({100, 80}).up().wait(50ms);
    finger.down({100, 100});
    auto held = stage.y();
    EXPECT_FALSE(stage.view->isDecelerating());
    finger.wait(1s).up();
    EXPECT_EQ(stage.y(), held);
    Finger mouse(stage, UITouchType::mouse);
    mouse.down({100, 180}).drag({100, 80}).up();
    EXPECT_EQ(stage.y(), held);
}

TEST(UIScrollView, KeysScrollIt)
{
    struct Case {
        std::string_view name;
        UIKeyCode key;
        std::uint8_t modifiers;
        CGFloat from, to;
        bool isUsed = true;
    };
    using enum UIKeyCode;
    using Flags = UIKeyModifierFlags;
    const Case cases[] = {
        {"down", down, 0, 0, 34},
        {"up", up, 0, 100, 66},
        {"up at the start is left to others", up, 0, 0, 0, false},
        {"page down keeps two lines", pageDown, 0, 0, 166},
        {"page up", pageUp, 0, 500, 334},
        {"space", space, 0, 0, 166},
        {"shift space", space, Flags::shift, 500, 334},
        {"end", end, 0, 0, 1800},
        {"control home", home, Flags::control, 700, 0},
        {"alternate down", down, Flags::alternate, 0, 0, false},
        {"right has nowhere to go", right, 0, 0, 0, false},
        {"a letter", character, 0, 0, 0, false},
    };
    for (auto& test : cases) {
        SCOPED_TRACE(test.name);
        Scrolling stage(still());
        stage.view->setContentOffset({0, test.from});
        EXPECT_EQ(stage.view->pressesBegan({.key = test.key, .modifiers = {test.modifiers}}), test.isUsed);
        EXPECT_EQ(stage.y(), test.to);
    }
    Scrolling stage;
    stage.view->scrollByLines(2);
    stage.clock.advance(50ms);
    stage.view->scrollByLines(2); // goes on from the animation
    stage.clock.advance(1s);
    EXPECT_EQ(stage.y(), 68);
}

TEST(UIScrollView, KeysThatNobodyTookScrollTheInnermostThatCan)
{
    Scrolling stage(still());
    const auto inner = std::make_shared<UIScrollView>(CGRect::make(0, 0, 200, 100));
    inner->setContentSize({200, 120});
    stage.view->addSubview(inner);
    stage.window->layoutNow();
    const auto end = [&] { return stage.window->sendPress({.key = UIKeyCode::end}); };
    EXPECT_TRUE(end());
    EXPECT_EQ(inner->contentOffset().y, 20);
    EXPECT_EQ(stage.y(), 0);
    EXPECT_TRUE(end()); // the inner one is at its end
    EXPECT_EQ(stage.y(), 1800);
    EXPECT_FALSE(end());
    inner->setScrollEnabled(false);
    EXPECT_TRUE(stage.window->sendPress({.key = UIKeyCode::home}));
    EXPECT_EQ(inner->contentOffset().y, 20);
}

TEST(UIScrollView, GoesOnMovingWhenItsContentIsMovedBeneathIt)
{
    Scrolling stage;
    stage.wheel(200);
    stage.clock.advance(40ms);
    const auto before = stage.y();
    stage.view->moveContent({200, 2500}, {0, before + 500}); // something grew above
    stage.clock.advance(1s);
    EXPECT_NEAR(stage.y(), 700, 1);
}

TEST(ScrollIndicator, IsThereWhileItScrollsAndGoesAfterwards)
{
    Scrolling stage;
    stage.wheel(51);
    stage.clock.advance(500ms);
    ASSERT_TRUE(stage.bar());
    EXPECT_EQ(stage.bar()->presentationAlpha(), 1);
    stage.clock.advance(3s);
    EXPECT_EQ(stage.bar()->presentationAlpha(), 0);
    stage.window->sendHover({195, 100}); // where it was
    EXPECT_EQ(stage.bar()->presentationAlpha(), 1);
    stage.clock.advance(5s);
    EXPECT_EQ(stage.bar()->presentationAlpha(), 1); // under the pointer it stays
    stage.window->sendHover({100, 100});
    stage.clock.advance(5s);
    EXPECT_EQ(stage.bar()->presentationAlpha(), 0);
}

TEST(ScrollIndicator, PressingBesideItPagesUntilThePointerIsReachedAndDraggingMovesInProportion)
{
    Scrolling stage(still());
    stage.view->flashScrollIndicators();
    Finger mouse(stage, UITouchType::mouse);
    mouse.down({195, 100});
    EXPECT_EQ(stage.y(), 166);
    mouse.wait(5s);
    auto reached = stage.y();
    EXPECT_GT(reached, 600);
    EXPECT_LT(reached, 1100);
    mouse.up().wait(5s);
    EXPECT_EQ(stage.y(), reached);
    stage.view->setContentOffset({});
    stage.view->flashScrollIndicators();
    // The bar is 24 points long, of 196; at the start it is at the top.
    mouse.down({195, 10}).moveTo({195, 10 + (196 - 24) / 2.0});
    EXPECT_NEAR(stage.y(), 900, 1);
    mouse.moveTo({195, 1000});
    EXPECT_EQ(stage.y(), 1800);
    mouse.moveTo({195, -1000}).up();
    EXPECT_EQ(stage.y(), 0);
}

TEST(ScrollIndicator, StandsOnTheLeftWhereReadingBeginsOnTheRight)
{
    Scrolling stage;
    EXPECT_EQ(stage.bar()->frame().maxX(), 200);
    stage.view->setSemanticContentAttribute(UISemanticContentAttribute::forceRightToLeft);
    stage.view->setNeedsLayout();
    stage.window->layoutNow();
    EXPECT_EQ(stage.bar()->frame().minX(), 0);
}

TEST(UIScrollView, ADelegateMayTakeItAway)
{
    struct Remover : UIScrollViewDelegate {
        std::shared_ptr<UIScrollView> view;
        void scrollViewDidScroll(UIScrollView&) override
        {
            if (auto last = std::exchange(view, nullptr))
                last->removeFromSuperview();
        }
    };
    using Act = std::function<void(Scrolling&, UIScrollView&)>;
    constexpr auto mouse = UITouchType::mouse;
    const std::pair<std::string_view, Act> cases[] = {
        {"wheel", [](auto& stage, auto&) { stage.wheel(51); }},
        {"finger", [](auto& stage, auto&) { Finger(stage).down({100, 180}).drag({100, 80}).up(); }},
        {"key", [](auto&, auto& view) { view.scrollByPages(1); }},
        {"bar", [](auto& stage, auto&) { Finger(stage, mouse).down({195, 10}).drag({195, 150}, 2).up(); }},
    };
    for (auto& [name, act] : cases) {
        SCOPED_TRACE(name);
        Scrolling stage;
        stage.view->flashScrollIndicators();
        auto remover = std::make_shared<Remover>();
        remover->view = stage.view;
        stage.view->setDelegate(remover);
        std::weak_ptr<UIScrollView> gone = std::exchange(stage.view, nullptr);
        act(stage, *gone.lock());
        stage.clock.advance(5s);
        EXPECT_TRUE(gone.expired());
    }
}

} // namespace
} // namespace platform
