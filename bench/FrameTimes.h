// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include <ctime>
#include <malloc.h>

// What both sides of the component bench measure with, so that they measure the same. Each prints lines of
//     name <tab> median ms <tab> worst ms <tab> median ms of processor time
namespace bench {

// What something took, by the clock on the wall and of the processor: that one does not count what else the machine does.
struct Taken {
    double wall = 0, processor = 0; // ms
};

inline double processorTime()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

inline Taken take(const std::function<void()>& action)
{
    auto processor = processorTime();
    auto start = std::chrono::steady_clock::now();
    action();
    auto wall = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    return {wall, processorTime() - processor};
}

inline void report(const std::string& name, std::vector<Taken> times)
{
    std::ranges::sort(times, {}, &Taken::processor);
    auto processor = times[times.size() / 2].processor;
    std::ranges::sort(times, {}, &Taken::wall);
    std::printf("%s\t%.3f\t%.2f\t%.3f\n", name.c_str(), times[times.size() / 2].wall, times.back().wall,
                processor);
    std::fflush(stdout);
}

inline void measure(const std::string& name, int times, const std::function<void(int)>& action)
{
    std::vector<Taken> taken;
    for (int index = 0; index < times; ++index)
        taken.push_back(take([&] { action(index); }));
    report(name, std::move(taken));
}

// Kilobytes that the process has in memory for itself: without what it has given back inside, and without the pages of
// libraries and fonts, which it shares with every other program.
inline double ownKilobytes()
{
    malloc_trim(0);
    long kilobytes = 0;
    if (auto* file = std::fopen("/proc/self/status", "r")) {
        for (char line[256]; std::fgets(line, sizeof line, file);) {
            if (std::sscanf(line, "RssAnon: %ld", &kilobytes) == 1)
                break;
        }
        std::fclose(file);
    }
    return static_cast<double>(kilobytes);
}

inline void reportMemory(const std::string& name, double kilobytes)
{
    std::printf("%s\t%.0f\tkB\t%.0f\n", name.c_str(), kilobytes, kilobytes);
    std::fflush(stdout);
}

} // namespace bench
