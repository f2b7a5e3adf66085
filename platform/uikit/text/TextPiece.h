// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/text/ColumnSurvey.h"

#include <cstdint>
#include <string_view>

namespace platform {

// A stretch of bytes that never change, with what is known of it: the unit that a text is a sequence of. All
// facts are of the bytes alone, whatever stands before or after; a piece may begin and end inside of a
// character or a line end. The bytes belong to the text's storage.
class TextPiece {
public:
    static constexpr std::int64_t sizeLimit = 16 * 1024;

    // Walks the bytes. Requires: not empty, at most `sizeLimit`.
    explicit TextPiece(std::string_view bytes);
    // Facts that somebody else has counted.
    TextPiece(std::string_view bytes, std::int64_t lineEnds, bool isASCII);

    std::string_view bytes() const { return {bytes_, size_}; }
    std::int64_t size() const { return size_; }
    // A line end that is cut by the piece's border counts on both sides.
    std::int64_t lineEnds() const { return lineEnds_; }
    bool isASCII() const { return isASCII_; }
    bool startsWithLineFeed() const { return bytes_[0] == '\n'; }
    bool endsWithReturn() const { return bytes_[size_ - 1] == '\r'; }

    // Counted at the first question.
    std::int64_t utf16Units() const;
    const ColumnSurvey& columns() const;
    bool hasColumns() const { return hasColumns_; }

    // Rows that the lines which begin and end in this piece take when a row has `columnsPerRow`; counted by
    // somebody else and remembered here, for one width.
    bool hasRows(std::int64_t columnsPerRow) const { return rowsWidth_ == columnsPerRow; }
    std::int64_t rows() const { return rows_; }
    void rememberRows(std::int64_t rows, std::int64_t columnsPerRow) const
    {
        rows_ = static_cast<std::uint32_t>(rows);
        rowsWidth_ = static_cast<std::uint32_t>(columnsPerRow);
    }

private:
    static constexpr std::uint32_t unknown = ~std::uint32_t{0};

    // fixed after construction
    const char* bytes_;
    std::uint32_t size_;
    std::uint16_t lineEnds_;
    bool isASCII_;
    // main thread only: filled in when asked
    mutable bool hasColumns_ = false;
    mutable ColumnSurvey columns_;
    mutable std::uint32_t utf16Units_ = unknown;
    mutable std::uint32_t rows_ = 0;
    mutable std::uint32_t rowsWidth_ = 0; // 0: not counted
};

} // namespace platform
