// SPDX-License-Identifier: MIT
#include "tests/platform/swiftui/probes.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace probes;
using harness::ViewHarness;

class Player : public ObservableObject {
public:
    explicit Player(int start = 0)
        : position(this, start)
    {
    }
    Published<int> position;
};

struct ObservingView {
    ObservedObject<Player> player;
    auto dynamicProperties() { return std::tie(player); }
    bool operator==(const ObservingView&) const = default;
    auto body() const { return Leaf(std::to_string(player->position.get())); }
};

TEST(ObservedObject, updates_its_view_once_a_turn_with_the_new_value)
{
    auto player = std::make_shared<Player>(1);
    Shown harness(ObservingView{player});
    auto before = harness.controller->statistics().bodies;
    player->position = 2;
    player->position = 3;
    harness.settle();
    EXPECT_EQ(harness.names(), Log{"3"});
    EXPECT_EQ(harness.controller->statistics().bodies - before, 1);
}

TEST(ObservedObject, that_is_replaced_is_not_listened_to_any_more)
{
    auto first = std::make_shared<Player>(1);
    auto second = std::make_shared<Player>(10);
    Shown harness(ObservingView{first});
    harness.update(ObservingView{second});
    EXPECT_EQ(harness.names(), Log{"10"});
    auto before = harness.controller->statistics().bodies;
    first->position = 5;
    harness.settle();
    EXPECT_EQ(harness.controller->statistics().bodies, before);
    second->position = 11;
    harness.settle();
    EXPECT_EQ(harness.names(), Log{"11"});
}

TEST(ObservedObject, that_changes_after_its_view_is_gone_tells_nobody)
{
    auto player = std::make_shared<Player>();
    {
        Shown harness(ObservingView{player});
    }
    player->position = 4;
    EXPECT_EQ(player.use_count(), 1);
}

struct OwningView {
    std::string title;
    std::shared_ptr<std::vector<std::weak_ptr<Player>>> made;
    StateObject<Player> player{[madeBefore = made] {
        auto object = std::make_shared<Player>(7);
        madeBefore->push_back(object);
        return object;
    }};
    auto dynamicProperties() { return std::tie(player); }
    auto body() const { return Leaf(title + std::to_string(player->position.get())); }
};

TEST(StateObject, is_made_once_and_goes_with_its_view)
{
    auto made = std::make_shared<std::vector<std::weak_ptr<Player>>>();
    ViewHarness harness;
    {
        auto controller = host(OwningView{"a", made});
        EXPECT_TRUE(made->empty()) << "a description alone makes nothing";
        harness.show(controller);
        made->front().lock()->position = 8;
        controller->setRootView(OwningView{"b", made});
        harness.settle();
        EXPECT_EQ(names(*controller->view()), Log{"b8"});
        ASSERT_EQ(made->size(), 1u);
        harness.window().setRootViewController(std::make_shared<UIViewController>());
    }
    EXPECT_TRUE(made->front().expired());
}

struct EnvironmentView {
    EnvironmentObject<Player> player{};
    auto dynamicProperties() { return std::tie(player); }
    bool operator==(const EnvironmentView&) const = default;
    auto body() const { return Leaf(player.object() ? std::to_string(player->position.get()) : "none"); }
};

TEST(EnvironmentObject, is_the_one_of_the_surroundings_also_when_that_changes)
{
    auto first = std::make_shared<Player>(1);
    auto second = std::make_shared<Player>(2);
    auto handle = makeHandle<std::shared_ptr<Player>>();
    Shown harness(stateful(handle, first, [](const std::shared_ptr<Player>& player) {
        return EnvironmentView{} | environmentObject(player);
    }));
    EXPECT_EQ(harness.names(), Log{"1"});
    harness.set(handle, second);
    EXPECT_EQ(harness.names(), Log{"2"});
    second->position = 3;
    harness.settle();
    EXPECT_EQ(harness.names(), Log{"3"});
    harness.set(handle, nullptr);
    EXPECT_EQ(harness.names(), Log{"none"});
}

TEST(EnvironmentObjectDeathTest, is_a_fault_to_use_where_nobody_gave_one)
{
    EXPECT_DEATH(*EnvironmentObject<Player>(), "nobody gave it");
}

} // namespace
