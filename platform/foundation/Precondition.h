// SPDX-License-Identifier: MIT
#pragma once

#include <source_location>
#include <string_view>

namespace platform {

// Prints `reason` with its place on standard error and aborts. For faults of the program itself, never
// for bad input. Any thread.
[[noreturn]] void preconditionFailure(std::string_view reason,
                                      std::source_location at = std::source_location::current());

// Stops the process, in every build, unless `holds`.
inline void precondition(bool holds, std::string_view reason,
                         std::source_location at = std::source_location::current())
{
    if (holds) [[likely]]
        return;
    preconditionFailure(reason, at);
}

} // namespace platform
