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
    auto other = std::make_shared<UIView>();
    parent->addSubview(other);
    log.clear();
    other->addSubview(child); // within the window
    EXPECT_EQ(
        log,
        (Log{"child will move to superview", "parent will remove subview", "child did move to superview"}));
    parent->addSubview(child);
    log.clear();
    child.reset(); // held by its superview alone
    parent->subviews().back()->removeFromSuperview();
    EXPECT_EQ(log,
              (Log{"child will leave superview", "child will leave window", "inner will leave window",
                   "parent will remove subview", "child did leave window", "inner did leave window",
                   "child did leave superview"}));
}

TEST(UIView, survives_views_that_change_the_tree_while_it_changes)
{
    const std::pair<std::string, std::function<void(TalkingView&)>> acts[] = {
        {"leaves", [](auto& view) { view.removeFromSuperview(); }},
        {"leaves and comes back",
         [](auto& view) {
             auto superview = view.superview();
             view.removeFromSuperview();
             if (superview)
                 superview->addSubview(std::static_pointer_cast<UIView>(view.shared_from_this()));
         }},
        {"loses its children", [](auto& view) { view.setSubviews({}); }},
        {"gets a sibling",
         [](auto& view) {
             if (auto superview = view.superview())
                 superview->insertSubview(std::make_shared<UIView>(), 0);
         }},
        {"removes all siblings",
         [](auto& view) {
             if (auto superview = view.superview())
                 superview->setSubviews({});
         }},
    };
    for (std::string cue :
         {"will move to superview", "did move to superview", "will move to window", "did move to window",
          "will leave superview", "did leave superview", "will leave window", "did leave window"}) {
        for (auto n = 0u; n < 2 * std::size(acts); ++n) {
            const auto& [name, act] = acts[n / 2];
            auto who = n % 2 ? "inner" : "outer";
            SCOPED_TRACE(who + (" " + name) + " in " + cue);
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

TEST(UIView, puts_siblings_in_the_order_asked_for)
{
    auto root = std::make_shared<UIView>();
    std::vector<std::shared_ptr<UIView>> v;
    for (int i = 0; i < 4; ++i)
        v.push_back(std::make_shared<UIView>());
    const std::pair<std::function<void()>, std::string_view> cases[] = {
        {[&] { root->setSubviews(v); }, "0123"},
        {[&] { root->bringSubviewToFront(*v[1]); }, "0231"},
        {[&] { root->sendSubviewToBack(*v[3]); }, "3021"},
        {[&] { root->insertSubviewAbove(v[3], *v[2]); }, "0231"},
        {[&] { root->insertSubviewBelow(v[1], *v[2]); }, "0123"},
        {[&] { root->insertSubviewBelow(v[0], *v[3]); }, "1203"},
        {[&] { root->insertSubview(v[1], 99); }, "2031"},
        {[&] { root->insertSubviewAbove(v[0], *v[0]); }, "2031"},
    };
    for (const auto& [act, expected] : cases) {
        act();
        std::string order;
        for (const auto& view : root->subviews())
            order += char('0' + (std::ranges::find(v, view) - v.begin()));
        EXPECT_EQ(order, expected);
    }
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
    auto outer = std::make_shared<UIView>(), inner = std::make_shared<UIView>();
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

TEST(UIView, inherits_traits_and_tint_down_to_where_they_are_overridden)
{
    class Heir : public UIView {
    public:
        void traitCollectionDidChange(const UITraitCollection&) override { ++traitChanges; }
        void tintColorDidChange() override { ++tintChanges; }
        UIUserInterfaceStyle style() const { return traitCollection().userInterfaceStyle; }
        int traitChanges = 0, tintChanges = 0;
    };
    using enum UIUserInterfaceStyle;
    ViewHarness harness;
    auto root = std::make_shared<Heir>(), plain = std::make_shared<Heir>(), own = std::make_shared<Heir>();
    own->setOverrideUserInterfaceStyle(light);
    own->setTintColor(UIColor::green());
    root->setSubviews({plain, own});
    harness.show(root);
    plain->traitChanges = own->traitChanges = plain->tintChanges = own->tintChanges = 0;

    UITraitCollection traits;
    traits.userInterfaceStyle = dark;
    harness.window().setBaseTraits(traits);
    EXPECT_EQ(std::pair(plain->style(), own->style()), std::pair(dark, light));
    EXPECT_EQ(std::pair(plain->traitChanges, own->traitChanges), std::pair(1, 0));
    own->setOverrideUserInterfaceStyle(unspecified);
    EXPECT_EQ(own->style(), dark);
    EXPECT_EQ(own->traitChanges, 1);
    auto late = std::make_shared<Heir>(); // finds the same when it comes
    root->addSubview(late);
    EXPECT_EQ(late->traitCollection(), plain->traitCollection());
    traits.accentColor = ColorComponents{1, 0.5, 0};
    harness.window().setBaseTraits(traits);
    EXPECT_EQ(plain->tintColor(), UIColor(1, 0.5, 0)) << "the desktop's accent";
    EXPECT_EQ(own->tintColor(), UIColor::green());
    EXPECT_EQ(std::pair(plain->tintChanges, own->tintChanges), std::pair(1, 0));
    traits.accentColor = {};
    harness.window().setBaseTraits(traits);
    plain->tintChanges = 0;

    root->setTintColor(UIColor::red());
    EXPECT_EQ(std::pair(plain->tintColor(), own->tintColor()), std::pair(UIColor::red(), UIColor::green()));
    EXPECT_EQ(std::pair(plain->tintChanges, own->tintChanges), std::pair(1, 0));
    plain->removeFromSuperview();
    EXPECT_EQ(plain->tintColor(), UIColor::systemBlue());
    EXPECT_EQ(plain->tintChanges, 2);
}

} // namespace
