// SPDX-License-Identifier: MIT
// What is told, in which order, how often and to whom.
#include "platform/network/URLSession.h"

#include "platform/network/DownloadFile_p.h"
#include "platform/network/NSURLErrorCodes.h"
#include "platform/network/URLCache.h"
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
#include <future>
#include <map>
#include <thread>

namespace platform {

namespace {

using tests::RecordingDelegate;
using tests::ScriptedServer;
using Connection = ScriptedServer::Connection;
using Request = ScriptedServer::Request;
using Calls = std::vector<std::string>;
using FetchType = URLSessionTaskMetricsResourceFetchType;

// /N leads to /N-1, and /0 says hello.
void steps(Connection& connection, const Request& request)
{
    auto number = std::stoi(request.target.substr(1));
    if (number == 0)
        connection.answer("200 OK", "hello");
    else
        connection.answer("302 Found", "moved", "Location: /" + std::to_string(number - 1) + "\r\n");
}

Error errorOf(long code)
{
    return NSError(NSURLErrorDomain, code);
}

std::vector<FetchType> fetchTypes(const URLSessionTaskMetrics& metrics)
{
    std::vector<FetchType> result;
    for (auto& transaction : metrics.transactionMetrics)
        result.push_back(transaction.resourceFetchType);
    return result;
}

} // namespace

TEST(URLSessionOrder, delegateCallsComeInTheOrderOfTheirMeaning)
{
    ScriptedServer server(steps);
    auto delegate = std::make_shared<RecordingDelegate>();
    auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
    session->dataTask(URLRequest(server.url("/2")))->resume();
    ASSERT_TRUE(delegate->waitForEnds(1));
    session->downloadTask(URLRequest(server.url("/1")))->resume();
    ASSERT_TRUE(delegate->waitForEnds(2));
    session->finishTasksAndInvalidate();
    ASSERT_TRUE(delegate->waitForCall("invalid"));
    EXPECT_EQ(delegate->calls(),
              (Calls{"redirect", "redirect", "response", "data", "metrics", "complete", //
                     "redirect", "progress", "file", "metrics", "complete", "invalid"}));

    auto metrics = delegate->metrics();
    ASSERT_EQ(metrics.transactionMetrics.size(), 2u);
    EXPECT_EQ(metrics.redirectCount, 1);
    EXPECT_EQ(metrics.transactionMetrics[1].request.url, server.url("/0"));
    EXPECT_EQ(metrics.transactionMetrics[0].networkProtocolName, "http/1.1");
    for (auto& transaction : metrics.transactionMetrics) {
        EXPECT_LE(*transaction.fetchStartDate, *transaction.requestStartDate);
        EXPECT_LE(*transaction.requestStartDate, *transaction.responseStartDate);
        EXPECT_LE(*transaction.responseStartDate, *transaction.responseEndDate);
    }
}

TEST(URLSessionOrder, twentyRedirectionsAreFollowedAndNotOneMore)
{
    for (int steppes : {20, 21, 30}) {
        ScriptedServer server(steps);
        auto delegate = std::make_shared<RecordingDelegate>();
        auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
        session->dataTask(URLRequest(server.url("/" + std::to_string(steppes))))->resume();
        ASSERT_TRUE(delegate->waitForEnds());
        EXPECT_EQ(delegate->error(),
                  steppes == 20 ? std::nullopt : std::optional(errorOf(NSURLErrorHTTPTooManyRedirects)));
        EXPECT_EQ(delegate->metrics().redirectCount, 20);
    }
}

TEST(URLSessionOrder, aRedirectionThatTheDelegateRefusesIsWhatIsLoaded)
{
    ScriptedServer server(steps);
    auto delegate = std::make_shared<RecordingDelegate>();
    delegate->onRedirect = [](auto&) { return std::nullopt; };
    auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
    session->dataTask(URLRequest(server.url("/5")))->resume();
    ASSERT_TRUE(delegate->waitForEnds());
    EXPECT_EQ(delegate->body(), "moved");
    EXPECT_EQ(delegate->calls(), (Calls{"redirect", "response", "data", "metrics", "complete"}));
}

TEST(URLSessionOrder, aThousandCancelsAtAnyMomentEndEachTaskOnce)
{
    ScriptedServer server([](Connection& connection, const Request&) {
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 1000000\r\n\r\nhello");
        connection.waitForClose();
    });
    auto delegate = std::make_shared<RecordingDelegate>();
    delegate->onData = [](URLSessionTask& task) { task.cancel(); };
    auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
    constexpr std::size_t count = 1000;
    std::vector<std::shared_ptr<URLSessionTask>> tasks;
    for (std::size_t i = 0; i < count; ++i) {
        if (i % 2 == 0)
            tasks.push_back(session->dataTask(URLRequest(server.url("/"))));
        else
            tasks.push_back(session->downloadTask(URLRequest(server.url("/"))));
        if (i % 5 != 0)
            tasks.back()->resume();
    }
    for (auto& task : tasks)
        task->cancel();
    for (auto& task : tasks)
        task->cancel(); // too late for all
    session->finishTasksAndInvalidate();
    ASSERT_TRUE(delegate->waitForCall("invalid"));
    EXPECT_EQ(delegate->ends(), count);
    for (auto& task : tasks)
        EXPECT_EQ(task->error(), errorOf(NSURLErrorCancelled));
}

TEST(URLSessionOrder, whatWaitsToBeToldWhenATaskIsCancelledIsNotTold)
{
    ScriptedServer server([](Connection& connection, const Request&) {
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhello");
        connection.waitForClose();
    });
    for (bool isDownload : {false, true}) {
        auto queue = DispatchQueue::make("org.zelk.tests", DispatchQueue::Initially::suspended);
        auto delegate = std::make_shared<RecordingDelegate>();
        auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate, queue);
        std::shared_ptr<URLSessionTask> task;
        if (isDownload)
            task = session->downloadTask(URLRequest(server.url("/")));
        else
            task = session->dataTask(URLRequest(server.url("/")));
        task->resume();
        while (isDownload ? task->countOfBytesReceived() == 0 : !task->response())
            std::this_thread::yield();
        task->cancel();
        queue->resume();
        ASSERT_TRUE(delegate->waitForEnds());
        EXPECT_EQ(delegate->calls(), (Calls{"metrics", "error"}));
    }
}

