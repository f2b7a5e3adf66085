// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/URL.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace platform::tests {

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
    ~TemporaryDirectory() { std::filesystem::remove_all(path_); }
    TemporaryDirectory(const TemporaryDirectory&) = delete; // the directory is removed once
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    std::string path(std::string_view name = {}) const
    {
        return name.empty() ? path_ : path_ + "/" + std::string(name);
    }
    URL url(std::string_view name = {}) const { return URL::fileURL(path(name)); }
    // Directories on the way are made.
    URL write(std::string_view name, std::string_view contents) const
    {
        std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
        std::ofstream(path(name), std::ios::binary) << contents;
        return url(name);
    }

private:
    std::string path_;
};

} // namespace platform::tests
