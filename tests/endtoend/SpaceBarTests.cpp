// SPDX-License-Identifier: MIT
// The previewer as file managers call it: a real bus, real windows, real keys.
#include "tests/endtoend/FilesClient.h"

#include <csignal>

namespace endtoend {
namespace {

class SpaceBar : public ::testing::Test {
protected:
    // The window of the file, alone on the screen; empty when it does not come.
    std::string onlyWindow(const std::string& title)
    {
        std::string found;
        client.comesToBe([&] {
            auto windows = run({"xdotool", "search", "--onlyvisible", "--name", "srt"}, environment()).output;
            if (std::ranges::count(windows, '\n') != 1)
                return false;
            found = windows.substr(0, windows.find('\n'));
            return run({"xdotool", "getwindowname", found}, environment()).output == title + "\n";
        });
        return found;
    }
    bool nothingIsShown()
    {
        return client.comesToBe([&] {
            return run({"xdotool", "search", "--onlyvisible", "--name", "srt"}, environment()).output.empty();
        });
    }
    std::string about(const char* question, const std::string& window)
    {
        return run({"xdotool", question, window}, environment()).output;
    }
    std::string placeOf(const std::string& window)
    {
        auto text = about("getwindowgeometry", window);
        return text.substr(text.find('\n'));
    }
    Environment environment() { return session.desktop.environment(); }

