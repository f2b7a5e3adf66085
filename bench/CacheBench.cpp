// SPDX-License-Identifier: MIT
// The keyed cache beside Qt's cache behind a mutex (throughput, one thread and two) and beside an exact
// least-recently-used list of the same limit (hit ratios; one iteration is one whole trace).
#include "kit/data/Cache.h"

#include <benchmark/benchmark.h>

#include <QtCore/QCache>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <list>
#include <mutex>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

constexpr std::size_t keyCount = 100'000;
constexpr std::size_t limit = 10'000;
constexpr std::size_t traceLength = 1 << 20;

// Keys by popularity: the k-th is asked for in proportion to 1 / k^exponent.
class ZipfSource {
public:
    ZipfSource(std::size_t count, double exponent, std::uint64_t seed)
        : sums_(count)
        , random_(seed)
    {
        double sum = 0;
        for (std::size_t i = 0; i < count; ++i)
            sums_[i] = sum += 1 / std::pow(static_cast<double>(i + 1), exponent);
    }
    std::uint64_t next()
    {
        auto wanted = std::uniform_real_distribution<>(0, sums_.back())(random_);
        return static_cast<std::uint64_t>(std::ranges::lower_bound(sums_, wanted) - sums_.begin());
    }

private:
    std::vector<double> sums_;
    std::mt19937_64 random_;
};

// What to do, made beforehand: the key, and in the highest bit whether to write.
constexpr std::uint64_t writeBit = std::uint64_t(1) << 63;

std::vector<std::uint64_t> mixedOperations(int thread)
{
    ZipfSource keys(keyCount, 0.99, static_cast<std::uint64_t>(thread) + 1);
    std::mt19937_64 random(static_cast<std::uint64_t>(thread) + 100);
    std::vector<std::uint64_t> operations(traceLength);
    for (auto& operation : operations)
        operation = keys.next() | (random() % 10 == 0 ? writeBit : 0);
    return operations;
}

// A key of text, as names of files and addresses are.
struct TextKey {
    std::string text;

    bool operator==(const TextKey&) const = default;
    friend std::size_t qHash(const TextKey& key, std::size_t seed)
    {
        return seed ^ std::hash<std::string>{}(key.text);
    }
};

template <class Key>
const Key& keyOf(std::uint64_t number)
{
    static const auto keys = [] {
        std::vector<Key> all;
        for (std::uint64_t i = 0; i < keyCount; ++i) {
            if constexpr (std::is_same_v<Key, TextKey>)
                all.push_back({"/pictures/holidays/picture-" + std::to_string(i) + ".jpeg"});
            else
                all.push_back(i);
        }
        return all;
    }();
    return keys[number];
}

template <class Key>
struct OurCache {
    zelk::Cache<Key, std::uint64_t> cache;

    OurCache() { cache.setCountLimit(limit); }
    void set(const Key& key, std::uint64_t value) { cache.setValue(value, key); }
    std::uint64_t get(const Key& key) { return cache.value(key).value_or(0); }
};

template <class Key>
struct QtCacheBehindMutex {
    std::mutex mutex;
    QCache<Key, std::uint64_t> cache{limit};

    void set(const Key& key, std::uint64_t value)
    {
        std::lock_guard lock(mutex);
        cache.insert(key, new std::uint64_t(value));
    }
    std::uint64_t get(const Key& key)
    {
        std::lock_guard lock(mutex);
        auto* value = cache.object(key);
        return value ? *value : 0;
    }
};

