// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

namespace zelk {

struct ModelName {
    std::string_view identifier; // what the system calls the machine
    std::string_view name;       // what the manufacturer's advertisements call it
};

// One row an identifier.
std::span<const ModelName> modelNames();

} // namespace zelk
