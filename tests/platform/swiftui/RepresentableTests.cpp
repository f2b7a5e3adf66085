// SPDX-License-Identifier: MIT
#include "tests/platform/swiftui/probes.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace probes;
using harness::ViewHarness;
using SharedLog = std::shared_ptr<Log>;

// Says when it comes into a superview or leaves it.
class TalkingView : public UIView {
public:
    TalkingView(std::string name, SharedLog log)
        : name_(std::move(name))
        , log_(std::move(log))
    {
    }
    void didMoveToSuperview() override { log_->push_back(name_ + (superview() ? " inserted" : " removed")); }

private:
    std::string name_;
    SharedLog log_;
};

class TalkingController : public UIViewController {
public:
    explicit TalkingController(SharedLog log)
        : log_(std::move(log))
    {
    }
    void loadView() override
    {
        setView(std::make_shared<TalkingView>("view", log_));
        view()->accessibility().identifier = "controller";
    }
    void viewDidLoad() override { log_->push_back("viewDidLoad"); }
    void viewWillAppear(Animated) override { log_->push_back("viewWillAppear"); }
    void viewDidAppear(Animated) override { log_->push_back("viewDidAppear"); }
    void viewWillDisappear(Animated) override { log_->push_back("viewWillDisappear"); }
    void viewDidDisappear(Animated) override { log_->push_back("viewDidDisappear"); }
    void viewDidLayoutSubviews() override { log_->push_back("viewDidLayoutSubviews"); }
    void willMove(UIViewController* parent) override
    {
        log_->push_back(parent ? "willMove(parent)" : "willMove(null)");
    }
    void didMove(UIViewController* parent) override
    {
        log_->push_back(parent ? "didMove(parent)" : "didMove(null)");
        if (onMoved)
            onMoved();
    }
    std::function<void()> onMoved;

private:
    SharedLog log_;
};

struct TalkingCoordinator {
    SharedLog log;
    ~TalkingCoordinator() { log->push_back("coordinator gone"); }
};

struct Talking : UIViewControllerRepresentable<Talking> {
    explicit Talking(SharedLog logOfEvents, int versionOfDescription = 0)
        : log(std::move(logOfEvents))
        , version(versionOfDescription)
    {
    }
    SharedLog log;
    int version;
    std::function<void()> onMoved{};

    std::shared_ptr<TalkingCoordinator> makeCoordinator() const
    {
        log->push_back("makeCoordinator");
        return std::make_shared<TalkingCoordinator>(log);
    }
    std::shared_ptr<TalkingController> makeUIViewController(const auto& context) const
    {
        log->push_back(context.coordinator ? "make" : "make without a coordinator");
        auto controller = std::make_shared<TalkingController>(log);
        controller->onMoved = onMoved;
        return controller;
    }
    void updateUIViewController(TalkingController&, const auto&) const
    {
        log->push_back("update " + std::to_string(version));
    }
    static void dismantleUIViewController(TalkingController& controller, TalkingCoordinator* coordinator)
    {
        coordinator->log->push_back(controller.parent() ? "dismantle of a child" : "dismantle");
    }
};

TEST(UIViewControllerRepresentable, comes_and_goes_in_the_order_that_introspection_relies_on)
{
    auto log = std::make_shared<Log>();
    auto version = makeHandle<int>();
    Shown harness(stateful(version, 1, [log](int now) {
        return when(now > 0, [&] { return Talking(log, now); }, [] { return Leaf("none"); });
    }));
    EXPECT_EQ(
        *log,
        (Log{"makeCoordinator", "make", "willMove(parent)", "viewDidLoad", "view inserted", "didMove(parent)",
             "update 1", "viewWillAppear", "viewDidLayoutSubviews", "viewDidAppear"}));

    log->clear();
    harness.set(version, 2);
    EXPECT_EQ(*log, Log{"update 2"});

    log->clear();
    harness.set(version, 0);
    EXPECT_EQ(*log,
              (Log{"willMove(null)", "viewWillDisappear", "viewDidDisappear", "view removed", "didMove(null)",
                   "dismantle", "coordinator gone"}));
    EXPECT_TRUE(harness.controller->children().empty());
}

TEST(UIViewControllerRepresentable, that_is_added_on_screen_appears_after_its_first_update)
{
    auto log = std::make_shared<Log>();
    auto shown = makeHandle<bool>();
    Shown harness(stateful(shown, false, [log](bool isShown) {
        return when(isShown, [&] { return Talking(log, 1); }, [] { return Leaf("none"); });
    }));
    harness.set(shown, true);
    EXPECT_EQ(
        *log,
        (Log{"makeCoordinator", "make", "willMove(parent)", "viewDidLoad", "viewWillAppear", "view inserted",
             "didMove(parent)", "update 1", "viewDidLayoutSubviews", "viewDidAppear"}));
}

