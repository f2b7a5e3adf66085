// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace platform {

// A piece of UTF-8 as the shaping library takes it, and the exact way between the two kinds of offsets.
// Where all is ASCII the offsets are the same and no table is kept.
class Utf16Text {
public:
    // Takes a character that must not be shaped as it is and gives the sign drawn in its place, one UTF-16
    // unit long; 0 leaves it. Asked for no ASCII character but control characters.
    using Substitute = std::function<char16_t(char32_t)>;

    explicit Utf16Text(std::string_view utf8, const Substitute& substitute = {});

    const QString& string() const { return string_; }
    bool hasRightToLeft() const { return hasRightToLeft_; }
    std::size_t byteCount() const { return byteCount_; }

    // Clamped. A UTF-16 offset inside of a surrogate pair, or a byte offset inside of a sequence, counts as
    // the character's beginning.
    std::size_t byteOf(qsizetype utf16) const;
    qsizetype utf16Of(std::size_t byte) const;

private:
    void append(char32_t character, std::size_t byte);
    void decode(std::string_view utf8, const Substitute& substitute);

    QString string_;
    std::size_t byteCount_ = 0;
    std::vector<std::uint32_t> bytes_; // of each UTF-16 unit; empty when all is ASCII
    bool hasRightToLeft_ = false;      // anything that makes the order on screen differ from the text's
};

} // namespace platform