TEST(URLSessionOrder, aDelegateThatGoesAwayInTheMiddleIsNotCalledAndTheTaskEnds)
{
    std::promise<void> isWaiting;
    std::promise<void> mayGoOn;
    ScriptedServer server([&](Connection& connection, const Request&) {
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhello");
        isWaiting.set_value();
        mayGoOn.get_future().wait();
        connection.send("world");
    });
    auto delegate = std::make_shared<RecordingDelegate>();
    auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
    auto task = session->downloadTask(URLRequest(server.url("/")));
    task->resume();
    isWaiting.get_future().wait();
    delegate = nullptr;
    mayGoOn.set_value();

    // The end is told on the queue after all else: ask there until the task is no longer listed.
    std::promise<void> isOver;
    std::function<void(URLSession::Tasks)> look = [&](const URLSession::Tasks& tasks) {
        if (tasks.empty())
            isOver.set_value();
        else
            session->getAllTasks(look);
    };
    session->getAllTasks(look);
    EXPECT_EQ(isOver.get_future().wait_for(std::chrono::seconds(30)), std::future_status::ready);
    EXPECT_EQ(task->error(), std::nullopt);
}

TEST(URLSessionOrder, aSessionsSecretsAreToldToTheFirstServerOnly)
{
    ScriptedServer stranger(steps);
    ScriptedServer server([&](Connection& connection, const Request&) {
        connection.answer("302 Found", "", "Location: " + stranger.url("/0").absoluteString() + "\r\n");
    });
    auto configuration = URLSessionConfiguration::ephemeral();
    configuration.httpAdditionalHeaders = {{"Authorization", "secret"}, {"X-App", "zelk"}, {"X-Empty", ""}};
    auto delegate = std::make_shared<RecordingDelegate>();
    auto session = URLSession::make(configuration, delegate);
    session->dataTask(URLRequest(server.url("/")))->resume();
    ASSERT_TRUE(delegate->waitForEnds());
    EXPECT_EQ(delegate->body(), "hello");
    EXPECT_EQ(server.requests().at(0).field("Authorization"), "secret");
    EXPECT_EQ(stranger.requests().at(0).field("Authorization"), std::nullopt);
    EXPECT_EQ(stranger.requests().at(0).field("X-App"), "zelk");
    EXPECT_EQ(stranger.requests().at(0).field("Cookie"), std::nullopt);

    configuration.httpAdditionalHeaders = {{"X-Forged", "a\r\nHost: elsewhere"}};
    URLSession::make(configuration, delegate)->dataTask(URLRequest(server.url("/")))->resume();
    ASSERT_TRUE(delegate->waitForEnds(2));
    EXPECT_EQ(delegate->error(), errorOf(NSURLErrorBadURL));
}

