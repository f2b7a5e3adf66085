// SPDX-License-Identifier: MIT
// The program's command line: what it prints and how it exits, without any display.
#include "tests/endtoend/Process.h"
#include "tests/support/TemporaryDirectory.h"

#include "platform/graphics/UIImage.h"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace endtoend {
namespace {

const std::string program = ZELK_BINARY_DIR "/bin/subtitle-preview";
const Environment noDisplay{{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}, {"QT_QPA_PLATFORM", ""}};

bool isOneLine(const std::string& text)
{
    return !text.empty() && text.find('\n') == text.size() - 1;
}

TEST(CommandLine, textGivesTheDecodedTextExactly)
{
    using namespace std::string_literals;
    struct Case {
        const char* name;
        std::string content, expected;
    };
    const Case cases[] = {
        {"empty", "", ""},
        {"no newline at the end", "1\n00:00 --> 00:01\nHi", "1\n00:00 --> 00:01\nHi"},
        {"carriage returns stay", "a\r\nb\rc\n", "a\r\nb\rc\n"},
        {"a mark is no text", "\xEF\xBB\xBFmarked", "marked"},
        {"UTF-16 with a mark",
         "\xFF\xFE"
         "h\0i\0=\xD8\0\xDE"s,
         "hi\U0001F600"},
        {"UTF-16 without a mark", "1\0\r\0\n\0H\0e\0l\0l\0o\0"s, "1\r\nHello"},
        {"an encoding of old", "1\n00:00:01,000 --> 00:00:02,000\nO\xF9 est-il pass\xE9 ?\n",
         "1\n00:00:01,000 --> 00:00:02,000\nOù est-il passé ?\n"},
        {"UTF-32 big-endian with a mark", "\0\0\xFE\xFF\0\0\0A\0\1\xF6\0"s, "A\U0001F600"},
        {"zero bytes and controls inside a text", "a\0b\x01\x1B[0m tab\there and more text\n"s,
         "a\0b\x01\x1B[0m tab\there and more text\n"s},
        {"only newlines", "\n\n\n\n", "\n\n\n\n"},
    };
    ::tests::TemporaryDirectory folder;
    for (auto& each : cases) {
        SCOPED_TRACE(each.name);
        auto outcome = run({program, "--text", folder.file("in.srt", each.content)}, noDisplay);
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
        EXPECT_EQ(outcome.output, each.expected);
    }
}

TEST(CommandLine, aFileUrlAndAPathOutsideOfUtf8NameTheSameFileAsThePlainPath)
{
    ::tests::TemporaryDirectory folder;
    folder.file("a b%\u00E9.srt", "by url\n");
    auto url = "file://" + folder.path("a%20b%25%C3%A9.srt");
    EXPECT_EQ(run({program, "--text", url}, noDisplay).output, "by url\n");
    EXPECT_EQ(run({program, "--text", folder.file("\xFF\xFE.srt", "odd name\n")}, noDisplay).output,
              "odd name\n");
}

TEST(CommandLine, whatCannotBeReadIsNamedOnOneLineWithItsReasonAndExitsWithOne)
{
    ::tests::TemporaryDirectory folder;
    ASSERT_EQ(mkfifo(folder.path("pipe.srt").c_str(), 0600), 0);
    int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{.sun_family = AF_UNIX};
    auto socketPath = folder.path("socket.srt");
    ASSERT_LT(socketPath.size(), sizeof address.sun_path);
    socketPath.copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);

    struct Case {
        std::string file, name;
    };
    const Case cases[] = {
        {folder.path("missing.srt"), "missing.srt"},
        {folder.path(""), ""},
        {folder.path("pipe.srt"), "pipe.srt"},
        {socketPath, "socket.srt"},
        {"/dev/null", "null"},
        {"/dev/zero", "zero"},
        {folder.file("cut.srt",
                     std::string("\xFF\xFE"
                                 "a\0b",
                                 5)),
         "cut.srt"},
        {folder.file("lone.srt",
                     std::string("\xFF\xFE\x00\xD8"
                                 "a\0",
                                 6)),
         "lone.srt"},
        {folder.file("binary.srt",
                     std::string("\x7F"
                                 "ELF\2\1\1\0\0\0\xFF\xC0\0\0\1",
                                 15)),
         "binary.srt"},
        {"file://elsewhere/film.srt", "film.srt"},
    };
    for (auto& each : cases) {
        for (std::vector<std::string> how :
             {std::vector<std::string>{"--text"}, {"--snapshot", folder.path("out.png")}}) {
            how.insert(how.begin(), program);
            how.push_back(each.file);
            auto outcome = run(how, noDisplay);
            SCOPED_TRACE(each.file + " " + how[1]);
            EXPECT_EQ(outcome.exitStatus, 1);
            EXPECT_TRUE(isOneLine(outcome.errors)) << outcome.errors;
            EXPECT_NE(outcome.errors.find(each.name), std::string::npos) << outcome.errors;
            EXPECT_EQ(outcome.output, "");
        }
    }
    EXPECT_NE(access(folder.path("out.png").c_str(), F_OK), 0) << "a failed preview left a picture";
    close(listener);
}

