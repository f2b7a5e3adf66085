// SPDX-License-Identifier: MIT
// The pickers over much: the library's page on a folder of 10,000 photographs, up to its first screenful of pictures and
// scrolled to its end, and the trimmer's strip of a film of an hour. Beside them, in the same run, what one would write
// without them: the same pictures decoded one after the other, and as many calls of the ffmpeg program.
//
//     what <tab> median ms <tab> worst ms <tab> median ms of processor time, of all threads
//     scrolling <tab> frames <tab> median ms <tab> worst ms <tab> over 16 ms
//     of the worst <tab> ms of processor <tab> ms until it got one <tab> ms asleep, for locks and pages
//     of all <tab> worst ms of processor <tab> worst ms until it got one <tab> worst ms asleep
//
// Exits with 1 where a screenful took longer than 300 ms, a frame longer than 16 ms, or the strip longer than a second; in
// the best of five.
#include "bench/FrameTimes.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/GraphicsRuntime.h"
#include "platform/services/MediaCell.h"
#include "platform/services/MediaGridView.h"
#include "platform/services/UIImagePickerController.h"
#include "platform/services/UIVideoEditorController.h"
#include "platform/services/VideoTrimStrip.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIWindow.h"

#include <QtGui/QImageReader>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <time.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;
namespace files = std::filesystem;

constexpr CGSize windowSize{760, 560};
constexpr double displayScale = 2;
constexpr int photographs = 10'000, distinct = 100, runs = 5;
constexpr auto frameTime = std::chrono::nanoseconds(16'666'667);

// --- What they are shown ---------------------------------------------------------------------------

void run(const std::string& command)
{
    if (std::system(command.c_str()) != 0) {
        std::fprintf(stderr, "PickerBench: this failed: %s\n", command.c_str());
        std::exit(2);
    }
}

// Photographs with grain, most of them further names of a hundred; made once.
files::path library()
{
    auto folder = files::path(ZELK_BINARY_DIR).parent_path() / "bench-data" / "picker";
    auto pictures = folder / "pictures";
    if (!files::exists(folder / "complete")) {
        files::create_directories(pictures / "0");
        run("ffmpeg -v error -nostdin -y -f lavfi -i testsrc2=s=1600x1200:r=1,noise=alls=16:allf=t -frames:v "
            + std::to_string(distinct) + " -q:v 4 '" + (pictures / "0").string() + "/%03d.jpg'");
        for (int i = distinct; i < photographs; ++i) {
            auto day = pictures / std::to_string(i / 500);
            files::create_directories(day);
            char name[16];
            std::snprintf(name, sizeof name, "%03d.jpg", i % distinct + 1);
            std::error_code isThere;
            files::create_hard_link(pictures / "0" / name, day / (std::to_string(i) + ".jpg"), isThere);
        }
        run("ffmpeg -v error -nostdin -y -f lavfi -i testsrc=s=640x360:r=5:d=3600 -c:v libx264 -preset "
            "ultrafast -g 50 '"
            + (folder / "hour.mp4").string() + "'");
        std::ofstream(folder / "complete").put('\n');
    }
    files::create_directories(folder / "config");
    std::ofstream(folder / "config" / "user-dirs.dirs")
        << "XDG_PICTURES_DIR=\"" << pictures.string() << "\"\nXDG_VIDEOS_DIR=\"/nonexistent\"\n";
    ::setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1);
    return folder;
}

// --- A window --------------------------------------------------------------------------------------

class Scene {
public:
    explicit Scene(const std::shared_ptr<UIViewController>& controller)
        : window_(std::make_shared<UIWindow>(CGRect{{}, windowSize}))
    {
        UITraitCollection traits;
        traits.displayScale = displayScale;
        window_->setBaseTraits(traits);
        window_->setRootViewController(controller);
    }
    ~Scene() { window_->close(); }
    Scene(const Scene&) = delete; // a window
    Scene& operator=(const Scene&) = delete;

