// SPDX-License-Identifier: MIT
// What servers do, and what a task makes of it.
#include "platform/network/URLSession.h"

#include "platform/network/DownloadFile_p.h"
#include "platform/network/HTTPURLResponse.h"
#include "platform/network/NSURLErrorCodes.h"
#include "tests/support/RecordingDelegate.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/growingDownloads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace platform {

namespace {

using tests::RecordingDelegate;
using tests::ScriptedServer;
using Connection = ScriptedServer::Connection;
using Request = ScriptedServer::Request;
using Calls = std::vector<std::string>;

long codeOf(const std::optional<Error>& error)
{
    return error ? error->bridged().code() : 0;
}

struct Case {
    const char* name;
    ScriptedServer::Script script;
    long code;        // 0: it succeeds
    std::string body; // of a success
    int status = 200;
};

std::string chunked(std::string_view chunks)
{
    return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + std::string(chunks);
}

std::string repeated(std::string_view text, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

ScriptedServer::Script says(std::string text)
{
    return [text = std::move(text)](Connection& connection, const Request&) {
        connection.send(text);
        connection.close();
    };
}

ScriptedServer::Script answers(std::string status, std::string body, std::string fields = {})
{
    return [=](Connection& connection, const Request&) { connection.answer(status, body, fields); };
}

// `text` again and again, up to a gigabyte: nobody may take it all.
ScriptedServer::Script repeats(std::string first, std::string text)
{
    return [=](Connection& connection, const Request&) {
        connection.send(first);
        for (std::size_t sent = 0; sent < 1'000'000'000 && connection.send(text); sent += text.size()) { }
        connection.close();
    };
}

const Case cases[] = {
    {"an answer", answers("200 OK", "hello"), 0, "hello"},
    {"an empty answer", answers("200 OK", ""), 0, ""},
    {"chunks", says(chunked("5\r\nhello\r\n0\r\n\r\n")), 0, "hello"},
    {"an answer that ends with the connection", says("HTTP/1.0 200 OK\r\n\r\nhello"), 0, "hello"},
    {"chunks beside a length that is wrong",
     says(
         "HTTP/1.1 200 OK\r\nContent-Length: 2\r\nTransfer-Encoding: Chunked\r\n\r\n5\r\nhello\r\n0\r\n\r\n"),
     0, "hello"},
    {"chunks with fields behind them",
     says(chunked("5;note=x\r\nhello\r\n0\r\nContent-Length: 7\r\nX: y\r\n\r\n")), 0, "hello"},
    {"many early hints first",
     says(repeated("HTTP/1.1 103 Early Hints\r\nLink: </x>\r\nContent-Length: 7\r\n\r\n", 100)
          + "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok"),
     0, "ok"},
    {"the same length twice", says("HTTP/1.1 200 OK\r\nContent-Length: 2\r\nContent-Length: 2\r\n\r\nok"), 0,
     "ok"},
    {"more than it promised", says("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok, and more"), 0, "ok"},
    {"no content, with a body", answers("204 No Content", "body"), 0, "", 204},
    {"not modified, though nobody asked", says("HTTP/1.1 304 Not Modified\r\n\r\n"), 0, "", 304},
    {"not found, with a body", answers("404 Not Found", "gone"), 0, "gone", 404},
    {"a server's failure, with a body", answers("503 Service Unavailable", "later"), 0, "later", 503},
    {"a wish for authentication",
     answers("401 Unauthorized", "who?", "WWW-Authenticate: Basic realm=\"x\"\r\n"), 0, "who?", 401},
    {"a redirection without a target", answers("302 Found", "where?"), 0, "where?", 302},

    {"closes at once", [](Connection& c, const Request&) { c.close(); }, NSURLErrorNetworkConnectionLost, ""},
    {"resets at once", [](Connection& c, const Request&) { c.reset(); }, NSURLErrorNetworkConnectionLost, ""},
    {"closes within the status line", says("HTTP/1.1 20"), NSURLErrorNetworkConnectionLost, ""},
    {"closes within the head", says("HTTP/1.1 200 OK\r\nContent-Le"), NSURLErrorNetworkConnectionLost, ""},
    {"closes within the body", says("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhello"),
     NSURLErrorNetworkConnectionLost, ""},
    {"closes within a failure's body", says("HTTP/1.1 404 Not Found\r\nContent-Length: 10\r\n\r\nhello"),
     NSURLErrorNetworkConnectionLost, ""},
    {"is no HTTP", says("220 smtp.example.org ESMTP\r\n"), NSURLErrorCannotParseResponse, ""},
    {"speaks of chunks and sends none", says(chunked("hello")), NSURLErrorNetworkConnectionLost, ""},
    {"has a chunk without end", says(chunked("ffffffffffffffffff\r\nhello")), NSURLErrorNetworkConnectionLost,
     ""},
    {"names two lengths", says("HTTP/1.1 200 OK\r\nContent-Length: 2\r\nContent-Length: 5\r\n\r\nhello"),
     NSURLErrorCannotParseResponse, ""},
    {"names a length that is none", says("HTTP/1.1 200 OK\r\nContent-Length: -2\r\n\r\nhello"),
     NSURLErrorCannotParseResponse, ""},
    {"names a length beside a coding without chunks",
     says("HTTP/1.1 200 OK\r\nTransfer-Encoding: identity\r\nContent-Length: 50\r\n\r\nhello"),
     NSURLErrorCannotParseResponse, ""},
    {"has a head without end", repeats("HTTP/1.1 200 OK\r\n", "X-Field: " + std::string(1000, 'x') + "\r\n"),
     NSURLErrorDataLengthExceedsMaximum, ""},
    {"has a line without end", repeats("HTTP/1.1 200 OK\r\nX-Field: ", std::string(1000, 'x')),
     NSURLErrorDataLengthExceedsMaximum, ""},
    {"has hints without end", repeats("", "HTTP/1.1 103 Early Hints\r\nLink: </x>\r\n\r\n"),
     NSURLErrorDataLengthExceedsMaximum, ""},
    {"has fields behind the body without end",
     repeats(chunked("5\r\nhello\r\n0\r\n"), "X-Field: " + std::string(1000, 'x') + "\r\n"),
     NSURLErrorDataLengthExceedsMaximum, ""},
    {"stalls before the head", [](Connection& c, const Request&) { c.waitForClose(); }, NSURLErrorTimedOut,
     ""},
    {"stalls within the body",
     [](Connection& c, const Request&) {
         c.send("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhello");
         c.waitForClose();
     },
     NSURLErrorTimedOut, ""},

    {"leads in a circle", answers("302 Found", "", "Location: /\r\n"), NSURLErrorHTTPTooManyRedirects, ""},
    {"leads to a file", answers("302 Found", "", "Location: file:///etc/passwd\r\n"),
     NSURLErrorUnsupportedURL, ""},
    {"leads to another scheme", answers("302 Found", "", "Location: ftp://127.0.0.1/\r\n"),
     NSURLErrorUnsupportedURL, ""},
    {"leads nowhere", answers("302 Found", "", "Location: http://[\r\n"),
     NSURLErrorRedirectToNonExistentLocation, ""},
};

} // namespace

TEST(URLSession, aTaskEndsOnceWhateverTheServerDoesAndLeavesNoFile)
{
    for (auto& [name, script, code, body, status] : cases) {
        for (bool isDownload : {false, true}) {
            SCOPED_TRACE(std::string(name) + (isDownload ? ", to a file" : ""));
            ScriptedServer server(script);
            auto delegate = std::make_shared<RecordingDelegate>();
            auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
            bool stalls = code == NSURLErrorTimedOut;
            URLRequest request(server.url("/"), URLRequestCachePolicy::useProtocolCachePolicy,
                               stalls ? std::chrono::duration<double>(0.1) : std::chrono::seconds(20));
            std::shared_ptr<URLSessionTask> task;
            if (isDownload)
                task = session->downloadTask(request);
            else
                task = session->dataTask(request);
            task->resume();
            session->finishTasksAndInvalidate();
            ASSERT_TRUE(delegate->waitForCall("invalid"));

            EXPECT_EQ(codeOf(delegate->error()), code);
            EXPECT_EQ(delegate->ends(), 1u);
            EXPECT_EQ(task->state(), URLSessionTask::State::completed);
            EXPECT_EQ(tests::growingDownloads(downloadDirectory()), 0);
            if (code != 0)
                continue;
            EXPECT_EQ(delegate->body(), body);
            auto head = std::dynamic_pointer_cast<const HTTPURLResponse>(task->response());
            EXPECT_EQ(head ? head->statusCode() : 0, status);
        }
    }
}

TEST(URLSession, aChunkedBodyThatBreaksOffAnywhereIsNeverTakenForWhole)
{
    const std::string whole = chunked("5\r\nhello\r\n6\r\n world\r\n0\r\n\r\n");
    ScriptedServer server([&](Connection& connection, const Request& request) {
        auto length = std::stoul(request.target.substr(request.target.find_first_of("0123456789")));
        connection.send(std::string_view(whole).substr(0, length));
        if (request.target.starts_with("/reset"))
            connection.reset();
        connection.close();
    });
    auto delegate = std::make_shared<RecordingDelegate>();
    auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
    std::size_t ends = 0;
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        for (std::string way : {"/close", "/reset"}) {
            URLRequest request(server.url(way + std::to_string(length)));
            std::vector<std::shared_ptr<URLSessionTask>> tasks{session->dataTask(request),
                                                               session->downloadTask(request)};
            for (auto& task : tasks)
                task->resume();
            ASSERT_TRUE(delegate->waitForEnds(ends += tasks.size()));
            // The very last byte, which ends an empty line, is missed by nobody.
            if (length + 1 >= whole.size() && way == "/reset")
                continue; // it may throw away what was sent before it
            for (auto& task : tasks)
                EXPECT_EQ(codeOf(task->error()),
                          length + 1 < whole.size() ? NSURLErrorNetworkConnectionLost : 0)
                    << way << length;
        }
    }
    EXPECT_EQ(tests::growingDownloads(downloadDirectory()), 0);
}

TEST(URLSession, aCompressedBodyIsUnpackedUnlessItIsABomb)
{
    auto zipped = [](const std::string& source) {
        std::string result;
        auto* pipe = ::popen((source + " | gzip -c").c_str(), "r");
        for (char bytes[65536]; auto count = std::fread(bytes, 1, sizeof bytes, pipe);)
            result.append(bytes, count);
        ::pclose(pipe);
        return result;
    };
    const std::string small = zipped("printf hello");
    const std::string bomb = zipped("head -c 200000000 /dev/zero");
    ScriptedServer server([&](Connection& connection, const Request& request) {
        if (request.target == "/unasked") {
            char length[20];
            std::snprintf(length, sizeof length, "%zx\r\n", bomb.size());
            connection.send("HTTP/1.1 200 OK\r\nTransfer-Encoding: gzip, chunked\r\n\r\n" + (length + bomb)
                            + "\r\n0\r\n\r\n");
        } else {
            auto body = request.target == "/bomb" ? bomb : request.target == "/twice" ? small + small : small;
            connection.answer("200 OK", body, "Content-Encoding: gzip\r\n");
        }
    });
    auto delegate = std::make_shared<RecordingDelegate>();
    auto session = URLSession::make(URLSessionConfiguration::ephemeral(), delegate);
    session->dataTask(URLRequest(server.url("/small")))->resume();
    ASSERT_TRUE(delegate->waitForEnds(1));
    EXPECT_EQ(delegate->body(), "hello");
    session->dataTask(URLRequest(server.url("/bomb")))->resume();
    ASSERT_TRUE(delegate->waitForEnds(2));
    EXPECT_EQ(codeOf(delegate->error()), NSURLErrorCannotDecodeRawData);
    EXPECT_LT(delegate->body().size(), 100'000'000u);
    // Packed for the transport, though nobody asked; in two members, which the library cannot unpack.
    session->downloadTask(URLRequest(server.url("/unasked")))->resume();
    ASSERT_TRUE(delegate->waitForEnds(3));
    EXPECT_EQ(codeOf(delegate->error()), NSURLErrorCannotDecodeRawData);
    session->dataTask(URLRequest(server.url("/twice")))->resume();
    ASSERT_TRUE(delegate->waitForEnds(4));
    EXPECT_EQ(codeOf(delegate->error()), NSURLErrorCannotDecodeRawData);
}

} // namespace platform
