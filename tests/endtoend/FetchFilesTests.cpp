// SPDX-License-Identifier: MIT
// The examples that download files and show a picture, against a web server as it is installed.
#include "platform/graphics/UIImage.h"
#include "tests/endtoend/Process.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/growingDownloads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace endtoend {
namespace {

const std::string fetchFiles = ZELK_BINARY_DIR "/bin/fetch-files";
const std::string remoteImage = ZELK_BINARY_DIR "/bin/remote-image";
constexpr auto nginx = "/usr/sbin/nginx";

sockaddr_in loopback(int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

// One that nobody listens on.
int freePort()
{
    int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    auto address = loopback(0);
    socklen_t length = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(::bind(descriptor, generic, length), 0);
    EXPECT_EQ(::getsockname(descriptor, generic, &length), 0);
    ::close(descriptor);
    return ntohs(address.sin_port);
}

bool isListening(int port)
{
    int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    auto address = loopback(port);
    bool isThere = ::connect(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    ::close(descriptor);
    return isThere;
}

std::string configuration(std::string servers, const std::string& folder)
{
    auto text = "daemon off; pid DIR/pid; error_log DIR/errors; worker_processes 1;\n"
                "events { worker_connections 64; }\n"
                "http { log_format line '$server_protocol $uri'; access_log DIR/log line;\n"
                "client_body_temp_path DIR/1; proxy_temp_path DIR/2; fastcgi_temp_path DIR/3;\n"
                "uwsgi_temp_path DIR/4; scgi_temp_path DIR/5; root DIR/www; expires 1h;\n"
        + std::move(servers) + "}\n";
    // Its workers are somebody else otherwise, who may not read the test's folder.
    if (::geteuid() == 0)
        text.insert(0, "user root;\n");
    for (auto at = text.find("DIR"); at != std::string::npos; at = text.find("DIR", at))
        text.replace(at, 3, folder);
    return text;
}

std::vector<std::string> serverCommand(const ::tests::TemporaryDirectory& folder, const std::string& servers)
{
    return {nginx, "-e", folder.path("errors"), "-c",
            folder.file("configuration", configuration(servers, folder.path()))};
}

TEST(FetchFiles, fetchesFromAWebServerOverBothProtocolsAndTrustsNoStranger)
{
    if (::access(nginx, X_OK) != 0)
        GTEST_SKIP() << "there is no " << nginx << " to fetch from";
    ::tests::TemporaryDirectory folder;
    auto certify = [&](const std::string& name, const std::string& key, const std::string& certificate) {
        auto made = run({"openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj",
                         "/CN=x", "-addext", "subjectAltName=" + name, "-keyout", folder.path(key), "-out",
                         folder.path(certificate)});
        ASSERT_EQ(made.exitStatus, 0) << made.errors;
    };
    certify("IP:127.0.0.1", "key", "certificate");
    certify("DNS:elsewhere.example", "other-key", "other");
    folder.write("trusted", folder.read("certificate") + folder.read("other"));
    auto plainPort = freePort();
    auto securePort = freePort();
    auto otherPort = freePort();
    std::string large(3'000'000, 'x');
    folder.write("www/a.txt", "hello");
    folder.write("www/b.bin", large);
    auto listen = [](int port) { return "server { listen 127.0.0.1:" + std::to_string(port); };
    Process server(
        serverCommand(folder,
                      "ssl_certificate DIR/certificate; ssl_certificate_key DIR/key;\n" + listen(plainPort)
                          + "; }\n" + listen(securePort) + " ssl http2; }\n" + listen(otherPort)
                          + " ssl; ssl_certificate DIR/other; ssl_certificate_key DIR/other-key; }\n"));
    ASSERT_TRUE(eventually(
        [&] { return isListening(plainPort) && isListening(securePort) && isListening(otherPort); }));

    auto plain = "http://127.0.0.1:" + std::to_string(plainPort);
    auto secure = "https://127.0.0.1:" + std::to_string(securePort);
    Environment trusting{{"SSL_CERT_FILE", folder.path("trusted")}, {"HOME", folder.path("home")}};
    folder.write("got/kept", "");
    auto to = folder.path("got");

    auto outcome = run({fetchFiles, "--to", to, plain + "/a.txt", secure + "/b.bin"}, trusting);
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.output << outcome.errors;
    EXPECT_EQ(folder.read("got/a.txt"), "hello");
    EXPECT_TRUE(folder.read("got/b.bin") == large);
    EXPECT_TRUE(folder.read("log").contains("HTTP/2.0 /b.bin")) << folder.read("log");

    outcome = run({fetchFiles, "--to", to, plain + "/none", plain + "/a.txt", "ftp://127.0.0.1/x"}, trusting);
    EXPECT_EQ(outcome.exitStatus, 1);
    for (auto* line : {"none: not found\n", "a.txt: done\n", "x: unsupported URL\n"})
        EXPECT_TRUE(outcome.output.contains(line)) << outcome.output;

    outcome = run({fetchFiles, "--to", to, secure + "/a.txt"},
                  {{"SSL_CERT_FILE", ""}, {"HOME", folder.path("home")}});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.output, "a.txt: The certificate for this server is invalid.\n");

    outcome =
        run({fetchFiles, "--to", to, "https://127.0.0.1:" + std::to_string(otherPort) + "/a.txt"}, trusting);
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.output, "a.txt: The certificate for this server is invalid.\n");

    for (auto& arguments : std::vector<std::vector<std::string>>{
             {}, {"no URL"}, {"--to"}, {"--to", folder.path("none"), plain + "/a.txt"}, {"--to", to}}) {
        arguments.insert(arguments.begin(), fetchFiles);
        outcome = run(arguments, trusting);
        EXPECT_EQ(outcome.exitStatus, 2) << arguments.back();
        EXPECT_EQ(std::ranges::count(outcome.errors, '\n'), 1) << outcome.errors;
    }

    outcome =
        run({"script", "-qec", fetchFiles + " --to " + to + " " + plain + "/b.bin", "/dev/null"}, trusting);
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_TRUE(outcome.output.contains("[==============================] b.bin  done")) << outcome.output;
}

TEST(FetchFiles, aDownloadThatIsBrokenOffOrInterruptedLeavesNothing)
{
    if (::access(nginx, X_OK) != 0)
        GTEST_SKIP() << "there is no " << nginx << " to fetch from";
    ::tests::TemporaryDirectory folder;
    folder.write("www/slow.bin", std::string(3'000'000, 'x'));
    folder.write("got/slow.bin", "old");
    auto port = freePort();
    Process server(
        serverCommand(folder, "limit_rate 50k; server { listen 127.0.0.1:" + std::to_string(port) + "; }"));
    ASSERT_TRUE(eventually([&] { return isListening(port); }));
    for (bool isInterrupted : {true, false}) {
        Process program({fetchFiles, "--to", folder.path("got"),
                         "http://127.0.0.1:" + std::to_string(port) + "/slow.bin"},
                        {{"HOME", folder.path("home")}});
        ASSERT_TRUE(eventually([&] { return ::tests::growingDownloads(folder.path("home")) == 1; }));
        if (isInterrupted)
            program.terminate(SIGINT);
        else
            server.terminate(SIGTERM);
        auto outcome = program.wait();
        ASSERT_TRUE(outcome);
        EXPECT_EQ(outcome->exitStatus, 1);
        // Going on with the rest is tried once the connection is lost.
        auto output = outcome->output;
        EXPECT_TRUE(isInterrupted ? output == "slow.bin: cancelled\n"
                                  : output == "slow.bin: The network connection was lost.\n"
                            || output == "slow.bin: Could not connect to the server.\n")
            << output;
        EXPECT_EQ(folder.read("got/slow.bin"), "old");
        EXPECT_EQ(::tests::growingDownloads(folder.path("home")), 0);
    }
}

TEST(RemoteImage, showsAPictureOfAWebServerAndAgainWithoutIt)
{
    if (::access(nginx, X_OK) != 0)
        GTEST_SKIP() << "there is no " << nginx << " to load from";
    ::tests::TemporaryDirectory folder;
    // Red on the left, blue on the right; as high as its window shows it.
    std::vector<std::byte> pixels;
    for (int i = 0; i < 400 * 200; ++i)
        for (int value : {i % 400 < 200 ? 255 : 0, 0, i % 400 < 200 ? 0 : 255, 255})
            pixels.push_back(static_cast<std::byte>(value));
    folder.write("www/halves.png", platform::UIImage::fromPixels(pixels, 400, 200).pngData());
    auto port = freePort();
    Process server(serverCommand(folder, "server { listen 127.0.0.1:" + std::to_string(port) + "; }"));
    ASSERT_TRUE(eventually([&] { return isListening(port); }));
    auto url = "http://127.0.0.1:" + std::to_string(port) + "/";
    Environment environment{
        {"HOME", folder.path("home")}, {"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}, {"QT_QPA_PLATFORM", ""}};
    auto show = [&](const std::string& name, std::vector<std::string> rest) {
        rest.insert(rest.begin(), {remoteImage, url + name});
        return run(rest, environment);
    };

    auto outcome = show("halves.png", {"--output", folder.path("first.png")});
    ASSERT_EQ(outcome.exitStatus, 0) << outcome.errors;
    auto shown = platform::UIImage::fromFile(folder.path("first.png"));
    ASSERT_TRUE(shown);
    auto middle = shown->pixelHeight() * 2 / 5;
    EXPECT_GT(shown->pixel(shown->pixelWidth() / 4, middle).components().red, 0.9);
    EXPECT_GT(shown->pixel(shown->pixelWidth() * 3 / 4, middle).components().blue, 0.9);
    EXPECT_EQ(show("none.png", {"--output", folder.path("none.png")}).errors,
              "remote-image: What is at this address is not a picture.\n");

    server.terminate(SIGTERM);
    ASSERT_TRUE(eventually([&] { return !isListening(port); }));
    outcome = show("halves.png", {"--output", folder.path("second.png")});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
    EXPECT_TRUE(folder.read("second.png") == folder.read("first.png"));
    outcome = show("other.png", {"--output", folder.path("none.png")});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.errors, "remote-image: Could not connect to the server.\n");
    for (auto& wrong :
         std::vector<std::vector<std::string>>{{"--output"}, {"--to", "x"}, {"--output", "x", "y"}})
        EXPECT_EQ(show("halves.png", wrong).exitStatus, 2) << wrong.back();
    outcome = show("halves.png", {});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.errors, "remote-image: there is no display; try --output OUT.png\n");
}

} // namespace
} // namespace endtoend