    PreviewerSession session;
    FilesClient client{session.address};
};

TEST_F(SpaceBar, showsTogglesAndReplacesInTheSamePlace)
{
    auto first = session.subtitle("a.srt"), second = session.subtitle("b.srt");
    EXPECT_EQ(client.showFile(first, true, "x11:deadbeef"), ""); // a handle of a window that is gone
    auto window = onlyWindow("a.srt");
    ASSERT_FALSE(window.empty());
    EXPECT_TRUE(client.comesToBe([&] { return client.isVisible && client.parentHandle == "x11:deadbeef"; }));

    EXPECT_EQ(client.showFile(first, false), "");
    EXPECT_EQ(onlyWindow("a.srt"), window) << "the same file was shown anew";

    // The previewer hears of a window's size a little after the server has it: then once more.
    std::string place, otherPlace;
    for (int attempt = 0; attempt < 2 && (place.empty() || otherPlace != place); ++attempt) {
        EXPECT_EQ(client.showFile(first, false), "");
        window = onlyWindow("a.srt");
        run({"xdotool", "windowmove", "--sync", window, "210", "130"}, environment());
        run({"xdotool", "windowsize", "--sync", window, "640", "333"}, environment());
        place = placeOf(window);
        pauseBriefly();
        EXPECT_EQ(client.showFileWithToken(second, false), "");
        auto other = onlyWindow("b.srt");
        ASSERT_FALSE(window.empty() || other.empty());
        otherPlace = placeOf(other);
    }
    EXPECT_EQ(otherPlace, place);
    EXPECT_NE(place.find("640x333"), std::string::npos) << place;
    EXPECT_TRUE(client.isVisible);

    EXPECT_EQ(client.showFileWithToken(second, true), "");
    EXPECT_TRUE(nothingIsShown());
    EXPECT_TRUE(client.comesToBe([&] { return !client.isVisible && client.parentHandle.empty(); }));
    EXPECT_EQ(client.call("/org/nemo/Preview", "org.nemo.Preview", "ShowFile", "sib", first.c_str(), 0, 1),
              "");
    EXPECT_FALSE(onlyWindow("a.srt").empty());
    EXPECT_EQ(client.call(client.path, client.interface, "Close", ""), "");
    EXPECT_TRUE(nothingIsShown());
}

TEST_F(SpaceBar, arrowsMoveTheSelectionAndThePreviewFollows)
{
    auto first = session.subtitle("a.srt"), second = session.subtitle("b.srt");
    client.onSelection = [&](unsigned) { client.shout(second); };
    ASSERT_EQ(client.showFile(first, true), "");
    ASSERT_FALSE(onlyWindow("a.srt").empty());
    session.desktop.key("Down");
    ASSERT_FALSE(onlyWindow("b.srt").empty());
    client.onSelection = [](unsigned) { };
    for (auto key : {"Up", "Left", "Right"})
        session.desktop.key(key);
    EXPECT_TRUE(client.comesToBe([&] { return client.selections == std::vector<unsigned>{3, 2, 4, 5}; }));
    session.desktop.key("space");
    EXPECT_TRUE(nothingIsShown());
    EXPECT_TRUE(client.comesToBe([&] { return !client.isVisible; }));
}

TEST_F(SpaceBar, aPreviewThatDiesIsFollowedByOneThatSaysSo)
{
    ASSERT_EQ(client.showFile(session.subtitle("a.srt"), true), "");
    auto window = onlyWindow("a.srt");
    ASSERT_FALSE(window.empty());
    auto shown = session.desktop.picture(window);
    auto process = about("getwindowpid", window);
    ASSERT_EQ(::kill(std::stoi(process), SIGSEGV), 0);
    EXPECT_TRUE(client.comesToBe([&] {
        auto next = onlyWindow("a.srt");
        return !next.empty() && about("getwindowpid", next) != process
            && session.desktop.picture(next) != shown;
    }));
    EXPECT_TRUE(client.isVisible);
    EXPECT_EQ(client.showFile(session.subtitle("b.srt"), true), "");
    EXPECT_FALSE(onlyWindow("b.srt").empty());
}

TEST_F(SpaceBar, nonsenseIsAnsweredWithAnErrorAndTheServiceStays)
{
    constexpr auto invalid = "org.freedesktop.DBus.Error.InvalidArgs";
    auto process = client.previewerProcess();
    for (auto& url : {std::string(), std::string("a.srt"), std::string("file://elsewhere/a.srt"),
                      std::string("file:///%0"), std::string("file:///a%00.srt")})
        EXPECT_EQ(client.showFile(url, true), invalid) << url;
    process = client.previewerProcess();
    EXPECT_EQ(client.showFile("file:///" + std::string(100'000, 'a') + ".srt", true),
              "org.freedesktop.DBus.Error.LimitsExceeded");
    EXPECT_EQ(client.call(client.path, client.interface, "ShowFile", "si", "file:///a.srt", 1), invalid);
    EXPECT_EQ(client.call("/org/nemo/Preview", "org.nemo.Preview", "ShowFile", "ssb", "file:///a.srt", "", 1),
              invalid);
    EXPECT_EQ(client.call(client.path, client.interface, "Destroy", ""),
              "org.freedesktop.DBus.Error.UnknownMethod");
    EXPECT_EQ(
        client.call(client.path, "org.freedesktop.DBus.Properties", "Get", "ss", client.interface, "Colour"),
        "org.freedesktop.DBus.Error.UnknownProperty");
    EXPECT_EQ(client.call(client.path, "org.freedesktop.DBus.Peer", "Ping", ""), "");
    EXPECT_EQ(client.previewerProcess(), process);
}

TEST_F(SpaceBar, ofTenThousandCallsTheNewestWins)
{
    std::vector<std::string> files;
    for (int i = 0; i < 50; ++i)
        files.push_back(session.subtitle("film" + std::to_string(i) + ".srt"));
    auto last = session.subtitle("last.srt");
    FilesClient second(session.address);
    for (int i = 0; i < 10'000; ++i)
        (i % 2 ? second : client).shout(files[static_cast<std::size_t>(i) % files.size()]);
    EXPECT_EQ(second.call(client.path, "org.freedesktop.DBus.Peer", "Ping", ""), "");
    EXPECT_EQ(client.showFile(last, false), "");
    EXPECT_FALSE(onlyWindow("last.srt").empty());
    auto children = run({"pgrep", "-c", "-P", std::to_string(client.previewerProcess())}).output;
    EXPECT_LE(std::stoi(children), 3) << "previews are left over";
}

TEST_F(SpaceBar, theServiceIsSmallAndAnswersWithoutADisplay)
{
    PreviewerSession blind(Environment{{"DISPLAY", ""}});
    FilesClient caller(blind.address);
    EXPECT_EQ(caller.call(caller.path, "org.freedesktop.DBus.Peer", "Ping", ""), "");
    EXPECT_EQ(caller.call(caller.path, "org.freedesktop.DBus.Introspectable", "Introspect", ""), "");
    EXPECT_EQ(caller.showFile("file:///a.srt", true), "org.freedesktop.DBus.Error.Failed");

    ASSERT_EQ(client.showFile(session.subtitle("a.srt"), true), "");
    ASSERT_FALSE(onlyWindow("a.srt").empty());
    std::ifstream status("/proc/" + std::to_string(client.previewerProcess()) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmRSS:")) {
            EXPECT_LT(std::stoi(line.substr(6)), 10 * 1024) << line;
        }
    }
}

TEST(SpaceBarRelay, withoutAnotherPreviewerTheTypeIsNamed)
{
    PreviewerSession session(Environment{{"XDG_DATA_DIRS", "/nowhere"}});
    FilesClient client(session.address);
    EXPECT_EQ(client.showFile("file://" + session.folder.file("a.odt", "x"), true),
              "org.freedesktop.DBus.Error.NotSupported");
    EXPECT_NE(client.errorText.find(".odt"), std::string::npos) << client.errorText;
}

TEST(SpaceBarRelay, otherFilesGoToTheOtherPreviewer)
{
    if (!std::filesystem::exists("/usr/share/dbus-1/services/org.gnome.NautilusPreviewer.service"))
        GTEST_SKIP() << "no other previewer is installed";
    PreviewerSession session;
    FilesClient client(session.address);
    auto notes = "file://" + session.folder.file("notes.txt", "some notes\n");
    auto film = session.subtitle("a.srt");
    EXPECT_EQ(client.showFile(notes, true), "");
    ASSERT_TRUE(session.desktop.findWindow("notes.txt"));
    EXPECT_TRUE(client.comesToBe([&] { return client.isVisible; }));
    auto window = *session.desktop.findWindow("notes.txt");
    EXPECT_EQ(client.showFile(film, false), "");
    EXPECT_TRUE(session.desktop.findWindow("a.srt"));
    auto isGone = [&](const char* title) {
        return run({"xdotool", "search", "--onlyvisible", "--name", title}, session.desktop.environment())
            .output.empty();
    };
    EXPECT_TRUE(client.comesToBe([&] { return isGone("notes.txt"); }));
    EXPECT_EQ(client.showFile(notes, false), "");
    EXPECT_TRUE(session.desktop.findWindow("notes.txt"));
    EXPECT_TRUE(client.comesToBe([&] { return isGone("a.srt"); }));
    EXPECT_TRUE(client.isVisible);
    EXPECT_EQ(client.call(client.path, client.interface, "Close", ""), "");
    EXPECT_TRUE(client.comesToBe([&] { return !client.isVisible && isGone("notes.txt"); }));
}

} // namespace
} // namespace endtoend
