// SPDX-License-Identifier: MIT
// The thumbnailer as file managers call it, in the sandbox that GNOME puts it into as well.
#include "tests/endtoend/Process.h"
#include "tests/support/TemporaryDirectory.h"

#include "platform/graphics/UIImage.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace endtoend {
namespace {

using namespace std::string_literals;
using platform::UIImage;
using ::tests::TemporaryDirectory;

const std::string program = ZELK_BINARY_DIR "/bin/subtitle-thumbnailer";
const Environment noDisplay{{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}, {"QT_QPA_PLATFORM", ""}};
const std::string cue = "1\n00:00:01,000 --> 00:00:02,500\n";

UIImage pictureIn(const std::string& path)
{
    auto image = UIImage::fromFile(path);
    EXPECT_TRUE(image) << path;
    return image ? *image : UIImage();
}

UIImage thumbnailOf(const TemporaryDirectory& folder, const std::string& content, int size = 256)
{
    auto picture = folder.path("thumbnail.png");
    auto outcome =
        run({program, "-s", std::to_string(size), folder.file("in.srt", content), picture}, noDisplay);
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
    EXPECT_EQ(outcome.errors, "");
    return pictureIn(picture);
}

// How many dark pixels there are in a part of the picture; `left` and `right` are parts of its width.
int ink(const UIImage& picture, double left = 0, double right = 1)
{
    int count = 0;
    for (int y = 0; y < picture.pixelHeight(); ++y) {
        for (int x = int(left * picture.pixelWidth()); x < int(right * picture.pixelWidth()); ++x) {
            auto color = picture.pixel(x, y).components();
            count += color.alpha > 0.9 && color.green < 0.4;
        }
    }
    return count;
}

TEST(Thumbnails, aSheetWithTheFirstCuesHasTheSizeAskedFor)
{
    TemporaryDirectory folder;
    for (int size : {1, 16, 128, 512, 2048}) {
        auto picture = thumbnailOf(folder, cue + "Hello there\n", size);
        EXPECT_EQ(picture.pixelWidth(), size);
        EXPECT_EQ(picture.pixelHeight(), size);
        if (size < 128)
            continue;
        EXPECT_GT(ink(picture), 20) << size;
        EXPECT_EQ(picture.pixel(0, 0).components().alpha, 0) << size;
    }
    EXPECT_EQ(folder.fileCount(), 2);
}

TEST(Thumbnails, textsThatReadTheSameLookTheSame)
{
    TemporaryDirectory folder;
    auto plain = thumbnailOf(folder, cue + "Olá, não é?\n");
    const std::pair<const char*, std::string> same[] = {
        {"marks of style", cue + "<i>Olá</i>, {\\an8}não <font color=\"red\">é?\n"},
        {"line ends of DOS and a mark",
         "\xEF\xBB\xBF"
         "1\r\n00:00:01,000 --> 00:00:02,500\r\nOlá, não é?\r\n"},
        {"an encoding of old", cue + "Ol\xE1, n\xE3o \xE9?\n"},
        {"no number, no empty line, an empty cue before",
         "00:00:00,000 --> 00:00:00,500\n2\n00:00:01,000 --> 00:00:02,500\nOlá, não é?"},
        {"a line that was broken", cue + "Olá,\nnão é?\n"},
    };
    for (auto& [name, content] : same)
        EXPECT_TRUE(thumbnailOf(folder, content) == plain) << name;
    EXPECT_FALSE(thumbnailOf(folder, cue + "Olá, não e?\n") == plain);
    EXPECT_FALSE(thumbnailOf(folder, cue + "2 < 3 > 1\n") == thumbnailOf(folder, cue + "2  1\n"));
}

TEST(Thumbnails, HebrewAndArabicBeginOnTheRight)
{
    TemporaryDirectory folder;
    for (auto* text : {"שלום", "سلام"}) {
        auto picture = thumbnailOf(folder, cue + text + "\n" + cue + text + "\n");
        EXPECT_EQ(ink(picture, 0, 0.5), 0) << text;
        EXPECT_GT(ink(picture, 0.5, 1), 20) << text;
    }
}

TEST(Thumbnails, onlyTheBeginningOfAHugeFileIsRead)
{
    TemporaryDirectory folder;
    std::string text;
    for (int i = 0; i < 3000; ++i)
        text += cue + "A line of it\n\n";
    auto small = thumbnailOf(folder, text.substr(0, text.size() / 2));
    auto file = folder.file("huge.srt", text);
    if (truncate(file.c_str(), 1LL << 38) != 0)
        GTEST_SKIP() << "the file system has no room for a file of 256 GB without contents";
    auto outcome = run({program, file, folder.path("huge.png")}, noDisplay);
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
    EXPECT_TRUE(pictureIn(folder.path("huge.png")) == small);
}

TEST(Thumbnails, aFileThatCannotBeShownLeavesNothingBehind)
{
    TemporaryDirectory folder;
    ASSERT_EQ(mkfifo(folder.path("pipe.srt").c_str(), 0600), 0);
    std::filesystem::create_directory(folder.path("folder.srt"));
    auto sparse = folder.file("sparse.srt", "");
    EXPECT_EQ(truncate(sparse.c_str(), 1LL << 36), 0);
    const std::string inputs[] = {
        folder.file("empty.srt", ""),
        folder.file("prose.srt", "Dear --> reader,\nno cues here.\n"),
        folder.file("silent.srt", cue + "\n<i></i>\n"),
        folder.file("binary.srt",
                    "\x7F"
                    "ELF\2\1\1\0\0\0\xFF\xC0\0\0\1"s
                        + cue),
        sparse,
        folder.path("pipe.srt"),
        folder.path("folder.srt"),
        folder.path("missing.srt"),
        "/dev/zero",
        "file://elsewhere/a.srt",
    };
    std::filesystem::create_directory(folder.path("out"));
    for (auto& input : inputs) {
        auto outcome = run({program, input, folder.path("out/a.png")}, noDisplay);
        EXPECT_EQ(outcome.exitStatus, 1) << input;
        EXPECT_EQ(std::ranges::count(outcome.errors, '\n'), 1) << outcome.errors;
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.path("out")));

