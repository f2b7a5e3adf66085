// SPDX-License-Identifier: MIT
#include "platform/foundation/UUID.h"

#include "platform/foundation/Precondition.h"

#include <cerrno>
#include <cstring>

#include <sys/random.h>

namespace platform {

namespace {

constexpr std::string_view pattern = "hhhhhhhh-hhhh-hhhh-hhhh-hhhhhhhhhhhh";

int hexadecimalValue(char digit)
{
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F')
        return digit - 'A' + 10;
    return -1;
}

} // namespace

UUID::UUID()
{
    // Up to 256 bytes come whole once the system's source is seeded; before, a signal may interrupt.
    while (getrandom(bytes_.data(), bytes_.size(), 0) != static_cast<ssize_t>(bytes_.size()))
        precondition(errno == EINTR, "the system has no random source");
    bytes_[6] = static_cast<std::uint8_t>((bytes_[6] & 0x0F) | 0x40);
    bytes_[8] = static_cast<std::uint8_t>((bytes_[8] & 0x3F) | 0x80);
}

std::optional<UUID> UUID::parse(std::string_view text)
{
    if (text.size() != pattern.size())
        return std::nullopt;
    Bytes bytes = {};
    std::size_t digits = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (pattern[i] == '-') {
            if (text[i] != '-')
                return std::nullopt;
            continue;
        }
        int value = hexadecimalValue(text[i]);
        if (value < 0)
            return std::nullopt;
        auto& byte = bytes[digits++ / 2];
        byte = static_cast<std::uint8_t>(byte << 4 | value);
    }
    return UUID(bytes);
}

std::string UUID::string() const
{
    std::string text(pattern);
    std::size_t digits = 0;
    for (char& character : text) {
        if (character == '-')
            continue;
        int byte = bytes_[digits / 2];
        character = "0123456789ABCDEF"[digits++ % 2 == 0 ? byte >> 4 : byte & 15];
    }
    return text;
}

} // namespace platform

std::size_t std::hash<platform::UUID>::operator()(const platform::UUID& uuid) const noexcept
{
    // Random bytes are a hash already.
    std::size_t halves[2];
    static_assert(sizeof halves == sizeof(platform::UUID::Bytes));
    std::memcpy(halves, uuid.bytes().data(), sizeof halves);
    return halves[0] ^ halves[1];
}
