// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

namespace platform {

// The number that all of `digits` are in base 8 or 16; nothing when one is no digit. At most six digits.
std::optional<char32_t> parseDigits(std::string_view digits, unsigned base);

bool isLeadingSurrogate(char32_t unit);
// Nothing when `trailing` is not the second half of a pair.
std::optional<char32_t> combinedSurrogates(char32_t leading, char32_t trailing);

// What an octal escape stands for: the platform keeps the character set of the system that its tables come from.
std::optional<char32_t> nextStepCharacter(char32_t number);

} // namespace platform
