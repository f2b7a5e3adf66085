// SPDX-License-Identifier: MIT
#include "platform/graphics/GraphicsRuntime.h"

#include "platform/graphics/DisplayProbe_p.h"
#include "tests/support/EnvironmentOverride.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace platform {
namespace {

using ::tests::EnvironmentOverride;

TEST(GraphicsRuntimeTests, aDisplayThatNobodyServesIsNotAvailable)
{
    struct Case {
        const char *name, *platform, *display, *waylandDisplay;
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
        EnvironmentOverride environment({{"QT_QPA_PLATFORM", row.platform},
                                         {"DISPLAY", row.display},
                                         {"WAYLAND_DISPLAY", row.waylandDisplay}});
        EXPECT_EQ(displayIsAvailable(), row.isAvailable) << row.name;
    }
}

// A socket that is left over must not pass for a display.
TEST(GraphicsRuntimeTests, anXServerThatIsGoneIsNotAvailable)
{
    auto path = std::filesystem::temp_directory_path() / ("zelk-x-" + std::to_string(::getpid()));
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    path.string().copy(address.sun_path, sizeof address.sun_path - 1);
    auto server = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(::bind(server, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EnvironmentOverride environment({{"QT_QPA_PLATFORM", "xcb"}, {"DISPLAY", path.string()}});
    EXPECT_FALSE(displayIsAvailable());
    ::close(server);
    std::filesystem::remove(path);
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
