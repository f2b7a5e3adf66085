// SPDX-License-Identifier: MIT
// Reading a subtitle file as text, beside the least that anybody can do with it: one plain read into memory,
// nothing checked and nothing counted.
#include "platform/foundation/String.h"
#include "platform/foundation/TextSurvey.h"
#include "platform/foundation/URL.h"
#include "platform/foundation/UTF8.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

enum class Script { latin, mixed };

// Cues of about 80 bytes, as many as make up `size`.
std::string subtitles(std::size_t size, Script script)
{
    std::string text;
    text.reserve(size + 200);
    for (long number = 1; text.size() < size; ++number) {
        char head[64];
        std::snprintf(head, sizeof head, "%ld\n%02ld:%02ld:%02ld,000 --> %02ld:%02ld:%02ld,900\n", number,
                      number / 3600 % 100, number / 60 % 60, number % 60, number / 3600 % 100,
                      number / 60 % 60, number % 60);
        text += head;
        text += script == Script::latin ? "And nobody ever asked her why she stayed.\n\n"
                                        : "И никто её не спросил: 彼女はなぜ残ったのか。\n\n";
    }
    return text;
}

// One file a size and script for the whole run.
std::string fileOf(std::size_t size, Script script)
{
    static const auto directory = [] {
        auto path = std::filesystem::temp_directory_path() / ("zelk-bench-" + std::to_string(::getpid()));
        std::filesystem::create_directory(path);
        std::atexit([] {
            std::error_code ignored; // a file left in the temporary directory is no fault of the measurement
            std::filesystem::remove_all(std::filesystem::temp_directory_path()
                                            / ("zelk-bench-" + std::to_string(::getpid())),
                                        ignored);
        });
        return path;
    }();
    auto path = directory / (std::to_string(size) + (script == Script::latin ? "-latin.srt" : "-mixed.srt"));
    if (!std::filesystem::exists(path)) {
        auto text = subtitles(std::min<std::size_t>(size, 16 << 20), script);
        auto* file = std::fopen(path.c_str(), "wb");
        for (std::size_t written = 0; written < size; written += text.size())
            std::fwrite(text.data(), 1, text.size(), file);
        std::fclose(file);
    }
    return path;
}

void plainRead(benchmark::State& state, Script script)
{
    auto path = fileOf(static_cast<std::size_t>(state.range(0)), script);
    auto size = std::filesystem::file_size(path);
    for (auto _ : state) {
        std::unique_ptr<char[]> bytes(new char[size]);
        int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        std::size_t at = 0;
        for (ssize_t count; (count = ::read(file, bytes.get() + at, size - at)) > 0;)
            at += static_cast<std::size_t>(count);
        ::close(file);
        benchmark::DoNotOptimize(bytes.get());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

void contentsOf(benchmark::State& state, Script script)
{
    auto url = platform::URL::fileURL(fileOf(static_cast<std::size_t>(state.range(0)), script));
    std::size_t size = 0;
    for (auto _ : state) {
        auto text = platform::String::contentsOf(url);
        if (!text)
            return state.SkipWithError("the file was not read");
        size = text->size();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

void validate(benchmark::State& state, Script script)
{
    auto text = subtitles(256 * 1024, script);
    for (auto _ : state)
        benchmark::DoNotOptimize(platform::isWellFormedUTF8(text));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void survey(benchmark::State& state, Script script)
{
    auto text = subtitles(256 * 1024, script);
    for (auto _ : state)
        benchmark::DoNotOptimize(platform::surveyText(text).lineEnds);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void sizes(benchmark::internal::Benchmark* benchmark)
{
    for (long size : {100'000L, 1'000'000L, 10'000'000L, 100'000'000L, 1'000'000'000L})
        benchmark->Arg(size);
    // Long enough that no size is measured once only: in a virtual machine the first touch of a gigabyte takes
    // the host a second, whoever touches it.
    benchmark->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(3);
}

BENCHMARK_CAPTURE(plainRead, latin, Script::latin)->Apply(sizes);
BENCHMARK_CAPTURE(contentsOf, latin, Script::latin)->Apply(sizes);
BENCHMARK_CAPTURE(contentsOf, mixed, Script::mixed)->Apply(sizes);
BENCHMARK_CAPTURE(validate, latin, Script::latin);
BENCHMARK_CAPTURE(validate, mixed, Script::mixed);
BENCHMARK_CAPTURE(survey, latin, Script::latin);
BENCHMARK_CAPTURE(survey, mixed, Script::mixed);

} // namespace

BENCHMARK_MAIN();
