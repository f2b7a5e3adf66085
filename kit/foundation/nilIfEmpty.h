// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/String.h"

#include <optional>
#include <string>
#include <utility>

namespace zelk {

// The text, or nothing when it has no characters. Blanks are characters.
inline std::optional<std::string> nilIfEmpty(std::string text)
{
    return text.empty() ? std::nullopt : std::optional(std::move(text));
}
inline std::optional<platform::String> nilIfEmpty(platform::String text)
{
    return text.isEmpty() ? std::nullopt : std::optional(std::move(text));
}

} // namespace zelk
