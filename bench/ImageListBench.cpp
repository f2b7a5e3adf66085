// SPDX-License-Identifier: MIT
// A list of 500 remote pictures, scrolled from top to bottom at 60 frames a second against a server on loopback: what the
// main thread does in each frame, which requests were made, and what the memory holds. The first pass begins with an empty
// cache; the second, with a new cache over the same directory, has everything on disk.
//
//     pass <tab> frames <tab> median ms <tab> 99 % ms <tab> worst ms <tab> over 16 ms <tab> worst ms of processor
//
// Exits with 1 where a frame took longer than 16 ms, a request was repeated or a limit did not hold.
#include "kit/data/CachedAsyncImage.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/GraphicsRuntime.h"
#include "platform/swiftui/List.h"
#include "platform/swiftui/swiftui.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIWindow.h"
#include "tests/support/PictureServer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <ranges>
#include <string>
#include <thread>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

constexpr int imageCount = 500;
constexpr CGSize windowSize{400, 800};
constexpr double displayScale = 2;
constexpr CGFloat rowHeight = 84;
constexpr CGFloat pointsPerFrame = 60; // a fast flick: 43 rows a second
constexpr auto frameTime = std::chrono::nanoseconds(16'666'667);
constexpr std::int64_t memoryCapacity = 8 << 20;
constexpr std::int64_t diskCapacity = 200 << 20;

// --- The server, a process of its own --------------------------------------------------------------

// Photographs are neither flat nor noise: a slope with grain. 800 by 600.
std::string photograph(unsigned seed)
{
    constexpr int width = 800, height = 600;
    std::vector<std::byte> pixels(std::size_t(width) * height * 4);
    unsigned random = seed * 2'654'435'761U + 1;
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
        auto x = static_cast<unsigned>(i / 4 % width), y = static_cast<unsigned>(i / 4 / width);
        random = random * 1'664'525U + 1'013'904'223U;
        auto grain = x % 7 == 0 ? random >> 29 : 0;
        pixels[i] = static_cast<std::byte>((x / 4 + seed * 20 + grain) & 255);
        pixels[i + 1] = static_cast<std::byte>((y / 3 + grain) & 255);
        pixels[i + 2] = static_cast<std::byte>((seed * 40) & 255);
        pixels[i + 3] = std::byte{255};
    }
    return UIImage::fromPixels(pixels, width, height).pngData();
}

struct ServerReport {
    int paths = 0;
    int requests = 0;
};

// Serves until `end` is closed, then writes how often it was asked.
[[noreturn]] void serve(const std::vector<std::string>& photographs, int port, int end)
{
    {
        tests::PictureServer server([&](const std::string& path, const std::string&) {
            auto number = static_cast<std::size_t>(std::atoi(path.c_str() + 1));
            return tests::Answer{"200 OK", "Cache-Control: max-age=86400\r\nContent-Type: image/png\r\n",
                                 photographs[number % photographs.size()]};
        });
        auto url = server.url("/");
        if (::write(port, url.data(), url.size()) < 0)
            ::_exit(1);
        char nothing = 0;
        while (::read(end, &nothing, 1) > 0) { }
        ServerReport report;
        for (const auto& [path, count] : server.allRequests()) {
            ++report.paths;
            report.requests += count;
        }
        if (::write(port, &report, sizeof report) < 0)
            ::_exit(1);
    }
    ::_exit(0);
}

