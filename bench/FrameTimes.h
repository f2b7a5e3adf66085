// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include <malloc.h>
#include <unistd.h>

// What both sides of the component bench measure with, so that they measure the same. Each prints lines of
//     name <tab> median ms <tab> worst ms
namespace bench {

inline double milliseconds(const std::function<void()>& action)
{
    auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

inline void report(const std::string& name, std::vector<double> times)
{
    std::ranges::sort(times);
    std::printf("%s\t%.2f\t%.2f\n", name.c_str(), times[times.size() / 2], times.back());
    std::fflush(stdout);
}

inline void measure(const std::string& name, int times, const std::function<void(int)>& action)
{
    std::vector<double> taken;
    for (int index = 0; index < times; ++index)
        taken.push_back(milliseconds([&] { action(index); }));
    report(name, std::move(taken));
}

// Kilobytes that the process has in memory, without what it has given back inside.
inline double residentKilobytes()
{
    malloc_trim(0);
    long pages = 0;
    if (auto* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%*d %ld", &pages) != 1)
            pages = 0;
        std::fclose(file);
    }
    return static_cast<double>(pages) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1024;
}

inline void reportMemory(const std::string& name, double kilobytes)
{
    std::printf("%s\t%.0f\tkB\n", name.c_str(), kilobytes);
    std::fflush(stdout);
}

} // namespace bench
