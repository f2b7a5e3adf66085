// SPDX-License-Identifier: MIT
#include "kit/data/DownloadManager.h"

#include "kit/foundation/errorClassification.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Logger.h"
#include "tests/support/FullDisk.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <filesystem>
#include <mutex>

namespace zelk {

namespace {

using namespace platform;
using tests::ScriptedServer;
using Connection = ScriptedServer::Connection;
using Request = ScriptedServer::Request;
using Lines = std::vector<std::string>;

class Listener final : public DownloadManagerDelegate {
public:
    explicit Listener(std::optional<URL> destination)
        : destination_(std::move(destination))
    {
    }
    // "fail", "finish", "progress": progress once.
    Lines calls;
    std::optional<Error> error;
    float lastProgress = -1;

private:
    std::optional<URL> destinationURL(const URL&) override { return destination_; }
    void downloadManagerDidFail(const URL&, const Error& reason) override
    {
        std::lock_guard lock(mutex_);
        calls.emplace_back("fail");
        error = reason;
    }
    void downloadManagerDidFinish(const URL&, const URL&) override
    {
        std::lock_guard lock(mutex_);
        calls.emplace_back("finish");
    }
    void downloadManagerDidUpdateProgress(const URL&, float progress) override
    {
        std::lock_guard lock(mutex_);
        if (lastProgress < 0)
            calls.emplace_back("progress");
        lastProgress = progress;
    }
    std::optional<URL> destination_;
    std::mutex mutex_;
};

// The kit's log, which says last of all that a download has completed.
class Log {
public:
    bool waitFor(const std::string& line, std::ptrdiff_t count = 1)
    {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(30),
                                 [&] { return std::ranges::count(lines_, line) >= count; });
    }
    Lines lines()
    {
        std::lock_guard lock(mutex_);
        return lines_;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    Lines lines_;
    LogCapture capture_{[this](const LogRecord& record) {
        std::lock_guard lock(mutex_);
        if (!record.message.contains("progress:"))
            lines_.emplace_back(record.message);
        changed_.notify_all();
    }};
};

ScriptedServer::Script answers(std::string status, std::string body)
{
    return [=](Connection& connection, const Request&) { connection.answer(status, body); };
}
void sendUnknownLength(Connection& connection, const Request&)
{
    connection.send("HTTP/1.1 200 OK\r\n\r\nnew");
    connection.close();
}
void breakOff(Connection& connection, const Request&)
{
    connection.send("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nnew");
    connection.close();
}
const DownloadManagerConfig anyNetwork{.allowsCellularAccess = true, .isDiscretionary = false};

} // namespace

TEST(DownloadManager, tellsItsDelegateWhatBecameOfADownload)
{
    struct Case {
        const char* name;
        ScriptedServer::Script script;
        const char* destination; // in a directory with the file "old" and the folder "folder"; empty: none
        Lines calls;
        const char* domain;
        long code;
        Lines lines; // between the adding and the end
    };
    const Case cases[] = {
        {"a new file",
         answers("200 OK", "new"),
         "new",
         {"progress", "finish"},
         "",
         0,
         {"Download complete: f.bin"}},
        {"an old file is replaced",
         answers("200 OK", "new"),
         "old",
         {"progress", "finish"},
         "",
         0,
         {"Download complete: f.bin"}},
        {"no size is known", sendUnknownLength, "new", {"finish"}, "", 0, {"Download complete: f.bin"}},
        {"it is not wanted", answers("200 OK", "new"), "", {"progress"}, "", 0, {}},
        {"not found", answers("404 Not Found", "no"), "new", {"progress", "fail"}, "HttpError", 404, {}},
        {"broken off", breakOff, "new", {"progress", "fail"}, "NSURLErrorDomain", -1005, {}},
        {"the destination is a folder",
         answers("200 OK", "new"),
         "folder",
         {"progress", "fail"},
         "NSCocoaErrorDomain",
         516,
         {"?"}},
        {"there is no such directory",
         answers("200 OK", "new"),
         "missing/new",
         {"progress", "fail"},
         "NSCocoaErrorDomain",
         4,
         {"?"}},
    };
    for (auto& [name, script, destination, calls, domain, code, lines] : cases) {
        SCOPED_TRACE(name);
        tests::TemporaryDirectory directory;
        directory.write("old", "old");
        directory.write("folder/kept", "old");
        ScriptedServer server(script);
        Log log;
        auto manager = DownloadManager::make(anyNetwork);
        auto listener = std::make_shared<Listener>(*destination ? std::optional(directory.url(destination))
                                                                : std::nullopt);
        manager->setDelegate(listener);
        // Where it is said to go does not count.
        manager->addDownload(server.url("/a/f.bin"), directory.url("elsewhere"));
        ASSERT_TRUE(log.waitFor("Did complete: f.bin"));
        manager = nullptr;

        EXPECT_EQ(listener->calls, calls);
        EXPECT_EQ(listener->error ? listener->error->bridged().domain() : "", domain);
        EXPECT_EQ(listener->error ? listener->error->bridged().code() : 0, code);
        if (code == 404) {
            EXPECT_EQ(listener->error->localizedDescription(), "not found");
        }
        bool isFinished = calls.back() == "finish";
        EXPECT_EQ(isFinished ? directory.read(destination) : "new", "new");
        EXPECT_EQ(directory.read("folder/kept"), "old");
        EXPECT_FALSE(std::filesystem::exists(directory.path("elsewhere")));
        if (lines == Lines{"?"}) {
            EXPECT_TRUE(
                log.lines().at(1).starts_with("Download complete but unable to be moved: f.bin, error: "));
        } else {
            Lines all{"Added f.bin to download queue", "Did complete: f.bin"};
            all.insert(all.begin() + 1, lines.begin(), lines.end());
            EXPECT_EQ(log.lines(), all);
        }
    }
}

TEST(DownloadManager, keepsTheOldFileWhereThereIsNoRoomForTheNewOne)
{
    tests::TemporaryDirectory directory;
    directory.write("old", "old");
    ScriptedServer server(answers("200 OK", std::string(20'000, 'x')));
    for (auto name : {"old", "new"}) {
        SCOPED_TRACE(name);
        Log log;
        auto manager = DownloadManager::make(anyNetwork);
        auto listener = std::make_shared<Listener>(directory.url(name));
        manager->setDelegate(listener);
        tests::FullDisk disk(10'000);
        manager->addDownload(server.url("/f.bin"), directory.url(name));
        ASSERT_TRUE(log.waitFor("Did complete: f.bin"));
        EXPECT_EQ(listener->calls, (Lines{"progress", "fail"}));
    }
    EXPECT_EQ(directory.read("old"), "old");
    EXPECT_EQ(directory.fileCount(), 1);
}

TEST(DownloadManager, refusesAURLInProgressAndCancels)
{
    ScriptedServer server([](Connection& connection, const Request&) { connection.waitForClose(); });
    Log log;
    auto manager = DownloadManager::make(anyNetwork);
    auto listener = std::make_shared<Listener>(std::nullopt);
    manager->setDelegate(listener);
    auto url = server.url("/f.bin");
    manager->addDownload(url, url);
    manager->addDownload(url, url);
    manager->cancelDownload(server.url("/unknown"));
    ASSERT_TRUE(log.waitFor("f.bin Already in progress"));
    manager->cancelDownload(url);
    manager->addDownload(url, url); // before the end of the other one is told, which is not its own
    ASSERT_TRUE(log.waitFor("Did complete: f.bin"));
    ASSERT_TRUE(listener->error);
    EXPECT_TRUE(isURLCancelled(*listener->error));
    EXPECT_EQ(listener->calls, Lines{"fail"});
    manager->addDownload(url, url);
    ASSERT_TRUE(log.waitFor("f.bin Already in progress", 2));
    EXPECT_LE(server.requests().size(), 2u);

    manager->cancelAllDownloads();
    ASSERT_TRUE(log.waitFor("Did complete: f.bin", 2));
    EXPECT_TRUE(isURLCancelled(*listener->error));
}

TEST(DownloadManager, keepsWhatTheApplicationParks)
{
    EXPECT_FALSE(DownloadManager::backgroundDownloadCompletionHandler());
    int count = 0;
    DownloadManager::setBackgroundDownloadCompletionHandler([&] { ++count; });
    DownloadManager::backgroundDownloadCompletionHandler()();
    DownloadManager::setBackgroundDownloadCompletionHandler(nullptr);
    EXPECT_EQ(count, 1);
    EXPECT_FALSE(DownloadManager::backgroundDownloadCompletionHandler());
    EXPECT_EQ(DownloadManagerConfig(),
              (DownloadManagerConfig{.allowsCellularAccess = false, .isDiscretionary = true}));
    EXPECT_DEATH(DownloadManager::backgroundSessionIdentifier(), "no identifier");
}

TEST(DownloadManager, callsTheHandlerOfASessionWhoseEventsAreToldOnTheMainQueue)
{
    int calls = 0;
    DownloadManager::registerHandler([&] { calls += 100; }, "org.example.known");
    DownloadManager::registerHandler([&] { ++calls; }, "org.example.known"); // in its place
    Log log;
    auto manager = DownloadManager::make();
    auto tell = [&](URLSessionConfiguration configuration) {
        auto session = URLSession::make(std::move(configuration));
        static_cast<URLSessionDelegate&>(*manager).urlSessionDidFinishEventsForBackgroundURLSession(*session);
        EXPECT_EQ(calls, 0) << "not at once";
        while (RunLoop::main().runPending()) { }
        return std::exchange(calls, 0);
    };
    EXPECT_EQ(tell(URLSessionConfiguration::background("org.example.known")), 1);
    EXPECT_EQ(tell(URLSessionConfiguration::background("org.example.unknown")), 0);
    EXPECT_EQ(tell(URLSessionConfiguration::ephemeral()), 0);
    const std::string text = "All background download tasks are complete for session: ";
    EXPECT_EQ(log.lines(),
              (Lines{text + "org.example.known", text + "org.example.unknown", text + "<null>"}));
    DownloadManager::registerHandler(nullptr, "org.example.known");
}

} // namespace zelk
