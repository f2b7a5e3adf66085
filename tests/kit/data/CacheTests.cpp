// SPDX-License-Identifier: MIT
#include "kit/data/Cache.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace zelk {

TEST(CacheTests, Any_hashable_key_and_any_value_will_do_and_copies_share_the_store)
{
    Cache<std::string, std::vector<int>> cache;
    EXPECT_EQ(cache.name(), "");
    EXPECT_EQ(cache.countLimit(), 0);
    EXPECT_EQ(cache.totalCostLimit(), 0);
    auto copy = cache;
    cache.setValue({1, 2}, std::string("a key that is too long to be kept in place"));
    EXPECT_EQ(copy.value("a key that is too long to be kept in place"), (std::vector{1, 2}));
    copy.setValue({3}, "a key that is too long to be kept in place", 7);
    EXPECT_EQ(cache.value("a key that is too long to be kept in place"), std::vector{3});
    copy.setName("pictures");
    copy.setCountLimit(3);
    copy.setTotalCostLimit(20);
    EXPECT_EQ(cache.name(), "pictures");
    EXPECT_EQ(cache.countLimit(), 3);
    EXPECT_EQ(cache.totalCostLimit(), 20);
    cache.setValue({}, "b", 15); // 7 and 15 are too much
    EXPECT_EQ(cache.value("a key that is too long to be kept in place"), std::nullopt);
    cache.removeAllValues();
    EXPECT_EQ(copy.value("b"), std::nullopt);
}

TEST(CacheTests, The_callback_of_the_moment_receives_each_value_that_leaves_while_it_is_still_there)
{
    Cache<int, std::string> cache;
    cache.setValue("silent", 0);
    cache.removeValue(0); // nobody listens
    std::vector<std::string> first, second;
    cache.setWillEvictValue([&](const std::string& value) {
        first.push_back(value);
        EXPECT_EQ(cache.value(1), value);
    });
    cache.setValue("one", 1);
    cache.removeValue(1);
    cache.removeValue(1);
    EXPECT_EQ(cache.value(1), std::nullopt);
    auto copy = cache;
    copy.setWillEvictValue([&](const std::string& value) { second.push_back(value); });
    cache.setCountLimit(1);
    cache.setValue("two", 2);
    cache.setValue("two again", 2); // replaced: does not leave
    cache.setValue("three", 3);
    EXPECT_TRUE(cache.willEvictValue());
    cache.setWillEvictValue(nullptr);
    EXPECT_FALSE(copy.willEvictValue());
    cache.removeAllValues();
    EXPECT_EQ(first, std::vector<std::string>{"one"});
    EXPECT_EQ(second, std::vector<std::string>{"two again"});
}

// A value whose copying does something.
struct Restless {
    std::function<void()> onCopy;
    std::string text;

    Restless(std::function<void()> itsOnCopy, std::string itsText)
        : onCopy(std::move(itsOnCopy))
        , text(std::move(itsText))
    {
    }
    Restless(const Restless& other)
    {
        if (other.onCopy)
            other.onCopy();
        text = other.text;
    }
    Restless(Restless&&) = default;
};

TEST(CacheTests, A_value_that_leaves_while_it_is_copied_is_copied_whole)
{
    Cache<int, Restless> cache;
    cache.setValue(Restless([&] { cache.removeAllValues(); }, "a text that is too long to be kept in place"),
                   1);
    EXPECT_EQ(cache.value(1)->text, "a text that is too long to be kept in place");
    EXPECT_FALSE(cache.value(1));
}

TEST(CacheTests, Threads_read_write_and_listen_at_once)
{
    Cache<std::string, std::string> cache;
    cache.setCountLimit(50);
    std::atomic<int> wrong = 0;
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            auto mine = cache;
            for (int i = 0; i < 4000; ++i) {
                auto key = std::to_string((i * 7 + thread) % 80);
                if (i % 5 == 0)
                    mine.setValue("value of " + key + " that is long enough to be elsewhere", key);
                else if (auto value = mine.value(key))
                    wrong += !value->starts_with("value of " + key + " ");
                if (i % 500 == thread)
                    mine.setWillEvictValue([&](const std::string& value) { wrong += value.empty(); });
            }
        });
    }
    threads.clear();
    EXPECT_EQ(wrong, 0);
}

} // namespace zelk
