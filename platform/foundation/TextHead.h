// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/TextDecoding.h"

#include <cstddef>

namespace platform {

// The beginning of a text.
struct TextHead {
    DecodedText decoded;
    bool isWhole = true; // there is no more of the file
};

// Reads as readText does, but no more than the first `limit` bytes of the file, and of these only whole lines; a line
// that goes on beyond all of them is cut between characters. What is found of the encoding rests on these bytes alone,
// so a text that leaves ASCII only later may turn out to be another one when it is read further. Costs the same for a
// file of any size. Errors: those of readText, but a file that changes meanwhile gives what was there.
[[nodiscard]] Result<TextHead> readTextHead(const URL& url, std::size_t limit);

} // namespace platform