TEST(CommandLine, wrongUsageExitsWithTwoAndSaysWhatIsWrong)
{
    const std::vector<std::string> cases[] = {
        {},
        {"a.srt", "b.srt"},
        {"--wrong", "a.srt"},
        {"--size", "0x10", "--snapshot", "o.png", "a.srt"},
        {"--size", "nan", "--snapshot", "o.png", "a.srt"},
        {"--scale", "-1", "--snapshot", "o.png", "a.srt"},
        {"--scale", "2", "a.srt"},
        {"--appearance", "pink", "a.srt"},
        {"--text", "--snapshot", "o.png", "a.srt"},
        {"--snapshot"},
    };
    for (auto arguments : cases) {
        arguments.insert(arguments.begin(), program);
        auto outcome = run(arguments, noDisplay);
        EXPECT_EQ(outcome.exitStatus, 2) << testing::PrintToString(arguments);
        EXPECT_TRUE(isOneLine(outcome.errors)) << outcome.errors;
    }
}

TEST(CommandLine, withoutADisplayItSaysSoInOneLineAndHowToGetAPicture)
{
    ::tests::TemporaryDirectory folder;
    auto file = folder.file("a.srt", "text\n");
    for (auto environment :
         {noDisplay, Environment{{"DISPLAY", ":97531"}, {"WAYLAND_DISPLAY", ""}, {"QT_QPA_PLATFORM", ""}}}) {
        auto outcome = run({program, file}, environment);
        EXPECT_EQ(outcome.exitStatus, 1);
        EXPECT_TRUE(isOneLine(outcome.errors)) << outcome.errors;
        EXPECT_NE(outcome.errors.find("--snapshot"), std::string::npos) << outcome.errors;
    }
}

TEST(CommandLine, aSnapshotHasTheAskedSizeScaleAndAppearance)
{
    ::tests::TemporaryDirectory folder;
    auto file = folder.file("a.srt", "text\n");
    struct Case {
        const char *size, *scale, *appearance;
        int width, height;
        bool isDark;
    };
    const Case cases[] = {{"300x200", "1", "light", 300, 200, false},
                          {"300x200", "2", "dark", 600, 400, true},
                          {"1x1", "1", "light", 1, 1, false}};
    for (auto& each : cases) {
        SCOPED_TRACE(std::string(each.size) + " " + each.appearance);
        auto picture = folder.path("out.png");
        auto outcome = run({program, "--snapshot", picture, "--size", each.size, "--scale", each.scale,
                            "--appearance", each.appearance, file},
                           noDisplay);
        ASSERT_EQ(outcome.exitStatus, 0) << outcome.errors;
        auto image = platform::UIImage::fromFile(picture);
        ASSERT_TRUE(image);
        EXPECT_EQ(image->pixelWidth(), each.width);
        EXPECT_EQ(image->pixelHeight(), each.height);
        auto corner = image->pixel(each.width - 1, each.height - 1).components();
        EXPECT_EQ(corner.green < 0.5, each.isDark);
    }
    auto outcome = run({program, "--snapshot", folder.path("no/such/folder.png"), file}, noDisplay);
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_TRUE(isOneLine(outcome.errors)) << outcome.errors;
}

TEST(CommandLine, aPictureReplacesNeitherTheFileShownNorADeviceNorALink)
{
    ::tests::TemporaryDirectory folder;
    auto file = folder.file("a.srt", "text\n");
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    ASSERT_EQ(symlink("a.srt", folder.path("link").c_str()), 0);
    for (auto& target :
         {file, folder.path("pipe"), folder.path("link"), folder.path("."), std::string("/dev/null")}) {
        auto outcome = run({program, "--snapshot", target, file}, noDisplay);
        EXPECT_EQ(outcome.exitStatus, 1) << target;
        EXPECT_TRUE(isOneLine(outcome.errors)) << outcome.errors;
    }
    EXPECT_EQ(folder.read("a.srt"), "text\n");
}

