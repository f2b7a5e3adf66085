// SPDX-License-Identifier: MIT
// Text for the panes of terminal file managers: the contract they share, the snippets of docs/terminals.md, and the real
// programs, in the screens of tmux.
#include "tests/endtoend/Process.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace endtoend {
namespace {

using ::tests::TemporaryDirectory;

const std::string program = ZELK_BINARY_DIR "/bin/subtitle-preview";
const std::string cue = "1\n00:00:01,000 --> 00:00:02,500\n";
// A window library that was started would end the program.
const Environment noWindows{{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}, {"QT_QPA_PLATFORM", "none-such"}};

Environment withProgramsOnPath()
{
    return {{"PATH", std::string(ZELK_BINARY_DIR "/bin:") + std::getenv("PATH")},
            {"LC_ALL", "C.UTF-8"},
            {"TERM", "xterm-256color"}};
}

bool isInstalled(const std::string& name)
{
    return run({"sh", "-c", "command -v " + name}).exitStatus == 0;
}

// The first block of code under a heading of docs/terminals.md.
std::string snippet(const std::string& heading)
{
    std::ifstream page(ZELK_SOURCE_DIR "/docs/terminals.md");
    std::string line, text;
    while (std::getline(page, line) && line != "## " + heading) { }
    while (std::getline(page, line) && !line.starts_with("```")) { }
    while (std::getline(page, line) && line != "```")
        text += line + "\n";
    return text;
}

std::string script(const TemporaryDirectory& folder, const std::string& name, const std::string& text)
{
    auto path = folder.file(name, text);
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path;
}

// A server of tmux for one test.
class Screens {
public:
    explicit Screens(const TemporaryDirectory& folder)
        : socket_(folder.path("tmux"))
    {
    }
    ~Screens() { tmux({"kill-server"}); }
    Outcome tmux(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), {"tmux", "-S", socket_, "-f", "/dev/null"});
        return run(arguments, withProgramsOnPath());
    }
    // Runs `command` in a screen of its own.
    Outcome open(const std::string& name, const std::string& command) const
    {
        return tmux({"new-session", "-d", "-s", name, "-x", "100", "-y", "20", command});
    }
    std::string content(const std::string& name) const
    {
        return tmux({"capture-pane", "-p", "-t", name}).output;
    }
    ::testing::AssertionResult shows(const std::string& name, const std::string& text) const
    {
        if (eventually([&] { return content(name).find(text) != std::string::npos; }))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << text << " is not in:\n" << content(name);
    }

private:
    std::string socket_;
};

TEST(Terminals, aPaneGetsItsRowsAndNothingThatDrivesTheTerminal)
{
    struct Case {
        const char* name;
        std::string content;
        std::vector<std::string> options;
        std::string expected;
    };
    const Case cases[] = {
        {"wrapped", cue + "one two three\n", {"--width", "8", "--skip", "5"}, "one two\nthree\n"},
        {"as high as the pane", cue + "one\ntwo\n", {"--height=3"}, cue + "one\n"},
        {"beyond the end", cue + "one\n", {"--skip", "99"}, ""},
        {"an encoding of old", cue + "O\xF9 est-il pass\xE9 ?\n", {"--skip", "2"}, "Où est-il passé ?\n"},
        {"escapes",
         cue + "\x1B[31mred\x1B]0;t\x07\r\n",
         {"--skip", "2", "--width", "40"},
         "␛[31mred␛]0;t␇\n"},
    };
    TemporaryDirectory folder;
    for (auto& each : cases) {
        SCOPED_TRACE(each.name);
        std::vector<std::string> arguments{program, "--text"};
        arguments.insert(arguments.end(), each.options.begin(), each.options.end());
        arguments.push_back(folder.file("a.srt", each.content));
        auto outcome = run(arguments, noWindows);
        EXPECT_EQ(outcome.exitStatus, 0);
        EXPECT_EQ(outcome.output, each.expected);
        EXPECT_EQ(outcome.errors, "");
    }
}

