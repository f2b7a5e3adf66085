// SPDX-License-Identifier: MIT
// The real program under a real X server, driven by real keys and a real mouse.
#include "platform/graphics/UIFont.h"
#include "platform/graphics/UIImage.h"
#include "tests/endtoend/Desktop.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <csignal>

namespace endtoend {
namespace {

using namespace std::chrono_literals;

const std::string program = ZELK_BINARY_DIR "/bin/subtitle-preview";

// Distances of the first character from the window's corner, in points: the bar above, the text view's container inset and
// line fragment padding.
constexpr int barHeight = 36;
constexpr int leftInset = 5;
constexpr int containerInset = 8;
constexpr int topInset = barHeight + containerInset;

// One preview of a file with this content, in a window at the corner of its own screen.
class PreviewWindow {
public:
    explicit PreviewWindow(const std::string& content, const Environment& environment = {})
        : file(folder.file("film.srt", content))
        , process({program, "--size", "700x500", file}, desktop.environment(environment))
    {
        auto found = desktop.findWindow("film.srt");
        EXPECT_TRUE(found) << "no window";
        window = found.value_or("");
        EXPECT_TRUE(desktop.activate(window));
    }

    Picture picture() { return desktop.picture(window); }
    bool shows(const std::function<bool(const Picture&)>& condition)
    {
        return eventually([&] { return condition(picture()); });
    }
    int exitStatus()
    {
        auto outcome = process.wait();
        EXPECT_TRUE(outcome) << "the program did not end";
        return outcome ? outcome->exitStatus : -1;
    }