TEST(URLSessionOrder, aTaskThatIsSuspendedAtEachPieceGetsThemAll)
{
    ScriptedServer server([](Connection& connection, const Request&) {
        connection.answer("200 OK", std::string(10'000'000, 'x'));
    });
    auto delegate = std::make_shared<RecordingDelegate>();
    delegate->onData = [](URLSessionTask& task) { task.suspend(); };
    auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
    URLRequest request(server.url("/"));
    std::vector<std::shared_ptr<URLSessionTask>> tasks{session->dataTask(request),
                                                       session->downloadTask(request)};
    std::size_t count = 0;
    for (auto& task : tasks) {
        task->resume();
        while (task->state() != URLSessionTask::State::completed) {
            task->resume();
            std::this_thread::yield();
        }
        EXPECT_EQ(task->error(), std::nullopt);
        EXPECT_EQ(task->countOfBytesReceived(), 10'000'000);
        EXPECT_TRUE(delegate->waitForEnds(++count));
    }
}

TEST(URLSessionOrder, tasksThatRestLeaveTheirPlacesToOthers)
{
    ScriptedServer server([](Connection& connection, const Request& request) {
        connection.answer("200 OK", std::string(request.target == "/long" ? 4'000'000 : 5, 'x'));
    });
    auto delegate = std::make_shared<RecordingDelegate>();
    auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
    // As many of each as there are places: at rest before they begin, and in the middle.
    std::vector<std::shared_ptr<URLSessionTask>> resting;
    std::atomic<bool> isTimeToRest = true;
    delegate->onData = [&](URLSessionTask& task) {
        // Once: what was on its way to the delegate still comes, and each suspension needs a resumption.
        if (isTimeToRest && task.state() == URLSessionTask::State::running)
            task.suspend();
    };
    for (int i = 0; i < 12; ++i) {
        resting.push_back(session->dataTask(URLRequest(server.url("/long"))));
        resting.back()->resume();
        if (i % 2 == 0)
            resting.back()->suspend();
    }
    session->downloadTask(URLRequest(server.url("/short")))->resume();
    EXPECT_TRUE(delegate->waitForCall("file"));
    isTimeToRest = false;
    session->delegateQueue()->sync([] { }); // those that were about to rest do
    for (auto& task : resting)
        task->resume();
    EXPECT_TRUE(delegate->waitForEnds(13));
    for (auto& task : resting)
        EXPECT_EQ(task->error(), std::nullopt);
}

