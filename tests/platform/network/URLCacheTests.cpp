// SPDX-License-Identifier: MIT
#include "platform/network/URLCache.h"

#include "platform/network/HTTPURLResponse.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

using namespace platform;

namespace {

URLRequest asking(std::string_view path, HTTPHeaderFields fields = {})
{
    URLRequest request(*URL::parse(std::string("http://example.org").append(path)));
    request.allHTTPHeaderFields = std::move(fields);
    return request;
}

CachedURLResponse answer(const URLRequest& request, std::string body, HTTPHeaderFields fields = {},
                         URLCacheStoragePolicy policy = URLCacheStoragePolicy::allowed)
{
    return {std::make_shared<const HTTPURLResponse>(request.url, 200, "HTTP/1.1", std::move(fields)),
            std::make_shared<const std::string>(std::move(body)),
            policy,
            {Date{100.5}, Date{200.25}}};
}

// What a cache answers; "-" for nothing.
std::string bodyOf(URLCache& cache, const URLRequest& request)
{
    auto found = cache.cachedResponse(request);
    return found ? found->data() : "-";
}

TEST(URLCacheTests, AnswersComeBackWholeFromMemoryFromTheWayAndFromDisk)
{
    tests::TemporaryDirectory directory;
    const auto page = asking("/page?q#part");
    const HTTPHeaderFields fields{{"ETag", "\"ä\""}, {"Content-Type", "text/html"}};
    const std::string body("\0half\n\xff", 7);
    for (std::int64_t memory : {0, 1 << 20}) {
        {
            URLCache cache(memory, 1 << 20, directory.url("cache"));
            EXPECT_EQ(bodyOf(cache, page), memory == 0 ? "-" : body);
            cache.storeCachedResponse(answer(page, body, fields), page);
            EXPECT_EQ(bodyOf(cache, page), body) << "at once";
        }
        URLCache later(memory, 1 << 20, directory.url("cache"));
        auto found = later.cachedResponse(asking("/page?q#another"));
        ASSERT_TRUE(found);
        EXPECT_EQ(found->data(), body);
        EXPECT_EQ(found->times(), (HTTPExchangeTimes{Date{100.5}, Date{200.25}}));
        auto& head = dynamic_cast<const HTTPURLResponse&>(*found->response());
        EXPECT_EQ(head.url(), page.url);
        EXPECT_EQ(head.statusCode(), 200);
        EXPECT_EQ(head.allHeaderFields(), fields);
        EXPECT_EQ(later.currentMemoryUsage() > 0, memory > 0);
        EXPECT_EQ(bodyOf(later, asking("/page")), "-");
        auto post = page;
        post.httpMethod = "POST";
        EXPECT_EQ(bodyOf(later, post), "-");
    }
    // Nobody else reads what this user loads.
    EXPECT_EQ(std::filesystem::status(directory.path("cache")).permissions(),
              std::filesystem::perms::owner_all);
}

TEST(URLCacheTests, WhatIsRemovedRefusedOrReplacedIsNotFoundAgain)
{
    tests::TemporaryDirectory directory;
    auto big = std::string(300'000, 'x');
    struct Case {
        const char* name;
        std::function<void(URLCache&, const URLRequest&)> act;
        std::string sameCache;
        std::string laterCache;
    };
    using Policy = URLCacheStoragePolicy;
    const Case cases[] = {
        {"removed", [](URLCache& c, auto& r) { c.removeCachedResponse(r); }, "-", "-"},
        {"all removed", [](URLCache& c, auto&) { c.removeAllCachedResponses(); }, "-", "-"},
        {"replaced", [](URLCache& c, auto& r) { c.storeCachedResponse(answer(r, "new"), r); }, "new", "new"},
        {"replaced by what may be in memory only",
         [](URLCache& c, auto& r) {
             c.storeCachedResponse(answer(r, "new", {}, Policy::allowedInMemoryOnly), r);
         },
         "new", "-"},
        {"replaced by what may be nowhere",
         [](URLCache& c, auto& r) { c.storeCachedResponse(answer(r, "new", {}, Policy::notAllowed), r); },
         "-", "-"},
        {"replaced by what varies by everything",
         [](URLCache& c, auto& r) { c.storeCachedResponse(answer(r, "new", {{"Vary", "*"}}), r); }, "-", "-"},
        {"replaced by what is too large",
         [&](URLCache& c, auto& r) { c.storeCachedResponse(answer(r, big), r); }, "-", "-"},
        {"removed and stored again",
         [](URLCache& c, auto& r) {
             c.removeAllCachedResponses();
             c.storeCachedResponse(answer(r, "new"), r);
         },
         "new", "new"},
    };
    for (const auto& test : cases) {
        const auto page = asking("/page");
        {
            URLCache cache(1 << 20, 1 << 20, directory.url());
            cache.storeCachedResponse(answer(page, "old"), page);
            test.act(cache, page);
            EXPECT_EQ(bodyOf(cache, page), test.sameCache) << test.name;
        }
        URLCache later(1 << 20, 1 << 20, directory.url());
        EXPECT_EQ(bodyOf(later, page), test.laterCache) << test.name;
    }
}

TEST(URLCacheTests, VariantsStandSideBySideUntilTheAnswerDependsOnSomethingElse)
{
    tests::TemporaryDirectory directory;
    const auto english = asking("/page", {{"Accept-Language", "en"}});
    const auto german = asking("/page", {{"Accept-Language", "de"}});
    const HTTPHeaderFields byLanguage{{"Vary", "Accept-Language"}};
    for (std::int64_t memory : {0, 1 << 20}) {
        URLCache cache(memory, 1 << 20, directory.url());
        cache.storeCachedResponse(answer(english, "hello", byLanguage), english);
        cache.storeCachedResponse(answer(german, "hallo", byLanguage), german);
        (void)cache.currentDiskUsage(); // after what waits
        EXPECT_EQ(bodyOf(cache, english), "hello");
        EXPECT_EQ(bodyOf(cache, german), "hallo");
        EXPECT_EQ(bodyOf(cache, asking("/page")), "-");
        cache.removeCachedResponse(english);
        cache.storeCachedResponse(answer(german, "neu", byLanguage), german);
        (void)cache.currentDiskUsage();
        EXPECT_EQ(bodyOf(cache, english), "-") << "a removed variant is not found by a later list";
        cache.storeCachedResponse(answer(english, "one for all"), english);
        EXPECT_EQ(bodyOf(cache, german), "one for all");
    }
}

TEST(URLCacheTests, LimitsHoldAndWhatWasUsedLongestAgoGoesFirst)
{
    tests::TemporaryDirectory directory;
    auto name = [](int i) { return asking(std::string("/").append(std::to_string(i))); };
    const std::string body(10'000, 'x');
    URLCache cache(50'000, 100'000, directory.url());
    for (int i = 0; i < 40; ++i) {
        cache.storeCachedResponse(answer(name(i), body), name(i));
        EXPECT_EQ(bodyOf(cache, name(0)), body) << "it is used all the time";
        EXPECT_LE(cache.currentMemoryUsage(), 50'000);
        EXPECT_LE(cache.currentDiskUsage(), 100'000);
    }
    EXPECT_EQ(bodyOf(cache, name(1)), "-");
    EXPECT_EQ(bodyOf(cache, name(39)), body);
    {
        URLCache later(0, 100'000, directory.url());
        EXPECT_EQ(bodyOf(later, name(0)), body) << "its use in memory counted on disk";
        EXPECT_EQ(bodyOf(later, name(38)), body);
    }
    cache.setMemoryCapacity(11'500);
    EXPECT_LE(cache.currentMemoryUsage(), 11'500);
    cache.setDiskCapacity(30'000);
    EXPECT_LE(cache.currentDiskUsage(), 30'000);
    cache.removeAllCachedResponses();
    EXPECT_EQ(cache.currentMemoryUsage(), 0);
    EXPECT_EQ(cache.currentDiskUsage(), 0);
}

TEST(URLCacheTests, DamagedAndForeignFilesAreNothingAndOnlyTheFormerGo)
{
    tests::TemporaryDirectory directory;
    const auto page = asking("/page");
    auto fill = [&] {
        URLCache cache(0, 1 << 20, directory.url());
        cache.storeCachedResponse(answer(page, "body", {{"ETag", "\"a\""}}), page);
    };
    fill();
    const auto file = std::filesystem::directory_iterator(directory.path())->path().filename().string();
    const auto sound = directory.read(file);
    directory.write("notes.txt", "the user's own");
    for (std::size_t i = 0; i <= sound.size(); ++i) {
        auto damaged = sound;
        if (i < sound.size())
            damaged[i] = static_cast<char>(damaged[i] ^ 0x20);
        else
            damaged += 'x';
        for (const auto& bytes : {damaged, sound.substr(0, i)}) {
            if (bytes == sound)
                continue;
            directory.write(file, bytes);
            URLCache cache(0, 1 << 20, directory.url());
            ASSERT_EQ(bodyOf(cache, page), "-") << "at byte " << i;
            ASSERT_FALSE(std::filesystem::exists(directory.path(file)));
        }
    }
    // A sound file in the place of another URL's answer.
    directory.write(file, sound);
    {
        URLCache cache(0, 1 << 20, directory.url());
        const auto other = asking("/other");
        cache.storeCachedResponse(answer(other, "other"), other);
        (void)cache.currentDiskUsage();
        for (const auto& entry : std::filesystem::directory_iterator(directory.path()))
            if (entry.path().extension() == ".answer" && entry.path().filename() != file)
                std::filesystem::copy_file(directory.path(file), entry.path(),
                                           std::filesystem::copy_options::overwrite_existing);
        EXPECT_EQ(bodyOf(cache, other), "-");
        cache.removeAllCachedResponses();
        EXPECT_EQ(cache.currentDiskUsage(), 0);
    }
    EXPECT_EQ(directory.read("notes.txt"), "the user's own");
    // Where nothing can be written, memory serves alone.
    URLCache nowhere(1 << 20, 1 << 20, URL::fileURL("/proc/self/none/cache"));
    nowhere.storeCachedResponse(answer(page, "body"), page);
    EXPECT_EQ(nowhere.currentDiskUsage(), 0);
    EXPECT_EQ(bodyOf(nowhere, page), "body");
}

// Stores, looks up, removes and clears, and says whether every answer was one that somebody has stored for that URL.
bool shareDirectory(const URL& directory, int seed)
{
    URLCache cache(20'000, 200'000, directory);
    unsigned random = static_cast<unsigned>(seed) * 2'654'435'761U + 1;
    for (int i = 0; i < 1'500; ++i) {
        random = random * 1'664'525U + 1'013'904'223U;
        auto number = std::to_string((random >> 16) % 20);
        const auto request = asking(std::string("/").append(number));
        if (auto found = cache.cachedResponse(request)) {
            const auto& body = found->data();
            if (body.size() < 5'000 || body.substr(0, number.size() + 1) != number + ':'
                || body.find_first_not_of(body.back(), number.size() + 1) != std::string::npos)
                return false;
        }
        if (i % 3 == 0)
            cache.storeCachedResponse(
                answer(request,
                       number + ':'
                           + std::string(5'000 + (random >> 8) % 9'000, static_cast<char>('a' + seed))),
                request);
        else if (i % 41 == 0)
            cache.removeCachedResponse(request);
        else if (i % 487 == 0)
            cache.removeAllCachedResponses();
    }
    return true;
}

TEST(URLCacheTests, ProcessesAndThreadsShareADirectoryWithoutEverSeeingAPart)
{
    // The processes are this program again: a fork would have none of its threads.
    if (auto place = std::getenv("ZELK_TEST_SHARED_CACHE"))
        ::_exit(shareDirectory(URL::fileURL(place), std::atoi(std::getenv("ZELK_TEST_SEED"))) ? 0 : 1);
    tests::TemporaryDirectory directory;
    std::vector<pid_t> children;
    for (int i = 0; i < 2; ++i) {
        auto child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            ::setenv("ZELK_TEST_SHARED_CACHE", directory.path("cache").c_str(), 1);
            ::setenv("ZELK_TEST_SEED", std::to_string(i).c_str(), 1);
            ::execl("/proc/self/exe", "tests", "--gtest_filter=URLCacheTests.ProcessesAndThreads*", nullptr);
            ::_exit(127);
        }
        children.push_back(child);
    }
    bool isOwnGood = false;
    std::thread own([&] { isOwnGood = shareDirectory(directory.url("cache"), 2); });
    own.join();
    EXPECT_TRUE(isOwnGood);
    for (auto child : children) {
        int status = -1;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    for (const auto& entry : std::filesystem::directory_iterator(directory.path("cache")))
        EXPECT_EQ(entry.path().extension(), ".answer") << "a draft was left";
}

TEST(URLCacheTests, ThreadsMayUseOneCacheAtOnce)
{
    tests::TemporaryDirectory directory;
    URLCache cache(30'000, 100'000, directory.url());
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&cache, t] {
            for (int i = 0; i < 300; ++i) {
                const auto request = asking(std::string("/").append(std::to_string(i % 7)));
                cache.storeCachedResponse(answer(request, std::string(2'000, static_cast<char>('a' + t))),
                                          request);
                auto body = bodyOf(cache, asking(std::string("/").append(std::to_string((i + t) % 7))));
                EXPECT_EQ(body.find_first_not_of(body[0]), std::string::npos);
                if (i % 50 == 0)
                    cache.removeAllCachedResponses();
            }
        });
    for (auto& thread : threads)
        thread.join();
}

} // namespace