TEST(CommandLine, aNameCannotBreakTheLineOrDriveTheTerminal)
{
    for (std::string name : {"a\nb", "a\x1B[31m",
                             "a\xC2\x9B"
                             "31m",
                             "a\xE2\x80\xAE"
                             "b",
                             "a\xFF\x9B"}) {
        for (auto& arguments :
             {std::vector<std::string>{program, name}, {program, "--text", name}, {program, "--" + name}}) {
            auto errors = run(arguments, noDisplay).errors;
            EXPECT_TRUE(isOneLine(errors)) << errors;
            EXPECT_EQ(errors.find_first_of("\x1B\x9B\xAE"), std::string::npos) << errors;
        }
    }
}

// Each library costs every start its milliseconds.
TEST(CommandLine, programsLoadNoLibraryThatTheyDoNotUse)
{
    auto expectNone = [](const std::string& name, const std::vector<const char*>& unused) {
        auto libraries = run({"ldd", ZELK_BINARY_DIR "/bin/" + name});
        ASSERT_EQ(libraries.exitStatus, 0) << libraries.errors;
        EXPECT_NE(libraries.output.find("libstdc++"), std::string::npos) << libraries.output;
        for (auto* library : unused)
            EXPECT_EQ(libraries.output.find(library), std::string::npos) << name << " loads " << library;
    };
    for (auto* name : {"subtitle-preview", "subtitle-thumbnailer", "zelk-previewer"})
        expectNone(name, {"libQt6Svg", "libcurl", "libQt6Widgets", "libavcodec", "libavformat", "libcld2"});
    expectNone("fetch-files", {"libQt6", "libicu", "libsystemd"});
}

TEST(CommandLine, helpAndVersionNeedNeitherFileNorDisplay)
{
    auto help = run({program, "--help"}, noDisplay);
    EXPECT_EQ(help.exitStatus, 0);
    EXPECT_NE(help.output.find("--snapshot"), std::string::npos);
    auto version = run({program, "--version"}, noDisplay);
    EXPECT_EQ(version.exitStatus, 0);
    EXPECT_TRUE(isOneLine(version.output)) << version.output;
}

TEST(CommandLine, aReaderThatGoesAwayEndsItQuietly)
{
    ::tests::TemporaryDirectory folder;
    auto file = folder.file("long.srt", std::string(8 << 20, 'x'));
    auto outcome = run(
        {"bash", "-c", "set -o pipefail; '" + program + "' --text '" + file + "' | head -c 10"}, noDisplay);
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
    EXPECT_EQ(outcome.errors, "");
}

Outcome check(const std::string& resources, const std::string& language = "en")
{
    return run({ZELK_BINARY_DIR "/bin/check-string-tables", resources, language});
}

TEST(CheckStringTables, faultsAreToldWithTheirPlaceAndFailTheBuild)
{
    ::tests::TemporaryDirectory folder;
    folder.write("en.lproj/Sample.strings", "\"A\" = \"%d files\";\n\"B\" = \"b\";\n");
    folder.write("de.lproj/Sample.strings", "\"A\" = \"%i Dateien\";\n\"B\" = \"b\";\n");
    auto outcome = check(folder.path());
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.errors, "");

    folder.write("fr.lproj/Sample.strings", "\"A\" = \"%@ fichiers\";\n\"A\" = \"%@\";\n\"C\" = \"c\";\n?\n");
    folder.write("fr.lproj/Other.strings", "");
    folder.write("it.lproj/Sample.strings", "\xFF");
    folder.write("pl.lproj/x", "");
    outcome = check(folder.path());
    EXPECT_EQ(outcome.exitStatus, 1);
    std::string fr = folder.path("fr.lproj/Sample.strings:"), it = folder.path("it.lproj/Sample.strings:");
    EXPECT_EQ(
        outcome.errors,
        fr + "2:1: the key \"A\" was given before, in line 1\n" //
            + fr + "4:1: a key is expected here\n" + fr + "1:1: the key \"B\" is missing\n" + fr
            + "2:1: the format of \"A\" takes the arguments (1 text), the reference's (1 whole number)\n" + fr
            + "3:1: the key \"C\" is not in the reference\n" + folder.path("fr.lproj/Other.strings:")
            + "1:1: the reference language has no such table\n" + it
            + "1:1: the text encoding of its contents can’t be determined\n"
            + folder.path("pl.lproj/Sample.strings:")
            + "1:1: The file “Sample.strings” couldn’t be opened because there is no such file.\n");
}

TEST(CheckStringTables, aMissingReferenceLanguageIsAWrongCall)
{
    ::tests::TemporaryDirectory folder;
    EXPECT_EQ(check(folder.path(), "de").exitStatus, 2);
    EXPECT_EQ(run({ZELK_BINARY_DIR "/bin/check-string-tables"}).exitStatus, 2);
}

} // namespace
} // namespace endtoend
