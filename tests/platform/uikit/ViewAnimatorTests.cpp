// SPDX-License-Identifier: MIT
#include "platform/uikit/ViewAnimator.h"

#include "platform/dispatch/DisplayLink.h"
#include "tests/platform/uikit/TouchTestSupport.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

struct MovingView : Stage {
    std::shared_ptr<UIView> view = add<UIView>(CGRect::make(0, 0, 100, 100));
    std::vector<bool> completions;
    AnimationCompletion note = [this](bool finished) { completions.push_back(finished); };

    void moveTo(CGFloat x, const AnimationTiming& timing)
    {
        UIView::animate(timing, [&] { view->setCenter({x, 50}); }, note);
    }
    CGFloat x() const { return view->presentationCenter().x; }
};

TEST(ViewAnimator, TheScreenFollowsTheSetValueInTime)
{
    MovingView stage;
    EXPECT_FALSE(DisplayLink::shared().isRunning());
    stage.moveTo(150, AnimationTiming::linear(1));
    EXPECT_TRUE(DisplayLink::shared().isRunning());
    EXPECT_EQ(stage.view->center().x, 150);
    EXPECT_EQ(stage.x(), 50);
    stage.clock.advance(500ms);
    EXPECT_NEAR(stage.x(), 100, 2);
    EXPECT_TRUE(stage.completions.empty());
    stage.clock.advance(600ms);
    EXPECT_EQ(stage.x(), 150);
    EXPECT_FALSE(DisplayLink::shared().isRunning());
    EXPECT_EQ(stage.completions, std::vector{true});
}

TEST(ViewAnimator, EachFramePaintsWhereTheViewWasAndWhereItIs)
{
    MovingView stage;
    stage.moveTo(350, AnimationTiming::linear(1));
    stage.clock.advance(500ms);
    auto before = stage.view->presentationFrame();
    (void)stage.window->takeDirtyRegion();
    stage.clock.advance(50ms);
    auto after = stage.view->presentationFrame();
    auto dirty = stage.window->dirtyRegion().bounds();
    EXPECT_GT(after.minX(), before.minX());
    EXPECT_TRUE(dirty.contains(before.unionWith(after)));
}

TEST(ViewAnimator, AReplacedAnimationGoesOnFromWhereItIs)
{
    MovingView stage;
    stage.moveTo(150, AnimationTiming::linear(1));
    stage.clock.advance(500ms);
    auto present = stage.x();
    stage.moveTo(50, AnimationTiming::linear(1));
    EXPECT_NEAR(stage.x(), present, 1e-9);
    stage.clock.advance(10ms);
    EXPECT_EQ(stage.completions, std::vector{false});
    stage.clock.advance(2s);
    EXPECT_EQ(stage.x(), 50);
    EXPECT_EQ(stage.completions, (std::vector{false, true}));
}

TEST(ViewAnimator, ASpringTakesOverTheSpeedOfWhatItReplaces)
{
    MovingView stage;
    stage.moveTo(250, AnimationTiming::linear(1)); // 200 points a second
    stage.clock.advance(500ms);
    auto present = stage.x();
    stage.moveTo(50, AnimationTiming::spring(2, 1));
    stage.clock.advance(34ms);
    EXPECT_GT(stage.x(), present + 1); // still on its way out, although the target lies behind
    stage.clock.advance(10s);
    EXPECT_EQ(stage.x(), 50);
}

TEST(ViewAnimator, AChangeOutsideOfAnimationsIsOnScreenAtOnce)
{
    MovingView stage;
    stage.moveTo(150, AnimationTiming::linear(1));
    stage.clock.advance(500ms);
    stage.view->setCenter({300, 50});
    EXPECT_EQ(stage.x(), 300);
    UIView::animate(AnimationTiming::linear(1), [&] {
        UIView::performWithoutAnimation([&] { stage.view->setCenter({10, 50}); });
        EXPECT_NE(UIView::currentAnimation(), nullptr);
    });
    EXPECT_EQ(UIView::currentAnimation(), nullptr);
    EXPECT_EQ(stage.x(), 10);
}

TEST(ViewAnimator, CompletionsComeOnceWhateverHappens)
{
    using Act = std::function<void(MovingView&)>;
    const auto second = AnimationTiming::linear(1);
    const std::tuple<std::string_view, Act, bool> cases[] = {
        {"nothing was changed", [&](auto& stage) { UIView::animate(second, [] { }, stage.note); }, true},
        {"it takes no time", [](auto& stage) { stage.moveTo(150, AnimationTiming::linear(0)); }, true},
        {"the value is no other", [&](auto& stage) { stage.moveTo(50, second); }, true},
        {"it was removed",
         [&](auto& stage) {
             stage.moveTo(150, second);
             stage.view->removeAllAnimations();
         },
         false},
        {"the view left the window",
         [&](auto& stage) {
             stage.moveTo(150, second);
             stage.view->removeFromSuperview();
         },
         false},
        {"the view is gone",
         [&](auto& stage) {
             stage.moveTo(150, second);
             std::exchange(stage.view, nullptr)->removeFromSuperview();
         },
         false},
    };
    for (auto& [name, act, finished] : cases) {
        SCOPED_TRACE(name);
        MovingView stage;
        act(stage);
        EXPECT_TRUE(stage.completions.empty()); // never from inside
        stage.clock.advance(2s);
        EXPECT_EQ(stage.completions, std::vector{finished});
    }
}

TEST(ViewAnimator, ACompletionMayRemoveTheViewsThatMove)
{
    MovingView stage;
    std::weak_ptr<UIView> gone = stage.view;
    auto other = stage.add<UIView>(CGRect::make(0, 0, 10, 10));
    UIView::animate(
        AnimationTiming::linear(0.1), [&] { stage.view->setAlpha(0); },
        [&](bool) {
            other->removeFromSuperview();
            other.reset();
            stage.view->removeFromSuperview();
            stage.view.reset();
        });
    UIView::animate(AnimationTiming::linear(5), [&] { other->setAlpha(0); });
    stage.clock.advance(1s);
    EXPECT_TRUE(gone.expired());
    EXPECT_FALSE(DisplayLink::shared().isRunning());
}

TEST(ViewAnimator, EndlessRepetitionStopsWhenItIsReplaced)
{
    MovingView stage;
    auto timing = AnimationTiming::linear(1);
    timing.repeatCount = std::numeric_limits<double>::infinity();
    timing.autoreverses = true;
    UIView::animate(timing, [&] { stage.view->setAlpha(0); });
    stage.clock.advance(1500ms);
    EXPECT_NEAR(stage.view->presentationAlpha(), 0.5, 0.05);
    stage.clock.advance(60s);
    EXPECT_TRUE(stage.view->isAnimating());
    stage.view->setAlpha(1);
    EXPECT_EQ(stage.view->presentationAlpha(), 1);
    stage.clock.advance(1s);
    EXPECT_FALSE(DisplayLink::shared().isRunning());
}

} // namespace
} // namespace platform