    auto good = folder.file("good.srt", cue + "text\n");
    ASSERT_EQ(symlink("good.srt", folder.path("link.png").c_str()), 0);
    auto count = folder.fileCount();
    for (auto& output : {good, folder.path("link.png"), folder.path("pipe.srt"), folder.path("out"),
                         folder.path("no/such/a.png"), "/dev/null"s, "/proc/a.png"s})
        EXPECT_EQ(run({program, good, output}, noDisplay).exitStatus, 1) << output;
    EXPECT_EQ(folder.read("good.srt"), cue + "text\n");
    EXPECT_EQ(folder.fileCount(), count);
    for (auto& words : {std::vector<std::string>{},
                        {good},
                        {"-s", "0", good, "a.png"},
                        {"--size", "x", good, "a.png"},
                        {"--wrong", good, "a.png"},
                        {"-s"}}) {
        auto arguments = words;
        arguments.insert(arguments.begin(), program);
        EXPECT_EQ(run(arguments, noDisplay).exitStatus, 2) << ::testing::PrintToString(words);
    }
}

// The command of the entry, its codes replaced, the program by its path.
std::vector<std::string> entryCommand(const std::string& executable, const std::string& input,
                                      const std::string& output)
{
    std::ifstream entry(ZELK_SOURCE_DIR "/packaging/subtitle-thumbnailer.thumbnailer");
    std::string line;
    while (std::getline(entry, line) && !line.starts_with("Exec=")) { }
    std::istringstream words(line.substr(5));
    std::vector<std::string> command;
    for (std::string word; words >> word;)
        command.push_back(word == "%i" ? input : word == "%o" ? output : word == "%s" ? "256" : word);
    EXPECT_EQ(command.front(), "subtitle-thumbnailer");
    command.front() = executable;
    return command;
}

TEST(Thumbnails, theEntryWorksInASandboxWithoutFontsConfigurationHomeOrBus)
{
    TemporaryDirectory folder;
    std::filesystem::create_directory(folder.path("out"));
    auto sandboxed = [&](const std::string& input, std::vector<std::string> command) {
        std::vector<std::string> words{
            "bwrap", "--ro-bind", "/usr", "/usr", "--ro-bind-try", "/etc/ld.so.cache", "/etc/ld.so.cache",
            "--ro-bind-try", "/etc/alternatives", "/etc/alternatives", "--symlink", "/usr/bin", "/bin",
            "--symlink", "/usr/lib", "/lib", "--symlink", "/usr/lib64", "/lib64", "--proc", "/proc", "--dev",
            "/dev", "--chdir", "/", "--setenv", "GIO_USE_VFS", "local", "--unshare-all", "--die-with-parent",
            // where the program would be below /usr
            "--ro-bind", ZELK_BINARY_DIR, "/opt/zelk", "--bind", folder.path("out"), "/tmp", "--ro-bind",
            input, "/tmp/input.srt"};
        words.insert(words.end(), command.begin(), command.end());
        return run(words,
                   {{"HOME", "/nowhere"},
                    {"XDG_RUNTIME_DIR", ""},
                    {"DBUS_SESSION_BUS_ADDRESS", ""},
                    {"QT_QPA_PLATFORM", ""},
                    {"FONTCONFIG_FILE", ""},
                    {"DISPLAY", ""}});
    };
    auto english = folder.file("a.srt", cue + "Hello there\n");
    if (sandboxed(english, {"true"}).exitStatus != 0)
        GTEST_SKIP() << "bwrap is not installed, or can make no namespaces here";
    auto paint = [&](const std::string& text) {
        auto command = entryCommand("/opt/zelk/bin/subtitle-thumbnailer", "/tmp/input.srt", "/tmp/a.png");
        auto outcome = sandboxed(folder.file("a.srt", cue + text + "\n"), command);
        EXPECT_EQ(outcome.exitStatus, 0);
        EXPECT_EQ(outcome.errors, "");
        auto picture = pictureIn(folder.path("out/a.png"));
        std::filesystem::remove(folder.path("out/a.png"));
        std::filesystem::remove(folder.path("out/input.srt")); // the place that bwrap made for it
        EXPECT_TRUE(std::filesystem::is_empty(folder.path("out")));
        return picture;
    };
    // Letters, not boxes: those of missing glyphs are all alike.
    EXPECT_FALSE(paint("Hello") == paint("Hallo"));
    EXPECT_FALSE(paint("Привет") == paint("Привит"));
    EXPECT_FALSE(paint("שלום") == paint("שלוט"));

    auto command = entryCommand("/opt/zelk/bin/subtitle-thumbnailer", "/tmp/input.srt", "/tmp/a.png");
    EXPECT_EQ(sandboxed(folder.file("a.srt", "no cues"), command).exitStatus, 1);
    EXPECT_FALSE(std::filesystem::exists(folder.path("out/a.png")));
}

} // namespace
} // namespace endtoend
