// SPDX-License-Identifier: MIT
#include "platform/graphics/GraphicsRuntime.h"

#include "platform/graphics/DisplayProbe_p.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace platform {
namespace {

class EnvironmentVariable {
public:
    EnvironmentVariable(const char* name, const std::string& value)
        : name_(name)
    {
        if (auto before = std::getenv(name))
            before_ = before;
        ::setenv(name, value.c_str(), 1);
    }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
    ~EnvironmentVariable()
    {
        if (before_)
            ::setenv(name_, before_->c_str(), 1);
        else
            ::unsetenv(name_);
    }

private:
    const char* name_;
    std::optional<std::string> before_;
};

TEST(GraphicsRuntimeTests, aDisplayThatNobodyServesIsNotAvailable)
{
    struct Case {
        const char* name;
        const char* platform;
        const char* display;
        const char* waylandDisplay;
        bool isAvailable;
    };
    constexpr Case cases[]{
        {"no display at all", "", "", "", false},
        {"an X display that nobody serves", "", ":12345", "", false},
        {"an X display with a malformed name", "xcb", "nonsense", "", false},
        {"a Wayland display that nobody serves", "wayland", "", "wayland-12345", false},
        {"both, and nobody serves them", "wayland;xcb", ":12345", "/nowhere/socket", false},
        {"off-screen needs none", "offscreen", "", "", true},
        {"options of the window system do not matter", "offscreen:size=10x10", "", "", true},
        {"the second choice counts", "xcb;offscreen", ":12345", "", true},
        {"a window system that is not installed", "unheardof", "", "", false},
    };
    for (auto& row : cases) {
        EnvironmentVariable platform("QT_QPA_PLATFORM", row.platform);
        EnvironmentVariable display("DISPLAY", row.display);
        EnvironmentVariable wayland("WAYLAND_DISPLAY", row.waylandDisplay);
        EXPECT_EQ(displayIsAvailable(), row.isAvailable) << row.name;
    }
}

// A server that listens and says nothing sensible must not pass for a display.
TEST(GraphicsRuntimeTests, anXServerThatHangsUpIsNotAvailable)
{
    auto path = std::filesystem::temp_directory_path() / ("zelk-x-" + std::to_string(::getpid()));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    auto server = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(::bind(server, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EnvironmentVariable platform("QT_QPA_PLATFORM", "xcb");
    EnvironmentVariable display("DISPLAY", path.string());
    EXPECT_FALSE(displayIsAvailable()) << "the socket exists, but nobody listens";
    ::close(server);
    std::filesystem::remove(path);
}

TEST(GraphicsRuntimeTests, theListOfWindowSystemsIsReadInOrderWithoutOptions)
{
    using Names = std::vector<std::string>;
    EXPECT_EQ(candidateWindowSystems("wayland;xcb"), (Names{"wayland", "xcb"}));
    EXPECT_EQ(candidateWindowSystems("offscreen:a=b;;xcb;"), (Names{"offscreen", "xcb"}));
    EXPECT_FALSE(candidateWindowSystems("").empty());
}

TEST(GraphicsRuntimeTests, aWaylandSocketIsNamedRelativeToTheRuntimeDirectory)
{
    EXPECT_EQ(waylandSocketPath("wayland-0", "/run/user/1"), "/run/user/1/wayland-0");
    EXPECT_EQ(waylandSocketPath("/tmp/socket", "/run/user/1"), "/tmp/socket");
    EXPECT_EQ(waylandSocketPath("wayland-0", ""), "");
    EXPECT_EQ(waylandSocketPath("", "/run/user/1"), "");
}

} // namespace
} // namespace platform