TEST(Terminals, whatIsNoSubtitleIsLeftToOtherPreviewers)
{
    TemporaryDirectory folder;
    for (auto& file : {folder.file("empty.srt", ""), folder.file("notes.srt", "a --> b\n1 -> 2\n"),
                       folder.file("late.srt", std::string(100'000, '\n') + cue), folder.path("missing.srt"),
                       folder.file("binary.srt", std::string("\x7F\0\xFF\1", 4) + cue)}) {
        auto outcome = run({program, "--text", "--width", "80", file}, noWindows);
        EXPECT_EQ(outcome.exitStatus, 1) << file;
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(std::ranges::count(outcome.errors, '\n'), 1) << outcome.errors;
    }
}

// All of this file could neither be read nor be a text.
TEST(Terminals, theFirstScreensOfAFileOfAnySizeReadOnlyItsBeginning)
{
    TemporaryDirectory folder;
    std::string text;
    for (int i = 0; text.size() < 6 << 20; ++i)
        text += cue + "line " + std::to_string(i) + "\n\n";
    auto file = folder.file("huge.srt", text);
    if (truncate(file.c_str(), 1LL << 38) != 0)
        GTEST_SKIP() << "the file system has no room for a file of 256 GB without contents";
    auto outcome = run({program, "--text", "--width", "80", "--height", "4", file}, noWindows);
    EXPECT_EQ(outcome.output, cue + "line 0\n\n") << outcome.errors;
    outcome = run({program, "--text", "--height", "4", "--skip", "40000", file}, noWindows);
    EXPECT_EQ(outcome.output, cue + "line 10000\n\n") << outcome.errors;
}

TEST(Terminals, theSnippetForLfPreviewsSubtitlesAndDescribesOtherFiles)
{
    TemporaryDirectory folder;
    auto previewer = script(folder, "previewer", snippet("lf"));
    auto file = folder.file("-a b.srt", cue + "Hello, lf\n");
    auto outcome = run({previewer, file, "20", "3", "5", "5", "preview"}, withProgramsOnPath());
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.output, "1\n00:00:01,000 -->\n00:00:02,500\n");
    EXPECT_NE(run({previewer, folder.file("b.txt", "no cues\n"), "20", "3", "5", "5"}, withProgramsOnPath())
                  .output.find("text"),
              std::string::npos);
}

TEST(Terminals, rangerShowsSubtitlesOfOldThroughTheSnippet)
{
    if (!isInstalled("ranger") || !isInstalled("tmux"))
        GTEST_SKIP() << "ranger or tmux is not installed";
    TemporaryDirectory folder;
    Screens screens(folder);
    std::ifstream stock("/usr/lib/python3/dist-packages/ranger/data/scope.sh");
    std::stringstream scope;
    for (std::string line; std::getline(stock, line);) {
        scope << line << "\n";
        if (line == "    case \"${FILE_EXTENSION_LOWER}\" in"
            && scope.str().find("srt)") == std::string::npos)
            scope << snippet("ranger");
    }
    ASSERT_NE(scope.str().find("srt)"), std::string::npos) << "another scope.sh than was known";
    script(folder, "home/.config/ranger/scope.sh", scope.str());
    folder.file("films/film.srt",
                cue + "\xCF\xF0\xE8\xE2\xE5\xF2, \xEC\xE8\xF0! \xCA\xE0\xEA \xE4\xE5\xEB\xE0?\n");
    // For root, ranger turns previews off.
    screens.open("ranger",
                 "env HOME=" + folder.path("home") + " ranger --cmd='set preview_files true'"
                     + " --cmd='set use_preview_script true' " + folder.path("films"));
    EXPECT_TRUE(screens.shows("ranger", "Привет, мир! Как дела?"));
}

TEST(Terminals, nnnShowsTheSubtitlesUnderTheCursorThroughTheSnippet)
{
    if (!isInstalled("nnn") || !isInstalled("tmux"))
        GTEST_SKIP() << "nnn or tmux is not installed";
    TemporaryDirectory folder;
    Screens screens(folder);
    folder.file("films/a.srt", cue + "The first film\n");
    folder.file("films/b.srt", cue + "The second film\n");
    auto previewer = script(folder, "previewer", snippet("nnn"));
    auto with = "env HOME=" + folder.path("home") + " NNN_FIFO=" + folder.path("fifo") + " ";
    ASSERT_EQ(run({"mkfifo", folder.path("fifo")}).exitStatus, 0);
    screens.open("preview", with + previewer);
    screens.open("nnn", with + "nnn " + folder.path("films"));
    EXPECT_TRUE(screens.shows("preview", "The first film"));
    screens.tmux({"send-keys", "-t", "nnn", "Down"});
    EXPECT_TRUE(screens.shows("preview", "The second film"));
}

} // namespace
} // namespace endtoend