TEST(URLSessionOrder, aProcessMayEndInTheMiddleOfAnyLoadAndWhileAnswersAreKept)
{
    tests::TemporaryDirectory directory;
    for (std::size_t moment = 0; moment < 12; ++moment) {
        EXPECT_EXIT(
            {
                ScriptedServer server([](Connection& connection, const Request& request) {
                    connection.send("HTTP/1.1 200 OK\r\nCache-Control: max-age=60\r\n"
                                    "Content-Length: 100000\r\n\r\n");
                    connection.send(
                        std::string(request.target.starts_with("/whole") ? 100'000 : 50'000, 'x'));
                });
                auto delegate = std::make_shared<RecordingDelegate>();
                auto configuration = URLSessionConfiguration::ephemeral();
                configuration.urlCache =
                    std::make_shared<URLCache>(0, 100'000'000, directory.url(std::to_string(moment)));
                auto session = URLSession::make(configuration, delegate);
                for (int i = 0; i < 40; ++i) {
                    URLRequest request(server.url(i % 8 == 7 ? "/part" : "/whole?" + std::to_string(i)));
                    session->dataTask(request)->resume();
                    session->downloadTask(request)->resume();
                }
                session->dataTask(URLRequest(*URL::parse("http://name.invalid/")))->resume();
                delegate->waitForEnds(moment);
                std::exit(0);
            },
            testing::ExitedWithCode(0), "");
    }
    removeAbandonedDownloads(downloadDirectory());
    EXPECT_EQ(tests::growingDownloads(downloadDirectory()), 0);
}

TEST(URLSessionOrder, proxiesComeFromTheEnvironment)
{
    // In a process of its own, whose environment nobody else reads meanwhile.
    auto load = [](std::map<std::string, std::string> variables, const char* url) {
        ScriptedServer proxy([](Connection& connection, const Request& request) {
            connection.answer(request.method == "CONNECT" ? "403 Forbidden" : "200 OK", request.target);
        });
        for (auto* name : {"http_proxy", "HTTP_PROXY", "https_proxy", "all_proxy", "no_proxy"})
            ::unsetenv(name);
        for (auto& [name, value] : variables)
            ::setenv(name.c_str(), value == "proxy" ? proxy.url("").absoluteString().c_str() : value.c_str(),
                     1);
        auto delegate = std::make_shared<RecordingDelegate>();
        auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
        session->dataTask(URLRequest(*URL::parse(url)))->resume();
        delegate->waitForEnds();
        auto asked = proxy.requests();
        auto code = delegate->error() ? delegate->error()->bridged().code() : 0;
        std::fprintf(stderr, "%s%ld",
                     asked.empty() ? "" : (asked[0].method + " " + asked[0].target + " ").c_str(), code);
        std::_Exit(0);
    };
    auto exits = testing::ExitedWithCode(0);
    EXPECT_EXIT(load({{"http_proxy", "proxy"}}, "http://name.invalid/x"), exits,
                "^GET http://name.invalid/x 0$");
    EXPECT_EXIT(load({{"https_proxy", "proxy"}}, "https://name.invalid/x"), exits,
                "^CONNECT name.invalid:443 -1004$");
    // A stranger's "Proxy:" field would become it.
    EXPECT_EXIT(load({{"HTTP_PROXY", "proxy"}}, "http://127.0.0.1:1/"), exits, "^-1004$");
    EXPECT_EXIT(load({{"all_proxy", "proxy"}, {"no_proxy", "a.b, 127.0.0.1"}}, "http://127.0.0.1:1/"), exits,
                "^-1004$");
}

TEST(URLSessionOrder, completionsAreCalledOnceOnTheDelegateQueue)
{
    ScriptedServer server(steps);
    auto queue = DispatchQueue::make("org.zelk.tests");
    auto session = URLSession::make(URLSessionConfiguration::ephemeral(), {}, queue);
    std::promise<Result<URLSession::DataLoad>> loaded;
    session
        ->dataTask(URLRequest(server.url("/1")),
                   [&](auto result) {
                       EXPECT_TRUE(queue->isCurrent());
                       loaded.set_value(std::move(result));
                   })
        ->resume();
    EXPECT_EQ(loaded.get_future().get()->data, "hello");

    std::promise<Result<URLSession::Download>> cancelled;
    auto task = session->downloadTask(URLRequest(server.url("/1")),
                                      [&](auto result) { cancelled.set_value(std::move(result)); });
    task->cancel();
    EXPECT_EQ(cancelled.get_future().get().error(), errorOf(NSURLErrorCancelled));
}

