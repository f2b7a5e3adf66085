// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace platform {

// One sign of Rich Text Format.
struct RTFToken {
    enum class Kind {
        end,    // of the bytes
        open,   // "{"
        close,  // "}"
        word,   // "\par", "\fs24": name and parameter
        symbol, // "\~": the sign in `text`
        bytes,  // of the text, in the code page: as they stand, or one by its number
        fault,  // what is no such format; `text` says why
    };
    Kind kind = Kind::end;
    std::string_view text;
    std::optional<std::int32_t> parameter;
};

// Cuts bytes into signs. Line ends and zero bytes between them mean nothing and are left out, and so is binary
// data. After a fault comes the same fault.
class RTFTokenizer {
public:
    explicit RTFTokenizer(std::string_view bytes)
        : bytes_(bytes)
    {
    }
    // Valid until the next call.
    RTFToken next();

private:
    RTFToken fault(std::string_view reason) const { return {RTFToken::Kind::fault, reason, {}}; }
    RTFToken anyToken(); // binary data as the word that announced it
    RTFToken control();
    RTFToken word();
    RTFToken numberedByte();
    RTFToken plainBytes();
    std::optional<std::int32_t> parameter(bool& isTooLarge);

    std::string_view bytes_;
    std::size_t at_ = 0;
    char byte_ = 0; // the last that was given by its number
};

} // namespace platform
