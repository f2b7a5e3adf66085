// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string>

namespace tests {

// Files of downloads that are under way, or that were, anywhere in the folder.
inline std::ptrdiff_t growingDownloads(const std::string& folder)
{
    std::error_code none;
    return std::ranges::count_if(std::filesystem::recursive_directory_iterator(folder, none),
                                 [](auto& entry) { return entry.path().extension() == ".download"; });
}

} // namespace tests
