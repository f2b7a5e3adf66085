// SPDX-License-Identifier: MIT
// The space bar in the real GNOME Files, which finds the previewer by its service file in the home.
#include "tests/endtoend/FilesClient.h"

namespace endtoend {
namespace {

class GNOMEFiles : public ::testing::Test {
protected:
    std::string ask(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "xdotool");
        auto answer = run(std::move(arguments), session.desktop.environment()).output;
        return answer.substr(0, answer.find('\n'));
    }
    // The window of the file, which is the preview's own and not one of Files.
    std::string preview(const std::string& name)
    {
        auto window = ask({"search", "--onlyvisible", "--name", "^" + name + "$"});
        if (window.empty())
            return "";
        std::ifstream stream("/proc/" + ask({"getwindowpid", window}) + "/comm");
        std::string program;
        std::getline(stream, program);
        return std::string_view("subtitle-preview").starts_with(program) && !program.empty() ? window : "";
    }
    bool isActive(const std::string& name)
    {
        return eventually([&] {
            auto window = preview(name);
            return !window.empty() && ask({"getactivewindow"}) == window;
        });
    }
    bool filesIsActive()
    {
        return eventually([&] { return !files.empty() && ask({"getactivewindow"}) == files; });
    }

    ::tests::TemporaryDirectory home;
    Environment homes{{"HOME", home.path("")},
                      {"XDG_CONFIG_HOME", home.path("config")},
                      {"XDG_CACHE_HOME", home.path("cache")},
                      {"XDG_RUNTIME_DIR", home.path("")}};
    PreviewerSession session{homes};
    std::string files;
};

TEST_F(GNOMEFiles, theSpaceBarShowsTheSelectedFileAndClosesItAgain)
{
    if (run({"sh", "-c", "command -v nautilus && command -v openbox"}).exitStatus != 0)
        GTEST_SKIP() << "GNOME Files (nautilus) or a window manager (openbox) is not installed";
    // No index of the disk is built for a test.
    session.folder.file("share/dbus-1/services/org.freedesktop.Tracker3.Miner.Files.service",
                        "[D-BUS Service]\nName=org.freedesktop.Tracker3.Miner.Files\nExec=/bin/false\n");
    ::tests::TemporaryDirectory films;
    for (auto name : {"a.srt", "b.srt"})
        films.file(name, "1\n00:00:01,000 --> 00:00:02,000\n" + std::string(name) + "\n");

    Environment own = homes;
    own.insert({{"DBUS_SESSION_BUS_ADDRESS", session.address},
                {"XDG_DATA_HOME", session.folder.path("share")},
                {"GSETTINGS_BACKEND", "memory"},
                {"GIO_USE_VFS", "local"},
                {"GTK_A11Y", "none"},
                {"GDK_BACKEND", "x11"},
                {"GSK_RENDERER", "cairo"}});
    own = session.desktop.environment(own);
    Process manager({"openbox"}, own);
    Process program({"nautilus", "--new-window", "--select", "file://" + films.path("a.srt")}, own);
    ASSERT_TRUE(eventually([&] {
        files = ask({"search", "--onlyvisible", "--class", "nautilus"});
        return !files.empty();
    })) << "Files does not open";
    ask({"windowactivate", "--sync", files});
    ASSERT_TRUE(filesIsActive());

    // Files selects once the folder is read, which nothing outside can see: a key that came too early is pressed again.
    bool isShown = false;
    for (int i = 0; i < 4 && !isShown; ++i) {
        session.desktop.key("space");
        isShown = eventually([&] { return !preview("a.srt").empty(); }, std::chrono::seconds(4));
    }
    ASSERT_TRUE(isShown) << "no preview comes";
    ASSERT_TRUE(isActive("a.srt"));
    session.desktop.key("Right");
    EXPECT_TRUE(isActive("b.srt")) << "the preview does not follow the selection";
    session.desktop.key("space");
    EXPECT_TRUE(eventually([&] { return preview("b.srt").empty(); }));

    ASSERT_TRUE(filesIsActive());
    session.desktop.key("space");
    ASSERT_TRUE(isActive("b.srt"));
    session.desktop.key("Escape");
    EXPECT_TRUE(eventually([&] { return preview("b.srt").empty(); }));
    EXPECT_TRUE(program.isRunning());
}

} // namespace
} // namespace endtoend
