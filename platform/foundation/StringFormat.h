// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/FormatString.h"
#include "platform/foundation/String.h"

#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace platform {

// A value to be written by a format: a text, a whole number of any size, a floating-point number, a character
// (char, char16_t, char32_t: a Unicode scalar), or nothing (a null pointer). Texts are copied.
class FormatArgument {
public:
    struct Integer {
        std::uint64_t bits = 0; // sign-extended
        std::uint64_t mask = 0; // the bits that its type has
        bool isSigned = false;
    };
    using Storage = std::variant<std::monostate, std::string, Integer, double, char32_t>;

    FormatArgument(std::string_view text)
        : storage_(std::string(text))
    {
    }
    FormatArgument(const std::string& text)
        : FormatArgument(std::string_view(text))
    {
    }
    FormatArgument(const String& text)
        : FormatArgument(text.utf8())
    {
    }
    FormatArgument(const char* text)
    {
        if (text)
            storage_ = std::string(text);
    }
    FormatArgument(std::nullptr_t) { }
    FormatArgument(std::floating_point auto number)
        : storage_(static_cast<double>(number))
    {
    }
    FormatArgument(char character)
        : storage_(static_cast<char32_t>(static_cast<unsigned char>(character)))
    {
    }
    FormatArgument(char16_t character)
        : storage_(static_cast<char32_t>(character))
    {
    }
    FormatArgument(char32_t character)
        : storage_(character)
    {
    }
    template <std::integral Number>
    FormatArgument(Number number)
        : storage_(Integer{.bits = static_cast<std::uint64_t>(number),
                           .mask = ~std::uint64_t{0} >> (64 - 8 * sizeof(Number)),
                           .isSigned = std::is_signed_v<Number>})
    {
    }

    const Storage& storage() const { return storage_; }

private:
    Storage storage_;
};

// Writes `arguments` as `format` says: the platform's String(format:), which is printf with "%@" for any value
// and "%1$@" for places. Nothing depends on the C locale: the decimal point is a full stop. Any thread.
//
// Arguments are never read as what they are not:
// - a whole number is written by its own size: "%d" with its value, "%u %o %x" with its bits when it is negative;
//   "%f" takes whole numbers, "%c" takes them as Unicode scalars;
// - any other argument that the conversion is not for is written as "%@" would write it;
// - a missing argument and a null pointer are "(null)"; spare arguments are left out.
// The widths and precisions of texts count Unicode scalars.
std::string stringWithFormat(std::string_view format, std::span<const FormatArgument> arguments);

} // namespace platform
