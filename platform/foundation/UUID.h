// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// A universally unique identifier.
class UUID {
public:
    using Bytes = std::array<std::uint8_t, 16>;

    // A fresh random one (version 4), from the system's random source. Any thread.
    UUID();
    explicit UUID(const Bytes& bytes)
        : bytes_(bytes)
    {
    }
    // Reads the 36-character form, in either case.
    static std::optional<UUID> parse(std::string_view text);

    const Bytes& bytes() const { return bytes_; }
    // "E621E1F8-C36C-495A-93FC-0C247A3E6E5F": upper case.
    std::string string() const;

    auto operator<=>(const UUID&) const = default;

private:
    Bytes bytes_;
};

} // namespace platform

template <>
struct std::hash<platform::UUID> {
    std::size_t operator()(const platform::UUID& uuid) const noexcept;
};
