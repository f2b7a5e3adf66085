// SPDX-License-Identifier: MIT
#include "platform/foundation/NSObject.h"
#include "platform/foundation/Precondition.h"
#include "platform/foundation/Result.h"
#include "platform/foundation/UUID.h"

#include <gtest/gtest.h>
#include <unordered_set>

namespace platform {

namespace {

enum class Trouble { none, flood };

NSError nsError(Trouble trouble)
{
    return NSError("Trouble", static_cast<long>(trouble), {{"NSLocalizedDescription", "Water everywhere."}});
}

Result<int> half(int number)
{
    if (number % 2 != 0)
        return failure(Trouble::flood);
    return number / 2;
}

Result<int> quarter(int number)
{
    return TRY(half(TRY(half(number))));
}

} // namespace

TEST(ErrorTests, The_first_failure_leaves_the_function_as_it_was)
{
    EXPECT_EQ(quarter(12), 3);
    auto failed = quarter(6);
    ASSERT_FALSE(failed);
    ASSERT_TRUE(failed.error().as<Trouble>());
    EXPECT_EQ(*failed.error().as<Trouble>(), Trouble::flood);
    EXPECT_EQ(failed.error().as<int>(), nullptr);
    EXPECT_EQ(failed.error().localizedDescription(), "Water everywhere.");
}

TEST(ErrorTests, Errors_are_the_same_by_domain_and_code_whatever_they_say)
{
    EXPECT_EQ(NSError("A", 1), NSError("A", 1, {{"NSLocalizedDescription", "x"}}));
    EXPECT_FALSE(NSError("A", 1) == NSError("A", 2) || NSError("A", 1) == NSError("B", 1));
    EXPECT_EQ(Error(Trouble::flood), Error(NSError("Trouble", 1)));
    EXPECT_EQ(NSError(NSCocoaError::fileReadNoSuchFile).localizedDescription(),
              "The operation couldn’t be completed. (NSCocoaErrorDomain error 260.)");
}

TEST(PreconditionDeathTest, A_broken_precondition_stops_with_its_reason_and_place)
{
    EXPECT_DEATH(precondition(1 > 2, "one is not more than two"), "one is not more than two.*ErrorTests.cpp");
}

TEST(NSObjectTests, Attached_values_are_found_by_key_and_type)
{
    auto object = std::make_shared<NSObject>();
    for (int value : {1, 2}) {
        object->setAssociatedObject("count", value);
        ASSERT_TRUE(object->associatedObject<int>("count"));
        EXPECT_EQ(*object->associatedObject<int>("count"), value);
    }
    EXPECT_EQ(object->associatedObject<long>("count"), nullptr);
    object->removeAssociatedObject("count");
    EXPECT_EQ(object->associatedObject<int>("count"), nullptr);
}

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
