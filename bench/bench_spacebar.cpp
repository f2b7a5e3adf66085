// SPDX-License-Identifier: MIT
// From the call that a file manager makes when the space bar is pressed to text on the screen, for previewers that
// answer it, in the same run.
//
//   bench-spacebar RUNS PREVIEWER...     on the X server of $DISPLAY, each previewer on a session bus of its own
//
// "first": nothing of the previewer runs yet, the call starts it. "ready": it runs, as since the session or the file manager
// started, and nothing is shown. "next": another file takes the place of the one shown. Then what it holds while nothing
// is shown: the service's resident memory, its children's share (PSS), and how often the service woke up in two seconds.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>
#include <vector>
#include <xcb/xcb.h>

extern char** environ;

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto patience = std::chrono::seconds(20);
constexpr auto name = "org.gnome.NautilusPreviewer", path = "/org/gnome/NautilusPreviewer",
               interface = "org.gnome.NautilusPreviewer2";

[[noreturn]] void fail(const std::string& text)
{
    std::fprintf(stderr, "bench-spacebar: %s\n", text.c_str());
    std::exit(1);
}

// A strip across the screen that the text of any of the windows is in: lines of solid blocks, dark on light or light on dark,
// of which there is less than of what is behind them. The desktop is neither.
class Screen {
public:
    Screen()
        : connection_(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(connection_))
            fail("no X server");
        auto* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
        root_ = screen->root;
        width_ = screen->width_in_pixels;
        std::uint32_t magenta = 0xff00ff;
        xcb_change_window_attributes(connection_, root_, XCB_CW_BACK_PIXEL, &magenta);
        xcb_clear_area(connection_, 0, root_, 0, 0, 0, 0);
        xcb_flush(connection_);
    }

    struct Ink {
        int dark = 0, light = 0;
        int text() const { return std::min(dark, light); }
    };

    Ink ink()
    {
        auto* image = xcb_get_image_reply(
            connection_,
            xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, root_, 0, 150, width_, 80, ~0U), nullptr);
        if (!image)
            return {};
        auto* bytes = xcb_get_image_data(image);
        Ink ink;
        for (int i = 0; i + 3 < xcb_get_image_data_length(image); i += 4) {
            auto [least, most] = std::minmax({bytes[i], bytes[i + 1], bytes[i + 2]});
            ink.dark += most < 100;
            ink.light += least > 150;
        }
        std::free(image);
        return ink;
    }
    bool isEmpty()
    {
        auto now = ink();
        return now.dark + now.light == 0;
    }
    bool showsText() { return ink().text() > 4000; }

private:
    xcb_connection_t* connection_;
    xcb_window_t root_;
    std::uint16_t width_;
};

bool waitUntil(const std::function<bool()>& condition)
{
    auto start = Clock::now();
    while (!condition()) {
        if (Clock::now() - start > patience)
            return false;
        usleep(2000); // looking costs the server time that the previewer needs
    }
    return true;
}

// A session bus on which that previewer starts when it is called.
class Session {
public:
    explicit Session(const std::string& previewer)
    {
        char pattern[] = "/tmp/bench-spacebar-XXXXXX";
        folder_ = mkdtemp(pattern);
        std::filesystem::create_directories(folder_ + "/dbus-1/services");
        std::ofstream(folder_ + "/dbus-1/services/" + name + ".service")
            << "[D-BUS Service]\nName=" << name << "\nExec=" << previewer << "\n";
        setenv("XDG_DATA_HOME", folder_.c_str(), 1);
        int output[2];
        if (pipe2(output, O_CLOEXEC) != 0)
            fail("no pipe");
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, output[1], 1);
        posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
        char* arguments[] = {const_cast<char*>("dbus-daemon"), const_cast<char*>("--session"),
                             const_cast<char*>("--nofork"), const_cast<char*>("--print-address=1"), nullptr};
        if (posix_spawnp(&daemon_, "dbus-daemon", &actions, nullptr, arguments, environ) != 0)
            fail("dbus-daemon could not be started");
        posix_spawn_file_actions_destroy(&actions);
        close(output[1]);
        char address[512] = "";
        auto count = read(output[0], address, sizeof address - 1);
        close(output[0]);
        if (count <= 0)
            fail("no session bus");
        address[count - 1] = '\0';
        sd_bus_new(&bus_);
        sd_bus_set_address(bus_, address);
        sd_bus_set_bus_client(bus_, 1);
        if (sd_bus_start(bus_) < 0)
            fail("no connection to the session bus");
    }
    ~Session()
    {
        sd_bus_flush_close_unref(bus_);
        kill(daemon_, SIGTERM);
        waitpid(daemon_, nullptr, 0);
        std::filesystem::remove_all(folder_);
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    void call(const char* itsInterface, const char* member)
    {
        sd_bus_call_method(bus_, name, path, itsInterface, member, nullptr, nullptr, "");
    }
    void showFile(const std::string& file)
    {
        sd_bus_error error = SD_BUS_ERROR_NULL;
        auto url = "file://" + file;
        if (sd_bus_call_method(bus_, name, path, interface, "ShowFile", &error, nullptr, "ssb", url.c_str(),
                               "x11:0", 0)
            < 0)
            fail(std::string("ShowFile: ") + (error.message ? error.message : "no answer"));
    }
    pid_t previewer()
    {
        sd_bus_creds* who = nullptr;
        pid_t process = 0;
        if (sd_bus_get_name_creds(bus_, name, SD_BUS_CREDS_PID, &who) >= 0)
            sd_bus_creds_get_pid(who, &process);
        sd_bus_creds_unref(who);
        return process;
    }

private:
    std::string folder_;
    pid_t daemon_ = 0;
    sd_bus* bus_ = nullptr;
};

