// SPDX-License-Identifier: MIT
#include "platform/foundation/OperatingSystemVersion.h"

#include <charconv>

namespace platform {

std::optional<OperatingSystemVersion> OperatingSystemVersion::parse(std::string_view text)
{
    OperatingSystemVersion version;
    const char* at = text.data();
    const char* end = at + text.size();
    for (int* part : {&version.major, &version.minor, &version.patch}) {
        // from_chars would take a minus sign
        if (at == end || *at < '0' || *at > '9')
            return std::nullopt;
        auto [next, fault] = std::from_chars(at, end, *part);
        if (fault != std::errc())
            return std::nullopt;
        if (next == end)
            return version;
        if (*next != '.')
            return std::nullopt;
        at = next + 1;
    }
    return std::nullopt;
}

std::string OperatingSystemVersion::string() const
{
    auto text = std::to_string(major) + "." + std::to_string(minor);
    return patch == 0 ? text : text + "." + std::to_string(patch);
}

} // namespace platform
