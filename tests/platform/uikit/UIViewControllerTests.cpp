// SPDX-License-Identifier: MIT
#include "platform/uikit/UIViewController.h"

#include "platform/uikit/UIView.h"
#include "platform/uikit/UIWindow.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using harness::ViewHarness;
using Log = std::vector<std::string>;

class TalkingController : public UIViewController {
public:
    TalkingController(std::string name, Log& log)
        : name_(std::move(name))
        , log_(log)
    {
    }
    void loadView() override
    {
        say("loadView");
        UIViewController::loadView();
    }
    void viewDidLoad() override { say("viewDidLoad"); }
    void viewWillAppear(Animated) override { say("viewWillAppear"); }
    void viewDidAppear(Animated) override { say("viewDidAppear"); }
    void viewWillDisappear(Animated) override { say("viewWillDisappear"); }
    void viewDidDisappear(Animated) override { say("viewDidDisappear"); }
    void viewWillLayoutSubviews() override { say("viewWillLayoutSubviews"); }
    void viewDidLayoutSubviews() override { say("viewDidLayoutSubviews"); }
    void willMove(UIViewController* parent) override { say(parent ? "willMove(parent)" : "willMove(null)"); }
    void didMove(UIViewController* parent) override { say(parent ? "didMove(parent)" : "didMove(null)"); }

    std::function<void(const std::string&)> onEvent;

private:
    void say(const std::string& what)
    {
        log_.push_back(name_ + what);
        if (onEvent)
            onEvent(what);
    }
    std::string name_;
    Log& log_;
};

TEST(UIViewController, goes_through_its_life_in_the_platforms_order)
{
    Log log;
    ViewHarness harness;
    harness.show(std::make_shared<TalkingController>("", log));
    EXPECT_EQ(log,
              (Log{"loadView", "viewDidLoad", "viewWillAppear", "viewWillLayoutSubviews",
                   "viewDidLayoutSubviews", "viewDidAppear"}));
    log.clear();
    harness.window().setFrameSize({100, 100});
    harness.settle();
    EXPECT_EQ(log, (Log{"viewWillLayoutSubviews", "viewDidLayoutSubviews"}));
    log.clear();
    harness.window().close();
    EXPECT_EQ(log, (Log{"viewWillDisappear", "viewDidDisappear"}));
}

TEST(UIViewController, loads_its_view_when_it_is_asked_for_and_once)
{
    Log log;
    auto controller = std::make_shared<TalkingController>("", log);
    EXPECT_EQ(controller->viewIfLoaded(), nullptr);
    auto view = controller->view();
    EXPECT_EQ(controller->view(), view);
    EXPECT_EQ(view->next(), controller) << "a view's events go to it";
    EXPECT_EQ(log, (Log{"loadView", "viewDidLoad"}));
}

// Each row adds a child in another order; in each the child must get the same appearance, inside of its parent's.
TEST(UIViewController, lets_a_child_appear_with_its_parent_whoever_adds_it_and_when)
{
    using Child = std::shared_ptr<TalkingController>;
    using Act = std::function<void(TalkingController&, const Child&)>;
    struct Case {
        std::string_view name;
        Act beforeShowing, afterShowing;
        Log moves;
    };
    const Act nothing = [](auto&, auto&) { };
    const Act addView = [](auto& parent, auto& child) { parent.view()->addSubview(child->view()); };
    const Act addChild = [](auto& parent, auto& child) { parent.addChild(child); };
    const Act viewFirst = [&](auto& parent, auto& child) {
        addView(parent, child);
        addChild(parent, child);
    };
    const Act asTheBookSays = [&](auto& parent, auto& child) {
        addChild(parent, child);
        addView(parent, child);
        child->didMove(&parent);
    };
    const Log willMove{"child.willMove(parent)"};
    const Case cases[] = {
        {"as the platform's book says",
         asTheBookSays,
         nothing,
         {"child.willMove(parent)", "child.didMove(parent)"}},
        {"view first, and nobody sends didMove", viewFirst, nothing, willMove},
        {"view first, into a parent that is there already", nothing, viewFirst, willMove},
        {"the view alone", addView, nothing, {}},
        {"child first, its view when the parent is there", addChild, addView, willMove},
    };
    for (const auto& [name, before, after, moves] : cases) {
        SCOPED_TRACE(name);
        Log log;
        ViewHarness harness;
        auto parent = std::make_shared<TalkingController>("parent.", log);
        auto child = std::make_shared<TalkingController>("child.", log);
        before(*parent, child);
        harness.show(parent);
        after(*parent, child);
        harness.settle();

        Log appearance, movesSeen;
        for (const auto& line : log) {
            if (line.starts_with("child.view"))
                appearance.push_back(line);
            else if (line.find("Move(") != std::string::npos)
                movesSeen.push_back(line);
        }
        EXPECT_EQ(movesSeen, moves);
        EXPECT_EQ(appearance,
                  (Log{"child.viewDidLoad", "child.viewWillAppear", "child.viewWillLayoutSubviews",
                       "child.viewDidLayoutSubviews", "child.viewDidAppear"}));
        auto at = [&](std::string_view what) { return std::ranges::find(log, what) - log.begin(); };
        EXPECT_LT(at("parent.viewWillAppear"), at("child.viewWillAppear"));
        log.clear();
        harness.window().close();
        EXPECT_EQ(log,
                  (Log{"parent.viewWillDisappear", "child.viewWillDisappear", "child.viewDidDisappear",
                       "parent.viewDidDisappear"}));
    }
}

