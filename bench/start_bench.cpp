// SPDX-License-Identifier: MIT
// From process start to the first painted text, for a program of ours and its peer in the same run.
//
//   start-bench RUNS FILE PROGRAM...        off-screen: until the program prints "first-frame"
//   start-bench --x11 RUNS FILE PROGRAM...  on the X server of $DISPLAY: until dark pixels are there
//
// Prints the median and the best time in milliseconds, and the peak memory in MB, a line a program. Programs take turns, so
// that what the machine does meanwhile hits all of them.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>
#include <xcb/xcb.h>

extern char** environ;

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto patience = std::chrono::seconds(120);

double millisecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

struct Sample {
    double milliseconds = 0;
    double megabytes = 0;
};

// The most memory that a running process has had resident, in MB.
double peakMemory(pid_t pid)
{
    std::FILE* status = std::fopen(("/proc/" + std::to_string(pid) + "/status").c_str(), "r");
    if (!status)
        return 0;
    char line[256];
    double kilobytes = 0;
    while (std::fgets(line, sizeof line, status)) {
        if (std::strncmp(line, "VmHWM:", 6) == 0)
            kilobytes = std::strtod(line + 6, nullptr);
    }
    std::fclose(status);
    return kilobytes / 1024;
}

// The corner of the screen, where a window without a window manager opens. It counts as showing text when enough
// pixels are dark: the background is light, and the root window is painted white before.
class Screen {
public:
    Screen()
        : connection_(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(connection_)) {
            std::fprintf(stderr, "start-bench: no X server\n");
            std::exit(1);
        }
        root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
        std::uint32_t white = 0xffffff;
        xcb_change_window_attributes(connection_, root_, XCB_CW_BACK_PIXEL, &white);
        clear();
    }

    void clear()
    {
        xcb_clear_area(connection_, 0, root_, 0, 0, 0, 0);
        xcb_flush(connection_);
    }

    bool showsText()
    {
        auto* image = xcb_get_image_reply(
            connection_, xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, root_, 0, 0, 400, 300, ~0U),
            nullptr);
        if (!image)
            return false;
        auto* bytes = xcb_get_image_data(image);
        int dark = 0;
        for (int i = 0; i + 3 < xcb_get_image_data_length(image); i += 4)
            dark += bytes[i] < 100 && bytes[i + 1] < 100 && bytes[i + 2] < 100;
        std::free(image);
        return dark > 200 && dark < 60000;
    }

private:
    xcb_connection_t* connection_;
    xcb_window_t root_;
};

Sample measure(const std::string& program, const std::string& file, Screen* screen)
{
    if (screen) {
        screen->clear();
        while (screen->showsText())
            usleep(1000);
    }
    int output[2];
    if (pipe2(output, O_CLOEXEC) != 0)
        std::exit(1);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output[1], 1);
    char* arguments[] = {const_cast<char*>(program.c_str()), const_cast<char*>(file.c_str()), nullptr};
    pid_t pid = 0;
    auto start = Clock::now();
    if (posix_spawn(&pid, program.c_str(), &actions, nullptr, arguments, environ) != 0) {
        std::fprintf(stderr, "start-bench: %s could not be started\n", program.c_str());
        std::exit(1);
    }
    close(output[1]);
    Sample sample;
    if (screen) {
        while (!screen->showsText() && Clock::now() - start < patience)
            usleep(300);
    } else {
        std::string text;
        char buffer[256];
        while (text.find("first-frame") == std::string::npos) {
            auto count = read(output[0], buffer, sizeof buffer);
            if (count <= 0)
                break;
            text.append(buffer, static_cast<std::size_t>(count));
        }
    }
    sample.milliseconds = millisecondsSince(start);
    sample.megabytes = peakMemory(pid);
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    close(output[0]);
    posix_spawn_file_actions_destroy(&actions);
    return sample;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    std::vector<std::string> words(arguments + 1, arguments + argumentCount);
    bool onScreen = !words.empty() && words[0] == "--x11";
    if (onScreen)
        words.erase(words.begin());
    if (words.size() < 3) {
        std::fprintf(stderr, "usage: start-bench [--x11] RUNS FILE PROGRAM...\n");
        return 2;
    }
    int runs = std::max(1, std::atoi(words[0].c_str()));
    setenv("ZELK_REPORT_FIRST_FRAME", "1", 1);
    Screen* screen = nullptr;
    if (onScreen)
        screen = new Screen;
    else
        setenv("QT_QPA_PLATFORM", "offscreen", 1);

    std::vector<std::string> programs(words.begin() + 2, words.end());
    std::vector<std::vector<Sample>> samples(programs.size());
    for (int run = 0; run < runs; ++run) {
        for (std::size_t i = 0; i < programs.size(); ++i)
            samples[i].push_back(measure(programs[i], words[1], screen));
    }
    for (std::size_t i = 0; i < programs.size(); ++i) {
        auto& taken = samples[i];
        std::ranges::sort(taken, {}, &Sample::milliseconds);
        auto name = programs[i].substr(programs[i].rfind('/') + 1);
        std::printf("%-24s median %8.1f ms  best %8.1f ms  peak %8.1f MB\n", name.c_str(),
                    taken[taken.size() / 2].milliseconds, taken.front().milliseconds,
                    taken[taken.size() / 2].megabytes);
    }
    delete screen;
    return 0;
}
