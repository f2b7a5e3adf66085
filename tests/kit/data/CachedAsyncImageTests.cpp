// SPDX-License-Identifier: MIT
#include "kit/data/CachedAsyncImage.h"

#include "kit/data/AsyncImageLoadingError.h"
#include "platform/network/HTTPURLResponse.h"
#include "platform/network/NSURLErrorCodes.h"
#include "platform/swiftui/swiftui.h"
#include "tests/support/PictureServer.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

#include <chrono>
#include <span>
#include <thread>

using namespace platform;
using zelk::CachedAsyncImage;

namespace {

using namespace std::chrono_literals;

// A picture of one grey with so many pixels, as a file.
std::string picture(int width, int height, std::byte grey = std::byte{40})
{
    std::vector<std::byte> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4,
                                  grey);
    for (std::size_t i = 3; i < pixels.size(); i += 4)
        pixels[i] = std::byte{255};
    return UIImage::fromPixels(pixels, width, height).pngData();
}

tests::Answer fresh(std::string body)
{
    return {"200 OK", "Cache-Control: max-age=1000\r\nContent-Type: image/png\r\n", std::move(body)};
}

// Made on the main thread, as an application would make its first picture.
const std::string& smallPicture()
{
    static const std::string data = picture(20, 10);
    return data;
}
const std::string& largePicture()
{
    static const std::string data = picture(1600, 800);
    return data;
}

tests::Answer siteAnswer(const std::string& path, const std::string& head)
{
    if (path == "/moved")
        return {"302 Found", "Location: /again\r\nCache-Control: max-age=1000\r\n", {}};
    if (path == "/again")
        return {"301 Moved Permanently", "Location: /fresh.png\r\n", {}};
    if (path == "/text")
        return fresh("no picture at all");
    if (path == "/empty")
        return fresh("");
    if (path == "/half")
        return fresh(largePicture().substr(0, largePicture().size() / 2));
    if (path == "/crooked") { // its chunks are whole, but not what is in them
        auto data = largePicture();
        for (auto& byte : std::span(data).subspan(data.size() / 2, 20))
            byte ^= 0x55;
        return fresh(std::move(data));
    }
    if (path == "/page.html")
        return {"200 OK", "Content-Type: text/html\r\n", smallPicture()};
    if (path == "/gone")
        return {"404 Not Found", {}, "<html>"};
    if (path == "/large.png")
        return fresh(largePicture());
    if (path == "/asked.png")
        return head.find("If-None-Match: \"1\"") != std::string::npos
            ? tests::Answer{"304 Not Modified", "ETag: \"1\"\r\n", {}}
            : tests::Answer{"200 OK", "ETag: \"1\"\r\nCache-Control: no-cache\r\n", smallPicture()};
    if (path == "/endless")
        return {"200 OK", "Content-Length: 99999999999\r\nX-", {}};
    return fresh(smallPicture());
}

// What a view went through: e empty, s success, ! failure; each once, however often its content is described.
struct History {
    std::string phases;
    std::optional<Error> error;
    UIImage image;

    void note(const AsyncImagePhase& phase)
    {
        char name = phase.image() ? 's' : phase.error() ? '!' : 'e';
        if (phases.empty() || phases.back() != name)
            phases += name;
        if (phase.error())
            error = *phase.error();
        if (phase.image())
            image = phase.image()->image;
    }
};

// A window, a server and a cache of their own.
struct Site {
    tests::TemporaryDirectory directory;
    tests::PictureServer server{siteAnswer};
    std::shared_ptr<URLCache> cache = std::make_shared<URLCache>(1 << 20, 1 << 24, directory.url("cache"));
    harness::ViewHarness harness{{400, 400}};

    Site()
    {
        smallPicture();
        largePicture();
    }
    URL url(std::string_view path) const { return *URL::parse(server.url(path)); }

