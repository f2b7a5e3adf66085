// SPDX-License-Identifier: MIT
// What a person does with a text of a gigabyte: each step with its layout and its whole frame painted, 900 by 700 points. The
// peer is one pass over the bytes, which is what a plain view would need at least.
//
//   TextViewBench [--benchmark_filter=...]     ZELK_BENCH_BYTES sets the text's size (default 1,000,000,000)
#include "platform/dispatch/VirtualClock.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UITextView.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/text/TextSearch.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <random>

using namespace platform;

namespace {

constexpr CGSize windowSize{900, 700};

const String& text()
{
    static const String shared = [] {
        auto* wanted = std::getenv("ZELK_BENCH_BYTES");
        std::size_t size = wanted ? std::strtoull(wanted, nullptr, 10) : 1'000'000'000;
        auto bytes = std::make_shared<std::string>();
        bytes->reserve(size + 256);
        for (unsigned cue = 1; bytes->size() < size; ++cue) {
            *bytes +=
                std::to_string(cue) + "\n00:00:01,000 --> 00:00:02,500\nI never said she stole my money.\n";
            if (cue % 3 == 0)
                *bytes += "Съешь ещё этих мягких французских булок, да выпей чаю.\n";
            *bytes += "\n";
        }
        return String::adopting(bytes, *bytes);
    }();
    return shared;
}

// A text view in a window of no display.
struct Stage {
    VirtualClock clock;
    std::shared_ptr<UIWindow> window = std::make_shared<UIWindow>(CGRect{{}, windowSize});
    std::shared_ptr<UITextView> view = std::make_shared<UITextView>(CGRect{{}, windowSize});

    Stage()
    {
        view->setAutoresizingMask({UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight});
        view->setFont(UIFont::monospacedSystemFont(17));
        view->setEditable(false);
        view->setText(text());
        window->addSubview(view);
        window->showOffscreen();
        frame();
    }

    void frame()
    {
        window->layoutNow();
        auto picture = makeImage(window->bounds().size, 1,
                                 [&](CGContext& context) { window->paint(context, window->bounds()); });
        benchmark::DoNotOptimize(picture);
    }
    void press(UIKeyCode key)
    {
        window->makeFirstResponder(view);
        window->sendPress({.key = key, .modifiers = {UIKeyModifierFlags::control}});
    }
};

void openAndPaintTheFirstFrame(benchmark::State& state)
{
    text();
    for (auto _ : state)
        Stage stage;
}
BENCHMARK(openAndPaintTheFirstFrame)->Unit(benchmark::kMillisecond)->Iterations(3);

void aScrolledFrame(benchmark::State& state)
{
    Stage stage;
    std::mt19937 random(1);
    std::int64_t step = 0;
    for (auto _ : state) {
        if (step++ % 50 == 0) { // from another place now and then
            state.PauseTiming();
            auto place = static_cast<std::int64_t>(random() / double(std::mt19937::max())
                                                   * static_cast<double>(text().size()));
            stage.view->scrollRangeToVisible({Utf8Offset{place}, Utf8Offset{place}});
            stage.frame();
            state.ResumeTiming();
        }
        stage.view->scrollBy({0, 54});
        stage.frame();
    }
}
BENCHMARK(aScrolledFrame)->Unit(benchmark::kMillisecond)->Iterations(1000);

void aFrameAnywhere(benchmark::State& state)
{
    Stage stage;
    std::mt19937 random(2);
    for (auto _ : state) {
        auto place = static_cast<std::int64_t>(random() / double(std::mt19937::max())
                                               * static_cast<double>(text().size()));
        stage.view->scrollRangeToVisible({Utf8Offset{place}, Utf8Offset{place}});
        stage.frame();
    }
}
BENCHMARK(aFrameAnywhere)->Unit(benchmark::kMillisecond)->Iterations(500);

void jumpToTheEndAndBack(benchmark::State& state)
{
    Stage stage;
    for (auto _ : state) {
        stage.press(UIKeyCode::end);
        stage.frame();
        stage.press(UIKeyCode::home);
        stage.frame();
    }
}
BENCHMARK(jumpToTheEndAndBack)->Unit(benchmark::kMillisecond)->Iterations(100);

void changeTheTextSize(benchmark::State& state)
{
    Stage stage;
    stage.press(UIKeyCode::end);
    double size = 17;
    for (auto _ : state) {
        size = size > 40 ? 12 : size + 2;
        stage.view->setFont(UIFont::monospacedSystemFont(size));
        stage.frame();
    }
}
BENCHMARK(changeTheTextSize)->Unit(benchmark::kMillisecond)->Iterations(100);

void resizeTheWindow(benchmark::State& state)
{
    Stage stage;
    stage.press(UIKeyCode::end);
    int step = 0;
    for (auto _ : state) {
        stage.window->setFrameSize({400.0 + step++ % 50 * 10, 700});
        stage.frame();
    }
}
BENCHMARK(resizeTheWindow)->Unit(benchmark::kMillisecond)->Iterations(200);

void selectAllAndCopy(benchmark::State& state)
{
    Stage stage;
    for (auto _ : state) {
        stage.view->selectAll();
        stage.view->copy();
        stage.frame();
        stage.view->setSelectedRange({});
    }
}
BENCHMARK(selectAllAndCopy)->Unit(benchmark::kMillisecond)->Iterations(50);

// Words that stand at the end of 100 MB only, or nowhere: the first match on screen, and all of them counted.
void findAWord(benchmark::State& state, const char* word)
{
    constexpr std::size_t searched = 100'000'000;
    auto bytes = std::make_shared<std::string>(text().utf8().substr(0, searched));
    *bytes += "\nthe last word of it all is Ende Конец\n";
    auto shared = String::adopting(bytes, *bytes);
    Stage stage;
    stage.view->setText(shared);
    stage.frame();
    double firstMatch = 0, all = 0;
    for (auto _ : state) {
        auto begin = std::chrono::steady_clock::now();
        auto elapsed = [&] {
            return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
                .count();
        };
        TextSearch search(stage.view->buffer(), TextPattern(word));
        if (auto match = search.first({{0}, stage.view->buffer().end()})) {
            stage.view->setSelectedRange(*match);
            stage.view->scrollRangeToVisible(*match);
        }
        stage.frame();
        firstMatch += elapsed();
        while (search.countOn()) { }
        all += elapsed();
        benchmark::DoNotOptimize(search.count());
        stage.view->scrollRangeToVisible({{0}, {0}});
    }
    auto rounds = static_cast<double>(state.iterations());
    state.counters["first_ms"] = firstMatch / rounds;
    state.counters["all_ms"] = all / rounds;
}
BENCHMARK_CAPTURE(findAWord, rare, "ende")->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK_CAPTURE(findAWord, rareCyrillic, "конец")->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK_CAPTURE(findAWord, everywhere, "money")->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK_CAPTURE(findAWord, oneLetter, "e")->Unit(benchmark::kMillisecond)->Iterations(5);

void peerOnePassOverTheBytes(benchmark::State& state)
{
    auto bytes = text().utf8();
    for (auto _ : state) {
        std::size_t lines = 0;
        for (auto* at = bytes.data();
             (at = static_cast<const char*>(
                  std::memchr(at, '\n', static_cast<std::size_t>(bytes.data() + bytes.size() - at))));
             ++at)
            ++lines;
        benchmark::DoNotOptimize(lines);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes.size())
                            * static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(peerOnePassOverTheBytes)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

BENCHMARK_MAIN();
