// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform {

// The names of the window systems that the library will try, in its order: what QT_QPA_PLATFORM lists, or
// what suits the session. Options behind a colon are dropped.
std::vector<std::string> candidateWindowSystems(std::string_view requested);

// Where a Wayland display listens; empty when it cannot be known. `display` is WAYLAND_DISPLAY's value.
std::string waylandSocketPath(std::string_view display, std::string_view runtimeDirectory);

// Closes the connection that displayIsAvailable() left open for the one that follows.
void releaseProbedDisplay();

} // namespace platform
