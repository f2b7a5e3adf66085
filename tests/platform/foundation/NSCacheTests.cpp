// SPDX-License-Identifier: MIT
#include "platform/foundation/NSCache.h"

#include "platform/foundation/MemoryPressureWatcher_p.h"

#include <gtest/gtest.h>

#include <atomic>
#include <climits>
#include <condition_variable>
#include <mutex>
#include <numeric>
#include <random>
#include <thread>

#include <sys/socket.h>

namespace platform {

namespace {

struct Number final : NSObject {
    explicit Number(long itsValue)
        : value(itsValue)
    {
        ++alive;
    }
    ~Number() override { --alive; }

    // Four keys have the same hash.
    std::size_t hash() const override { return static_cast<std::size_t>(value / 4); }
    bool isEqual(const NSObject& other) const override
    {
        auto* number = dynamic_cast<const Number*>(&other);
        return number && number->value == value;
    }

    long value;
    static inline std::atomic<long> alive = 0;
};

struct Recorder final : NSCacheDelegate {
    void cacheWillEvictObject(NSCache& cache, NSObject& object) override
    {
        auto value = static_cast<Number&>(object).value;
        {
            std::lock_guard lock(mutex);
            reported.push_back(value);
        }
        if (handle)
            handle(cache, value);
    }

    std::mutex mutex;
    std::vector<long> reported;
    std::function<void(NSCache&, long)> handle;
};

struct Stage {
    std::shared_ptr<NSCache> cache = std::make_shared<NSCache>();
    std::shared_ptr<Recorder> recorder = std::make_shared<Recorder>();

