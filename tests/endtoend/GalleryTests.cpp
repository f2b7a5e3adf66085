// SPDX-License-Identifier: MIT
// The gallery under a real X server: a real mouse opens the bottom sheet, drags it, lets it fall back, drags it away and
// throws it; and its pictures without a display.
#include "tests/endtoend/Desktop.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace endtoend {
namespace {

using tests::TemporaryDirectory;

const char* const program = ZELK_BINARY_DIR "/bin/zelk-gallery";

struct Box {
    int left = 0, top = 0, right = 0, bottom = 0;
};

// Where the ground of the first sheet's stage is undimmed; as high as it is from its top down to where it ends.
std::optional<Box> stageIn(const Picture& picture)
{
    auto isGround = [](const Pixel& pixel) {
        auto near = [](int value, int wanted) { return value >= wanted - 2 && value <= wanted + 2; };
        return near(pixel.red, 235) && near(pixel.green, 237) && near(pixel.blue, 247);
    };
    for (int y = 0; y < picture.height; ++y) {
        int left = 0, right = 0; // of the longest run
        for (int x = 0, start = 0; x < picture.width; ++x) {
            if (!isGround(picture.at(x, y)))
                start = x + 1;
            else if (x - start > right - left) {
                left = start;
                right = x;
            }
        }
        if (right - left < 200)
            continue;
        int bottom = y;
        while (bottom + 1 < picture.height && isGround(picture.at((left * 3 + right) / 4, bottom + 1)))
            ++bottom;
        return Box{left, y, right, bottom};
    }
    return std::nullopt;
}

class Gallery {
public:
    Gallery()
        : process_({program, "--page", "bottom-sheet"},
                   desktop_.environment({{"LC_ALL", "C.UTF-8"}, {"LANGUAGE", ""}}))
        , window_(desktop_.findWindow("Zelk Gallery").value_or(""))
    {
        EXPECT_TRUE(desktop_.activate(window_));
        EXPECT_TRUE(isClosed());
        stage_ = stageIn(desktop_.picture(window_)).value_or(Box{});
    }

    int middle() const { return (stage_.left + stage_.right) / 2; }
    // The sheet is 250 points high, and its bar 30.
    int bar() const { return stage_.bottom - 250 + 15; }
    bool isClosed()
    {
        return eventually([&] {
            auto stage = stageIn(desktop_.picture(window_));
            return stage && stage->bottom - stage->top > 380;
        });
    }
    // Dimmed and at rest: two pictures in a row are the same, and the stage's ground is not seen at its top.
    bool isOpen()
    {
        Picture before;
        return eventually([&] {
            auto now = desktop_.picture(window_);
            auto stage = stageIn(now);
            auto isDimmed = !stage || stage->top > stage_.top + 20;
            return isDimmed && std::exchange(before, now) == now;
        });
    }
    void open() { desktop_.click(middle(), (stage_.top + stage_.bottom) / 2); }
    // Down by so many pixels in steps with a pause after each, in milliseconds.
    void dragBar(int distance, int steps, const char* pause)
    {
        std::vector<std::string> words{
            "xdotool", "mousemove", std::to_string(middle()), std::to_string(bar()), "mousedown", "1"};
        for (int step = 1; step <= steps; ++step) {
            words.insert(words.end(),
                         {"mousemove", std::to_string(middle()),
                          std::to_string(bar() + distance * step / steps), "sleep", pause});
        }
        words.insert(words.end(), {"mouseup", "1"});
        EXPECT_EQ(run(words, desktop_.environment()).exitStatus, 0);
    }

private:
    Desktop desktop_{1400, 950};
    Process process_;
    std::string window_;
    Box stage_;
};

TEST(Gallery, sheetIsDraggedAndThrownByARealMouse)
{
    Gallery gallery;
    gallery.open();
    ASSERT_TRUE(gallery.isOpen());
    gallery.dragBar(40, 8, "0.03"); // less than a fifth of its height: it falls back
    ASSERT_TRUE(gallery.isOpen());
    gallery.dragBar(150, 15, "0.03");
    ASSERT_TRUE(gallery.isClosed()) << "dragged far enough";
    gallery.open();
    ASSERT_TRUE(gallery.isOpen());
    // Not far enough, but more than 1400 points a second; on a machine that is busy elsewhere the hand may be slow.
    bool isThrown = false;
    for (int attempt = 0; attempt < 3 && !isThrown; ++attempt) {
        gallery.dragBar(45, 3, "0.004");
        isThrown = gallery.isClosed();
    }
    EXPECT_TRUE(isThrown);
}

TEST(Gallery, paintsPicturesOfEachVariantWithoutADisplay)
{
    TemporaryDirectory folder;
    auto made = run({program, "--shoot", folder.path() + "/made", "--page", "shimmer", "--scale", "2"},
                    {{"DISPLAY", ""}});
    EXPECT_EQ(made.exitStatus, 0) << made.errors;
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(folder.path() + "/made"))
        names.push_back(file.path().filename());
    std::ranges::sort(names);
    EXPECT_EQ(names,
              (std::vector<std::string>{"shimmer-dark@2x.png", "shimmer-large@2x.png", "shimmer-light@2x.png",
                                        "shimmer-rtl@2x.png"}));
}

TEST(Gallery, saysWhatIsWrongWithItsCommandLine)
{
    TemporaryDirectory folder;
    const struct {
        std::vector<std::string> words;
        int status;
        const char* said;
    } cases[] = {
        {{"--version"}, 0, "zelk-gallery "},
        {{"--list"}, 0, "bottom-sheet\n"},
        {{"--page", "nowhere"}, 2, "nowhere"},
        {{"--page"}, 2, "--page"},
        {{"--scale", "2"}, 2, "--shoot"},
        {{"--shoot", folder.path(), "--scale", "nan"}, 2, "nan"},
        {{"--shoot", "/dev/null/folder"}, 1, "/dev/null/folder"},
        {{}, 1, "no display"},
    };
    for (const auto& [words, status, said] : cases) {
        std::vector<std::string> line{program};
        line.insert(line.end(), words.begin(), words.end());
        auto outcome = run(line, {{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}, {"QT_QPA_PLATFORM", ""}});
        EXPECT_EQ(outcome.exitStatus, status) << said;
        EXPECT_NE((outcome.output + outcome.errors).find(said), std::string::npos) << outcome.errors;
    }
}

} // namespace
} // namespace endtoend
