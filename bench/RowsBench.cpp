// SPDX-License-Identifier: MIT
// What rows of a declarative list cost: to mount, to change one, to change all. Without a display; painting is not part
// of it.
#include "platform/swiftui/swiftui.h"
#include "platform/uikit/UIWindow.h"

#include <benchmark/benchmark.h>

#include <functional>
#include <memory>
#include <ranges>
#include <vector>

namespace {

using namespace platform;

using Bindings = std::shared_ptr<std::vector<std::optional<Binding<int>>>>;

struct Row {
    int index;
    Bindings bindings;
    State<int> count = 10;

    auto dynamicProperties() { return std::tie(count); }
    auto body() const
    {
        (*bindings)[static_cast<std::size_t>(index)] = count.binding();
        return HStack{Text{"Row " + std::to_string(index) + ": " + std::to_string(*count)}, Spacer{}};
    }
    bool operator==(const Row&) const = default;
};

auto rows(const Bindings& bindings)
{
    return ScrollView{VStack{{.spacing = 0},
                             ForEach{std::views::iota(0, static_cast<int>(bindings->size())), std::identity{},
                                     [bindings](int index) { return Row{index, bindings}; }}}};
}

// A list in a window that nobody sees.
class Scene {
public:
    explicit Scene(std::int64_t count)
        : bindings_(std::make_shared<Bindings::element_type>(static_cast<std::size_t>(count)))
        , controller_(std::make_shared<UIHostingController<decltype(rows(bindings_))>>(rows(bindings_)))
        , window_(std::make_shared<UIWindow>(CGRect::make(0, 0, 400, 800)))
    {
        window_->setRootViewController(controller_);
        window_->showOffscreen();
        window_->layoutNow();
    }
    ~Scene() { window_->close(); }
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    void set(std::size_t row, int count) { (*bindings_)[row]->set(count); }
    void update() { controller_->flush(); }
    std::size_t count() const { return bindings_->size(); }
    const HostStatistics& statistics() { return controller_->statistics(); }

private:
    Bindings bindings_;
    std::shared_ptr<UIHostingController<decltype(rows(std::declval<const Bindings&>()))>> controller_;
    std::shared_ptr<UIWindow> window_;
};

void mount(benchmark::State& state)
{
    for (auto _ : state) {
        auto scene = std::make_unique<Scene>(state.range(0));
        state.PauseTiming(); // taking it down is not what is measured
        scene.reset();
        state.ResumeTiming();
    }
}

void changeOne(benchmark::State& state)
{
    Scene scene(state.range(0));
    auto before = scene.statistics();
    int value = 0;
    std::size_t row = 0;
    for (auto _ : state) {
        value = (value + 1) % 89; // no row gets the value it has: no count of rows is a multiple
        row = (row + 7919) % scene.count();
        scene.set(row, 10 + value);
        scene.update();
    }
    auto iterations = static_cast<double>(state.iterations());
    state.counters["bodies"] = static_cast<double>(scene.statistics().bodies - before.bodies) / iterations;
    state.counters["placements"] =
        static_cast<double>(scene.statistics().placements - before.placements) / iterations;
}

void changeAll(benchmark::State& state)
{
    Scene scene(state.range(0));
    int value = 10;
    for (auto _ : state) {
        value = value == 10 ? 11 : 10;
        for (std::size_t row = 0; row < scene.count(); ++row)
            scene.set(row, value);
        scene.update();
    }
}

BENCHMARK(mount)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(changeOne)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(changeAll)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
