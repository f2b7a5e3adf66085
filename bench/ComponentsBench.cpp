// SPDX-License-Identifier: MIT
// What components cost at 1920 by 1080: each number is the time from a change until its frame is painted. The peer of
// bench/peer_qml.cpp does the same; bench/bench-components puts both side by side.
#include "bench/FrameTimes.h"

#include "bottomsheet/bottomSheet.h"
#include "kit/ui/shimmering.h"
#include "platform/dispatch/VirtualClock.h"
#include "platform/graphics/CGContext_p.h"
#include "platform/swiftui/swiftui.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIScrollView.h"
#include "platform/uikit/UIWindow.h"

#include <QtGui/QImage>
#include <QtGui/QPainter>

#include <algorithm>
#include <memory>
#include <optional>
#include <ranges>
#include <string_view>
#include <vector>

namespace {

using namespace platform;
using namespace std::chrono_literals;

constexpr CGSize screen{1920, 1080};
constexpr Duration frameTime = std::chrono::nanoseconds{16'666'667};

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

auto placeholders()
{
    auto bone = [](int) {
        return RoundedRectangle{8} | fill(UIColor::systemGray3()) | frame({.width = 340, .height = 80})
            | zelk::shimmering();
    };
    auto column = [bone](int) {
        return VStack{{.spacing = 16}, ForEach{std::views::iota(0, 10), std::identity{}, bone}};
    };
    return HStack{{.spacing = 16}, ForEach{std::views::iota(0, 5), std::identity{}, column}};
}

struct SheetScene {
    State<bool> isShown = true;

    auto dynamicProperties() { return std::tie(isShown); }
    auto body() const
    {
        auto line = [](int index) { return Text{"Line " + std::to_string(index)}; };
        return Color{UIColor::systemBackground()}
        | bottomsheet::bottomSheet(isShown.binding(), {.height = 700}, [line] {
                   return VStack{ForEach{std::views::iota(0, 20), std::identity{}, line}};
               });
    }
};

// The surface of a window, kept as one on a desktop is.
QImage& surface()
{
    static QImage image(int(screen.width), int(screen.height), QImage::Format_RGB32);
    return image;
}

// A window of no display that paints what is dirty, as one on a desktop does.
class Stage {
public:
    template <View Root>
    explicit Stage(const Root& root)
        : window_(std::make_shared<UIWindow>(CGRect{{}, screen}))
    {
        window_->setRootViewController(std::make_shared<UIHostingController<Root>>(root));
        window_->showOffscreen();
        clock_.settle();
        paint();
    }
    ~Stage() { window_->close(); }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    void settleAndPaint()
    {
        clock_.settle();
        paint();
    }
    void nextFrame()
    {
        clock_.advance(frameTime);
        paint();
    }
    UIWindow& window() { return *window_; }
    VirtualClock& clock() { return clock_; }
    bool paintedAnything() const { return paintedAnything_; }

private:
    void paint()
    {
        window_->layoutNow();
        auto dirty = window_->takeDirtyRegion();
        paintedAnything_ = !dirty.isEmpty();
        QPainter painter(&surface());
        for (const auto& rect : dirty.rects()) {
            painter.setClipRect(QRectF(rect.minX(), rect.minY(), rect.width(), rect.height()));
            auto context = contextOver(painter, window_->traitCollection().colorAppearance());
            window_->paint(context, rect);
        }
    }

    VirtualClock clock_;
    std::shared_ptr<UIWindow> window_;
    bool paintedAnything_ = false;
};

void benchRows(int count)
{
    auto suffix = "-" + std::to_string(count);
    auto bindings = std::make_shared<Bindings::element_type>(static_cast<std::size_t>(count));
    auto before = bench::ownKilobytes();
    std::unique_ptr<Stage> stage;
    std::vector<bench::Taken> mounting;
    for (int turn = 0; turn < 5; ++turn) {
        stage.reset(); // taking it down is not what is measured
        mounting.push_back(bench::take([&] { stage = std::make_unique<Stage>(rows(bindings)); }));
        if (turn == 0)
            bench::reportMemory("memory" + suffix, bench::ownKilobytes() - before);
    }
    bench::report("mount" + suffix, mounting);
    bench::measure("change-one" + suffix, 101, [&](int turn) {
        (*bindings)[static_cast<std::size_t>(turn) % 40]->set(100 + turn); // one that is seen
        stage->settleAndPaint();
        precondition(stage->paintedAnything(), "a row that changed was not painted");
    });
    bench::measure("change-all" + suffix, 7, [&](int turn) {
        for (auto& binding : *bindings)
            binding->set(1000 + turn);
        stage->settleAndPaint();
    });
}

void benchScrolling()
{
    auto bindings = std::make_shared<Bindings::element_type>(10'000);
    Stage stage(rows(bindings));
    bench::measure("scroll-10000", 300, [&](int) {
        stage.window().sendScroll({.delta = {0, -37},
                                   .isPrecise = true,
                                   .windowLocation = {screen.width / 2, screen.height / 2},
                                   .timestamp = stage.clock().now()});
        stage.nextFrame();
        precondition(stage.paintedAnything(), "nothing was scrolled");
    });
}

void benchShimmer()
{
    Stage stage(placeholders());
    stage.clock().advance(300ms);
    int painted = 0;
    bench::measure("shimmer-50", 90, [&](int) {
        stage.nextFrame();
        painted += stage.paintedAnything() ? 1 : 0;
    });
    precondition(painted > 60, "the placeholders stood still");
}

void benchSheet()
{
    Stage stage(SheetScene{});
    stage.clock().advance(2s);
    stage.settleAndPaint();
    UITouch touch{.timestamp = stage.clock().now(),
                  .windowLocation = {screen.width / 2, screen.height - 690}};
    stage.window().sendTouch(touch);
    touch.phase = UITouchPhase::moved;
    int painted = 0;
    bench::measure("sheet-drag", 150, [&](int turn) {
        touch.previousWindowLocation = touch.windowLocation;
        touch.windowLocation.y += turn % 100 < 50 ? 3 : -3;
        touch.timestamp = stage.clock().now();
        stage.window().sendTouch(touch);
        stage.nextFrame();
        painted += stage.paintedAnything() ? 1 : 0;
    });
    precondition(painted > 100, "the sheet did not follow");
    touch.phase = UITouchPhase::cancelled;
    stage.window().sendTouch(touch);
}

} // namespace

// ComponentsBench [rows|scrolling|shimmer|sheet]...: all, or those that are named.
int main(int argumentCount, char** arguments)
{
    // The peer has an empty window from the beginning; what that takes is not the rows'.
    surface().fill(Qt::white);
    Stage(Color{UIColor::systemBackground()});
    std::vector<std::string_view> wanted(arguments + 1, arguments + argumentCount);
    auto isWanted = [&](std::string_view name) {
        return wanted.empty() || std::ranges::find(wanted, name) != wanted.end();
    };
    if (isWanted("rows")) {
        benchRows(1'000);
        benchRows(10'000);
    }
    if (isWanted("scrolling"))
        benchScrolling();
    if (isWanted("shimmer"))
        benchShimmer();
    if (isWanted("sheet"))
        benchSheet();
    return 0;
}