    UIWindow& window() { return *window_; }
    void turn()
    {
        while (RunLoop::main().runPending()) { }
        window_->layoutNow();
        auto dirty = window_->takeDirtyRegion();
        for (const auto& rect : dirty.rects())
            paint(rect);
    }
    // Until `isDone`, seen after a turn with its painting.
    bench::Taken timeUntil(const std::function<bool()>& isDone)
    {
        return bench::take([&] {
            window_->showOffscreen();
            for (turn(); !isDone(); turn())
                std::this_thread::sleep_for(200us);
        });
    }

private:
    void paint(const CGRect& rect)
    {
        auto painted = makeImage(rect.size, displayScale, [&](CGContext& context) {
            context.translate(-rect.minX(), -rect.minY());
            window_->paint(context, rect);
        });
        if (!painted)
            std::abort();
    }
    std::shared_ptr<UIWindow> window_;
};

template <class View>
View* findView(const UIView& root)
{
    for (const auto& child : root.subviews()) {
        if (auto* found = dynamic_cast<View*>(child.get()))
            return found;
        if (auto* found = findView<View>(*child))
            return found;
    }
    return nullptr;
}

std::vector<MediaCell*> cellsInSight(const MediaGridView& grid)
{
    std::vector<MediaCell*> cells;
    for (const auto& child : grid.subviews()) {
        auto* cell = dynamic_cast<MediaCell*>(child.get());
        if (cell && cell->frame().intersects(grid.bounds()))
            cells.push_back(cell);
    }
    return cells;
}

bool isScreenful(const UIWindow& window)
{
    auto* grid = findView<MediaGridView>(*window.rootViewController()->view());
    auto cells = grid ? cellsInSight(*grid) : std::vector<MediaCell*>();
    return !cells.empty() && std::ranges::all_of(cells, &MediaCell::isLoaded);
}

// --- The library -----------------------------------------------------------------------------------

std::shared_ptr<UIImagePickerController> picker()
{
    auto made = std::make_shared<UIImagePickerController>();
    made->prefersEmbeddedLibrary = true;
    return made;
}

// Whatever else the machine does makes it longer, never shorter.
double best(const std::vector<bench::Taken>& times)
{
    return std::ranges::min(times, {}, &bench::Taken::wall).wall;
}

bool measureScreenful(std::vector<std::string>& shown)
{
    std::vector<bench::Taken> times, peers;
    for (int i = 0; i < runs; ++i) {
        Scene scene(picker());
        times.push_back(scene.timeUntil([&] { return isScreenful(scene.window()); }));
        shown.clear();
        for (auto* cell :
             cellsInSight(*findView<MediaGridView>(*scene.window().rootViewController()->view())))
            shown.push_back(cell->file().path);
        peers.push_back(bench::take([&] {
            for (const auto& path : shown) {
                QImageReader reader(QString::fromStdString(path));
                reader.setScaledSize(reader.size().scaled(256, 256, Qt::KeepAspectRatioByExpanding));
                if (reader.read().isNull())
                    std::abort();
            }
        }));
    }
    std::printf("%d photographs of 1600 by 1200, %zu of them in sight\n", photographs, shown.size());
    bench::report("library up to its first screenful", times);
    bench::report("peer: the same pictures, one by one, without looking for files", peers);
    return best(times) <= 300;
}

// Where the time of a frame went.
struct Frame {
    double wall = 0, processor = 0; // ms
    double queued = 0;              // ms that it could have run, but for others
    double asleep() const { return std::max(wall - processor - queued, 0.0); }
};

Frame spentByThread()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    double ran = 0, queued = 0; // ns
    std::ifstream("/proc/thread-self/schedstat") >> ran >> queued;
    return {.processor = static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6,
            .queued = queued / 1e6};
}

