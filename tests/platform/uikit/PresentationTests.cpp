// SPDX-License-Identifier: MIT
#include "platform/uikit/UIPresentationController.h"

#include "platform/foundation/Logger.h"
#include "platform/uikit/AccessibilityNode_p.h"
#include "platform/uikit/AccessibilityNodes_p.h"
#include "platform/uikit/PresentationQueue.h"
#include "platform/uikit/UIButton.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using harness::ViewHarness;
using Log = std::vector<std::string>;
using Style = UIModalPresentationStyle;

class Talking : public UIViewController {
public:
    Talking(std::string name, Log& log)
        : name_(std::move(name))
        , log_(log)
    {
    }
    void viewWillAppear(Animated animated) override { say("willAppear", animated); }
    void viewDidAppear(Animated animated) override { say("didAppear", animated); }
    void viewWillDisappear(Animated animated) override { say("willDisappear", animated); }
    void viewDidDisappear(Animated animated) override { say("didDisappear", animated); }
    std::function<void(const std::string&)> onEvent;

private:
    void say(const std::string& what, Animated animated)
    {
        log_.push_back(name_ + " " + what + (animated == Animated::yes ? "~" : ""));
        if (onEvent)
            onEvent(what);
    }
    std::string name_;
    Log& log_;
};

struct Stage {
    Log log;
    ViewHarness harness;
    std::shared_ptr<Talking> root = std::make_shared<Talking>("A", log);

    Stage()
    {
        harness.show(root);
        log.clear();
    }
    std::shared_ptr<Talking> make(const std::string& name, Style style = Style::overFullScreen)
    {
        auto controller = std::make_shared<Talking>(name, log);
        controller->setModalPresentationStyle(style);
        return controller;
    }
    std::function<void()> say(std::string what)
    {
        return [this, what] { log.push_back(what); };
    }
    void settle()
    {
        harness.settle();
        harness.advance(1s);
    }
    std::string said()
    {
        std::string all;
        for (const auto& each : std::exchange(log, {}))
            all += (all.empty() ? "" : ", ") + each;
        return all;
    }
};

TEST(Presentation, brings_appearance_in_the_platforms_order)
{
    struct Case {
        Style style;
        Animated animated;
        std::string coming, going;
    };
    const Case cases[] = {
        {Style::overFullScreen, Animated::no, "B willAppear, B didAppear", "B willDisappear, B didDisappear"},
        {Style::pageSheet, Animated::yes, "B willAppear~, B didAppear~", "B willDisappear~, B didDisappear~"},
        {Style::fullScreen, Animated::yes, "A willDisappear~, B willAppear~, B didAppear~, A didDisappear~",
         "B willDisappear~, A willAppear~, A didAppear~, B didDisappear~"},
        {Style::fullScreen, Animated::no, "A willDisappear, B willAppear, B didAppear, A didDisappear",
         "B willDisappear, A willAppear, A didAppear, B didDisappear"},
    };
    for (const auto& test : cases) {
        Stage stage;
        auto b = stage.make("B", test.style);
        stage.root->present(b, test.animated, stage.say("shown"));
        stage.settle();
        EXPECT_EQ(stage.said(), test.coming + ", shown");
        EXPECT_EQ(stage.root->view()->window() == nullptr, test.style == Style::fullScreen);
        EXPECT_EQ(b->view()->window(), stage.harness.sharedWindow());
        b->dismiss(test.animated, stage.say("gone"));
        stage.settle();
        EXPECT_EQ(stage.said(), test.going + ", gone");
        EXPECT_EQ(b->view()->superview(), nullptr);
        EXPECT_EQ(stage.harness.window().subviews(), std::vector{stage.root->view()});
        EXPECT_EQ(stage.root->presentedViewController(), nullptr);
    }
}

