// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/URL.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ranges>
#include <string>
#include <string_view>

namespace tests {

// A directory of its own for one test, gone with it.
class TemporaryDirectory {
public:
    TemporaryDirectory()
    {
        std::string pattern = testing::TempDir() + "zelk-XXXXXX";
        if (!::mkdtemp(pattern.data()))
            std::abort();
        path_ = pattern;
    }
    ~TemporaryDirectory()
    {
        std::error_code ignored; // a directory that is left behind fails nobody
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete; // the directory is removed once
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    std::string path(std::string_view name = {}) const
    {
        return name.empty() ? path_ : path_ + "/" + std::string(name);
    }
    platform::URL url(std::string_view name = {}) const { return platform::URL::fileURL(path(name)); }
    // Directories on the way are made.
    platform::URL write(std::string_view name, std::string_view contents) const
    {
        std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
        std::ofstream(path(name), std::ios::binary) << contents;
        return url(name);
    }
    // The same, for programs.
    std::string file(std::string_view name, std::string_view contents) const
    {
        write(name, contents);
        return path(name);
    }
    std::string read(std::string_view name) const
    {
        std::ifstream stream(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    std::ptrdiff_t fileCount() const
    {
        return std::ranges::distance(std::filesystem::directory_iterator(path_));
    }

private:
    std::string path_;
};

} // namespace tests
