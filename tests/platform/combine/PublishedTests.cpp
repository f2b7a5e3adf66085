// SPDX-License-Identifier: MIT
#include "platform/combine/Published.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

class Player : public ObservableObject {
public:
    Published<int> position{this, 0};
};

TEST(Published, StoresTheNewValueBeforeItSendsAndSendsBeforeASingleNotice)
{
    Player player;
    std::string log;
    auto values = player.position.publisher().sink(
        [&](int value) { log += std::to_string(value) + (player.position == value ? " " : "? "); });
    auto notices = player.objectWillChange().sink([&] {
        log += "notice " + std::to_string(player.position.get()) + ", ";
        if (player.position > 100)
            player.position = 100; // whoever is told may correct it
    });
    player.position = 1;
    player.position.modify([](int& value) { value += 1, value += 148; });
    EXPECT_EQ(log, "0 1 notice 1, 150 notice 150, 100 notice 100, ");
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

} // namespace
} // namespace platform
