// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/URL.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <system_error>
#include <unistd.h>

namespace tests {

// Runs a shell command; its standard output. A command that fails, fails the test.
inline std::string outputOf(const std::string& command)
{
    std::string output;
    auto* pipe = ::popen(command.c_str(), "r");
    char buffer[1 << 16];
    while (auto count = pipe ? std::fread(buffer, 1, sizeof buffer, pipe) : 0)
        output.append(buffer, count);
    EXPECT_EQ(pipe ? ::pclose(pipe) : -1, 0) << command;
    return output;
}

// A media file that the ffmpeg command makes once for all tests of the build: `arguments` are what stands before the
// name of the output. Any thread and any number of processes at once; the name says what was asked for, so another
// wish is another file.
inline std::string mediaFixture(const std::string& extension, const std::string& arguments)
{
    namespace fs = std::filesystem;
    const auto folder = fs::path(ZELK_BINARY_DIR) / "tests" / "media";
    const auto name = std::to_string(std::hash<std::string>{}(arguments)) + "." + extension;
    const auto file = folder / name;
    if (fs::exists(file))
        return file;
    fs::create_directories(folder);
    // Whoever is first gives it its name; the others keep that one, which somebody may be reading.
    const auto made =
        folder / ("made-" + std::to_string(::getpid()) + "-" + std::to_string(::gettid()) + "-" + name);
    outputOf("ffmpeg -v error -nostdin -y -bitexact " + arguments + " " + made.string());
    std::error_code isThere;
    fs::create_hard_link(made, file, isThere);
    fs::remove(made);
    EXPECT_TRUE(fs::exists(file)) << isThere.message();
    return file;
}

inline platform::URL mediaURL(const std::string& extension, const std::string& arguments)
{
    return platform::URL::fileURL(mediaFixture(extension, arguments));
}

} // namespace tests
