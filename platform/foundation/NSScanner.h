// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace platform {

// Reads numbers from a text one after the other. A scan first skips white space and line breaks; one that fails leaves the
// place as it was. Ill-formed UTF-8 is text that no scan reads. One thread.
class NSScanner {
public:
    explicit NSScanner(std::string text)
        : text_(std::move(text))
    {
    }

    // Reads hexadecimal digits of either case, "0x" or "0X" before them or not, up to the first character that is none; a
    // number of more than 64 bits is read whole and gives the largest value. False, with nothing written, when there is no
    // digit. "0x" without a digit after it is the digit 0. `value` may be null.
    bool scanHexLongLong(std::uint64_t* value);

    // In bytes.
    std::size_t scanLocation() const { return location_; }
    // Whether nothing but white space is left.
    bool isAtEnd() const;

private:
    std::string text_;
    std::size_t location_ = 0;
};

} // namespace platform
