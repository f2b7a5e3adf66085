// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

namespace platform {

struct SymbolFile {
    std::string_view name;
    std::string_view
        document; // a drawing of 24 units in height, whose lines are as wide as the root element says
};

// Every file in the folder symbols, by name. Compiled in: a program has its symbols wherever it is.
std::span<const SymbolFile> symbolFiles();

} // namespace platform
