// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/TextEncoding.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// A language that speaks for an encoding besides the bytes. A weight of 0.2 outdoes what is merely usual and no
// evidence in the bytes.
struct LegacyHint {
    std::string language; // "pt", "zh-Hant"
    double weight = 0;
};
using LegacyHints = std::vector<LegacyHint>;

// The encodings of old that `bytes` may be in, the likeliest first; each can decode all of them. Empty when none can.
// Looks at no more than some 64 KiB, spread over the text, of the lines that are not ASCII, to order them.
std::vector<TextEncoding> guessLegacyEncodings(std::string_view bytes, const LegacyHints& hints = {});

// The language of a file name such as "film.ro.srt" or "film.pt-BR.srt"; empty when it has none.
std::string languageOfFileName(std::string_view name);

} // namespace platform
