// SPDX-License-Identifier: MIT
#include "platform/foundation/NSObject.h"
#include "platform/foundation/Precondition.h"
#include "platform/foundation/Result.h"

#include <gtest/gtest.h>

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

} // namespace platform