    ::tests::TemporaryDirectory folder;
    Desktop desktop;
    std::string file;
    Process process;
    std::string window;
};

// A line that starts with solid blocks, which no other line has: seen in the picture without reading letters.
const std::string bar = "\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588";

bool startsWithBar(const Picture& picture, int y, int height)
{
    // Eight full blocks of the body font are some 80 points wide; half of that is more than letters fill.
    return picture.darkPixels(leftInset, y, 80, height) > 40 * height / 2;
}

std::string manyLines(int count)
{
    std::string text;
    for (int i = 1; i <= count; ++i)
        text += "line " + std::to_string(i) + "\n";
    return text;
}

TEST(PreviewWindow, theFirstLineIsOnScreenAndEqualsThePictureOfTheSameTree)
{
    auto content = bar + " first\n" + manyLines(400);
    PreviewWindow preview(content);
    ASSERT_TRUE(preview.shows([](const Picture& picture) { return startsWithBar(picture, topInset, 16); }));

    auto snapshot = preview.folder.path("picture.png");
    auto outcome =
        run({program, "--snapshot", snapshot, "--size", "700x500", "--appearance", "light", preview.file});
    ASSERT_EQ(outcome.exitStatus, 0) << outcome.errors;
    auto image = platform::UIImage::fromFile(snapshot);
    ASSERT_TRUE(image);
    auto screen = preview.picture();
    ASSERT_EQ(screen.width, image->pixelWidth());
    ASSERT_EQ(screen.height, image->pixelHeight());
    int differing = 0;
    for (int y = 0; y < 400; ++y) {
        for (int x = 0; x < 600; ++x) { // the scroll bar at the right edge comes and goes
            auto expected = image->pixel(x, y).components();
            auto near = [](std::uint8_t a, double b) { return std::abs(a - b * 255) < 24; };
            auto& pixel = screen.at(x, y + barHeight);
            differing += !(near(pixel.red, expected.red) && near(pixel.green, expected.green)
                           && near(pixel.blue, expected.blue));
        }
    }
    EXPECT_LT(differing, 60) << "window and snapshot paint different things";
}

TEST(PreviewWindow, typingChangesNothingAndTheFileStaysAsItIs)
{
    auto content = bar + " first\n" + manyLines(3);
    PreviewWindow preview(content);
    ASSERT_TRUE(preview.shows([](const Picture& picture) { return startsWithBar(picture, topInset, 16); }));
    preview.desktop.click(200, 300); // the caret would be at the end
    auto before = preview.picture();
    preview.desktop.type("abc\xC3\xA9");
    preview.desktop.key("Return");
    preview.desktop.key("BackSpace");
    preview.desktop.key("Delete");
    preview.desktop.key("ctrl+v");
    // A last key that is visible shows that those before it have been handled.
    preview.desktop.key("ctrl+a");
    ASSERT_TRUE(preview.shows([&](const Picture& picture) { return picture != before; }));
    preview.desktop.key("ctrl+c");
    EXPECT_TRUE(eventually([&] { return preview.desktop.clipboard() == content; }));
    EXPECT_EQ(preview.folder.read("film.srt"), content);
}

TEST(PreviewWindow, aDragSelectsAndCopyGivesExactlyThoseCharacters)
{
    PreviewWindow preview("0123456789\nab\u0301cdefghi\nlast\n");
    ASSERT_TRUE(preview.shows(
        [](const Picture& picture) { return picture.darkPixels(0, barHeight, 700, 100) > 50; }));
    auto font = platform::UIFont::monospacedSystemFont(17);
    auto x = [&](int column) { return static_cast<int>(leftInset + column * font.columnWidth()); };
    auto y = [&](int line) { return static_cast<int>(topInset + (line + 0.5) * font.lineHeight()); };

    struct Case {
        const char* name;
        int fromColumn, fromLine, toColumn, toLine;
        std::string expected;
    };
    const Case cases[] = {
        {"within a line", 2, 0, 7, 0, "23456"},
        {"backwards over a line end", 3, 1, 8, 0, "89\nab\u0301c"},
    };
    for (auto& each : cases) {
        SCOPED_TRACE(each.name);
        preview.desktop.drag(x(each.fromColumn), y(each.fromLine), x(each.toColumn), y(each.toLine));
        preview.desktop.key("ctrl+c");
        EXPECT_TRUE(eventually([&] { return preview.desktop.clipboard() == each.expected; }))
            << "clipboard: " << preview.desktop.clipboard();
    }
}

TEST(PreviewWindow, endShowsTheLastLineAndHomeTheFirst)
{
    PreviewWindow preview(bar + "\n" + manyLines(5000) + "\n\n\n\n\n\n\n\n\n\n" + bar);
    auto barAtTop = [](const Picture& picture) { return startsWithBar(picture, topInset, 16); };
    auto barAtBottom = [](const Picture& picture) {
        // The last line ends one inset above the edge; the font's line is about 20 points high.
        return startsWithBar(picture, picture.height - containerInset - 18, 14);
    };
    ASSERT_TRUE(preview.shows(barAtTop));
    for (auto [toEnd, toStart] : {std::pair("ctrl+End", "ctrl+Home"), std::pair("End", "Home")}) {
        preview.desktop.key(toEnd);
        EXPECT_TRUE(preview.shows(barAtBottom)) << toEnd;
        preview.desktop.key(toStart);
        EXPECT_TRUE(preview.shows(barAtTop)) << toStart;
    }
}

TEST(PreviewWindow, theTextSizeFollowsItsKeys)
{
    PreviewWindow preview(bar + "\nsecond\n");
    auto inkWidth = [&](const Picture& picture) {
        int width = 0;
        while (leftInset + width < picture.width
               && picture.at(leftInset + width, topInset + 8).luminance() < 128)
            ++width;
        return width;
    };
    ASSERT_TRUE(preview.shows([&](const Picture& picture) { return inkWidth(picture) > 40; }));
    auto atFirst = inkWidth(preview.picture());
    preview.desktop.key("ctrl+plus");
    preview.desktop.key("ctrl+plus");
    EXPECT_TRUE(preview.shows([&](const Picture& picture) { return inkWidth(picture) > atFirst; }));
    preview.desktop.key("ctrl+minus");
    preview.desktop.key("ctrl+minus");
    preview.desktop.key("ctrl+minus");
    EXPECT_TRUE(preview.shows([&](const Picture& picture) { return inkWidth(picture) < atFirst; }));
    preview.desktop.key("ctrl+0");
    EXPECT_TRUE(preview.shows([&](const Picture& picture) { return inkWidth(picture) == atFirst; }));
}

TEST(PreviewWindow, onANewerSystemTheEditorTakesTypingAndTheFileIsUntouched)
{
    PreviewWindow preview("kept\n", {{"ZELK_SYSTEM_VERSION", "18.0"}});
    ASSERT_TRUE(preview.shows(
        [](const Picture& picture) { return picture.darkPixels(0, barHeight, 700, 100) > 20; }));
    preview.desktop.click(30, barHeight + 16);
    preview.desktop.key("ctrl+Home");
    preview.desktop.type("typed q ");
    preview.desktop.key("ctrl+a");
    preview.desktop.key("ctrl+c");
    EXPECT_TRUE(eventually([&] { return preview.desktop.clipboard() == "typed q kept\n"; }))
        << "clipboard: " << preview.desktop.clipboard();
    EXPECT_EQ(preview.folder.read("film.srt"), "kept\n");
    preview.desktop.key("Escape");
    EXPECT_EQ(preview.exitStatus(), 0);
}

TEST(PreviewWindow, eachClosingKeyEndsTheProgramWithZero)
{
    for (auto key : {"Escape", "space", "q", "ctrl+w"}) {
        SCOPED_TRACE(key);
        PreviewWindow preview("text\n");
        preview.desktop.key(key);
        EXPECT_EQ(preview.exitStatus(), 0);
    }
}

TEST(PreviewWindow, aFileThatCannotBeReadShowsWhyAndExitsWithOne)
{
    ::tests::TemporaryDirectory folder;
    Desktop desktop;
    auto file = folder.path("gone.srt");
    Process process({program, file}, desktop.environment());
    auto window = desktop.findWindow("gone.srt");
    ASSERT_TRUE(window);
    ASSERT_TRUE(desktop.activate(*window));
    EXPECT_TRUE(eventually([&] {
        auto picture = desktop.picture(*window);
        return picture.darkPixels(0, barHeight, picture.width, picture.height - barHeight) > 100;
    })) << "nothing is written in the failure view";
    desktop.key("Escape");
    auto outcome = process.wait();
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->exitStatus, 1);
    EXPECT_NE(outcome->errors.find("gone.srt"), std::string::npos) << outcome->errors;
    EXPECT_EQ(std::count(outcome->errors.begin(), outcome->errors.end(), '\n'), 1) << outcome->errors;
}

TEST(PreviewWindow, theScrollBarReachesAnyPlaceAndTheWheelMoves)
{
    PreviewWindow preview(bar + "\n" + manyLines(20000));
    auto barAtTop = [](const Picture& picture) { return startsWithBar(picture, topInset, 16); };
    ASSERT_TRUE(preview.shows(barAtTop));
    preview.desktop.click(350, 250, 5); // one notch down
    EXPECT_TRUE(preview.shows([&](const Picture& picture) { return !barAtTop(picture); }));
    preview.desktop.click(350, 250, 4);
    EXPECT_TRUE(preview.shows(barAtTop));
    auto before = preview.picture();
    preview.desktop.drag(695, barHeight + 12, 695, 280); // the thumb, from its top to the middle
    EXPECT_TRUE(
        preview.shows([&](const Picture& picture) { return picture != before && !barAtTop(picture); }));
}

} // namespace
} // namespace endtoend
