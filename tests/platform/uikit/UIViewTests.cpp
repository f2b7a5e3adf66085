// SPDX-License-Identifier: MIT
#include "platform/uikit/UIView.h"

#include "platform/uikit/UIWindow.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using harness::ViewHarness;
using Log = std::vector<std::string>;

// Says what it is told, and does what a test asks at that moment.
class TalkingView : public UIView {
public:
    TalkingView(std::string itsName, Log& toLog)
        : name(std::move(itsName))
        , log(toLog)
    {
    }
    void willMoveToSuperview(UIView* view) override
    {
        say(view ? "will move to superview" : "will leave superview");
    }
    void didMoveToSuperview() override { say(superview() ? "did move to superview" : "did leave superview"); }
    void willMoveToWindow(UIWindow* window) override
    {
        say(window ? "will move to window" : "will leave window");
    }
    void didMoveToWindow() override { say(window() ? "did move to window" : "did leave window"); }
    void didAddSubview(UIView&) override { say("did add subview"); }
    void willRemoveSubview(UIView&) override { say("will remove subview"); }

    std::string name;
    Log& log;
    std::string cue;
    std::function<void(TalkingView&)> act;

private:
    void say(const std::string& what)
    {
        log.push_back(name + " " + what);
        if (what == cue && act) {
            auto once = std::exchange(act, nullptr);
            once(*this);
        }
    }
};

TEST(UIView, tells_in_order_what_happens_to_a_view_that_comes_and_goes)
{
    Log log;
    ViewHarness harness;
    auto parent = std::make_shared<TalkingView>("parent", log);
    harness.show(parent);
    log.clear();

    auto child = std::make_shared<TalkingView>("child", log);
    auto inner = std::make_shared<TalkingView>("inner", log);
    child->addSubview(inner);
    log.clear();
    parent->addSubview(child);
    EXPECT_EQ(log,
              (Log{"child will move to superview", "child will move to window", "inner will move to window",
                   "child did move to window", "inner did move to window", "child did move to superview",
                   "parent did add subview"}));
    log.clear();
    child->removeFromSuperview();
    EXPECT_EQ(log,
              (Log{"child will leave superview", "child will leave window", "inner will leave window",
                   "parent will remove subview", "child did leave window", "inner did leave window",
                   "child did leave superview"}));
}

TEST(UIView, tells_nothing_of_windows_when_a_view_moves_within_one)
{
    Log log;
    ViewHarness harness;
    auto root = std::make_shared<UIView>();
    auto left = std::make_shared<UIView>();
    auto right = std::make_shared<UIView>();
    root->setSubviews({left, right});
    auto child = std::make_shared<TalkingView>("child", log);
    left->addSubview(child);
    harness.show(root);
    log.clear();
    right->addSubview(child);
    EXPECT_EQ(log, (Log{"child will move to superview", "child did move to superview"}));
    EXPECT_TRUE(left->subviews().empty());
    EXPECT_EQ(child->superview(), right);
}

