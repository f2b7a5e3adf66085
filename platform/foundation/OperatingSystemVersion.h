// SPDX-License-Identifier: MIT
#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// A version of the system whose interfaces the port provides, ordered as versions are: 15.10 is after 15.4.
struct OperatingSystemVersion {
    int major = 0;
    int minor = 0;
    int patch = 0;

    auto operator<=>(const OperatingSystemVersion&) const = default;

    // Reads "17", "17.4" or "17.4.1"; parts left out are 0. Anything else is nothing.
    static std::optional<OperatingSystemVersion> parse(std::string_view text);
    // "17.4.1", and "17.4" when the patch is 0.
    std::string string() const;
};

} // namespace platform
