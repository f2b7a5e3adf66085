// SPDX-License-Identifier: MIT
// Downloads that break and go on, wait, or find no room.
#include "platform/network/URLSession.h"

#include "platform/network/DownloadFile_p.h"
#include "platform/network/DownloadedFile.h"
#include "platform/network/NSURLErrorCodes.h"
#include "platform/network/NetworkConditions.h"
#include "tests/support/FullDisk.h"
#include "tests/support/RecordingDelegate.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/growingDownloads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

namespace platform {

namespace {

using tests::RecordingDelegate;
using tests::ScriptedServer;
using Connection = ScriptedServer::Connection;
using Request = ScriptedServer::Request;

const std::string oldFile = "the old version of the file";
const std::string newFile = "THE NEW VERSION, WHICH IS LONGER, OF THE FILE";

// Breaks off the first answer in the middle; what it says then is up to the case.
struct Case {
    const char* name;
    const char* firstTag;
    std::function<void(Connection&, const Request&)> second;
    std::string body; // empty: the download fails
    std::vector<std::int64_t> offsets;
    std::string range; // that the second request asks for
};

void sendRange(Connection& connection, const std::string& file, std::size_t first, const char* tag,
               std::size_t most = std::string::npos)
{
    auto body = file.substr(first, most);
    auto range = "Content-Range: bytes " + std::to_string(first) + "-"
        + std::to_string(first + body.size() - 1) + "/" + std::to_string(file.size()) + "\r\nETag: " + tag
        + "\r\n";
    connection.answer("206 Partial Content", body, range);
}

// The first ten bytes, and no more.
void sendBeginning(Connection& connection, const std::string& file)
{
    connection.send("HTTP/1.1 200 OK\r\nETag: \"1\"\r\nContent-Length: " + std::to_string(file.size())
                    + "\r\n\r\n" + file.substr(0, 10));
    connection.waitForClose();
}

// Of a download that is cancelled when something of it has come.
std::optional<std::string> resumeDataOf(URLSession& session, const URL& url, RecordingDelegate& delegate)
{
    auto task = session.downloadTask(URLRequest(url));
    task->resume();
    EXPECT_TRUE(delegate.waitForCall("progress"));
    std::promise<std::optional<std::string>> produced;
    task->cancelByProducingResumeData([&](auto data) { produced.set_value(std::move(data)); });
    return produced.get_future().get();
}

const Case cases[] = {
    {"the same version goes on",
     "\"1\"",
     [](auto& c, auto&) { sendRange(c, oldFile, 10, "\"1\""); },
     oldFile,
     {10},
     "bytes=10-"},
    {"another version starts anew",
     "\"1\"",
     [](auto& c, auto&) { c.answer("200 OK", newFile, "ETag: \"2\"\r\n"); },
     newFile,
     {},
     "bytes=10-"},
    {"a server without ranges starts anew",
     "\"1\"",
     [](auto& c, auto&) { c.answer("200 OK", oldFile); },
     oldFile,
     {},
     "bytes=10-"},
    {"a range of another version is refused",
     "\"1\"",
     [](auto& c, auto& request) {
         if (request.field("Range"))
             sendRange(c, newFile, 10, "\"2\"");
         else
             c.answer("200 OK", newFile, "ETag: \"2\"\r\n");
     },
     newFile,
     {},
     "bytes=10-"},
    {"a range that was not asked for is refused",
     "\"1\"",
     [](auto& c, auto& request) {
         if (request.field("Range"))
             sendRange(c, oldFile, 5, "\"1\"");
         else
             c.answer("200 OK", oldFile);
     },
     oldFile,
     {},
     "bytes=10-"},
    {"a file that has shrunk starts anew",
     "\"1\"",
     [](auto& c, auto& request) {
         if (request.field("Range"))
             c.answer("416 Range Not Satisfiable", "no");
         else
             c.answer("200 OK", oldFile);
     },
     oldFile,
     {},
     "bytes=10-"},
    {"a range that is answered in part is asked for on",
     "\"1\"",
     [](auto& c, auto& request) {
         auto first = std::stoul(request.field("Range").value_or("bytes=0").substr(6));
         sendRange(c, oldFile, first, "\"1\"", 8);
     },
     oldFile,
     {10, 18, 26},
     "bytes=10-"},
    {"a server that creeps is given up",
     "\"1\"",
     [](auto& c, auto& request) {
         sendRange(c, oldFile, std::stoul(request.field("Range").value_or("bytes=0").substr(6)), "\"1\"", 1);
     },
     "",
     {10, 11, 12, 13, 14, 15},
     "bytes=10-"},
    {"a weak validator proves nothing", "W/\"1\"", {}, "", {}, ""},
    {"no validator proves nothing", "", {}, "", {}, ""},
    {"a server that gives nothing more is believed",
     "\"1\"",
     [](auto& c, auto&) { c.close(); },
     "",
     {},
     "bytes=10-"},
};

} // namespace

TEST(Download, aBrokenDownloadGoesOnOnlyWithTheSameVersion)
{
    for (auto& [name, firstTag, second, body, offsets, range] : cases) {
        SCOPED_TRACE(name);
        std::atomic<int> count = 0;
        ScriptedServer server([&](Connection& connection, const Request& request) {
            if (count++ > 0)
                return second(connection, request);
            std::string tag = *firstTag ? std::string("ETag: ") + firstTag + "\r\n" : std::string();
            connection.send("HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(oldFile.size()) + "\r\n"
                            + tag + "\r\n" + oldFile.substr(0, 10));
            connection.close();
        });
        auto delegate = std::make_shared<RecordingDelegate>();
        auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
        session->downloadTask(URLRequest(server.url("/file")))->resume();
        ASSERT_TRUE(delegate->waitForEnds());
        EXPECT_EQ(delegate->body(), body);
        EXPECT_EQ(delegate->error().has_value(), body.empty());
        EXPECT_EQ(delegate->resumeOffsets(), offsets);
        auto requests = server.requests();
        if (range.empty())
            EXPECT_EQ(requests.size(), 1u);
        else
            EXPECT_EQ(requests.at(1).field("Range").value_or("") + requests[1].field("If-Range").value_or(""),
                      range + firstTag);
    }
}

TEST(Download, resumeDataGoesOnWhereTheTaskWasCancelled)
{
    ScriptedServer server([&](Connection& connection, const Request& request) {
        if (request.field("Range"))
            return sendRange(connection, oldFile, 10, "\"1\"");
        sendBeginning(connection, oldFile);
    });
    auto delegate = std::make_shared<RecordingDelegate>();
    auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
    auto data = resumeDataOf(*session, server.url("/file"), *delegate);
    ASSERT_TRUE(data);
    // One that was cancelled before its turn gives back what it was given.
    ASSERT_TRUE(delegate->waitForEnds(1));
    std::promise<std::optional<std::string>> unused;
    session->downloadTask(*data)->cancelByProducingResumeData(
        [&](auto given) { unused.set_value(std::move(given)); });
    data = unused.get_future().get();
    ASSERT_TRUE(data);
    session->downloadTask(*data)->resume();
    ASSERT_TRUE(delegate->waitForEnds(3));
    EXPECT_EQ(delegate->body(), oldFile);
    EXPECT_EQ(delegate->resumeOffsets(), std::vector<std::int64_t>{10});

    session->downloadTask("nonsense")->resume();
    ASSERT_TRUE(delegate->waitForEnds(4));
    EXPECT_EQ(delegate->error()->bridged().code(), NSURLErrorUnsupportedURL);
}

TEST(Download, aTagIsBelievedOnlyOfTheResourceThatGaveIt)
{
    // The address leads elsewhere the second time, and both files happen to have the tag "1".
    std::atomic<bool> hasMoved = false;
    ScriptedServer server([&](Connection& connection, const Request& request) {
        if (request.target == "/file")
            return void(
                connection.answer("302 Found", "", hasMoved ? "Location: /b\r\n" : "Location: /a\r\n"));
        auto& file = request.target == "/a" ? oldFile : newFile;
        if (request.field("Range"))
            return sendRange(connection, file, 10, "\"1\"");
        if (hasMoved)
            return void(connection.answer("200 OK", file, "ETag: \"1\"\r\n"));
        sendBeginning(connection, file);
    });
    auto delegate = std::make_shared<RecordingDelegate>();
    auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
    auto data = resumeDataOf(*session, server.url("/file"), *delegate);
    ASSERT_TRUE(data);
    hasMoved = true;
    session->downloadTask(*data)->resume();
    ASSERT_TRUE(delegate->waitForEnds(2));
    EXPECT_EQ(delegate->body(), newFile);
}

TEST(Download, aBackgroundSessionGoesOnWithWhatAnEarlierOneLeft)
{
    std::atomic<bool> isSecondStart = false;
    std::promise<std::string> description;
    auto described = description.get_future().share();
    ScriptedServer server([&](Connection& connection, const Request& request) {
        if (isSecondStart && request.field("Range")) {
            described.wait(); // or it might be over before anybody asks
            return sendRange(connection, oldFile, 10, "\"1\"");
        }
        sendBeginning(connection, oldFile);
    });
    // The first start is a process of its own, which is killed in the middle. It runs this test again, and loads from the
    // server of the one that waits for it.
    constexpr auto variable = "ZELK_TESTS_BACKGROUND_PORT";
    if (!std::getenv(variable))
        ::setenv(variable, std::to_string(server.port()).c_str(), 1);
    auto url = *URL::parse("http://127.0.0.1:" + std::string(std::getenv(variable)) + "/file");
    auto configuration =
        URLSessionConfiguration::background("org.zelk.tests." + std::string(std::getenv(variable)));
    EXPECT_EXIT(
        {
            auto delegate = std::make_shared<RecordingDelegate>();
            auto session = URLSession::make(configuration, delegate);
            auto task = session->downloadTask(URLRequest(url));
            task->setTaskDescription("kept");
            task->resume();
            delegate->waitForCall("progress");
            std::raise(SIGKILL);
        },
        testing::KilledBySignal(SIGKILL), "");
    ::unsetenv(variable);

    isSecondStart = true;
    auto delegate = std::make_shared<RecordingDelegate>();
    auto session = URLSession::make(configuration, delegate);
    session->getAllTasks(
        [&](auto tasks) { description.set_value(tasks.empty() ? "no task" : tasks[0]->taskDescription()); });
    EXPECT_EQ(described.get(), "kept");
    ASSERT_TRUE(delegate->waitForCall("events"));
    EXPECT_EQ(delegate->body(), oldFile);
    EXPECT_EQ(delegate->calls(),
              (std::vector<std::string>{"resume", "progress", "file", "metrics", "complete", "events"}));
}

TEST(Download, aMeteredConnectionIsRefusedOrWaitedFor)
{
    ScriptedServer server(
        [](Connection& connection, const Request&) { connection.answer("200 OK", "hello"); });
    NetworkConditionsOverride conditions(true);
    auto delegate = std::make_shared<RecordingDelegate>();
    auto configuration = URLSessionConfiguration::ephemeral();
    configuration.allowsCellularAccess = false;
    auto session = URLSession::make(configuration, delegate);
    session->dataTask(URLRequest(server.url("/")))->resume();
    ASSERT_TRUE(delegate->waitForEnds(1));
    EXPECT_EQ(delegate->error()->bridged().code(), NSURLErrorDataNotAllowed);

    configuration.isDiscretionary = true;
    auto patient = URLSession::make(configuration, delegate);
    auto task = patient->downloadTask(URLRequest(server.url("/")));
    task->resume();
    std::promise<void> isListed;
    patient->getAllTasks([&](auto tasks) {
        EXPECT_EQ(tasks.size(), 1u);
        isListed.set_value();
    });
    isListed.get_future().wait();
    EXPECT_TRUE(server.requests().empty());
    conditions.setMetered(false);
    ASSERT_TRUE(delegate->waitForEnds(2));
    EXPECT_EQ(delegate->body(), "hello");
}

TEST(Download, whatNobodyComesBackToIsSweptAndWhatLivesStays)
{
    struct Case {
        const char* name;
        std::chrono::hours age;
        bool isLocked;
        bool stays;
    };
    constexpr auto month = std::chrono::hours(31 * 24);
    constexpr auto day = std::chrono::hours(24);
    const Case cases[] = {
        {"crashed.download", std::chrono::hours(0), false, false},
        {"living.download", month, true, true},
        {"old.partial", month, false, false},
        {"taken-up.partial", month, true, true},
        {"fresh.partial", day, false, true},
        {"session-x/1.part", month, false, false},
        {"session-x/2.part", day, false, true},
        {"session-x/tasks.plist", month, false, true},
        {"session-x/lock", month, false, true},
    };
    tests::TemporaryDirectory folder;
    std::vector<std::unique_ptr<DownloadFile>> living;
    for (auto& [name, age, isLocked, stays] : cases) {
        auto path = folder.file(name, "x");
        std::filesystem::last_write_time(path, std::filesystem::file_time_type::clock::now() - age);
        if (isLocked)
            living.push_back(std::move(*DownloadFile::open(path)));
    }
    removeAbandonedDownloads(folder.path() + "/");
    for (auto& [name, age, isLocked, stays] : cases)
        EXPECT_EQ(std::filesystem::exists(folder.path(name)), stays) << name;
    removeAbandonedDownloads(folder.path("none"));
}

TEST(Download, aFullDiskIsSaidToBeFull)
{
    constexpr auto mount = "unshare --user --map-root-user --mount mount -t tmpfs none /mnt 2>/dev/null";
    if (std::system(mount) != 0)
        GTEST_SKIP() << "this system lets nobody mount a file system of their own";
    // A process of its own sees a small file system where its caches are.
    EXPECT_EXIT(
        {
            auto user = ::geteuid();
            auto group = ::getegid();
            bool isApart = ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0;
            std::ofstream("/proc/self/setgroups") << "deny";
            std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
            std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
            if (!isApart || ::mount("none", "/mnt", "tmpfs", 0, "size=256k") != 0)
                std::_Exit(2);
            ::setenv("XDG_CACHE_HOME", "/mnt", 1);
            ScriptedServer server([](Connection& connection, const Request&) {
                connection.answer("200 OK", std::string(1'000'000, 'x'));
            });
            auto delegate = std::make_shared<RecordingDelegate>();
            auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
            session->downloadTask(URLRequest(server.url("/")))->resume();
            delegate->waitForEnds();
            auto error = delegate->error().value_or(NSError("none", 0)).bridged();
            std::fprintf(stderr, "%s %ld, %d files, %s", error.domain().c_str(), error.code(),
                         static_cast<int>(tests::growingDownloads(downloadDirectory())),
                         downloadDirectory().c_str());
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "^NSPOSIXErrorDomain 28, 0 files, /mnt/");
}

TEST(Download, aFileThatMayNotGrowFailsTheTaskAndLeavesNoFile)
{
    auto directory = downloadDirectory();
    for (std::size_t size : {1'000'000, 20'000}) { // a small one is written when it is whole
        SCOPED_TRACE(size);
        ScriptedServer server([size](Connection& connection, const Request&) {
            connection.answer("200 OK", std::string(size, 'x'));
        });
        std::optional<tests::FullDisk> disk(size / 2);
        auto delegate = std::make_shared<RecordingDelegate>();
        auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
        auto task = session->downloadTask(URLRequest(server.url("/")));
        task->resume();
        EXPECT_TRUE(delegate->waitForEnds());
        std::promise<Result<URLSession::Download>> completed;
        session
            ->downloadTask(URLRequest(server.url("/")),
                           [&](auto download) { completed.set_value(std::move(download)); })
            ->resume();
        auto completion = completed.get_future().get();
        session->delegateQueue()->sync([] { }); // what was given to it is let go of
        disk.reset();
        ASSERT_TRUE(delegate->error() && task->error() && !completion);
        for (auto& error : {*delegate->error(), *task->error(), completion.error()})
            EXPECT_EQ(error.bridged().code(), NSURLErrorCannotWriteToFile);
        EXPECT_EQ(std::ranges::count(delegate->calls(), "file"), 0);
        EXPECT_EQ(tests::growingDownloads(directory), 0);
    }
}

TEST(Download, aFileIsMovedToWhereNothingIsAndIsLikeAnyOther)
{
    auto downloads = downloadDirectory();
    for (std::size_t size : {10'000, 70'000}) { // in memory, in a file
        SCOPED_TRACE(size);
        tests::TemporaryDirectory directory;
        directory.write("old", "old");
        directory.write("like any other", "");
        ScriptedServer server([size](Connection& connection, const Request&) {
            connection.answer("200 OK", std::string(size, 'x'));
        });
        auto delegate = std::make_shared<RecordingDelegate>();
        delegate->onFile = [&](DownloadedFile& file) {
            EXPECT_EQ(tests::growingDownloads(downloads), size > 65'536 ? 1 : 0);
            EXPECT_EQ(file.moveTo(directory.url("old")).error(), NSError(NSCocoaError::fileWriteFileExists));
            EXPECT_EQ(file.moveTo(directory.url("none/new")).error(), NSError(NSCocoaError::fileNoSuchFile));
            EXPECT_TRUE(file.moveTo(directory.url("new")));
            EXPECT_TRUE(file.moveTo(directory.url("newer/"))); // it has changed its mind
            EXPECT_EQ(file.location().value().path(), directory.path("newer/"));
        };
        auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
        session->downloadTask(URLRequest(server.url("/")))->resume();
        ASSERT_TRUE(delegate->waitForEnds());
        session->delegateQueue()->sync([] { });
        EXPECT_FALSE(delegate->error());
        EXPECT_EQ(directory.read("newer"), std::string(size, 'x'));
        EXPECT_EQ(directory.read("old"), "old");
        EXPECT_EQ(directory.fileCount(), 3);
        EXPECT_EQ(std::filesystem::status(directory.path("newer")).permissions(),
                  std::filesystem::status(directory.path("like any other")).permissions());
        EXPECT_EQ(tests::growingDownloads(downloads), 0);
    }
}

TEST(Download, aFileThatHasNoRoomInOnePlaceMayHaveItInAnother)
{
    tests::TemporaryDirectory directory;
    ScriptedServer server([](Connection& connection, const Request&) {
        connection.answer("200 OK", std::string(20'000, 'x'));
    });
    auto delegate = std::make_shared<RecordingDelegate>();
    delegate->onFile = [&](DownloadedFile& file) {
        std::optional<tests::FullDisk> disk(10'000);
        EXPECT_FALSE(file.location());
        EXPECT_FALSE(file.moveTo(directory.url("new")));
        disk.reset();
        EXPECT_TRUE(file.moveTo(directory.url("new")));
    };
    auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
    session->downloadTask(URLRequest(server.url("/")))->resume();
    ASSERT_TRUE(delegate->waitForEnds());
    session->delegateQueue()->sync([] { });
    EXPECT_FALSE(delegate->error());
    EXPECT_EQ(directory.read("new"), std::string(20'000, 'x'));
    EXPECT_EQ(directory.fileCount(), 1);
    EXPECT_EQ(tests::growingDownloads(downloadDirectory()), 0);
}

TEST(Download, thoseThatWaitForTheirTurnOrForTheDelegateHoldFewFiles)
{
    for (std::size_t size : {5, 70'000}) { // in memory, in files
        SCOPED_TRACE(size);
        std::atomic<int> requestCount = 0;
        std::promise<void> tooMany;
        ScriptedServer server([&, size](Connection& connection, const Request&) {
            if (++requestCount == 150)
                tooMany.set_value();
            connection.answer("200 OK", std::string(size, 'x'));
        });
        rlimit before{};
        ::getrlimit(RLIMIT_NOFILE, &before);
        const rlimit few{200, before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &few);
        auto delegate = std::make_shared<RecordingDelegate>();
        auto areTooMany = tooMany.get_future();
        delegate->onDownload = [&](auto&) {
            if (!areTooMany.valid())
                return;
            auto news = std::exchange(areTooMany, {}); // the first keeps the delegate busy
            EXPECT_EQ(news.wait_for(std::chrono::milliseconds(200)), std::future_status::timeout);
        };
        auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
        std::vector<std::shared_ptr<URLSessionTask>> tasks;
        for (int i = 0; i < 400; ++i) {
            tasks.push_back(session->downloadTask(URLRequest(server.url("/file"))));
            tasks.back()->resume();
        }
        EXPECT_TRUE(delegate->waitForEnds(tasks.size()));
        ::setrlimit(RLIMIT_NOFILE, &before);
        EXPECT_TRUE(std::ranges::none_of(tasks, [](auto& task) { return task->error().has_value(); }));
    }
}

} // namespace platform
