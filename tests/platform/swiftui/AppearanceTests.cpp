// SPDX-License-Identifier: MIT
#include "tests/platform/swiftui/probes.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace probes;
using harness::ViewHarness;

auto talking(std::string name, std::shared_ptr<Log> log)
{
    return Leaf(name) | onAppear([=] { log->push_back(name + " appears"); })
        | onDisappear([=] { log->push_back(name + " disappears"); });
}

TEST(Appearance, comes_after_the_first_layout_on_screen_outer_views_first)
{
    auto log = std::make_shared<Log>();
    auto controller = host(talking("content", log) | background(talking("behind", log))
                           | overlay(talking("front", log)) | onAppear([=] { log->push_back("all"); }));
    controller->view()->layoutIfNeeded();
    EXPECT_TRUE(log->empty()) << "nothing appears off screen";
    ViewHarness harness;
    harness.show(controller);
    EXPECT_EQ(*log, (Log{"all", "behind appears", "content appears", "front appears"}));
}

TEST(Appearance, finds_the_view_in_its_place)
{
    auto width = std::make_shared<CGFloat>(0);
    auto root = Filler("a");
    ViewHarness harness({300, 200});
    auto controller =
        host(root | onAppear([&harness, width] { *width = harness.find("a").frame().size.width; }));
    harness.show(controller);
    EXPECT_EQ(*width, 300);
}

TEST(Appearance, of_a_choice_follows_the_choice_with_the_end_after_the_update)
{
    auto log = std::make_shared<Log>();
    auto first = makeHandle<bool>();
    Shown harness(stateful(first, true, [log](bool isFirst) {
        log->push_back("body");
        return when(
            isFirst, [&] { return talking("first", log); },
            [&] { return talking("second", log) | overlay(Leaf("x")); });
    }));
    log->clear();
    harness.set(first, false);
    EXPECT_EQ(*log, (Log{"body", "first disappears", "second appears"}));
}

TEST(Appearance, ends_and_begins_again_with_the_hosts)
{
    auto log = std::make_shared<Log>();
    Shown harness(talking("a", log));
    harness.window().setRootViewController(std::make_shared<UIViewController>());
    harness.settle();
    EXPECT_EQ(*log, (Log{"a appears", "a disappears"}));
    harness.show(harness.controller);
    EXPECT_EQ(*log, (Log{"a appears", "a disappears", "a appears"}));
}

TEST(Appearance, of_a_host_that_is_let_go_ends_once)
{
    auto log = std::make_shared<Log>();
    {
        Shown harness(talking("a", log));
    }
    EXPECT_EQ(*log, (Log{"a appears", "a disappears"}));
}

TEST(Appearance, may_remove_its_own_view_and_change_state)
{
    auto log = std::make_shared<Log>();
    auto shown = makeHandle<bool>();
    Shown harness(stateful(shown, true, [=](bool isShown) {
        return when(
            isShown, [&] { return talking("inner", log) | onAppear([shown] { (*shown)->set(false); }); },
            [] { return Leaf("none"); });
    }));
    EXPECT_EQ(harness.names(), Log{"none"});
    EXPECT_EQ(log->back(), "inner disappears");
}

// --- onChange ----------------------------------------------------------------------------------------

TEST(OnChange, tells_of_each_change_after_the_update_with_both_values_but_not_of_the_first)
{
    auto log = std::make_shared<Log>();
    auto handle = makeHandle<int>();
    Shown harness(stateful(handle, 1, [log](int now) {
        return Leaf(std::to_string(now)) | onChange(now / 10, [log](int before, int changed) {
                   log->push_back(std::to_string(before) + " " + std::to_string(changed));
               });
    }));
    for (int value : {2, 15, 37, 38}) {
        harness.set(handle, value);
    }
    EXPECT_EQ(*log, (Log{"0 1", "1 3"}));
}

TEST(OnChange, may_change_state_until_it_comes_to_rest)
{
    auto handle = makeHandle<int>();
    Shown harness(stateful(handle, 0, [handle](int now) {
        return Leaf(std::to_string(now)) | onChange(now, [handle, now] {
                   if (now < 5)
                       (*handle)->set(now + 1);
               });
    }));
    harness.set(handle, 1);
    EXPECT_EQ(harness.names(), Log{"5"});
}

// --- task --------------------------------------------------------------------------------------------

TEST(Task, starts_when_its_view_appears_and_is_stopped_when_it_disappears)
{
    auto tokens = std::make_shared<std::vector<std::stop_token>>();
    auto shown = makeHandle<bool>();
    auto controller = host(stateful(shown, true, [tokens](bool isShown) {
        return when(
            isShown,
            [&] { return Leaf("a") | task([tokens](std::stop_token token) { tokens->push_back(token); }); },
            [] { return Leaf("none"); });
    }));
    EXPECT_TRUE(tokens->empty());
    ViewHarness harness;
    harness.show(controller);
    ASSERT_EQ(tokens->size(), 1u);
    EXPECT_FALSE(tokens->front().stop_requested());
    (*shown)->set(false);
    harness.settle();
    EXPECT_TRUE(tokens->front().stop_requested());
}

TEST(Task, of_an_id_starts_anew_for_each_new_id)
{
    auto tokens = std::make_shared<std::vector<std::stop_token>>();
    auto id = makeHandle<int>();
    Shown harness(stateful(id, 0, [tokens](int now) {
        return Leaf(std::to_string(now))
            | task(now / 10, [tokens](std::stop_token token) { tokens->push_back(token); });
    }));
    harness.set(id, 5);
    EXPECT_EQ(tokens->size(), 1u);
    harness.set(id, 15);
    ASSERT_EQ(tokens->size(), 2u);
    EXPECT_TRUE(tokens->at(0).stop_requested());
    EXPECT_FALSE(tokens->at(1).stop_requested());
}

} // namespace