// Nine reads to one write. Threads share the cache; each has its own sequence.
template <class Key, template <class> class Cache>
void mixed(benchmark::State& state)
{
    static std::unique_ptr<Cache<Key>> cache;
    if (state.thread_index() == 0) {
        cache = std::make_unique<Cache<Key>>();
        for (std::uint64_t i = limit; i-- > 0;)
            cache->set(keyOf<Key>(i), i);
    }
    auto operations = mixedOperations(state.thread_index());
    std::size_t i = 0;
    for (auto _ : state) {
        auto operation = operations[i++ % traceLength];
        auto& key = keyOf<Key>(operation & ~writeBit);
        if (operation & writeBit)
            cache->set(key, operation);
        else
            benchmark::DoNotOptimize(cache->get(key));
    }
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(mixed<std::uint64_t, OurCache>)->Name("numbers/ours")->Threads(1)->Threads(2)->UseRealTime();
BENCHMARK(mixed<std::uint64_t, QtCacheBehindMutex>)
    ->Name("numbers/QCache+mutex")
    ->Threads(1)
    ->Threads(2)
    ->UseRealTime();
BENCHMARK(mixed<TextKey, OurCache>)->Name("texts/ours")->Threads(1)->Threads(2)->UseRealTime();
BENCHMARK(mixed<TextKey, QtCacheBehindMutex>)
    ->Name("texts/QCache+mutex")
    ->Threads(1)
    ->Threads(2)
    ->UseRealTime();

class ExactLRU {
public:
    explicit ExactLRU(std::size_t itsLimit)
        : limit_(itsLimit)
    {
    }
    bool visit(std::uint64_t key)
    {
        if (auto found = places_.find(key); found != places_.end()) {
            order_.splice(order_.begin(), order_, found->second);
            return true;
        }
        order_.push_front(key);
        places_.emplace(key, order_.begin());
        if (places_.size() > limit_) {
            places_.erase(order_.back());
            order_.pop_back();
        }
        return false;
    }

private:
    std::size_t limit_;
    std::list<std::uint64_t> order_;
    std::unordered_map<std::uint64_t, std::list<std::uint64_t>::iterator> places_;
};

using Trace = std::vector<std::uint64_t>;

Trace zipf(double exponent)
{
    Trace trace(traceLength);
    ZipfSource keys(keyCount, exponent, 42);
    std::ranges::generate(trace, [&] { return keys.next(); });
    return trace;
}

// Half of the requests go to 5,000 keys that are wanted again and again, half to keys that never come back.
Trace scanAndHotSet()
{
    Trace trace(traceLength);
    ZipfSource hot(5000, 0.6, 42);
    std::mt19937_64 random(1);
    std::uint64_t scanned = keyCount;
    std::ranges::generate(trace, [&] { return random() % 2 ? hot.next() : scanned++; });
    return trace;
}

Trace loop(std::size_t length)
{
    Trace trace(traceLength);
    std::ranges::generate(trace, [&, i = std::uint64_t(0)]() mutable { return i++ % length; });
    return trace;
}

// The popular keys are others all the time.
Trace drift()
{
    Trace trace(traceLength);
    ZipfSource keys(20'000, 0.9, 42);
    std::ranges::generate(trace, [&, i = std::uint64_t(0)]() mutable { return i++ / 20 + keys.next(); });
    return trace;
}

void hitRatio(benchmark::State& state, Trace (*makeTrace)(), std::size_t entries)
{
    auto trace = makeTrace();
    auto percent = [&](auto visit) {
        return 100.0 * static_cast<double>(std::ranges::count_if(trace, visit))
            / static_cast<double>(traceLength);
    };
    for (auto _ : state) {
        zelk::Cache<std::uint64_t, bool> cache;
        cache.setCountLimit(static_cast<long>(entries));
        ExactLRU lru(entries);
        state.counters["ours%"] = percent([&](auto key) {
            if (cache.value(key))
                return true;
            cache.setValue(true, key);
            return false;
        });
        state.counters["LRU%"] = percent([&](auto key) { return lru.visit(key); });
    }
}

void registerHitRatios()
{
    struct Case {
        const char* name;
        Trace (*make)();
        std::vector<std::size_t> limits;
    };
    static const Case cases[] = {
        {"hits/zipf 0.7", [] { return zipf(0.7); }, {100, 1000, 10'000}},
        {"hits/zipf 0.99", [] { return zipf(0.99); }, {100, 1000, 10'000, 50'000}},
        {"hits/zipf 1.2", [] { return zipf(1.2); }, {100, 1000, 10'000}},
        {"hits/scan and hot set", scanAndHotSet, {1000, 5000, 8000}},
        {"hits/loop of 11000", [] { return loop(11'000); }, {10'000}},
        {"hits/loop of 20000", [] { return loop(20'000); }, {10'000}},
        {"hits/drift", drift, {1000, 10'000}},
    };
    for (auto& [name, make, limits] : cases) {
        for (auto entries : limits)
            benchmark::RegisterBenchmark((std::string(name) + "/" + std::to_string(entries)).c_str(),
                                         hitRatio, make, entries)
                ->Iterations(1)
                ->Unit(benchmark::kMillisecond);
    }
}

} // namespace

template <>
struct std::hash<TextKey> {
    std::size_t operator()(const TextKey& key) const { return std::hash<std::string>{}(key.text); }
};

int main(int argumentCount, char** arguments)
{
    benchmark::Initialize(&argumentCount, arguments);
    registerHitRatios();
    benchmark::RunSpecifiedBenchmarks();
}
