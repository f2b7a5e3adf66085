// SPDX-License-Identifier: MIT
#include "platform/foundation/String.h"

#include <gtest/gtest.h>

namespace platform {

using namespace std::string_view_literals;

TEST(StringTests, Strings_are_equal_and_ordered_by_their_bytes_copied_from_the_caller)
{
    std::string source = "z";
    String string(source);
    source = "!";
    EXPECT_NE(String("a"), String("a\0"sv));
    EXPECT_LT(String("Z"), String("a"));
    EXPECT_LT(string, String("é"));
    EXPECT_DEATH(String("caf\xE9"), "not UTF-8");
}

TEST(StringTests, Adopted_bytes_live_as_long_as_the_last_copy)
{
    auto owner = std::make_shared<std::string>("adopted");
    std::weak_ptr<std::string> alive = owner;
    auto string = String::adopting(owner, *owner, nullptr);
    owner.reset();
    auto copy = std::exchange(string, String());
    EXPECT_EQ(copy.utf8(), "adopted");
    EXPECT_EQ(copy.utf8().data(), alive.lock()->data()) << "without a copy of the bytes";
    copy = String();
    EXPECT_TRUE(alive.expired());
}

} // namespace platform