TEST(Presentation, belongs_to_the_outermost_parent_and_refuses_a_second)
{
    Stage stage;
    auto child = stage.make("child"), b = stage.make("B"), outside = stage.make("outside");
    std::string logged;
    LogCapture capture([&](const LogRecord& record) { logged += record.message; });
    outside->present(b, Animated::no, stage.say("shown"));
    EXPECT_NE(logged.find("in no window"), logged.npos);

    stage.root->addChild(child);
    stage.root->view()->addSubview(child->view());
    child->present(b, Animated::no);
    stage.settle();
    EXPECT_EQ(stage.root->presentedViewController(), b);
    EXPECT_EQ(child->presentedViewController(), b);
    EXPECT_EQ(b->presentingViewController(), stage.root);
    logged.clear();
    child->present(stage.make("second"), Animated::no, stage.say("second shown"));
    EXPECT_NE(logged.find("presenting already"), logged.npos);
    stage.settle();
    EXPECT_EQ(stage.root->presentedViewController(), b);
    EXPECT_EQ(std::ranges::count(stage.log, "second shown"), 0);

    // Who waits comes when the way is free, one after the other.
    for (const auto* name : {"C", "D"})
        PresentationQueue::perform(*child, [&, name] { child->present(stage.make(name), Animated::no); });
    stage.log.clear();
    child->dismiss(Animated::no);
    stage.settle();
    child->dismiss(Animated::no);
    stage.settle();
    EXPECT_EQ(stage.said(),
              "B willDisappear, B didDisappear, C willAppear, C didAppear, C willDisappear, C didDisappear, "
              "D willAppear, D didAppear");
}

TEST(Presentation, takes_all_that_is_in_front_with_it)
{
    Stage stage;
    auto b = stage.make("B"), c = stage.make("C");
    stage.root->present(b, Animated::no);
    b->present(c, Animated::no);
    stage.settle();
    EXPECT_EQ(c->presentingViewController(), b);
    stage.log.clear();
    stage.root->dismiss(Animated::yes, stage.say("gone"));
    stage.settle();
    EXPECT_EQ(stage.log,
              (Log{"C willDisappear~", "C didDisappear~", "B willDisappear", "B didDisappear", "gone"}));
    stage.root->dismiss(Animated::yes, stage.say("nothing to end"));
    EXPECT_EQ(stage.log.back(), "nothing to end");
}

TEST(Presentation, gives_the_view_back_as_it_was)
{
    for (auto style : {Style::pageSheet, Style::popover, Style::fullScreen}) {
        Stage stage;
        auto controller = stage.make("B", style);
        auto view = controller->view();
        view->setCornerRadius(3);
        view->setMaskedCorners({UIRectCorner::topLeft});
        stage.root->present(controller, Animated::yes);
        stage.harness.advance(1s);
        EXPECT_EQ(view->clipsToBounds() && view->cornerRadius() > 3, style != Style::fullScreen)
            << int(style);
        stage.root->dismiss(Animated::yes);
        stage.harness.advance(1s);
        EXPECT_EQ(view->cornerRadius(), 3) << int(style);
        EXPECT_EQ(view->maskedCorners(), UIRectCorner{UIRectCorner::topLeft}) << int(style);
        EXPECT_FALSE(view->clipsToBounds()) << int(style);
        EXPECT_TRUE(view->transform().isIdentity() && view->alpha() == 1) << int(style);
    }
}

TEST(Presentation, turns_back_from_where_it_is)
{
    Stage stage;
    auto b = stage.make("B");
    stage.root->present(b, Animated::yes, stage.say("shown"));
    stage.harness.settle();
    EXPECT_TRUE(b->isBeingPresented());
    stage.harness.advance(150ms);
    auto place = b->view()->presentationFrame().minY();
    EXPECT_GT(place, 0);
    EXPECT_LT(place, 480);
    b->dismiss(Animated::yes, stage.say("gone"));
    EXPECT_TRUE(b->isBeingDismissed());
    EXPECT_NEAR(b->view()->presentationFrame().minY(), place, 1) << "it jumped";
    stage.settle();
    EXPECT_EQ(stage.log, (Log{"B willAppear~", "B willDisappear~", "B didDisappear~", "shown", "gone"}));
}