TEST(UIViewControllerRepresentable, may_change_state_when_it_has_moved)
{
    auto log = std::make_shared<Log>();
    auto version = makeHandle<int>();
    Shown harness(stateful(version, 1, [=](int now) {
        auto talking = Talking(log, now);
        talking.onMoved = [version] { (*version)->set(5); };
        return talking;
    }));
    EXPECT_EQ(std::ranges::count(*log, "update 5"), 1);
    EXPECT_EQ(std::ranges::count(*log, "makeCoordinator"), 1);
}

TEST(UIViewControllerRepresentable, may_be_removed_by_its_own_move)
{
    auto log = std::make_shared<Log>();
    auto version = makeHandle<int>();
    ViewHarness harness;
    auto controller = host(stateful(version, 0, [=](int now) {
        return when(
            now == 1,
            [&] {
                auto talking = Talking(log, now);
                talking.onMoved = [version] { (*version)->set(2); };
                return talking;
            },
            [] { return Leaf("none"); });
    }));
    harness.show(controller);
    (*version)->set(1);
    harness.settle();
    EXPECT_EQ(names(*controller->view()), Log{"none"});
    EXPECT_EQ(log->back(), "coordinator gone");
}

// --- Hosting controllers in strange places -----------------------------------------------------------

TEST(UIHostingController, whose_view_comes_before_addChild_and_without_didMove_still_shows_and_updates)
{
    auto handle = makeHandle<int>();
    auto log = std::make_shared<Log>();
    auto hosting = host(stateful(handle, 1, [log](int now) { return Talking(log, now); }));
    auto parent = std::make_shared<UIViewController>();
    parent->view()->addSubview(hosting->view());
    hosting->view()->setFrame(CGRect::make(0, 0, 100, 100));
    parent->addChild(hosting);
    ViewHarness harness;
    harness.show(parent);
    EXPECT_EQ(std::ranges::count(*log, "viewDidAppear"), 1);
    EXPECT_EQ(std::ranges::count(*log, "update 1"), 1);
    (*handle)->set(2);
    harness.settle();
    EXPECT_EQ(log->back(), "update 2");
}

TEST(UIHostingController, lays_its_root_out_in_the_safe_area)
{
    auto controller = host(Filler("content"));
    ViewHarness harness({100, 200});
    harness.window().setBaseSafeAreaInsets({.top = 20, .left = 1, .bottom = 30, .right = 2});
    harness.show(controller);
    EXPECT_EQ(harness.find("content").frame(), CGRect::make(1, 20, 97, 150));
    harness.window().setBaseSafeAreaInsets({});
    harness.settle();
    EXPECT_EQ(harness.find("content").frame(), CGRect::make(0, 0, 100, 200));
}

TEST(UIHostingController, measures_what_was_changed_just_now)
{
    auto handle = makeHandle<int>();
    auto controller = host(stateful(handle, 10, [](int width) { return Leaf("a", {CGFloat(width), 5}); }));
    EXPECT_EQ(controller->sizeThatFits({100, 100}), (CGSize{10, 5}));
    (*handle)->set(30);
    EXPECT_EQ(controller->sizeThatFits({100, 100}), (CGSize{30, 5}));
}

TEST(UIHostingController, gives_a_root_with_senseless_sizes_a_finite_place)
{
    for (auto size : {CGSize{NAN, NAN}, CGSize{-5, -5}, CGSize{INFINITY, 1}}) {
        Shown harness({100, 100}, Leaf("a", size));
        auto frame = harness.find("a").frame();
        EXPECT_TRUE(std::isfinite(frame.origin.x) && std::isfinite(frame.origin.y)) << size.width;
        EXPECT_FALSE(frame.size.width < 0) << size.width;
    }
}

// --- Order of subviews -------------------------------------------------------------------------------

TEST(Subviews, stand_in_the_order_of_the_tree_backgrounds_before_content_and_overlays_after)
{
    auto shown = makeHandle<bool>();
    Shown harness(stateful(shown, false, [](bool isShown) {
        auto behind = when(
            isShown, [] { return Leaf("behind 1") | background(Leaf("behind 0")); },
            [] { return Leaf("nothing behind"); });
        return Leaf("content") | background(behind) | overlay(Leaf("front") | overlay(Leaf("foremost")));
    }));
    EXPECT_EQ(harness.names(), (Log{"nothing behind", "content", "front", "foremost"}));
    auto content = harness.controller->view()->subviews()[1];
    harness.set(shown, true);
    EXPECT_EQ(harness.names(), (Log{"behind 0", "behind 1", "content", "front", "foremost"}));
    EXPECT_EQ(harness.controller->view()->subviews()[2], content);
}

TEST(Subviews, are_not_touched_by_an_update_that_changes_no_structure)
{
    auto width = makeHandle<int>();
    Shown harness(stateful(
        width, 10, [](int now) { return Leaf("content", {CGFloat(now), 10}) | overlay(Filler("front")); }));
    auto before = harness.controller->view()->subviews();
    harness.set(width, 40);
    EXPECT_EQ(harness.controller->view()->subviews(), before);
    EXPECT_EQ(harness.find("front").frame().size.width, 40);
}

} // namespace