    // The picture fills what it is offered; its bar is 100 points wide with a picture, 20 without.
    auto image(std::optional<URL> url, History& history, Transaction transaction = {})
    {
        return CachedAsyncImage{
            {.url = std::move(url), .urlCache = cache, .transaction = transaction},
            [&history](const AsyncImagePhase& phase) {
                history.note(phase);
                return when(phase.image() != nullptr, [&] { return phase.image()->resizable(); })
                    | background(Color{UIColor::red()}
                                 | frame({.width = phase.image() ? 100.0 : 20.0, .height = 10})
                                 | accessibilityIdentifier("bar"));
            }};
    }
    template <View V>
    auto show(V view)
    {
        auto controller = std::make_shared<UIHostingController<V>>(std::move(view));
        harness.show(controller);
        harness.settle();
        return controller;
    }
    // Takes turns, while time stands still, until the network's threads have brought it about.
    void waitUntil(const std::function<bool()>& condition)
    {
        auto deadline = std::chrono::steady_clock::now() + 20s;
        while (!condition()) {
            ASSERT_LT(std::chrono::steady_clock::now(), deadline) << "it does not happen";
            harness.clock().settleWithBackgroundQueues();
            std::this_thread::yield();
        }
        harness.clock().settleWithBackgroundQueues();
    }
};

TEST(CachedAsyncImageTests, EveryURLEndsInItsPhase)
{
    Site site;
    struct Case {
        const char* name;
        std::optional<URL> url;
        const char* phases;
        std::optional<NSError> error;
    };
    const NSError loadingError = zelk::nsError(zelk::AsyncImage::LoadingError());
    const Case cases[] = {
        {"none", std::nullopt, "e", std::nullopt},
        {"a picture", site.url("/fresh.png"), "es", std::nullopt},
        {"a picture by redirections", site.url("/moved"), "es", std::nullopt},
        {"no picture", site.url("/text"), "e!", loadingError},
        {"a picture that is said to be a page", site.url("/page.html"), "es", std::nullopt},
        {"an error page", site.url("/gone"), "e!", loadingError},
        {"nothing, and that with success", site.url("/empty"), "e!", loadingError},
        {"half a picture", site.url("/half"), "e!", loadingError},
        {"a damaged picture", site.url("/crooked"), "e!", loadingError},
        {"no server", *URL::parse("http://127.0.0.1:1/"), "e!",
         NSError("NSURLErrorDomain", NSURLErrorCannotConnectToHost)},
        {"another scheme", *URL::parse("ftp://127.0.0.1/"), "e!",
         NSError("NSURLErrorDomain", NSURLErrorUnsupportedURL)},
        {"a body without end", site.url("/endless"), "e!",
         NSError("NSURLErrorDomain", NSURLErrorDataLengthExceedsMaximum)},
    };
    for (const auto& test : cases) {
        History history;
        site.show(site.image(test.url, history));
        site.waitUntil([&] { return history.phases == test.phases; });
        EXPECT_EQ(history.phases, test.phases) << test.name;
        ASSERT_EQ(history.error.has_value(), test.error.has_value()) << test.name;
        if (test.error) {
            EXPECT_EQ(history.error->bridged().domain(), test.error->domain()) << test.name;
            EXPECT_EQ(history.error->bridged().code(), test.error->code()) << test.name;
        }
    }
}

TEST(CachedAsyncImageTests, WhatTheCacheHasIsThereInTheFirstFrame)
{
    Site site;
    struct Case {
        const char* path;
        const char* again; // what a second view goes through
        int requests;      // of both
    };
    const Case cases[] = {
        {"/fresh.png", "s", 1}, {"/asked.png", "s", 2}, // its server is asked, and nothing changes
        {"/moved", "s", 1},                             // under the URL that the view knows
        {"/text", "!", 1},      {"/half", "!", 1},      {"/crooked", "s!", 1}, // which only decoding tells
    };
    for (const auto& test : cases) {
        History first;
        site.show(site.image(site.url(test.path), first));
        site.waitUntil([&] { return first.phases.size() == 2; });
        History second;
        site.show(site.image(site.url(test.path), second));
        EXPECT_EQ(second.phases.front(), test.again[0]) << test.path << " at once";
        site.waitUntil(
            [&] { return site.server.requests(test.path) >= test.requests && second.phases == test.again; });
        EXPECT_EQ(second.phases, test.again) << test.path;
        EXPECT_EQ(site.server.requests(test.path), test.requests) << test.path;
    }
    EXPECT_FALSE(site.cache->cachedResponse(site.url("/again"))) << "what was on the way is removed";
}

