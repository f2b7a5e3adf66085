// SPDX-License-Identifier: MIT
// What nobody can see costs nothing, and what the keyboard goes to is brought into sight.
#include "platform/uikit/ScreenSight.h"

#include "platform/dispatch/DisplayLink.h"
#include "platform/uikit/ControlLook.h"
#include "platform/uikit/UIButton.h"
#include "platform/uikit/UIScrollView.h"
#include "tests/platform/uikit/TouchTestSupport.h"

#include <array>
#include <gtest/gtest.h>

namespace platform {
namespace {

struct Endless : Stage {
    std::shared_ptr<UIScrollView> pane = add<UIScrollView>(CGRect::make(0, 0, 400, 400));
    std::shared_ptr<UIView> view = std::make_shared<UIView>(CGRect::make(0, 0, 100, 100));

    Endless()
    {
        pane->setClipsToBounds(true);
        pane->setContentSize({400, 2000});
        pane->addSubview(view);
        auto timing = AnimationTiming::linear(1);
        timing.repeatCount = std::numeric_limits<double>::infinity();
        UIView::animate(timing, [&] { view->setCenter({150, 50}); });
        clock.advance(100ms);
    }
    // Whether frames are still asked for, once those under way have been shown.
    bool runs()
    {
        clock.advance(100ms);
        return DisplayLink::shared().isRunning();
    }
};

TEST(ScreenSight, what_nobody_sees_asks_for_no_frames_and_comes_back_where_it_would_be)
{
    auto cover = std::make_shared<UIView>(CGRect::make(0, 0, 400, 400));
    cover->setBackgroundColor(UIColor::white());
    using Act = std::function<void(Endless&)>;
    const struct {
        const char* name;
        Act hide, show;
    } cases[]{
        {"hidden", [](auto& s) { s.view->setHidden(true); }, [](auto& s) { s.view->setHidden(false); }},
        {"in what is clear", [](auto& s) { s.pane->setAlpha(0); }, [](auto& s) { s.pane->setAlpha(1); }},
        {"scrolled away", [](auto& s) { s.pane->setContentOffset({0, 600}); },
         [](auto& s) { s.pane->setContentOffset({}); }},
        {"beside the window", [](auto& s) { s.pane->setFrame(CGRect::make(900, 0, 400, 400)); },
         [](auto& s) { s.pane->setFrame(CGRect::make(0, 0, 400, 400)); }},
        {"covered", [&](auto& s) { s.window->addSubview(cover); },
         [&](auto&) { cover->removeFromSuperview(); }},
        {"out of the window", [](auto& s) { s.pane->removeFromSuperview(); },
         [](auto& s) { s.window->addSubview(s.pane); }},
    };
    for (const auto& [name, hide, show] : cases) {
        SCOPED_TRACE(name);
        Endless stage;
        for (auto isPainted : {false, true}) { // all of the window is dirty until it is painted
            if (isPainted)
                (void)stage.window->takeDirtyRegion();
            EXPECT_TRUE(stage.runs());
            hide(stage);
            EXPECT_FALSE(stage.runs());
            stage.clock.advance(10s);
            show(stage);
            EXPECT_TRUE(stage.runs());
        }
        // 100 ms of each call above, and ten seconds twice: whole cycles, and 700 ms.
        EXPECT_NEAR(stage.view->presentationCenter().x, 50 + 70, 2);
    }
}

TEST(ScreenSight, a_movement_through_the_window_goes_on_outside_of_it_and_one_that_ends_unseen_ends)
{
    Stage stage;
    auto passing = stage.add<UIView>(CGRect::make(-200, 0, 100, 100));
    auto timing = AnimationTiming::linear(4);
    timing.repeatCount = std::numeric_limits<double>::infinity();
    UIView::animate(timing, [&] { passing->setCenter({1000, 50}); });
    stage.clock.advance(50ms);
    EXPECT_TRUE(DisplayLink::shared().isRunning()) << "it is about to come in";
    passing->removeFromSuperview();
    passing.reset();

    auto hidden = stage.add<UIView>(CGRect::make(0, 0, 10, 10));
    hidden->setHidden(true);
    std::vector<bool> completions;
    UIView::animate(
        AnimationTiming::linear(3), [&] { hidden->setAlpha(0.5); },
        [&](bool finished) { completions.push_back(finished); });
    stage.clock.advance(100ms);
    EXPECT_FALSE(DisplayLink::shared().isRunning());
    stage.clock.advance(2800ms);
    EXPECT_TRUE(completions.empty());
    stage.clock.advance(200ms);
    EXPECT_EQ(completions, std::vector{true});
    EXPECT_EQ(hidden->presentationAlpha(), 0.5);
}

TEST(ScreenSight, a_new_movement_ends_the_rest_of_others)
{
    Endless stage;
    auto inner = std::make_shared<UIView>(CGRect::make(0, 0, 10, 10));
    stage.view->addSubview(inner);
    (void)stage.window->takeDirtyRegion();
    stage.pane->setContentOffset({0, 600});
    EXPECT_FALSE(stage.runs());
    UIView::animate(AnimationTiming::linear(1), [&] { inner->setCenter({500, 5}); });
    EXPECT_FALSE(stage.runs());
    int completions = 0;
    UIView::animate(
        AnimationTiming::linear(2), [&] { stage.view->setCenter({50, 650}); }, [&](bool) { ++completions; });
    EXPECT_TRUE(stage.runs());
    stage.clock.advance(1s);
    EXPECT_NEAR(stage.view->presentationCenter().y, 50 + 600 * 0.55, 10);
    stage.clock.advance(1s);
    EXPECT_EQ(completions, 1);
}

TEST(Focus, brings_what_it_goes_to_into_sight_through_all_scroll_views)
{
    Stage stage;
    auto outer = stage.add<UIScrollView>(CGRect::make(0, 0, 400, 400));
    outer->setContentSize({400, 3000});
    auto inner = std::make_shared<UIScrollView>(CGRect::make(0, 1000, 400, 200));
    inner->setContentSize({400, 1000});
    outer->addSubview(inner);
    std::vector<std::shared_ptr<UIButton>> buttons;
    auto add = [&](UIView& parent, CGFloat y) {
        auto button = std::make_shared<UIButton>();
        button->setFrame(CGRect::make(0, y, 100, 40));
        parent.addSubview(button);
        buttons.push_back(std::move(button));
    };
    add(*outer, 100);
    add(*inner, 700);
    add(*outer, 2960);
    stage.window->layoutNow();
    const CGPoint offsets[][2]{
        {{0, 0}, {0, 0}}, // in sight already: nothing moves
        {{0, 1000 + 188 + 12 - 400}, {0, 700 + 40 + 12 - 200}},
        {{0, 2600}, {0, 552}}, // no margin below the end
    };
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        stage.window->sendPress({.key = UIKeyCode::tab});
        EXPECT_TRUE(buttons[i]->isFirstResponder()) << i;
        EXPECT_EQ(outer->contentOffset(), offsets[i][0]) << i;
        EXPECT_EQ(inner->contentOffset(), offsets[i][1]) << i;
    }
    stage.window->sendPress({.key = UIKeyCode::tab});
    EXPECT_EQ(outer->contentOffset(), (CGPoint{0, 88})) << "back to the first, with a margin above";
}

TEST(Focus, goes_through_what_scrolls_before_what_stands_beside_it)
{
    for (auto isMirrored : {false, true}) {
        Stage stage({400, 400},
                    {.layoutDirection = isMirrored ? UIUserInterfaceLayoutDirection::rightToLeft
                                                   : UIUserInterfaceLayoutDirection::leftToRight});
        std::vector<std::shared_ptr<UIButton>> buttons;
        for (auto side : {0, 1}) {
            auto pane = stage.add<UIScrollView>(CGRect::make(side * 200, 0, 200, 400));
            for (auto row : {0, 1}) {
                buttons.push_back(std::make_shared<UIButton>());
                buttons.back()->setFrame(CGRect::make(0, row * 200 + side * 100, 100, 40));
                pane->addSubview(buttons.back());
            }
        }
        for (auto index : isMirrored ? std::array{2, 3, 0, 1} : std::array{0, 1, 2, 3}) {
            stage.window->sendPress({.key = UIKeyCode::tab});
            EXPECT_TRUE(buttons[static_cast<std::size_t>(index)]->isFirstResponder()) << index;
        }
    }
}

TEST(LegibleColor, is_black_on_what_is_light_and_white_on_what_is_dark)
{
    const ColorAppearance light, dark{.isDark = true};
    const struct {
        const char* name;
        UIColor ground;
        UIColor inLight, inDark;
    } cases[]{
        {"yellow", UIColor::systemYellow(), UIColor::black(), UIColor::black()},
        {"orange", UIColor::systemOrange(), UIColor::black(), UIColor::black()},
        {"blue", UIColor::systemBlue(), UIColor::white(), UIColor::white()},
        {"indigo", UIColor::systemIndigo(), UIColor::white(), UIColor::white()},
        {"white", UIColor::white(), UIColor::black(), UIColor::black()},
        {"what the page shows through", UIColor::blue().withAlphaComponent(0.1), UIColor::black(),
         UIColor::white()},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        EXPECT_EQ(legibleColor(each.ground).resolved(light), each.inLight);
        EXPECT_EQ(legibleColor(each.ground).resolved(dark), each.inDark);
    }
}

} // namespace
} // namespace platform
