// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// Reads bytes of a named character set ("windows-1255", "Shift_JIS") as UTF-8. For documents that name theirs;
// texts that do not go through decodeText. One thread at a time.
class CharsetDecoder {
public:
    // Nothing when no such set is known. Case, "-" and "_" do not count.
    static std::optional<CharsetDecoder> open(std::string_view name);
    CharsetDecoder(CharsetDecoder&&) noexcept;
    CharsetDecoder& operator=(CharsetDecoder&&) noexcept;
    ~CharsetDecoder();

    // Always well-formed: U+FFFD stands for bytes that are no character of the set. Each call starts afresh.
    // Requires: fewer than 2^31 bytes.
    std::string decode(std::string_view bytes);

private:
    struct Converter;
    explicit CharsetDecoder(std::unique_ptr<Converter> converter);

    std::unique_ptr<Converter> converter_;
};

} // namespace platform