TEST(CachedAsyncImageTests, ThePhaseOfALoadIsAnimatedAndThatOfTheCacheIsNot)
{
    Site site;
    const Transaction slow{.animation = Animation::linear(1)};
    auto barWidth = [&] { return site.harness.find("bar").presentationBounds().size.width; };

    History history;
    site.server.hold("/fresh.png");
    site.show(site.image(site.url("/fresh.png"), history, slow));
    EXPECT_EQ(barWidth(), 20);
    site.server.letGo("/fresh.png");
    site.waitUntil([&] { return history.phases == "es"; });
    site.harness.advance(500ms);
    EXPECT_NEAR(barWidth(), 60, 5);
    site.harness.advance(600ms);
    EXPECT_EQ(barWidth(), 100);

    // The view stays and its request changes to one that the cache can answer: at once, but not before the task runs.
    History other;
    auto controller = site.show(site.image(std::nullopt, other, slow));
    controller->setRootView(site.image(site.url("/fresh.png"), other, slow));
    site.waitUntil([&] { return other.phases == "es"; });
    EXPECT_EQ(barWidth(), 100);
    controller->setRootView(site.image(std::nullopt, other, slow));
    site.harness.settle();
    site.harness.advance(500ms);
    EXPECT_NEAR(barWidth(), 60, 5) << "and back, with the animation";
    EXPECT_EQ(site.server.requests("/fresh.png"), 1);
}

TEST(CachedAsyncImageTests, EqualRequestsInFlightAreOneAndItEndsWithTheLastView)
{
    Site site;
    History one, two, other;
    site.server.hold("/held.png");
    auto controller =
        site.show(VStack{site.image(site.url("/held.png"), one), site.image(site.url("/held.png"), two)});
    site.waitUntil([&] { return site.server.requests("/held.png") == 1; });
    site.server.letGo("/held.png");
    site.waitUntil([&] { return one.phases == "es" && two.phases == "es"; });
    EXPECT_EQ(site.server.requests("/held.png"), 1);

    site.server.hold("/left.png");
    History staying, leaving;
    auto pair = [&](bool hasFirst, bool hasSecond) {
        return VStack{when(hasFirst, [&] { return site.image(site.url("/left.png"), leaving); }),
                      when(hasSecond, [&] { return site.image(site.url("/left.png"), staying); })};
    };
    auto both = site.show(pair(true, true));
    site.waitUntil([&] { return site.server.requests("/left.png") == 1; });
    both->setRootView(pair(false, true));
    site.harness.clock().settleWithBackgroundQueues();
    EXPECT_EQ(site.server.hangUps(), 0) << "the other still waits";
    both->setRootView(pair(false, false));
    site.waitUntil([&] { return site.server.hangUps() == 1; });
    EXPECT_EQ(leaving.phases + staying.phases, "ee");
}

// Removes its picture while that is described.
struct Fleeting {
    Site* site;
    History* history;
    State<bool> isWanted = true;

    auto dynamicProperties() { return std::tie(isWanted); }
    auto body() const
    {
        auto wanted = isWanted.binding();
        return when(*isWanted, [&] {
            return CachedAsyncImage{{.url = site->url("/other.png"), .urlCache = site->cache},
                                    [wanted, history = history](const AsyncImagePhase& phase) {
                                        history->note(phase);
                                        if (!phase.isEmpty())
                                            wanted.set(false);
                                        return Text{"Here"};
                                    }};
        });
    }
};

