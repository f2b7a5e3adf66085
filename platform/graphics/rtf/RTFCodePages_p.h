// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/CharsetDecoder.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// The code page that a font's \fcharset stands for; nothing for those that follow the document's.
std::optional<std::int32_t> codePageOfFontCharset(std::int32_t charset);

// Reads bytes by the number of their code page. Keeps a decoder for each page that was met.
class RTFCodePages {
public:
    // In a page that nobody knows everything but ASCII is U+FFFD.
    std::string decode(std::string_view bytes, std::int32_t codePage);

private:
    std::map<std::int32_t, std::optional<CharsetDecoder>> decoders_;
};

} // namespace platform
