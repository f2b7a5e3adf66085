// SPDX-License-Identifier: MIT
#include "platform/swiftui/ForEach.h"

#include "platform/swiftui/AnyView.h"
#include "platform/swiftui/ConditionalContent.h"
#include "platform/swiftui/identity.h"
#include "platform/swiftui/stacks.h"
#include "tests/platform/swiftui/layoutProbes.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <ranges>

namespace {

using namespace platform;
using namespace probes;
using harness::ViewHarness;

// Shows its name and a count of its own, which tests change through the bindings.
struct Counter {
    std::string name;
    std::shared_ptr<std::map<std::string, Binding<int>>> bindings;
    State<int> count = 0;

    auto dynamicProperties() { return std::tie(count); }
    auto body() const
    {
        bindings->insert_or_assign(name, count.binding());
        return Leaf(name + std::to_string(*count));
    }
};

struct Counters {
    std::shared_ptr<std::map<std::string, Binding<int>>> bindings =
        std::make_shared<std::map<std::string, Binding<int>>>();

    Counter operator()(std::string name) const { return {std::move(name), bindings}; }
    void set(const std::string& name, int count) const { bindings->at(name).set(count); }
};

std::vector<UIView*> subviews(UIView& view)
{
    std::vector<UIView*> result;
    for (auto& subview : view.subviews())
        result.push_back(subview.get());
    return result;
}

TEST(ConditionalContent, begins_anew_after_the_other_side_was_shown)
{
    Counters counter;
    auto describe = [&](bool isFirst) {
        return HStack{when(isFirst, [&] { return counter("a"); }, [&] { return counter("a"); }), Leaf("z")};
    };
    auto controller = host(describe(true));
    ViewHarness harness;
    harness.show(controller);
    counter.set("a", 5);
    controller->setRootView(describe(true));
    harness.settle();
    EXPECT_EQ(names(*controller->view()), (Log{"a5", "z"})) << "the same side keeps its state";
    controller->setRootView(describe(false));
    harness.settle();
    EXPECT_EQ(names(*controller->view()), (Log{"a0", "z"})) << "the other side is another place";
    controller->setRootView(describe(true));
    harness.settle();
    EXPECT_EQ(names(*controller->view()), (Log{"a0", "z"})) << "what was left is gone";
}

TEST(ConditionalContent, without_a_second_side_takes_no_place)
{
    auto describe = [](bool isShown) {
        return HStack{{.spacing = 10}, Leaf("a"), when(isShown, [] { return Leaf("b"); }), Leaf("c")};
    };
    auto controller = host(describe(false));
    ViewHarness harness({100, 10});
    harness.show(controller);
    auto spread = [&] {
        auto& views = controller->view()->subviews();
        return views.back()->frame().maxX() - views.front()->frame().minX();
    };
    EXPECT_EQ(spread(), 50);
    controller->setRootView(describe(true));
    harness.settle();
    EXPECT_EQ(names(*controller->view()), (Log{"a", "b", "c"}));
    EXPECT_EQ(spread(), 80);
    controller->setRootView(describe(false));
    harness.settle();
    EXPECT_EQ(spread(), 50);
}

TEST(ForEach, moves_what_its_elements_have)
{
    struct Case {
        std::string_view name;
        std::vector<std::string> before, after;
        Log expected;
        int mounted; // composites and leaves
        int unmounted;
    };
    // Each element's count is set to its place in `before`, from 1.
    const Case cases[] = {
        {"the same", {"a", "b"}, {"a", "b"}, {"a1", "b2"}, 0, 0},
        {"backwards", {"a", "b", "c"}, {"c", "b", "a"}, {"c3", "b2", "a1"}, 0, 0},
        {"one is put before all", {"a", "b"}, {"x", "a", "b"}, {"x0", "a1", "b2"}, 2, 0},
        {"one is put between", {"a", "b"}, {"a", "x", "b"}, {"a1", "x0", "b2"}, 2, 0},
        {"one is taken out", {"a", "b", "c"}, {"a", "c"}, {"a1", "c3"}, 0, 2},
        {"all go", {"a", "b"}, {}, {}, 0, 4},
        {"all come", {}, {"a", "b"}, {"a0", "b0"}, 4, 0},
        {"others come in their place", {"a", "b"}, {"c", "d"}, {"c0", "d0"}, 4, 4},
        {"some move, come and go", {"a", "b", "c"}, {"c", "x", "a"}, {"c3", "x0", "a1"}, 2, 2},
    };
    for (auto& test : cases) {
        SCOPED_TRACE(test.name);
        Counters counter;
        auto describe = [&](const std::vector<std::string>& keys) {
            return VStack{
                ForEach{keys, std::identity{}, [counter](const std::string& key) { return counter(key); }}};
        };
        auto controller = host(describe(test.before));
        ViewHarness harness;
        harness.show(controller);
        int place = 0;
        for (auto& key : test.before)
            counter.set(key, ++place);
        harness.settle();
        std::map<std::string, UIView*> views;
        for (auto* view : subviews(*controller->view()))
            views[view->accessibility().identifier] = view;
        auto before = controller->statistics();

        controller->setRootView(describe(test.after));
        harness.settle();
        EXPECT_EQ(names(*controller->view()), test.expected);
        EXPECT_EQ(controller->statistics().mounted - before.mounted, test.mounted);
        EXPECT_EQ(controller->statistics().unmounted - before.unmounted, test.unmounted);
        CGFloat top = -1;
        for (auto* view : subviews(*controller->view())) {
            auto former = views.find(view->accessibility().identifier);
            if (former != views.end()) {
                EXPECT_EQ(view, former->second) << "the platform view moves with its element";
            }
            EXPECT_GT(view->frame().minY(), top) << "the views stand in the order of the data";
            top = view->frame().minY();
        }
    }
}

TEST(ForEach, tells_elements_apart_that_share_an_identity)
{
    struct Item {
        int id;
        std::string name;
    };
    Counters counter;
    auto describe = [&](std::vector<Item> items) {
        return VStack{ForEach{std::move(items), [counter](const Item& item) { return counter(item.name); }}};
    };
    auto controller = host(describe({{1, "a"}, {1, "b"}, {2, "c"}}));
    ViewHarness harness;
    harness.show(controller);
    counter.set("a", 1);
    counter.set("b", 2);
    counter.set("c", 3);
    harness.settle();
    EXPECT_EQ(names(*controller->view()), (Log{"a1", "b2", "c3"}));
    // The first and the second of identity 1 stay what they are around the one that moves.
    controller->setRootView(describe({{2, "c"}, {1, "a"}, {1, "b"}}));
    harness.settle();
    EXPECT_EQ(names(*controller->view()), (Log{"c3", "a1", "b2"}));
    // Without the first, the second is the first.
    controller->setRootView(describe({{2, "c"}, {1, "b"}}));
    harness.settle();
    EXPECT_EQ(names(*controller->view()), (Log{"c3", "b1"}));
}

TEST(ForEach, keeps_each_state_with_its_element_through_any_changes)
{
    // Against a slow, obvious answer: a map from the identity and its number to the count.
    std::minstd_rand random(7);
    Counters counter;
    std::map<std::string, int> model;
    auto describe = [&](const std::vector<int>& keys) {
        return VStack{
            ForEach{keys, std::identity{}, [counter](int key) { return counter(std::to_string(key)); }}};
    };
    auto controller = host(describe({}));
    ViewHarness harness;
    harness.show(controller);
    for (int round = 0; round < 200; ++round) {
        std::vector<int> keys(random() % 8);
        for (auto& key : keys)
            key = static_cast<int>(random() % 6);
        controller->setRootView(describe(keys));
        harness.settle();

        std::map<std::string, int> present;
        std::map<int, int> seen;
        Log expected;
        for (auto key : keys) {
            auto name = std::to_string(key);
            auto place = name + '/' + std::to_string(seen[key]++);
            present[place] = model[place];
            expected.push_back(name + std::to_string(model[place]));
        }
        ASSERT_EQ(names(*controller->view()), expected) << "round " << round;
        // The last of its identity to be described is the one whose binding is known; give it another count.
        model = std::move(present);
        if (!keys.empty() && seen[keys.front()] == 1) {
            counter.set(std::to_string(keys.front()), round + 1);
            model[std::to_string(keys.front()) + "/0"] = round + 1;
            harness.settle();
        }
    }
}

TEST(ForEach, takes_ranges_that_are_made_as_they_are_read)
{
    auto view = VStack{ForEach{std::views::iota(0, 3), std::identity{},
                               [](int number) { return Leaf(std::to_string(number)); }}};
    auto controller = host(std::move(view));
    ViewHarness harness;
    harness.show(controller);
    EXPECT_EQ(names(*controller->view()), (Log{"0", "1", "2"}));
}

TEST(AnyView, keeps_its_place_while_the_type_stays)
{
    Counters counter;
    auto controller = host(AnyView{counter("a")});
    ViewHarness harness;
    harness.show(controller);
    counter.set("a", 4);
    controller->setRootView(AnyView{counter("b")});
    harness.settle();
    EXPECT_EQ(names(*controller->view()), Log{"b4"});
    controller->setRootView(AnyView{Leaf("c")});
    harness.settle();
    EXPECT_EQ(names(*controller->view()), Log{"c"});
    controller->setRootView(AnyView{counter("b")});
    harness.settle();
    EXPECT_EQ(names(*controller->view()), Log{"b0"});
}

TEST(AnyView, is_equal_when_what_it_holds_is)
{
    EXPECT_EQ(AnyView{Leaf("a")}, AnyView{Leaf("a")});
    EXPECT_NE(AnyView{Leaf("a")}, AnyView{Leaf("b")});
    EXPECT_NE(AnyView{Leaf("a")}, AnyView{Filler("a")});
}

TEST(Id, ends_the_content_when_it_changes)
{
    Counters counter;
    auto controller = host(counter("a") | id(1));
    ViewHarness harness;
    harness.show(controller);
    counter.set("a", 3);
    controller->setRootView(counter("a") | id(1));
    harness.settle();
    EXPECT_EQ(names(*controller->view()), Log{"a3"});
    controller->setRootView(counter("a") | id(2));
    harness.settle();
    EXPECT_EQ(names(*controller->view()), Log{"a0"});
}

} // namespace
