// SPDX-License-Identifier: MIT
// Recognisers driven by touches of a window.
#include "platform/uikit/UIHoverGestureRecognizer.h"
#include "platform/uikit/UILongPressGestureRecognizer.h"
#include "platform/uikit/UIPanGestureRecognizer.h"
#include "platform/uikit/UIPinchGestureRecognizer.h"
#include "platform/uikit/UITapGestureRecognizer.h"
#include "tests/platform/uikit/TouchTestSupport.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using State = UIGestureRecognizerState;

// Writes down the touches that reach it.
struct Target : UIView {
    std::string touches;
    void touchesBegan(UITouch&) override { touches += "b"; }
    void touchesMoved(UITouch&) override { touches += "m"; }
    void touchesEnded(UITouch&) override { touches += "e"; }
    void touchesCancelled(UITouch&) override { touches += "c"; }
};

struct Gestures : Stage {
    std::shared_ptr<Target> view = add<Target>(CGRect::make(50, 50, 200, 200));
    std::string log; // a word a call

    template <class Recognizer>
    std::shared_ptr<Recognizer> recognizer(std::string name, std::shared_ptr<UIView> on = nullptr)
    {
        auto made = std::make_shared<Recognizer>([this, name](UIGestureRecognizer& self) {
            static constexpr const char* states[] = {"?", "began", "changed", "ended", "cancelled", "failed"};
            log += name + ":" + states[static_cast<int>(self.state())] + " ";
        });
        (on ? on : view)->addGestureRecognizer(made);
        return made;
    }
};

struct TouchCase {
    std::string_view name;
    std::function<void(Finger&)> act;
    std::string log;
};

TEST(UITapGestureRecognizer, WhatCountsAsATap)
{
    const TouchCase cases[] = {
        {"down and up", [](auto& f) { f.tap({100, 100}); }, "tap:ended "},
        {"a little movement", [](auto& f) { f.down({100, 100}).moveTo({105, 103}).up(); }, "tap:ended "},
        {"too far", [](auto& f) { f.down({100, 100}).moveTo({120, 100}).moveTo({100, 100}).up(); }, ""},
        {"too long", [](auto& f) { f.down({100, 100}).wait(800ms).up(); }, ""},
        {"cancelled", [](auto& f) { f.down({100, 100}).cancel(); }, ""},
        {"outside", [](auto& f) { f.tap({300, 300}); }, ""},
        {"another button", [](auto& f) { f.down({100, 100}, UIPointerButton::secondary).up(); }, ""},
        {"one after one that failed", [](auto& f) { f.down({100, 100}).cancel().tap({100, 100}); },
         "tap:ended "},
    };
    for (auto& test : cases) {
        SCOPED_TRACE(test.name);
        Gestures stage;
        auto tap = stage.recognizer<UITapGestureRecognizer>("tap");
        Finger finger(stage, UITouchType::mouse);
        test.act(finger);
        EXPECT_EQ(stage.log, test.log);
        EXPECT_EQ(tap->state(), State::possible);
        EXPECT_EQ(tap->numberOfTouches(), 0u);
    }
}

TEST(UITapGestureRecognizer, ASingleTapThatWaitsForADoubleTap)
{
    const TouchCase cases[] = {
        {"comes when no second one follows", [](auto& f) { f.tap({100, 100}).wait(400ms); }, "single:ended "},
        {"is not told before", [](auto& f) { f.tap({100, 100}).wait(300ms); }, ""},
        {"gives way to two", [](auto& f) { f.tap({100, 100}).wait(100ms).tap({102, 100}).wait(1s); },
         "double:ended "},
        {"two in different places are no double tap",
         [](auto& f) { f.tap({60, 60}).wait(100ms).tap({200, 200}).wait(1s); }, "single:ended "},
    };
    for (auto& test : cases) {
        SCOPED_TRACE(test.name);
        Gestures stage;
        auto single = stage.recognizer<UITapGestureRecognizer>("single");
        auto twice = stage.recognizer<UITapGestureRecognizer>("double");
        twice->numberOfTapsRequired = 2;
        single->requireToFail(twice);
        Finger finger(stage);
        test.act(finger);
        EXPECT_EQ(stage.log, test.log);
    }
}