TEST(Presentation, ends_with_what_it_stands_on)
{
    struct Case {
        const char* name;
        void (*pull)(Stage&);
    };
    const Case cases[] = {
        {"another root", [](Stage& s) { s.harness.window().setRootViewController(s.make("other")); }},
        {"the presenter's view out of the window", [](Stage& s) { s.root->view()->removeFromSuperview(); }},
        {"the presenter gone",
         [](Stage& s) {
             s.harness.window().setRootViewController(nullptr);
             s.root.reset();
         }},
        {"the window closed and gone",
         [](Stage& s) {
             s.harness.window().close();
             s.harness.dropWindow();
         }},
    };
    for (const auto& test : cases) {
        for (auto time : {0ms, 100ms, 1000ms}) {
            SCOPED_TRACE(test.name + std::to_string(time.count()));
            Stage stage;
            auto b = stage.make("B");
            stage.root->present(b, Animated::yes, stage.say("done"));
            stage.harness.advance(time);
            test.pull(stage);
            stage.harness.advance(1s);
            EXPECT_EQ(b->view()->window(), nullptr);
            EXPECT_EQ(b->presentingViewController(), nullptr);
            EXPECT_EQ(std::ranges::count(stage.log, "done"), 1);
            EXPECT_EQ(std::ranges::count(stage.log, "B didDisappear")
                          + std::ranges::count(stage.log, "B didDisappear~"),
                      1);
        }
    }
    // And by what it is told on the way.
    for (const auto* event : {"willAppear", "didAppear", "willDisappear"}) {
        SCOPED_TRACE(event);
        Stage stage;
        auto b = stage.make("B");
        b->onEvent = [&](const std::string& what) {
            if (what == event)
                stage.root->dismiss(Animated::no);
        };
        stage.root->present(b, Animated::yes);
        stage.settle();
        stage.root->dismiss(Animated::yes);
        stage.settle();
        EXPECT_EQ(b->view()->window(), nullptr);
        EXPECT_EQ(stage.harness.window().subviews().size(), 1u);
    }
}

std::string names(QAccessibleInterface& node)
{
    std::string found;
    for (int i = 0; i < node.childCount(); ++i)
        found += node.child(i)->text(QAccessible::Name).toStdString() + " " + names(*node.child(i));
    return found;
}

TEST(Presentation, keeps_keys_and_readers_inside_and_gives_the_keyboard_back)
{
    Stage stage;
    auto button = [](const char* title, double y) {
        auto made = std::make_shared<UIButton>();
        made->setTitle(title);
        made->setFrame(CGRect::make(10, y, 100, 40));
        return made;
    };
    auto behind = button("behind", 10), first = button("first", 100), last = button("last", 150);
    auto pressed = 0;
    behind->addAction([&](UIControl&) { ++pressed; }, {UIControlEvents::touchUpInside});
    stage.root->view()->addSubview(behind);
    ASSERT_TRUE(behind->becomeFirstResponder());
    auto b = stage.make("B");
    b->setTitle("B");
    b->view()->setSubviews({first, last});
    stage.root->present(b, Animated::no);
    stage.settle();

    EXPECT_EQ(stage.harness.window().firstResponder(), nullptr);
    EXPECT_FALSE(behind->becomeFirstResponder());
    for (const auto& expected : {first, last, first}) {
        stage.harness.press(UIKeyCode::tab);
        EXPECT_TRUE(expected->isFirstResponder());
    }
    stage.harness.tap({30, 30});
    EXPECT_EQ(pressed, 0);
    EXPECT_EQ(names(*AccessibilityNodes::node(stage.harness.window())), "B first last ") << "in a dialog";

    b->dismiss(Animated::yes);
    EXPECT_TRUE(behind->isFirstResponder()) << "as soon as it begins to go";
    stage.harness.tap({30, 30});
    EXPECT_EQ(pressed, 1);
    EXPECT_EQ(names(*AccessibilityNodes::node(stage.harness.window())), "behind ");
}

TEST(PresentationDeathTest, stops_the_process_for_what_cannot_be_presented)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    Stage stage;
    auto child = stage.make("child"), b = stage.make("B"), c = stage.make("C");
    stage.root->addChild(child);
    EXPECT_DEATH(stage.root->present(nullptr, Animated::no), "null controller");
    EXPECT_DEATH(stage.root->present(child, Animated::no), "another one contains");
    EXPECT_DEATH(stage.root->present(stage.root, Animated::no), "presented already");
    stage.root->present(b, Animated::no);
    EXPECT_DEATH(b->present(b, Animated::no), "presented already");
}

} // namespace
