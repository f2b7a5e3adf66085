// SPDX-License-Identifier: MIT
// The preview on a Wayland desktop: a compositor in the window of an X server, so that pixels are real.
#include "tests/endtoend/Desktop.h"
#include "tests/support/TemporaryDirectory.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace endtoend {
namespace {

const std::string program = ZELK_BINARY_DIR "/bin/subtitle-preview";

int lightPixels(const Picture& picture)
{
    return static_cast<int>(
        std::ranges::count_if(picture.pixels, [](auto& pixel) { return pixel.luminance() > 240; }));
}

// The longest stretch of black in a row: of letters it is short.
int longestBlack(const Picture& picture)
{
    int longest = 0, present = 0;
    for (std::size_t at = 0; at < picture.pixels.size(); ++at) {
        bool begins = at % static_cast<std::size_t>(picture.width) == 0;
        present = picture.pixels[at] == Pixel{} ? (begins ? 1 : present + 1) : 0;
        longest = std::max(longest, present);
    }
    return longest;
}

TEST(Wayland, theWholeWindowIsPainted)
{
    if (run({"sh", "-c", "command -v weston"}).exitStatus != 0)
        GTEST_SKIP() << "weston is not installed";
    ::tests::TemporaryDirectory runtime;
    std::filesystem::permissions(runtime.path(), std::filesystem::perms::owner_all);
    Desktop desktop;
    Process compositor({"weston", "--backend=x11-backend.so", "--width=900", "--height=700",
                        "--socket=wayland-test", "--idle-time=0", "--no-config"},
                       desktop.environment({{"XDG_RUNTIME_DIR", runtime.path()}}));
    std::string screen; // it has a class, but no name that a search finds
    ASSERT_TRUE(eventually([&] {
        auto found =
            run({"xdotool", "search", "--onlyvisible", "--class", "weston"}, desktop.environment()).output;
        screen = found.substr(0, found.find('\n'));
        return !screen.empty();
    })) << "the compositor did not start";
    auto file = runtime.file("film.srt", "1\n00:00:01,000 --> 00:00:02,000\nHello\n");
    auto socket = runtime.path("wayland-test");
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(socket); }));
    auto empty = lightPixels(desktop.picture(screen));
    Process preview({program, "--size", "500x400", "--appearance", "light", file},
                    {{"DISPLAY", ""},
                     {"WAYLAND_DISPLAY", "wayland-test"},
                     {"XDG_RUNTIME_DIR", runtime.path()},
                     {"QT_QPA_PLATFORM", "wayland"}});
    ASSERT_TRUE(eventually([&] { return lightPixels(desktop.picture(screen)) > empty + 400 * 300; }))
        << "no window";
    // Frames that follow paint only what has changed.
    EXPECT_TRUE(eventually([&] { return longestBlack(desktop.picture(screen)) < 200; }))
        << "a part of the window was never painted";
    EXPECT_TRUE(preview.isRunning());
}

} // namespace
} // namespace endtoend