TEST(UIView, survives_views_that_change_the_tree_while_it_changes)
{
    struct Case {
        std::string_view name, cue;
        std::function<void(TalkingView&)> act;
    };
    auto leave = [](TalkingView& view) { view.removeFromSuperview(); };
    auto rejoin = [](TalkingView& view) {
        auto superview = view.superview();
        view.removeFromSuperview();
        if (superview)
            superview->addSubview(std::static_pointer_cast<UIView>(view.shared_from_this()));
    };
    auto loseChildren = [](TalkingView& view) { view.setSubviews({}); };
    auto addSibling = [](TalkingView& view) {
        if (auto superview = view.superview())
            superview->insertSubview(std::make_shared<UIView>(), 0);
    };
    auto loseSiblings = [](TalkingView& view) {
        if (auto superview = view.superview())
            superview->setSubviews({});
    };
    std::vector<Case> cases;
    for (std::string_view cue :
         {"will move to superview", "did move to superview", "will move to window", "did move to window",
          "will leave superview", "did leave superview", "will leave window", "did leave window"}) {
        cases.push_back({"leaves", cue, leave});
        cases.push_back({"leaves and comes back", cue, rejoin});
        cases.push_back({"loses its children", cue, loseChildren});
        cases.push_back({"gets a sibling", cue, addSibling});
        cases.push_back({"removes all siblings", cue, loseSiblings});
    }
    for (const auto& [name, cue, act] : cases) {
        for (auto who : {"outer", "inner"}) {
            SCOPED_TRACE(std::string(who) + " " + std::string(name) + " in " + std::string(cue));
            Log log;
            ViewHarness harness;
            auto root = std::make_shared<UIView>();
            harness.show(root);
            auto outer = std::make_shared<TalkingView>("outer", log);
            auto inner = std::make_shared<TalkingView>("inner", log);
            auto second = std::make_shared<TalkingView>("second", log);
            outer->addSubview(inner);
            outer->addSubview(second);
            auto& actor = std::string_view(who) == "outer" ? *outer : *inner;
            actor.cue = cue;
            actor.act = act;
            root->addSubview(outer);
            outer->removeFromSuperview();
            harness.settle();
            // However it went: the tree says the same from both sides.
            for (const auto& view : {outer, inner, second}) {
                auto superview = view->superview();
                EXPECT_EQ(view->window() != nullptr, superview && superview->window());
                if (superview) {
                    EXPECT_EQ(std::ranges::count(superview->subviews(), std::shared_ptr<UIView>(view)), 1);
                }
            }
            // The view was told an even number of times: nobody is left in a window it has left.
            auto told = [&](std::string_view what) {
                return std::ranges::count(log, "inner " + std::string(what));
            };
            EXPECT_EQ(told("did move to window") - told("did leave window"), inner->window() ? 1 : 0);
        }
    }
}

TEST(UIView, keeps_a_view_alive_that_is_removed_by_its_last_owner)
{
    Log log;
    ViewHarness harness;
    auto root = std::make_shared<UIView>();
    harness.show(root);
    root->addSubview(std::make_shared<TalkingView>("only", log));
    root->subviews().front()->removeFromSuperview();
    EXPECT_EQ(log.back(), "only did leave superview");
    EXPECT_TRUE(root->subviews().empty());
}

TEST(UIView, puts_siblings_in_the_order_asked_for)
{
    auto root = std::make_shared<UIView>();
    std::vector<std::shared_ptr<UIView>> v;
    for (int i = 0; i < 4; ++i)
        v.push_back(std::make_shared<UIView>());
    auto order = [&] {
        std::string text;
        for (const auto& view : root->subviews())
            text += char('0' + (std::ranges::find(v, view) - v.begin()));
        return text;
    };
    root->setSubviews(v);
    EXPECT_EQ(order(), "0123");
    root->bringSubviewToFront(*v[1]);
    EXPECT_EQ(order(), "0231");
    root->sendSubviewToBack(*v[3]);
    EXPECT_EQ(order(), "3021");
    root->insertSubviewAbove(v[3], *v[2]);
    EXPECT_EQ(order(), "0231");
    root->insertSubviewBelow(v[1], *v[2]);
    EXPECT_EQ(order(), "0123");
    root->insertSubviewBelow(v[0], *v[3]);
    EXPECT_EQ(order(), "1203");
    root->insertSubview(v[1], 99);
    EXPECT_EQ(order(), "2031");
    root->insertSubviewAbove(v[0], *v[0]);
    EXPECT_EQ(order(), "2031");
}