TEST(CachedAsyncImageTests, WhatIsNoLongerWantedSaysNothing)
{
    Site site;
    History history;
    site.server.hold("/large.png");
    auto controller = site.show(site.image(site.url("/large.png"), history));
    site.waitUntil([&] { return site.server.requests("/large.png") == 1; });
    controller->setRootView(site.image(site.url("/fresh.png"), history));
    site.waitUntil([&] { return history.phases == "es" && site.server.hangUps() == 1; });
    EXPECT_EQ(history.image.size(), (CGSize{20, 10}));

    for (const char* phases : {"es", "s"}) { // of the network, then of the cache
        History fleeting;
        site.show(Fleeting{&site, &fleeting});
        site.waitUntil([&] { return fleeting.phases == phases; });
        EXPECT_EQ(fleeting.phases, phases);
        EXPECT_FALSE(site.harness.describe().contains("Here")) << phases;
    }
}

TEST(CachedAsyncImageTests, APictureHasThePixelsThatItsPlaceNeeds)
{
    Site site;
    History small;
    auto sized = [&](CGFloat length) {
        return site.image(site.url("/large.png"), small) | frame({.width = length, .height = length / 2});
    };
    auto controller = site.show(sized(100));
    site.waitUntil([&] { return small.phases == "es"; });
    EXPECT_EQ(small.image.pixelWidth(), 100);
    EXPECT_EQ(small.image.size(), (CGSize{1600, 800})) << "layout sees the whole picture";
    controller->setRootView(sized(400));
    site.waitUntil([&] { return small.image.pixelWidth() == 400; });
    controller->setRootView(sized(50));
    site.waitUntil([&] { return small.image.pixelWidth() == 50; });

    // From the cache, once decoded for who comes again; and with all its pixels where they are shown.
    History second, third;
    site.show(site.image(site.url("/large.png"), second) | frame({.width = 100, .height = 50}));
    EXPECT_EQ(second.phases, "s");
    EXPECT_EQ(second.image.pixelWidth(), 100);
    site.harness.clock().settleWithBackgroundQueues();
    site.show(site.image(site.url("/large.png"), third) | frame({.width = 100, .height = 50}));
    EXPECT_EQ(third.image.bitmap(), second.image.bitmap());
    History whole;
    site.show(ScrollView{{.axes = AxisSet::both},
                         CachedAsyncImage{{.url = site.url("/large.png"), .urlCache = site.cache},
                                          [&](const AsyncImagePhase& phase) {
                                              whole.note(phase);
                                              return when(phase.image() != nullptr,
                                                          [&] { return *phase.image(); });
                                          }}});
    EXPECT_EQ(whole.phases, "s");
    site.waitUntil([&] { return whole.image.pixelWidth() == 1600; });
    EXPECT_EQ(site.server.requests("/large.png"), 1);
}

TEST(CachedAsyncImageTests, TheShorterFormsShowThePictureOrAPlaceholder)
{
    Site site;
    site.server.hold("/fresh.png");
    URLRequest request(site.url("/fresh.png"));
    site.show(
        VStack{CachedAsyncImage{{.url = request.url, .urlCache = site.cache, .scale = 2}}
                   | accessibilityIdentifier("plain"),
               CachedAsyncImage{{.urlRequest = request, .urlCache = site.cache},
                                [](const Image& image) { return image | accessibilityIdentifier("picture"); },
                                [] { return Text{"Waiting"} | accessibilityIdentifier("placeholder"); }}});
    EXPECT_NO_FATAL_FAILURE(site.harness.find("placeholder"));
    EXPECT_EQ(site.harness.find("plain").frame().size, CGSize{});
    site.server.letGo("/fresh.png");
    site.waitUntil([&] { return site.harness.find("plain").frame().size.width > 0; });
    EXPECT_EQ(site.harness.find("plain").frame().size, (CGSize{10, 5}));
    EXPECT_EQ(site.harness.find("picture").frame().size, (CGSize{20, 10}));
}

} // namespace