double numberAfter(const std::string& file, const std::string& key)
{
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with(key))
            return std::strtod(line.c_str() + key.size(), nullptr);
    }
    return 0;
}

double childrenMegabytes(pid_t parent)
{
    double kilobytes = 0;
    auto id = std::to_string(parent);
    std::ifstream children("/proc/" + id + "/task/" + id + "/children");
    for (std::string child; children >> child;)
        kilobytes += numberAfter("/proc/" + child + "/smaps_rollup", "Pss:");
    return kilobytes / 1024;
}

struct Samples {
    std::vector<double> first, ready, next;
    double megabytes = 0, childMegabytes = 0, wakeUps = 0;
};

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values.empty() ? 0 : values[values.size() / 2];
}

class Bench {
public:
    Bench()
    {
        for (auto [file, blocks] : {std::pair(&short_, 12), std::pair(&long_, 18)}) {
            *file = "/tmp/bench-spacebar-" + std::to_string(getpid()) + "-" + std::to_string(blocks) + ".srt";
            std::ofstream stream(*file);
            for (int line = 0; line < 400; ++line) {
                for (int i = 0; i < blocks; ++i)
                    stream << "\u2588";
                stream << "\n";
            }
        }
    }
    ~Bench()
    {
        std::filesystem::remove(short_);
        std::filesystem::remove(long_);
    }

    void measure(const std::string& previewer, Samples& samples)
    {
        if (!waitUntil([&] { return screen_.isEmpty(); }))
            fail("the screen is not empty");
        {
            Session session(previewer);
            samples.first.push_back(untilShown(session, short_));
        }
        waitUntil([&] { return screen_.isEmpty(); });

        Session session(previewer);
        session.call("org.freedesktop.DBus.Peer", "Ping");
        usleep(1'000'000); // the time that passes between the file manager's start and the first press
        samples.ready.push_back(untilShown(session, short_));
        usleep(200'000); // all of it is painted
        auto before = screen_.ink().text();
        auto start = Clock::now();
        session.showFile(long_);
        if (!waitUntil([&] { return screen_.ink().text() > before * 5 / 4; }))
            fail(previewer + " did not show the next file");
        samples.next.push_back(millisecondsSince(start));
        session.call(interface, "Close");
        waitUntil([&] { return screen_.isEmpty(); });
        usleep(500'000);
        atRest(session.previewer(), samples);
    }

private:
    static double millisecondsSince(Clock::time_point start)
    {
        return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    }

    double untilShown(Session& session, const std::string& file)
    {
        auto start = Clock::now();
        session.showFile(file);
        if (!waitUntil([&] { return screen_.showsText(); }))
            fail("no text came to the screen");
        return millisecondsSince(start);
    }

    void atRest(pid_t process, Samples& samples)
    {
        auto status = "/proc/" + std::to_string(process) + "/status";
        auto switches = [&] { return numberAfter(status, "voluntary_ctxt_switches:"); };
        samples.megabytes = numberAfter(status, "VmRSS:") / 1024;
        samples.childMegabytes = childrenMegabytes(process);
        auto before = switches();
        usleep(2'000'000);
        samples.wakeUps = switches() - before;
    }

    Screen screen_;
    std::string short_, long_;
};

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount < 3) {
        std::fprintf(stderr, "usage: bench-spacebar RUNS PREVIEWER...\n");
        return 2;
    }
    int runs = std::max(1, std::atoi(arguments[1]));
    std::vector<std::string> previewers(arguments + 2, arguments + argumentCount);
    std::vector<Samples> samples(previewers.size());
    Bench bench;
    for (int run = 0; run < runs; ++run) {
        for (std::size_t i = 0; i < previewers.size(); ++i)
            bench.measure(previewers[i], samples[i]);
    }
    std::printf("%-28s %9s %9s %9s   %8s %9s %8s\n", "median ms, MB", "first", "ready", "next", "service",
                "children", "wake-ups");
    for (std::size_t i = 0; i < previewers.size(); ++i) {
        auto& each = samples[i];
        std::printf("%-28s %9.1f %9.1f %9.1f   %8.1f %9.1f %8.0f\n",
                    previewers[i].substr(previewers[i].rfind('/') + 1).c_str(), median(each.first),
                    median(each.ready), median(each.next), each.megabytes, each.childMegabytes, each.wakeUps);
    }
    return 0;
}
