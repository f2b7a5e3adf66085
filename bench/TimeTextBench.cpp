// SPDX-License-Identifier: MIT
// What a player's clock costs each time it is drawn, beside ICU's date format doing the same in the same run.
#include "kit/media/positionalString.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include <unicode/smpdtfmt.h>

namespace {

std::atomic<std::int64_t> allocations = 0;

// Times of one medium, none of which repeats the one before.
double nextTime(double& time)
{
    time = time > 7000 ? 0 : time + 1.0 / 60;
    return time;
}

void run(benchmark::State& state, const zelk::PositionalStringOptions& options)
{
    double time = 0;
    auto before = allocations.load();
    for (auto _ : state)
        benchmark::DoNotOptimize(zelk::positionalString(nextTime(time), options));
    state.counters["allocations"] =
        benchmark::Counter(static_cast<double>(allocations - before), benchmark::Counter::kAvgIterations);
}

void positionalSeconds(benchmark::State& state)
{
    run(state, {.maxDisplayedTime = 7000});
}
void positionalHundredths(benchmark::State& state)
{
    run(state, {.resolution = zelk::Resolution::milliseconds, .maxDisplayedTime = 7000});
}
void positionalCustomSeparator(benchmark::State& state)
{
    run(state, {zelk::Resolution::milliseconds, 7000, ",", 3});
}
void positionalLetterAsSeparator(benchmark::State& state)
{
    run(state, {zelk::Resolution::milliseconds, 7000, "h", 3});
}

// The peer keeps its formatter and its buffer.
void icuDateFormat(benchmark::State& state)
{
    UErrorCode status = U_ZERO_ERROR;
    icu::SimpleDateFormat format(u"HH:mm:ss.SS", icu::Locale("en@calendar=iso8601"), status);
    format.setTimeZone(*icu::TimeZone::getGMT());
    if (U_FAILURE(status))
        return state.SkipWithError("no date format");
    double time = 0;
    icu::UnicodeString text;
    std::string result;
    for (auto _ : state) {
        format.format(nextTime(time) * 1000, text.remove());
        result.clear();
        benchmark::DoNotOptimize(text.toUTF8String(result));
    }
}

} // namespace

// Counts what the measured code allocates.
void* operator new(std::size_t size)
{
    allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* memory = std::malloc(size > 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

BENCHMARK(positionalSeconds);
BENCHMARK(positionalHundredths);
BENCHMARK(positionalCustomSeparator);
BENCHMARK(positionalLetterAsSeparator);
BENCHMARK(icuDateFormat);
BENCHMARK_MAIN();
