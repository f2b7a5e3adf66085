// SPDX-License-Identifier: MIT
// The preview on a Wayland desktop: a compositor in the window of an X server, so that pixels are real.
#include "tests/endtoend/Desktop.h"
#include "tests/support/TemporaryDirectory.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>

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

bool isInstalled(const std::string& name)
{
    return run({"sh", "-c", "command -v " + name}).exitStatus == 0;
}

// A compositor, with a keyboard, and the program in it that shows a file.
struct Preview {
    ::tests::TemporaryDirectory runtime;
    Desktop desktop;
    std::unique_ptr<Process> compositor, program;
    std::string screen; // the compositor's window
    int empty = 0;      // light pixels before there was the program's

    explicit Preview(const std::string& text)
    {
        std::filesystem::permissions(runtime.path(), std::filesystem::perms::owner_all);
        compositor = std::make_unique<Process>(
            std::vector<std::string>{"weston", "--backend=x11-backend.so", "--width=900", "--height=700",
                                     "--socket=wayland-test", "--idle-time=0", "--no-config"},
            desktop.environment({{"XDG_RUNTIME_DIR", runtime.path()}}));
        // It has a class, but no name that a search finds.
        EXPECT_TRUE(eventually([&] {
            auto found =
                run({"xdotool", "search", "--onlyvisible", "--class", "weston"}, desktop.environment())
                    .output;
            screen = found.substr(0, found.find('\n'));
            return !screen.empty() && std::filesystem::exists(runtime.path("wayland-test"));
        })) << "the compositor did not start";
        empty = lightPixels(picture());
        auto file = runtime.file("film.srt", text);
        program = std::make_unique<Process>(
            std::vector<std::string>{::endtoend::program, "--size", "500x400", "--appearance", "light", file},
            environment());
        EXPECT_TRUE(eventually([&] { return lightPixels(picture()) > empty + 400 * 300; })) << "no window";
    }
    Picture picture() { return desktop.picture(screen); }
    Environment environment() const
    {
        return {{"DISPLAY", ""},
                {"WAYLAND_DISPLAY", "wayland-test"},
                {"XDG_RUNTIME_DIR", runtime.path()},
                {"QT_QPA_PLATFORM", "wayland"}};
    }
};

const std::string text = "1\n00:00:01,000 --> 00:00:02,000\nHello שלום\n";

TEST(Wayland, theWholeWindowIsPainted)
{
    if (!isInstalled("weston"))
        GTEST_SKIP() << "weston is not installed";
    Preview preview(text);
    // Frames that follow paint only what has changed.
    EXPECT_TRUE(eventually([&] { return longestBlack(preview.picture()) < 200; }))
        << "a part of the window was never painted";
    EXPECT_TRUE(preview.program->isRunning());
}

} // namespace
} // namespace endtoend