class ServerProcess {
public:
    explicit ServerProcess(const std::vector<std::string>& photographs)
    {
        int fromServer[2], toServer[2];
        if (::pipe(fromServer) != 0 || ::pipe(toServer) != 0)
            std::abort();
        process_ = ::fork();
        if (process_ == 0) {
            ::close(toServer[1]);
            serve(photographs, fromServer[1], toServer[0]);
        }
        ::close(toServer[0]);
        from_ = fromServer[0];
        to_ = toServer[1];
        char buffer[100];
        auto count = ::read(from_, buffer, sizeof buffer);
        url_.assign(buffer, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    ServerProcess(const ServerProcess&) = delete; // one process
    ServerProcess& operator=(const ServerProcess&) = delete;

    const std::string& url() const { return url_; }
    ServerReport finish()
    {
        ::close(to_);
        ServerReport report;
        if (::read(from_, &report, sizeof report) != sizeof report)
            std::abort();
        ::waitpid(process_, nullptr, 0);
        return report;
    }

private:
    pid_t process_ = 0;
    int from_ = -1, to_ = -1;
    std::string url_;
};

// --- The list --------------------------------------------------------------------------------------

auto row(int number, const std::string& server, const std::shared_ptr<URLCache>& cache, int& shown)
{
    auto url = URL::parse(std::string(server).append(std::to_string(number)));
    auto picture =
        zelk::CachedAsyncImage{{.url = url,
                                .urlCache = cache,
                                .transaction = {.animation = Animation(AnimationTiming::easeOut(0.2))}},
                               [&shown](const Image& image) {
                                   ++shown;
                                   return image.resizable() | cornerRadius(6);
                               },
                               [] { return Color{UIColor::systemGray4()} | cornerRadius(6); }};
    return HStack{{.spacing = 12},
                  std::move(picture) | frame({.width = 80, .height = 60}),
                  Text{std::string("Picture ").append(std::to_string(number))},
                  Spacer{}}
    | padding(EdgeSet::horizontal, 16) | frame({.height = rowHeight});
}

auto list(const std::string& server, const std::shared_ptr<URLCache>& cache, int& shown)
{
    return List{std::views::iota(0, imageCount), std::identity{},
                [server, cache, &shown](int number) { return row(number, server, cache, shown); }};
}

double residentMegabytes()
{
    long pages = 0;
    if (auto* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%*d %ld", &pages) != 1)
            pages = 0;
        std::fclose(file);
    }
    return static_cast<double>(pages) * static_cast<double>(::sysconf(_SC_PAGESIZE)) / (1 << 20);
}

// Of the calling thread.
double processorMilliseconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

struct Pass {
    std::vector<double> frames;    // milliseconds in which the main thread was not idle
    double worstProcessorTime = 0; // the same without what other threads and programs took from it
    int shown = 0;
    std::int64_t mostCached = 0;
    double mostResident = 0;
};

class Scene {
public:
    Scene(const std::string& server, std::shared_ptr<URLCache> cache)
        : cache_(std::move(cache))
        , window_(std::make_shared<UIWindow>(CGRect{{}, windowSize}))
    {
        UITraitCollection traits;
        traits.displayScale = displayScale;
        window_->setBaseTraits(traits);
        auto view = list(server, cache_, pass_.shown);
        window_->setRootViewController(
            std::make_shared<UIHostingController<decltype(view)>>(std::move(view)));
    }
    ~Scene() { window_->close(); }
    Scene(const Scene&) = delete; // rows count in it
    Scene& operator=(const Scene&) = delete;

    // From the first frame, until the end has stood still for a second.
    Pass scrollDown()
    {
        playFrame([&] { window_->showOffscreen(); });
        // Rows are a little higher than their content; at the end more wheel moves nothing.
        constexpr int count = static_cast<int>(imageCount * rowHeight * 1.3 / pointsPerFrame);
        for (int i = 0; i < count; ++i)
            playFrame([&] {
                UIScrollWheel wheel{.delta = {0, -pointsPerFrame}};
                wheel.windowLocation = {windowSize.width / 2, windowSize.height / 2};
                wheel.timestamp = RunLoop::main().clock().now();
                window_->sendScroll(wheel);
            });
        for (int i = 0; i < 60; ++i)
            playFrame([] { });
        return pass_;
    }

private:
    // All that the main thread does within one frame's time: the scrolling, what came from other threads, and painting.
    void playFrame(const std::function<void()>& begin)
    {
        auto start = SteadyClock::now();
        auto processorStart = processorMilliseconds();
        auto idle = SteadyClock::duration::zero();
        begin();
        window_->layoutNow();
        paint();
        for (;;) {
            while (RunLoop::main().runPending()) { }
            auto now = SteadyClock::now();
            if (now >= start + frameTime)
                break;
            std::this_thread::sleep_for(std::min<SteadyClock::duration>(1ms, start + frameTime - now));
            idle += SteadyClock::now() - now;
        }
        pass_.frames.push_back(
            std::chrono::duration<double, std::milli>(SteadyClock::now() - start - idle).count());
        if (pass_.frames.size() > 1)
            pass_.worstProcessorTime =
                std::max(pass_.worstProcessorTime, processorMilliseconds() - processorStart);
        pass_.mostCached = std::max(pass_.mostCached, cache_->currentMemoryUsage());
        pass_.mostResident = std::max(pass_.mostResident, residentMegabytes());
    }
    void paint()
    {
        auto dirty = window_->takeDirtyRegion();
        auto painted = makeImage(windowSize, displayScale, [&](CGContext& context) {
            for (const auto& rect : dirty.rects())
                window_->paint(context, rect);
        });
        if (!painted)
            std::abort();
    }

    std::shared_ptr<URLCache> cache_;
    std::shared_ptr<UIWindow> window_;
    Pass pass_;
};

bool report(const char* name, Pass pass)
{
    auto first = pass.frames.front(); // opens the window: not scrolling
    pass.frames.erase(pass.frames.begin());
    std::ranges::sort(pass.frames);
    auto late = std::ranges::count_if(pass.frames, [](double time) { return time > 16; });
    std::printf("%s\t%zu\t%.2f\t%.2f\t%.2f\t%td\t%.2f\n", name, pass.frames.size(),
                pass.frames[pass.frames.size() / 2], pass.frames[pass.frames.size() * 99 / 100],
                pass.frames.back(), late, pass.worstProcessorTime);
    std::printf("%s: first frame %.2f ms, content described with a picture %d times, cache in memory at most "
                "%.2f of %.2f MB, "
                "process at most %.0f MB\n",
                name, first, pass.shown, static_cast<double>(pass.mostCached) / (1 << 20),
                static_cast<double>(memoryCapacity) / (1 << 20), pass.mostResident);
    return late == 0 && pass.mostCached <= memoryCapacity && pass.shown >= imageCount;
}

} // namespace

int main()
{
    startGraphics(DisplayMode::offscreen);
    std::vector<std::string> photographs;
    for (unsigned i = 0; i < 10; ++i)
        photographs.push_back(photograph(i));
    std::printf("%d pictures of %zu KB, 800 by 600, shown at 160 by 120 pixels\n", imageCount,
                photographs[0].size() / 1024);
    ServerProcess server(photographs);
    std::string directory = std::filesystem::temp_directory_path() / "zelk-image-list-XXXXXX";
    if (!::mkdtemp(directory.data()))
        return 2;
    bool isGood = true;
    for (auto name : {"cold", "warm"}) {
        auto cache = std::make_shared<URLCache>(memoryCapacity, diskCapacity, URL::fileURL(directory));
        isGood = report(name, Scene(server.url(), cache).scrollDown()) && isGood;
        std::printf("%s: %.2f MB on disk\n", name,
                    static_cast<double>(cache->currentDiskUsage()) / (1 << 20));
    }
    auto asked = server.finish();
    std::printf("%d requests for %d pictures\n", asked.requests, asked.paths);
    std::filesystem::remove_all(directory);
    return isGood && asked.requests == imageCount && asked.paths == imageCount ? 0 : 1;
}
