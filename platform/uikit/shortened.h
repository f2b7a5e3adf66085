// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/TextBoundaries.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

// The text, or of one longer than `limit` bytes the characters that fit and an ellipsis: for texts that nobody reads to
// the end, but that would all be set. Any thread.
inline std::string shortened(std::string_view text, std::size_t limit)
{
    if (text.size() <= limit)
        return std::string(text);
    return std::string(text.substr(0, graphemeStart(text, limit))).append("\xe2\x80\xa6");
}

} // namespace platform