    Stage() { cache->setDelegate(recorder); }
    void set(long key, long value, long cost = 0)
    {
        cache->setObject(std::make_shared<Number>(value), std::make_shared<Number>(key), cost);
    }
    void set(long key) { set(key, key); }
    std::optional<long> get(long key) const
    {
        auto object = cache->object(Number(key));
        return object ? std::optional(static_cast<Number&>(*object).value) : std::nullopt;
    }
    void remove(long key) { cache->removeObject(Number(key)); }
    std::vector<long> found(long count) const
    {
        std::vector<long> keys(static_cast<std::size_t>(count));
        std::iota(keys.begin(), keys.end(), 0);
        std::erase_if(keys, [&](long key) { return !get(key); });
        return keys;
    }
};

} // namespace

TEST(NSCacheTests, Equal_keys_lead_to_one_entry_which_is_found_until_it_is_removed)
{
    Stage stage;
    EXPECT_EQ(stage.cache->countLimit(), 0);
    EXPECT_EQ(stage.cache->totalCostLimit(), 0);
    EXPECT_EQ(stage.cache->name(), "");
    EXPECT_EQ(stage.get(1), std::nullopt);
    for (long key = 0; key < 2000; ++key)
        stage.set(key);
    for (long key = 0; key < 2000; key += 2)
        stage.remove(key);
    stage.remove(5000);
    stage.set(1, -1);
    for (long key = 0; key < 2000; ++key)
        EXPECT_EQ(stage.get(key), key % 2 == 0 ? std::nullopt : std::optional(key == 1 ? -1 : key)) << key;
    EXPECT_EQ(stage.recorder->reported.size(),
              1000u); // what was removed; neither the absent one nor the replaced
    stage.cache->removeAllObjects();
    EXPECT_TRUE(stage.found(2000).empty());
    EXPECT_EQ(stage.recorder->reported.size(), 2000u);
}

TEST(NSCacheTests, A_count_limit_is_exact_and_spares_what_was_set_last)
{
    for (long limit : {1, 2, 3, 10, 64}) {
        Stage stage;
        stage.cache->setCountLimit(limit);
        for (long key = 0; key < 200; ++key) {
            stage.set(key);
            EXPECT_EQ(stage.get(key), key) << limit;
            if (key % 3 == 0)
                stage.get(key / 2);
        }
        auto kept = stage.found(200);
        EXPECT_EQ(static_cast<long>(kept.size()), limit);
        stage.cache->setCountLimit(limit / 2);
        EXPECT_EQ(static_cast<long>(stage.found(200).size()), limit / 2 ? limit / 2 : limit); // 0 is no limit
        // Every entry is either there or was reported, once.
        auto all = stage.found(200);
        all.insert(all.end(), stage.recorder->reported.begin(), stage.recorder->reported.end());
        std::ranges::sort(all);
        std::vector<long> expected(200);
        std::iota(expected.begin(), expected.end(), 0);
        EXPECT_EQ(all, expected) << limit;
    }
}

TEST(NSCacheTests, A_cost_limit_holds_for_the_sum_and_the_too_dear_leave_alone)
{
    Stage stage;
    stage.cache->setTotalCostLimit(100);
    for (long key = 0; key < 10; ++key)
        stage.set(key, key, 10);
    EXPECT_EQ(stage.found(20).size(), 10u);
    stage.set(10, 10, 101);
    EXPECT_EQ(stage.found(20).size(), 10u);
    EXPECT_EQ(stage.recorder->reported, std::vector<long>{10});
    stage.set(11, 11, 95);
    EXPECT_EQ(stage.found(20), std::vector<long>{11});
    stage.set(11, 12, 5); // cheaper than what it replaces
    stage.set(13, 13, 95);
    EXPECT_EQ(stage.found(20), (std::vector<long>{11, 13}));
    stage.set(14, 14, -50); // counts as 0
    EXPECT_EQ(stage.found(20), (std::vector<long>{11, 13, 14}));
    stage.cache->setTotalCostLimit(0);
    for (long key = 20; key < 26; ++key)
        stage.set(key, key, LONG_MAX); // more than a 64-bit sum holds
    EXPECT_EQ(stage.found(30).size(), 9u);
    stage.cache->setTotalCostLimit(LONG_MAX);
    EXPECT_LE(stage.found(30).size(), 4u);
}

TEST(NSCacheTests, A_report_comes_while_the_entry_is_found_and_may_do_anything_to_the_cache)
{
    struct Case {
        const char* name;
        std::function<void(NSCache&, Stage&, long)> handle;
        std::vector<long> left; // after 0, 1, 2 were set and 1 removed
        std::vector<long> reported;
    };
    const Case cases[] = {
        {"look", [](auto&, auto& stage, long value) { EXPECT_EQ(stage.get(value), value); }, {0, 2}, {1}},
        {"set it again", [](auto&, auto& stage, long value) { stage.set(value); }, {0, 1, 2}, {1}},
        {"remove it again", [](auto&, auto& stage, long value) { stage.remove(value); }, {0, 2}, {1}},
        {"remove another",
         [](auto&, auto& stage, long value) {
             if (value == 1)
                 stage.remove(2);
         },
         {0},
         {1, 2}},
        {"remove all",
         [](auto& cache, auto& stage, long value) {
             if (value != 1)
                 return;
             cache.removeAllObjects();
             EXPECT_EQ(stage.get(1), std::nullopt);
         },
         {},
         {0, 1, 2}},
        {"lower the limit", [](auto& cache, auto&, long) { cache.setCountLimit(1); }, {2}, {0, 1}},
        {"let the cache go",
         [](auto&, auto& stage, long) { stage.cache = std::make_shared<NSCache>(); },
         {},
         {1}},
    };
    for (auto& [name, handle, left, reported] : cases) {
        Stage stage;
        for (long key : {0, 1, 2})
            stage.set(key);
        stage.recorder->handle = [&](NSCache& cache, long value) { handle(cache, stage, value); };
        stage.remove(1);
        EXPECT_EQ(stage.found(3), left) << name;
        std::ranges::sort(stage.recorder->reported);
        EXPECT_EQ(stage.recorder->reported, reported) << name;
    }
}

TEST(NSCacheTests, What_is_wanted_often_survives_a_scan_and_a_loop_keeps_a_part)
{
    Stage stage;
    stage.cache->setCountLimit(100);
    for (int round = 0; round < 3; ++round) {
        for (long key = 0; key < 50; ++key) {
            if (!stage.get(key))
                stage.set(key);
        }
    }
    for (long key = 1000; key < 3000; ++key)
        stage.set(key);
    EXPECT_GE(stage.found(50).size(), 45u);

    Stage looping;
    looping.cache->setCountLimit(100);
    int hits = 0;
    for (int i = 0; i < 5500; ++i) {
        if (looping.get(i % 110))
            ++hits;
        else
            looping.set(i % 110);
    }
    EXPECT_GT(hits, 2500); // evicting the least recently used would never hit
}

TEST(NSCacheTests, What_leaves_a_small_cache_is_destroyed_at_once_and_what_is_read_not_before_it_was)
{
    auto before = Number::alive.load();
    Stage stage;
    stage.set(1);
    stage.set(1, 2);
    EXPECT_EQ(Number::alive - before, 2);
    auto kept = stage.cache->object(Number(1));
    stage.cache->readEntry(
        Number(1).hash(), [](auto&) { return true; },
        [&](const NSCacheEntry& entry) {
            stage.cache->removeAllObjects();
            EXPECT_EQ(stage.get(1), std::nullopt);
            EXPECT_EQ(entry.object(), kept);
        });
    EXPECT_EQ(static_cast<Number&>(*kept).value, 2);
    kept.reset();
    stage.set(3);
    stage.remove(3);
    EXPECT_EQ(Number::alive - before, 0);
}

TEST(NSCacheTests, Memory_pressure_takes_half_or_all_and_reports_it)
{
    Stage stage, empty;
    for (long key = 0; key < 100; ++key)
        stage.set(key);
    reportMemoryPressure(MemoryPressureLevel::warning);
    EXPECT_EQ(stage.found(100).size(), 50u);
    EXPECT_EQ(stage.recorder->reported.size(), 50u);
    reportMemoryPressure(MemoryPressureLevel::critical);
    EXPECT_TRUE(stage.found(100).empty());
    EXPECT_EQ(stage.recorder->reported.size(), 100u);
}

TEST(MemoryPressureWatcherTests, Urgent_news_of_the_kernel_are_reported_until_it_is_stopped)
{
    int sockets[2];
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets), 0);
    Descriptor sender(sockets[1]);
    std::mutex mutex;
    std::condition_variable changed;
    std::optional<MemoryPressureLevel> heard;
    {
        MemoryPressureWatcher watcher({Descriptor(sockets[0]), Descriptor()}, [&](MemoryPressureLevel level) {
            std::lock_guard lock(mutex);
            heard = level;
            changed.notify_one();
        });
        ASSERT_TRUE(watcher.isWatching());
        if (::send(sender.number(), "!", 1, MSG_OOB) != 1)
            GTEST_SKIP() << "this kernel has no urgent data on local sockets";
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return heard.has_value(); });
    }
    EXPECT_EQ(heard, MemoryPressureLevel::warning);
    EXPECT_FALSE(MemoryPressureWatcher({}, [](auto) { }).isWatching()); // where the kernel says nothing
    MemoryPressureWatcher real(openMemoryPressureEvents(), [](auto) { });
}