TEST(UILongPressGestureRecognizer, BeginsWhenTheTimeIsOverAndFollowsTheFinger)
{
    Gestures stage;
    auto press = stage.recognizer<UILongPressGestureRecognizer>("press");
    Finger finger(stage);
    finger.down({100, 100}).wait(400ms);
    EXPECT_EQ(stage.log, "");
    finger.wait(200ms).moveTo({150, 100});
    EXPECT_EQ(press->location(*stage.view), (CGPoint{100, 50}));
    finger.up();
    EXPECT_EQ(stage.log, "press:began press:changed press:ended ");
    EXPECT_EQ(std::exchange(stage.view->touches, ""), "bc") << "it takes the touch from its view";
    press->cancelsTouchesInView = false;
    finger.down({100, 100}).wait(600ms).up();
    EXPECT_EQ(stage.view->touches, "be");

    stage.log.clear();
    finger.down({100, 100}).moveTo({130, 100}).wait(1s).up();
    EXPECT_EQ(stage.log, "");
}

TEST(UIPanGestureRecognizer, TellsWayAndSpeedFromWhereTheFingerCameDown)
{
    Gestures stage;
    auto pan = stage.recognizer<UIPanGestureRecognizer>("pan");
    CGPoint speed;
    Finger finger(stage);
    finger.down({100, 100}).moveTo({105, 100});
    EXPECT_EQ(stage.log, "");
    finger.drag({205, 100});
    EXPECT_EQ(pan->translation(*stage.view), (CGPoint{105, 0}));
    EXPECT_NEAR(pan->velocity(*stage.view).x, 1000, 60); // 10 points in 10 ms
    pan->setTranslation({1, 2}, *stage.view);
    finger.moveTo({215, 100});
    EXPECT_EQ(pan->translation(*stage.view), (CGPoint{11, 2}));
    pan->onChange = [&](auto&) { speed = pan->velocity(*stage.view); };
    finger.wait(500ms).up();
    EXPECT_EQ(speed, CGPoint{}); // it rested before it left
}

TEST(UIPanGestureRecognizer, AFingerThatJoinsOrLeavesDoesNotMakeItJump)
{
    Gestures stage;
    auto pan = stage.recognizer<UIPanGestureRecognizer>("pan");
    Finger a(stage), b(stage);
    a.down({100, 100}).moveTo({120, 100});
    b.down({200, 200});
    EXPECT_EQ(pan->translation(*stage.view), (CGPoint{20, 0}));
    a.moveTo({140, 100}); // half of it: the middle of two fingers
    EXPECT_EQ(pan->translation(*stage.view), (CGPoint{30, 0}));
    b.up();
    EXPECT_EQ(pan->translation(*stage.view), (CGPoint{30, 0}));
    a.cancel();
    EXPECT_EQ(stage.log, "pan:began pan:changed pan:cancelled ");
}

TEST(UIPinchGestureRecognizer, ScalesWithTheDistanceOfTheFingers)
{
    Gestures stage;
    auto pinch = stage.recognizer<UIPinchGestureRecognizer>("pinch");
    Finger a(stage), b(stage);
    a.down({100, 100});
    b.down({150, 100}).moveTo({200, 100});
    EXPECT_NEAR(pinch->scale(), 2, 1e-9);
    b.up();
    a.up();
    EXPECT_EQ(stage.log, "pinch:began pinch:ended ");
}

TEST(UIHoverGestureRecognizer, FollowsThePointerOverItsView)
{
    Gestures stage;
    auto hover = stage.recognizer<UIHoverGestureRecognizer>("hover");
    stage.window->sendHover({100, 100});
    EXPECT_EQ(hover->location(*stage.view), (CGPoint{50, 50}));
    stage.window->sendHover({110, 100});
    stage.window->sendHover({10, 10});
    stage.window->sendHover({100, 100});
    stage.window->sendHoverExit();
    EXPECT_EQ(stage.log, "hover:began hover:changed hover:ended hover:began hover:ended ");
}

