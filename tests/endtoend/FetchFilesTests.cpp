// SPDX-License-Identifier: MIT
// The example that downloads files, against a web server as it is installed.
#include "tests/endtoend/Process.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace endtoend {
namespace {

const std::string fetchFiles = ZELK_BINARY_DIR "/bin/fetch-files";

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

std::string configuration(const std::string& folder, int plainPort, int securePort, int otherPort)
{
    std::string text = "daemon off; pid DIR/pid; error_log DIR/errors; worker_processes 1;\n"
                       "events { worker_connections 64; }\n"
                       "http { log_format line '$server_protocol $uri'; access_log DIR/log line;\n"
                       "client_body_temp_path DIR/1; proxy_temp_path DIR/2; fastcgi_temp_path DIR/3;\n"
                       "uwsgi_temp_path DIR/4; scgi_temp_path DIR/5; root DIR/www;\n"
                       "ssl_certificate DIR/certificate; ssl_certificate_key DIR/key;\n"
                       "server { listen 127.0.0.1:"
        + std::to_string(plainPort) + "; }\nserver { listen 127.0.0.1:" + std::to_string(securePort)
        + " ssl http2; }\nserver { listen 127.0.0.1:" + std::to_string(otherPort)
        + " ssl; ssl_certificate DIR/other; ssl_certificate_key DIR/other-key; } }\n";
    // Its workers are somebody else otherwise, who may not read the test's folder.
    if (::geteuid() == 0)
        text.insert(0, "user root;\n");
    for (auto at = text.find("DIR"); at != std::string::npos; at = text.find("DIR", at))
        text.replace(at, 3, folder);
    return text;
}

TEST(FetchFiles, fetchesFromAWebServerOverBothProtocolsAndTrustsNoStranger)
{
    constexpr auto nginx = "/usr/sbin/nginx";
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
    Process server(
        {nginx, "-e", folder.path("errors"), "-c",
         folder.file("configuration", configuration(folder.path(), plainPort, securePort, otherPort))});
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

    EXPECT_EQ(run({fetchFiles}).exitStatus, 2);
    EXPECT_EQ(run({fetchFiles, "no URL"}).exitStatus, 2);

    outcome =
        run({"script", "-qec", fetchFiles + " --to " + to + " " + plain + "/b.bin", "/dev/null"}, trusting);
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_TRUE(outcome.output.contains("[==============================] b.bin  done")) << outcome.output;
}

} // namespace
} // namespace endtoend