TEST(UIViewController, takes_a_child_out_the_way_back)
{
    Log log;
    ViewHarness harness;
    auto parent = std::make_shared<TalkingController>("parent.", log);
    auto child = std::make_shared<TalkingController>("child.", log);
    parent->addChild(child);
    parent->view()->addSubview(child->view());
    harness.show(parent);
    log.clear();
    child->willMove(nullptr);
    child->view()->removeFromSuperview();
    child->removeFromParent();
    EXPECT_EQ(log,
              (Log{"child.willMove(null)", "child.viewWillDisappear", "child.viewDidDisappear",
                   "child.didMove(null)"}));
    EXPECT_TRUE(parent->children().empty());
    // One that leaves before it was laid out has never appeared.
    log.clear();
    parent->view()->addSubview(child->view());
    child->view()->removeFromSuperview();
    harness.settle();
    std::erase_if(log, [](const auto& line) { return line.starts_with("parent."); });
    EXPECT_EQ(log, (Log{"child.viewWillAppear", "child.viewWillDisappear", "child.viewDidDisappear"}));
}

TEST(UIViewController, says_nothing_of_appearing_in_a_window_that_is_not_shown)
{
    Log log;
    ViewHarness harness;
    auto controller = std::make_shared<TalkingController>("", log);
    harness.window().setRootViewController(controller);
    EXPECT_TRUE(log.empty()) << "its view is not even loaded";
    harness.window().addSubview(controller->view());
    EXPECT_EQ(log, (Log{"loadView", "viewDidLoad"}));
    log.clear();
    harness.window().showOffscreen();
    EXPECT_EQ(log.front(), "viewWillAppear");
    EXPECT_EQ(log.back(), "viewDidAppear");
    EXPECT_EQ(std::ranges::count(log, "viewWillAppear"), 1);
}

TEST(UIViewController, replaces_the_root_of_a_shown_window)
{
    Log log;
    ViewHarness harness;
    harness.show(std::make_shared<TalkingController>("first.", log));
    log.clear();
    harness.window().setRootViewController(std::make_shared<TalkingController>("second.", log));
    harness.settle();
    EXPECT_EQ(log,
              (Log{"first.viewWillDisappear", "first.viewDidDisappear", "second.loadView",
                   "second.viewDidLoad", "second.viewWillAppear", "second.viewWillLayoutSubviews",
                   "second.viewDidLayoutSubviews", "second.viewDidAppear"}));
    EXPECT_EQ(harness.window().subviews().size(), 1u);
}

TEST(UIViewController, survives_a_window_that_is_closed_and_dropped_in_any_event)
{
    for (std::string_view event :
         {"loadView", "viewDidLoad", "viewWillAppear", "viewWillLayoutSubviews", "viewDidLayoutSubviews",
          "viewDidAppear", "viewWillDisappear", "viewDidDisappear"}) {
        SCOPED_TRACE(event);
        Log log;
        ViewHarness harness;
        auto controller = std::make_shared<TalkingController>("", log);
        auto closeAndDrop = [&] {
            if (auto still = harness.sharedWindow())
                still->close();
            harness.dropWindow();
        };
        controller->onEvent = [&](const std::string& what) {
            if (what == event)
                closeAndDrop();
        };
        auto window = std::weak_ptr(harness.sharedWindow());
        harness.sharedWindow()->setRootViewController(controller);
        harness.sharedWindow()->showOffscreen();
        harness.settle();
        closeAndDrop();
        EXPECT_TRUE(window.expired());
        auto count = [&](std::string_view what) { return std::ranges::count(log, what); };
        EXPECT_EQ(count("viewWillAppear"), count("viewWillDisappear"));
        EXPECT_EQ(count("viewWillDisappear"), count("viewDidDisappear"));
    }
}

TEST(UIViewControllerDeathTest, refuses_misuse)
{
    class Viewless : public UIViewController {
        void loadView() override { }
    };
    class Circular : public UIViewController {
        void loadView() override { setView(view()); }
    };
    EXPECT_DEATH(std::make_shared<Viewless>()->view(), "loadView has set no view");
    EXPECT_DEATH(std::make_shared<Circular>()->view(), "asked for the view that it is to make");
    auto outer = std::make_shared<UIViewController>(), inner = std::make_shared<UIViewController>();
    outer->addChild(inner);
    EXPECT_DEATH(inner->addChild(outer), "inside of it");
    EXPECT_DEATH(outer->addChild(nullptr), "null controller");
    EXPECT_DEATH(inner->setView(outer->view()), "second controller");
}

} // namespace
