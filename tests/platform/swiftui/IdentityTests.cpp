// SPDX-License-Identifier: MIT
#include "tests/platform/swiftui/layoutProbes.h"

#include <gtest/gtest.h>

#include <random>
#include <ranges>

namespace {

using namespace platform;
using namespace probes;

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
    Shown harness(describe(true));
    counter.set("a", 5);
    harness.update(describe(true));
    EXPECT_EQ(harness.names(), (Log{"a5", "z"})) << "the same side keeps its state";
    harness.update(describe(false));
    EXPECT_EQ(harness.names(), (Log{"a0", "z"})) << "the other side is another place";
    harness.update(describe(true));
    EXPECT_EQ(harness.names(), (Log{"a0", "z"})) << "what was left is gone";
}

TEST(ConditionalContent, without_a_second_side_takes_no_place)
{
    auto describe = [](bool isShown) {
        return HStack{{.spacing = 10}, Leaf("a"), when(isShown, [] { return Leaf("b"); }), Leaf("c")};
    };
    Shown harness({100, 10}, describe(false));
    auto spread = [&] {
        auto& views = harness.controller->view()->subviews();
        return views.back()->frame().maxX() - views.front()->frame().minX();
    };
    EXPECT_EQ(spread(), 50);
    harness.update(describe(true));
    EXPECT_EQ(harness.names(), (Log{"a", "b", "c"}));
    EXPECT_EQ(spread(), 80);
    harness.update(describe(false));
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
        Shown harness(describe(test.before));
        int place = 0;
        for (auto& key : test.before)
            counter.set(key, ++place);
        harness.settle();
        std::map<std::string, UIView*> views;
        for (auto* view : subviews(*harness.controller->view()))
            views[view->accessibility().identifier] = view;
        auto before = harness.controller->statistics();

        harness.update(describe(test.after));
        EXPECT_EQ(harness.names(), test.expected);
        EXPECT_EQ(harness.controller->statistics().mounted - before.mounted, test.mounted);
        EXPECT_EQ(harness.controller->statistics().unmounted - before.unmounted, test.unmounted);
        CGFloat top = -1;
        for (auto* view : subviews(*harness.controller->view())) {
            auto former = views.find(view->accessibility().identifier);
            if (former != views.end()) {
                EXPECT_EQ(view, former->second) << "the platform view moves with its element";
            }
            EXPECT_GT(view->frame().minY(), top) << "the views stand in the order of the data";
            top = view->frame().minY();
        }
    }
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
    Shown harness(describe({}));
    for (int round = 0; round < 200; ++round) {
        std::vector<int> keys(random() % 8);
        for (auto& key : keys)
            key = static_cast<int>(random() % 6);
        harness.update(describe(keys));

        std::map<std::string, int> present;
        std::map<int, int> seen;
        Log expected;
        for (auto key : keys) {
            auto name = std::to_string(key);
            auto place = name + '/' + std::to_string(seen[key]++);
            present[place] = model[place];
            expected.push_back(name + std::to_string(model[place]));
        }
        ASSERT_EQ(harness.names(), expected) << "round " << round;
        // The last of its identity to be described is the one whose binding is known; give it another count.
        model = std::move(present);
        if (!keys.empty() && seen[keys.front()] == 1) {
            counter.set(std::to_string(keys.front()), round + 1);
            model[std::to_string(keys.front()) + "/0"] = round + 1;
            harness.settle();
        }
    }
}

TEST(AnyView, keeps_its_place_while_the_type_stays)
{
    Counters counter;
    Shown harness(AnyView{counter("a")});
    counter.set("a", 4);
    harness.update(AnyView{counter("b")});
    EXPECT_EQ(harness.names(), Log{"b4"});
    harness.update(AnyView{Leaf("c")});
    EXPECT_EQ(harness.names(), Log{"c"});
    harness.update(AnyView{counter("b")});
    EXPECT_EQ(harness.names(), Log{"b0"});
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
    Shown harness(counter("a") | id(1));
    counter.set("a", 3);
    harness.update(counter("a") | id(1));
    EXPECT_EQ(harness.names(), Log{"a3"});
    harness.update(counter("a") | id(2));
    EXPECT_EQ(harness.names(), Log{"a0"});
}

} // namespace
