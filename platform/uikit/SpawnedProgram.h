// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// Another program, started beside this one and left to itself. Main thread only.
class SpawnedProgram {
public:
    // Starts `command` (a name that PATH finds, and its arguments), without a shell and without this program's input.
    // `completion`, which may be empty, comes later, once: false when it could not be started or soon ended with a
    // fault, true when it soon ended well or goes on.
    static void start(std::vector<std::string> command, std::function<void(bool)> completion);
    static bool isInstalled(std::string_view program);
};

} // namespace platform