template <class Work>
void addTo(Frame& frame, Work&& work)
{
    auto before = spentByThread();
    auto start = SteadyClock::now();
    work();
    frame.wall += std::chrono::duration<double, std::milli>(SteadyClock::now() - start).count();
    auto after = spentByThread();
    frame.processor += after.processor - before.processor;
    frame.queued += after.queued - before.queued;
}

bool measureScrolling()
{
    Scene scene(picker());
    scene.timeUntil([&] { return isScreenful(scene.window()); });
    std::vector<Frame> frames;
    for (int i = 0; i < 600; ++i) {
        auto end = SteadyClock::now() + frameTime;
        UIScrollWheel wheel{.delta = {0, i < 300 ? -60.0 : -600.0}}; // a flick, then as fast as anybody can
        wheel.windowLocation = {windowSize.width / 2, windowSize.height / 2};
        wheel.timestamp = RunLoop::main().clock().now();
        auto& frame = frames.emplace_back();
        addTo(frame, [&] {
            scene.window().sendScroll(wheel);
            scene.turn();
        });
        for (auto now = SteadyClock::now(); now < end; now = SteadyClock::now()) {
            std::this_thread::sleep_for(std::min<SteadyClock::duration>(1ms, end - now));
            auto next = RunLoop::main().nextDeadline();
            if (next && *next <= RunLoop::main().clock().now())
                addTo(frame, [] {
                    while (RunLoop::main().runPending()) { }
                });
        }
    }
    auto worst = [&](auto what) { return std::invoke(what, std::ranges::max(frames, {}, what)); };
    std::ranges::sort(frames, {}, &Frame::wall);
    auto late = std::ranges::count_if(frames, [](const Frame& frame) { return frame.wall > 16; });
    const auto& last = frames.back();
    std::printf("scrolling\t%zu\t%.2f\t%.2f\t%td\n", frames.size(), frames[frames.size() / 2].wall, last.wall,
                late);
    std::printf("of the worst\t%.2f\t%.2f\t%.2f\n", last.processor, last.queued, last.asleep());
    std::printf("of all\t%.2f\t%.2f\t%.2f\n", worst(&Frame::processor), worst(&Frame::queued),
                worst(&Frame::asleep));
    return late == 0;
}

// --- The trimmer -----------------------------------------------------------------------------------

bool measureStrip(const std::string& film)
{
    std::vector<bench::Taken> times, peers;
    std::size_t count = 0;
    for (int i = 0; i < runs; ++i) {
        auto editor = std::make_shared<UIVideoEditorController>();
        editor->videoPath = film;
        Scene scene(editor);
        times.push_back(scene.timeUntil([&] {
            auto* strip = findView<VideoTrimStrip>(*editor->view());
            count = strip ? strip->pictureCount(16.0 / 9) : 0;
            return strip && strip->duration() > 0 && strip->pictures().size() == count
                && std::ranges::none_of(strip->pictures(), &UIImage::isEmpty);
        }));
    }
    for (int i = 0; i < 2; ++i)
        peers.push_back(bench::take([&] {
            for (std::size_t picture = 0; picture < count; ++picture)
                run("ffmpeg -v error -nostdin -y -noaccurate_seek -ss "
                    + std::to_string(3600.0 * (static_cast<double>(picture) + 0.5)
                                     / static_cast<double>(count))
                    + " -i '" + film + "' -frames:v 1 -s 284x160 -f rawvideo /dev/null");
        }));
    std::printf("strip of %zu pictures of a film of an hour\n", count);
    bench::report("trimmer up to its whole strip", times);
    bench::report("peer: the ffmpeg program once for each", peers);
    return best(times) <= 1000;
}

} // namespace

int main()
{
    startGraphics(DisplayMode::offscreen);
    auto folder = library();
    std::vector<std::string> shown;
    auto isGood = measureScreenful(shown);
    isGood = measureScrolling() && isGood;
    isGood = measureStrip((folder / "hour.mp4").string()) && isGood;
    return isGood ? 0 : 1;
}
