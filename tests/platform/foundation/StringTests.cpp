// SPDX-License-Identifier: MIT
#include "platform/foundation/String.h"

#include "platform/foundation/TextSurvey.h"

#include <gtest/gtest.h>

namespace platform {

using namespace std::string_view_literals;

TEST(StringTests, A_copy_shares_its_storage_and_outlives_the_original)
{
    String copy;
    {
        String original("text \0 with a zero"sv);
        copy = original;
        EXPECT_EQ(copy.utf8().data(), original.utf8().data());
    }
    EXPECT_EQ(copy.utf8(), "text \0 with a zero"sv);
    EXPECT_EQ(copy.size(), 18u);
}

TEST(StringTests, The_bytes_are_copied_from_the_caller)
{
    std::string source = "before";
    String string(source);
    source = "after!";
    EXPECT_EQ(string.toStdString(), "before");
}

TEST(StringTests, Strings_are_equal_and_ordered_by_their_bytes)
{
    EXPECT_EQ(String("a"), String(std::string("a")));
    EXPECT_EQ(String(), String(""));
    EXPECT_NE(String("a"), String("a\0"sv));
    EXPECT_LT(String("Z"), String("a"));
    EXPECT_LT(String("z"), String("é"));
}

TEST(StringTests, Adopted_bytes_live_as_long_as_the_last_string)
{
    auto owner = std::make_shared<std::string>("adopted");
    std::weak_ptr<std::string> alive = owner;
    auto survey = std::make_shared<const TextSurvey>(surveyText(*owner));
    auto string = String::adopting(owner, *owner, survey);
    EXPECT_EQ(string.utf8().data(), owner->data());
    EXPECT_EQ(string.survey(), survey);
    owner.reset();
    EXPECT_EQ(string.utf8(), "adopted");
    string = String();
    EXPECT_TRUE(alive.expired());
}

TEST(StringDeathTest, Bytes_that_are_not_UTF8_stop_the_program)
{
    EXPECT_DEATH(String("caf\xE9"), "not UTF-8");
}

} // namespace platform
