// SPDX-License-Identifier: MIT
#include "platform/combine/Published.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace platform {
namespace {

class Player : public ObservableObject {
public:
    Published<int> position{this, 0};
    Published<std::vector<std::string>> names{this, {}};
};

TEST(Published, StoresTheNewValueBeforeItSendsAndSendsBeforeTheNotice)
{
    auto player = std::make_shared<Player>();
    std::string log;
    auto values = player->position.publisher().sink([&](int value) {
        log += "value " + std::to_string(value) + (player->position == value ? "" : "?") + ", ";
    });
    auto notices = player->objectWillChange().sink(
        [&] { log += "notice " + std::to_string(player->position.get()) + "; "; });
    player->position = 1;
    player->position = 1;
    EXPECT_EQ(log, "value 0, value 1, notice 1; value 1, notice 1; ");
}

TEST(Published, ChangesInPlaceWithOneNotice)
{
    Player player;
    int notices = 0;
    auto subscription = player.objectWillChange().sink([&] { ++notices; });
    player.names.modify([](auto& names) {
        names.push_back("a");
        names.push_back("b");
    });
    EXPECT_EQ(player.names.get(), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(player.names->size(), 2u);
    EXPECT_EQ(notices, 1);
}

TEST(Published, LeavesTheLastValueWhenANoticeSetsAnother)
{
    Player player;
    std::vector<int> seen;
    auto values = player.position.publisher().sink([&](int value) { seen.push_back(value); });
    auto corrects = player.objectWillChange().sink([&] {
        if (player.position > 100)
            player.position = 100;
    });
    player.position = 150;
    EXPECT_EQ(seen, (std::vector<int>{0, 150, 100}));
    EXPECT_EQ(player.position.get(), 100);
}

TEST(Published, MayLoseItsOwnerToWhoeverItTells)
{
    for (bool duringValue : {true, false}) {
        auto player = std::make_shared<Player>();
        std::weak_ptr<Player> watched = player;
        int notices = 0;
        auto values = player->position.publisher().sink([&](int value) {
            if (value == 1 && duringValue)
                player.reset();
        });
        auto killer = player->objectWillChange().sink([&] { player.reset(); });
        auto last = player->objectWillChange().sink([&] { ++notices; });
        player->position = 1;
        EXPECT_TRUE(watched.expired());
        EXPECT_EQ(notices, 1) << "the others are still told";
    }
}

TEST(PublishedDeathTest, NeedsAnOwner)
{
    EXPECT_DEATH((Published<int>{nullptr, 1}), "needs an owner");
}

} // namespace
} // namespace platform
