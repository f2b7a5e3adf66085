// SPDX-License-Identifier: MIT
#include "platform/foundation/UUID.h"

#include <gtest/gtest.h>

#include <unordered_set>

namespace platform {

TEST(UUIDTests, Fresh_ones_differ_and_say_that_they_are_random)
{
    std::unordered_set<UUID> seen;
    for (int i = 0; i < 1000; ++i) {
        UUID uuid;
        auto text = uuid.string();
        EXPECT_EQ(text[14], '4') << text;
        EXPECT_NE(std::string_view("89AB").find(text[19]), std::string_view::npos) << text;
        EXPECT_TRUE(seen.insert(uuid).second) << text;
    }
}

TEST(UUIDTests, The_text_form_is_read_back_in_either_case_and_no_other_is)
{
    constexpr std::string_view text = "E621E1F8-C36C-495A-93FC-0C247A3E6E5F";
    auto uuid = UUID::parse(text);
    ASSERT_TRUE(uuid);
    EXPECT_EQ(uuid->string(), text);
    EXPECT_EQ(UUID::parse("e621e1f8-c36c-495a-93fc-0c247a3e6e5f"), uuid);
    for (std::string_view other :
         {"", "E621E1F8C36C495A93FC0C247A3E6E5F", "E621E1F8-C36C-495A-93FC-0C247A3E6E5",
          "E621E1F8-C36C-495A-93FC-0C247A3E6E5FF", "G621E1F8-C36C-495A-93FC-0C247A3E6E5F",
          "E621E1F-8C36C-495A-93FC-0C247A3E6E5F", "E621E1F8-C36C-495A-93FC-0C247A3E6E5-"})
        EXPECT_FALSE(UUID::parse(other)) << other;
}

} // namespace platform
