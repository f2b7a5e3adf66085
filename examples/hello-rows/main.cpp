// SPDX-License-Identifier: MIT
// A declarative list in a window: hello-rows, or hello-rows --snapshot OUT.png for a picture of it without a display.
#include "platform/graphics/GraphicsRuntime.h"
#include "platform/swiftui/swiftui.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/snapshot.h"

#include <cstdio>
#include <cstring>
#include <ranges>

namespace {

using namespace platform;

constexpr CGSize windowSize{360, 480};
constexpr int rowCount = 100;

// A row that counts how often it was pressed.
struct Row {
    int number = 0;
    State<int> count = 0;

    auto dynamicProperties() { return std::tie(count); }
    auto body() const
    {
        auto binding = count.binding();
        return HStack{Circle{} | fill(*count > 0 ? UIColor::systemGreen() : UIColor::systemGray4())
                          | frame({.width = 12, .height = 12}),
                      Text{"Row " + std::to_string(number)}, Spacer{},
                      when(*count > 0,
                           [&] {
                               return Text{std::to_string(*count)}
                               | foregroundColor(UIColor::secondaryLabel());
                           }),
                      Button{"Count", [binding] { binding.set(binding.get() + 1); }}}
        | padding(EdgeSet::horizontal) | padding(EdgeSet::vertical, 6);
    }
    bool operator==(const Row&) const = default;
};

struct Rows {
    auto body() const
    {
        return VStack{{.spacing = 0},
                      Text{"Hello, rows"} | font(Font::title()) | padding(12),
                      Divider{},
                      ScrollView{VStack{{.spacing = 0},
                                        ForEach{std::views::iota(1, rowCount + 1), std::identity{},
                                                [](int number) { return Row{number}; }}}}}
        | background(Color{UIColor::systemBackground()});
    }
    bool operator==(const Rows&) const = default;
};

int writeSnapshot(const char* path)
{
    auto picture =
        snapshot(std::make_shared<UIHostingController<Rows>>(Rows{}), {.size = windowSize, .scale = 2});
    if (!picture) {
        std::fprintf(stderr, "hello-rows: %s\n", picture.error().localizedDescription().c_str());
        return 1;
    }
    if (auto written = picture->writePNG(path); !written) {
        std::fprintf(stderr, "hello-rows: %s: %s\n", path, written.error().localizedDescription().c_str());
        return 1;
    }
    return 0;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount == 3 && std::strcmp(arguments[1], "--snapshot") == 0)
        return writeSnapshot(arguments[2]);
    if (argumentCount != 1) {
        std::fprintf(stderr, "usage: hello-rows [--snapshot OUT.png]\n");
        return 2;
    }
    if (!displayIsAvailable()) {
        std::fprintf(stderr, "hello-rows: there is no display; try --snapshot OUT.png\n");
        return 1;
    }
    auto& application = UIApplication::shared();
    application.start();
    auto window = std::make_shared<UIWindow>(CGRect{{}, windowSize});
    window->setTitle("Hello, rows");
    window->setRootViewController(std::make_shared<UIHostingController<Rows>>(Rows{}));
    window->makeKeyAndVisible();
    return application.run();
}
