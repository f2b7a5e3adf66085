// SPDX-License-Identifier: MIT
// The bar of the preview's window, used by keys as a person does.
#include "tests/endtoend/Desktop.h"
#include "tests/support/TemporaryDirectory.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <regex>

namespace endtoend {
namespace {

const std::string program = ZELK_BINARY_DIR "/bin/subtitle-preview";
constexpr int barHeight = 36;

std::string manyLines(int count, const std::string& rare)
{
    std::string text;
    for (int i = 1; i <= count; ++i)
        text += i % 100 == 50 ? rare + "\n" : "line " + std::to_string(i) + "\n";
    return text;
}

class HostBar : public ::testing::Test {
protected:
    void open(const std::string& name, const std::string& content, const Environment& environment = {})
    {
        file = folder.file(name, content);
        process.emplace(std::vector<std::string>{program, "--size", "700x400", "--appearance", "light", file},
                        desktop.environment(environment));
        window = desktop.findWindow(name).value_or("");
        ASSERT_NE(window, "") << "no window";
        ASSERT_TRUE(desktop.activate(window));
    }
    Picture picture() { return desktop.picture(window); }
    // What is selected, as somebody who copies it gets it.
    bool copies(const std::string& expected)
    {
        return eventually([&] {
            desktop.key("ctrl+c");
            return desktop.clipboard() == expected;
        });
    }
    // How many pixels of matches' tint there are.
    static int tinted(const Picture& picture)
    {
        int count = 0;
        for (auto& pixel : picture.pixels)
            count += pixel.red > 200 && pixel.green > 160 && pixel.blue < 190;
        return count;
    }
    bool shows(const std::function<bool(const Picture&)>& condition)
    {
        return eventually([&] { return condition(picture()); });
    }

    ::tests::TemporaryDirectory folder;
    Desktop desktop;
    std::string file, window;
    std::optional<Process> process;
};

TEST_F(HostBar, whatIsTypedIsFoundTintedAndSteppedThrough)
{
    open("film.srt", manyLines(400, "a WORD and a word"));
    desktop.key("ctrl+f");
    desktop.type("word");
    EXPECT_TRUE(shows([](const Picture& now) { return tinted(now) > 100; }));
    // Escape leaves the search and keeps what it found selected; a second one would close.
    auto leaveAndCopy = [&](const std::string& expected) {
        desktop.key("Escape");
        EXPECT_TRUE(copies(expected)) << expected << ", not " << desktop.clipboard();
        EXPECT_TRUE(shows([](const Picture& now) { return tinted(now) == 0; }));
    };
    leaveAndCopy("WORD");
    desktop.key("ctrl+f");
    EXPECT_TRUE(shows([](const Picture& now) { return tinted(now) > 100; }));
    desktop.key("F3");
    leaveAndCopy("word");
    desktop.key("ctrl+f");
    desktop.key("shift+F3");
    leaveAndCopy("WORD");
    desktop.key("Escape");
    EXPECT_TRUE(process->wait());
}

TEST_F(HostBar, theEncodingIsCycled)
{
    // "Привет, мир" in KOI8-R, some lines of it.
    std::string line = "\xF0\xD2\xC9\xD7\xC5\xD4, \xCD\xC9\xD2, \xDC\xD4\xCF \xD3\xD4\xD2\xCF\xCB\xC1\n",
                text;
    for (int i = 0; i < 40; ++i)
        text += line;
    open("film.srt", text);
    auto all = [&] {
        desktop.key("ctrl+shift+c");
        return desktop.clipboard();
    };
    EXPECT_TRUE(eventually([&] { return all().starts_with("Привет, мир"); })) << all();
    auto first = all();
    // Some candidates read these letters alike; one of them does not.
    bool changed = false;
    for (int i = 0; i < 12 && !changed; ++i) {
        desktop.key("ctrl+e");
        changed = eventually([&] { return all() != first; }, std::chrono::milliseconds(300));
    }
    EXPECT_TRUE(changed) << "no candidate showed another text";
    EXPECT_EQ(folder.read("film.srt"), text);
}

TEST_F(HostBar, linesUnwrapAndWrapAgain)
{
    std::string longLine(400, 'x');
    open("film.srt", longLine + "\nend\n");
    auto rowsOfInk = [](const Picture& now) {
        int rows = 0;
        bool was = false;
        for (int y = barHeight; y < now.height; ++y) {
            bool is = now.darkPixels(0, y, 60, 1) > 0;
            rows += is && !was;
            was = is;
        }
        return rows;
    };
    ASSERT_TRUE(shows([&](const Picture& now) { return rowsOfInk(now) > 3; }));
    desktop.key("alt+z");
    EXPECT_TRUE(shows([&](const Picture& now) { return rowsOfInk(now) == 2; }));
    desktop.key("alt+z");
    EXPECT_TRUE(shows([&](const Picture& now) { return rowsOfInk(now) > 3; }));
}

TEST(HostTexts, everyTextOfTheWindowIsInEveryLanguage)
{
    std::string folder = ZELK_SOURCE_DIR "/platform/quicklook";
    auto outcome = run({ZELK_BINARY_DIR "/bin/check-string-tables", folder + "/resources", "en"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
    auto read = [](const std::filesystem::path& path) {
        std::ifstream stream(path);
        return std::string(std::istreambuf_iterator(stream), {});
    };
    auto table = read(folder + "/resources/en.lproj/Host.strings");
    std::regex call("hostText\\(\"([^\"]+)\"");
    int texts = 0, languages = 0;
    for (auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".cpp")
            continue;
        auto source = read(entry.path());
        for (std::sregex_iterator each(source.begin(), source.end(), call), end; each != end; ++each, ++texts)
            EXPECT_NE(table.find("\"" + (*each)[1].str() + "\" = "), table.npos) << (*each)[1];
    }
    for (auto& entry : std::filesystem::directory_iterator(folder + "/resources"))
        languages += entry.path().extension() == ".lproj";
    EXPECT_GT(texts, 15);
    EXPECT_GE(languages, 10);
}

} // namespace
} // namespace endtoend