TEST(UIView, tells_only_the_views_that_come_or_go_when_all_subviews_are_set)
{
    Log log;
    auto root = std::make_shared<UIView>();
    std::vector<std::shared_ptr<UIView>> views;
    for (int i = 0; i < 100; ++i)
        views.push_back(std::make_shared<TalkingView>(std::to_string(i), log));
    root->setSubviews(views);
    log.clear();
    auto changed = views;
    std::ranges::reverse(changed);
    changed.erase(changed.begin()); // 99 goes
    auto fresh = std::make_shared<TalkingView>("fresh", log);
    changed.insert(changed.begin() + 50, fresh);
    root->setSubviews(changed);
    EXPECT_EQ(root->subviews(), changed);
    EXPECT_EQ(log,
              (Log{"99 will leave superview", "99 did leave superview", "fresh will move to superview",
                   "fresh did move to superview"}));
}

TEST(UIViewDeathTest, refuses_trees_that_cannot_be)
{
    auto outer = std::make_shared<UIView>();
    auto inner = std::make_shared<UIView>();
    outer->addSubview(inner);
    EXPECT_DEATH(outer->addSubview(outer), "added to itself");
    EXPECT_DEATH(inner->addSubview(outer), "added to itself or to a view inside of it");
    EXPECT_DEATH(outer->addSubview(nullptr), "null view");
    EXPECT_DEATH(inner->setMask(outer), "mask of a view inside of it");
    EXPECT_DEATH(outer->insertSubviewAbove(std::make_shared<UIView>(), *outer), "none of the subviews");
    EXPECT_DEATH(outer->setSubviews({inner, inner}), "the same view twice");
    EXPECT_DEATH(outer->addSubview(std::make_shared<UIWindow>(CGRect::make(0, 0, 9, 9))),
                 "a window was added");
}

TEST(UIView, inherits_traits_down_to_where_they_are_overridden)
{
    class Heir : public UIView {
    public:
        void traitCollectionDidChange(const UITraitCollection&) override { ++changes; }
        int changes = 0;
    };
    ViewHarness harness;
    auto root = std::make_shared<Heir>();
    auto plain = std::make_shared<Heir>();
    auto light = std::make_shared<Heir>();
    light->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::light);
    root->setSubviews({plain, light});
    harness.show(root);
    for (auto* view : {root.get(), plain.get(), light.get()})
        view->changes = 0;

    UITraitCollection dark;
    dark.userInterfaceStyle = UIUserInterfaceStyle::dark;
    harness.window().setBaseTraits(dark);
    EXPECT_EQ(plain->traitCollection().userInterfaceStyle, UIUserInterfaceStyle::dark);
    EXPECT_EQ(light->traitCollection().userInterfaceStyle, UIUserInterfaceStyle::light);
    EXPECT_EQ(plain->changes, 1);
    EXPECT_EQ(light->changes, 0);

    light->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::unspecified);
    EXPECT_EQ(light->traitCollection().userInterfaceStyle, UIUserInterfaceStyle::dark);
    EXPECT_EQ(light->changes, 1);

    // A view that comes later finds the same.
    auto late = std::make_shared<Heir>();
    root->addSubview(late);
    EXPECT_EQ(late->traitCollection(), plain->traitCollection());
}

TEST(UIView, tells_a_change_of_tint_to_those_who_inherit_it_only)
{
    class Tinted : public UIView {
    public:
        void tintColorDidChange() override { ++changes; }
        int changes = 0;
    };
    auto root = std::make_shared<Tinted>();
    auto heir = std::make_shared<Tinted>();
    auto own = std::make_shared<Tinted>();
    own->setTintColor(UIColor::green());
    root->setSubviews({heir, own});
    EXPECT_EQ(heir->tintColor(), UIColor::systemBlue());
    heir->changes = own->changes = 0;

    root->setTintColor(UIColor::red());
    EXPECT_EQ(heir->tintColor(), UIColor::red());
    EXPECT_EQ(own->tintColor(), UIColor::green());
    EXPECT_EQ(heir->changes, 1);
    EXPECT_EQ(own->changes, 0);

    heir->removeFromSuperview();
    EXPECT_EQ(heir->tintColor(), UIColor::systemBlue());
    EXPECT_EQ(heir->changes, 2);
}

} // namespace