TEST(GestureArena, TheFirstToBeginKeepsOthersFromIt)
{
    for (auto simultaneously : {false, true}) {
        Gestures stage;
        auto inner = stage.recognizer<UIPanGestureRecognizer>("inner");
        auto outer = stage.recognizer<UIPanGestureRecognizer>("outer", stage.window);
        if (simultaneously)
            outer->shouldRecognizeSimultaneously = [](auto&, auto&) { return true; };
        Finger(stage).down({100, 100}).moveTo({130, 100}).up();
        EXPECT_EQ(stage.log,
                  simultaneously ? "inner:began outer:began inner:ended outer:ended "
                                 : "inner:began inner:ended ");
    }
}

TEST(GestureArena, OneThatMayNotBeginOrReceiveLeavesTheTouchToOthers)
{
    for (auto receives : {false, true}) {
        Gestures stage;
        auto inner = stage.recognizer<UIPanGestureRecognizer>("inner");
        stage.recognizer<UIPanGestureRecognizer>("outer", stage.window);
        inner->shouldBegin = [=](auto&) { return !receives; };
        inner->shouldReceive = [=](auto&, auto&) { return receives; };
        Finger(stage).down({100, 100}).moveTo({130, 100}).up();
        EXPECT_EQ(stage.log, "outer:began outer:ended ");
    }
}

TEST(GestureArena, WhatIsTakenAwayUnderWayEndsTheGesture)
{
    using Act = std::function<void(Gestures&, UIGestureRecognizer&, Finger&)>;
    const std::pair<std::string_view, Act> cases[] = {
        {"switched off", [](auto&, auto& pan, auto&) { pan.setEnabled(false); }},
        {"taken from its view",
         [](auto& stage, auto& pan, auto&) { stage.view->removeGestureRecognizer(pan); }},
        {"its view taken out",
         [](auto& stage, auto&, auto& finger) {
             stage.view->removeFromSuperview();
             finger.moveTo({140, 100});
         }},
    };
    for (auto& [name, act] : cases) {
        SCOPED_TRACE(name);
        Gestures stage;
        auto pan = stage.recognizer<UIPanGestureRecognizer>("pan");
        Finger finger(stage);
        finger.down({100, 100}).moveTo({130, 100});
        act(stage, *pan, finger);
        EXPECT_EQ(stage.log, "pan:began pan:cancelled ");
        finger.moveTo({150, 100}).up();
        finger.down({100, 100}).moveTo({130, 100}).up();
        EXPECT_EQ(stage.log, "pan:began pan:cancelled ");
    }
}

// What a callback may take away while it runs.
TEST(GestureArena, NothingThatACallbackTakesAwayIsUsedAfterwards)
{
    const std::pair<std::string_view, std::function<void(Gestures&, UIGestureRecognizer&)>> cases[] = {
        {"the view",
         [](auto& stage, auto&) {
             stage.view->removeFromSuperview();
             stage.view.reset();
         }},
        {"the recogniser", [](auto&, auto& self) { self.view()->removeGestureRecognizer(self); }},
        {"what it calls", [](auto&, auto& self) { self.onChange = {}; }},
        {"the window", [](auto& stage, auto&) { stage.window->close(); }},
        {"itself, by switching it off", [](auto&, auto& self) { self.setEnabled(false); }},
    };
    for (auto& [name, act] : cases)
        for (auto when : {State::began, State::changed, State::ended}) {
            SCOPED_TRACE(name);
            Gestures stage;
            int calls = 0;
            auto pan =
                std::make_shared<UIPanGestureRecognizer>([&, &takeAway = act](UIGestureRecognizer& self) {
                    if (self.state() == when && ++calls == 1)
                        takeAway(stage, self);
                });
            stage.view->addGestureRecognizer(pan);
            pan.reset();
            Finger(stage).down({100, 100}).moveTo({130, 100}).moveTo({150, 100}).moveTo({160, 100}).up();
            EXPECT_EQ(calls, 1);
        }
}

TEST(GestureArena, AWaitingTapGoesWithItsWindow)
{
    Gestures stage;
    auto tap = stage.recognizer<UITapGestureRecognizer>("double");
    tap->numberOfTapsRequired = 2;
    Finger(stage).tap({100, 100});
    stage.view.reset();
    stage.window.reset();
    stage.clock.advance(1s);
    EXPECT_EQ(tap->state(), State::possible);
    EXPECT_EQ(stage.log, "");
}

} // namespace
} // namespace platform