// Readers, writers, removers and pressure at once: what is found belongs to its key, the limit holds at rest, what was
// reported did enter, and everything that was destroyed was destroyed once.
TEST(NSCacheTests, Any_mix_of_threads_leaves_the_cache_within_its_limit_and_loses_nothing)
{
    constexpr long limit = 300, keys = 1000, threads = 4, steps = 8000;
    auto before = Number::alive.load();
    {
        Stage stage;
        stage.cache->setCountLimit(limit);
        std::atomic<long> wrong = 0;
        stage.recorder->handle = [&](NSCache& cache, long value) {
            if (value % 50 == 0)
                cache.removeObject(Number(value % keys + 1));
        };
        std::vector<std::jthread> running;
        for (long thread = 0; thread < threads; ++thread) {
            running.emplace_back([&, thread] {
                std::mt19937 random(static_cast<unsigned>(thread));
                for (long step = 0; step < steps; ++step) {
                    long key = std::min(random() % keys, random() % keys);
                    auto choice = random() % 1000;
                    if (choice < 600) {
                        auto value = stage.get(key);
                        wrong += value && *value % keys != key;
                    } else if (choice < 950) {
                        stage.set(key, key + keys * static_cast<long>(random() % 100));
                    } else if (choice < 997) {
                        stage.remove(key);
                    } else if (choice < 999) {
                        stage.cache->handleMemoryPressure(MemoryPressureLevel::warning);
                    } else {
                        stage.cache->removeAllObjects();
                    }
                }
            });
        }
        running.clear();
        EXPECT_EQ(wrong, 0);
        auto found = static_cast<long>(stage.found(keys).size());
        EXPECT_LE(found, limit);
        EXPECT_LE(Number::alive - before,
                  2 * (found + found / 16 + 1)); // keys and objects, and a few that wait
        stage.recorder->handle = nullptr;
        for (long key = 0; key < keys; ++key)
            stage.set(key);
        EXPECT_EQ(static_cast<long>(stage.found(keys).size()), limit);
    }
    EXPECT_EQ(Number::alive, before);
}

TEST(NSCacheDeathTest, An_object_and_a_key_are_required)
{
    EXPECT_DEATH(NSCache().setObject(nullptr, std::make_shared<Number>(1)), "was given none");
}

} // namespace platform
