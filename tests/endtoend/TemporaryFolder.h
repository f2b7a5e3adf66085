// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace endtoend {

// A folder of the test's own, gone with it.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        auto pattern = (std::filesystem::temp_directory_path() / "zelk-XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            ADD_FAILURE() << "no temporary folder";
        path_ = pattern;
    }
    ~TemporaryFolder()
    {
        std::error_code ignored; // a folder that is left behind fails nobody
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string path(const std::string& name) const { return (path_ / name).string(); }
    std::string file(const std::string& name, const std::string& content) const
    {
        std::ofstream(path_ / name, std::ios::binary) << content;
        return path(name);
    }
    std::string read(const std::string& name) const
    {
        std::ifstream stream(path_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

private:
    std::filesystem::path path_;
};

} // namespace endtoend
