// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

namespace platform {

// What an argument of a format must be.
enum class FormatArgumentType { text, integer, number, character };

// A width or precision: given in the format, or by an argument.
struct FormatCount {
    int value = 0;
    std::optional<std::size_t> argument; // from 0; then `value` does not count

    bool operator==(const FormatCount&) const = default;
};

// The largest width or precision that a format may ask for; greater ones count as this.
inline constexpr int largestFormatCount = 1000;

// One conversion: "%5.2f", "%2$@".
struct FormatConversion {
    char letter = '@';        // of "@ s d i u o x X f F e E g G a A c C"; D, U and O are read as d, u and o
    std::size_t argument = 0; // from 0
    bool isLeftAligned = false;
    bool hasSign = false;
    bool hasSpace = false;
    bool isAlternate = false;
    bool hasZeros = false;
    std::optional<FormatCount> width;
    std::optional<FormatCount> precision;

    FormatArgumentType type() const;
    bool operator==(const FormatConversion&) const = default;
};

// Text to be written as it stands, which is a part of the format, or a conversion.
using FormatPiece = std::variant<std::string_view, FormatConversion>;

// Takes a printf-style format apart. Whatever is no conversion of ours ("%n", "%y", a lone "%", "%0$d") is
// text as it stands. The length modifiers (hh h l ll q z t j L) are read and mean nothing here: an argument
// knows its size. The pieces refer to `format`.
std::vector<FormatPiece> parseFormat(std::string_view format);

// The types of the arguments that a format takes, by place from 0. An argument that is used as two types has
// the first. What two formats must agree on to be given the same arguments.
std::map<std::size_t, FormatArgumentType> formatArguments(std::string_view format);

} // namespace platform