TEST(URLSessionCache, freshAnswersComeFromTheCacheAndStaleOnesAreAskedAbout)
{
    ScriptedServer server([](Connection& connection, const Request& request) {
        auto life = request.target == "/fresh" ? "max-age=1000" : "max-age=0";
        if (request.field("If-None-Match") == "\"1\"")
            connection.send("HTTP/1.1 304 Not Modified\r\nETag: \"1\"\r\n\r\n");
        else if (request.target == "/endless") { // perhaps there should have been more of it
            connection.send("HTTP/1.1 200 OK\r\nCache-Control: max-age=1000\r\n\r\nhello");
            connection.close();
        } else
            connection.answer("200 OK", "hello",
                              "ETag: \"1\"\r\nCache-Control: " + std::string(life) + "\r\n");
    });
    struct Case {
        const char* target;
        URLRequestCachePolicy policy;
        std::vector<FetchType> fetched; // the second time
        std::size_t requests;           // in all
    };
    using enum URLRequestCachePolicy;
    const Case cases[] = {
        {"/fresh", useProtocolCachePolicy, {FetchType::localCache}, 1},
        {"/endless", useProtocolCachePolicy, {FetchType::networkLoad}, 2},
        {"/stale", useProtocolCachePolicy, {FetchType::networkLoad, FetchType::localCache}, 2},
        {"/stale", returnCacheDataElseLoad, {FetchType::localCache}, 1},
        {"/fresh", reloadIgnoringLocalCacheData, {FetchType::networkLoad}, 2},
        {"/fresh", reloadRevalidatingCacheData, {FetchType::networkLoad, FetchType::localCache}, 2},
    };
    for (auto& [target, policy, fetched, requests] : cases) {
        SCOPED_TRACE(std::string(target) + " " + std::to_string(static_cast<int>(policy)));
        auto before = server.requests().size();
        auto configuration = URLSessionConfiguration::ephemeral();
        configuration.urlCache = std::make_shared<URLCache>(1'000'000, 0);
        auto delegate = std::make_shared<RecordingDelegate>();
        auto session = URLSession::make(configuration, delegate);
        session->dataTask(URLRequest(server.url(target)))->resume();
        ASSERT_TRUE(delegate->waitForEnds(1));
        session->dataTask(URLRequest(server.url(target), policy))->resume();
        ASSERT_TRUE(delegate->waitForEnds(2));
        EXPECT_EQ(delegate->body(), "hellohello");
        EXPECT_EQ(delegate->error(), std::nullopt);
        EXPECT_EQ(fetchTypes(delegate->metrics()), fetched);
        EXPECT_EQ(server.requests().size() - before, requests);
    }
}

TEST(URLSessionCache, whatASessionAddsToItsRequestsTellsAnswersApart)
{
    ScriptedServer server([](Connection& connection, const Request& request) {
        connection.answer("200 OK", request.field("Accept-Language").value_or("none"),
                          "Vary: Accept-Language\r\nCache-Control: max-age=1000\r\n");
    });
    auto configuration = URLSessionConfiguration::ephemeral();
    configuration.urlCache = std::make_shared<URLCache>(1'000'000, 0);
    for (auto* language : {"yi", "he", "yi", "he"}) {
        configuration.httpAdditionalHeaders = {{"Accept-Language", language}};
        auto delegate = std::make_shared<RecordingDelegate>();
        auto session = URLSession::make(configuration, delegate);
        session->dataTask(URLRequest(server.url("/")))->resume();
        ASSERT_TRUE(delegate->waitForEnds());
        EXPECT_EQ(delegate->body(), language);
    }
    EXPECT_EQ(server.requests().size(), 2u);
}

} // namespace platform
