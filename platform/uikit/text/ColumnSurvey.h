// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace platform {

// How wide the lines of a stretch of text are, in columns of a monospaced font: enough to tell how many rows
// they take at any width, without the text. Numbers are capped at 65535.
struct ColumnSurvey {
    // Lines wider than each of these are counted.
    static constexpr std::array<std::uint16_t, 10> widths = {24, 32, 40, 52, 68, 88, 120, 180, 320, 1000};

    std::uint16_t head = 0;    // columns before the first line end; all columns when there is none
    std::uint16_t tail = 0;    // columns after the last line end; 0 when there is none
    std::uint16_t lines = 0;   // that begin after a line end and end at one
    std::uint16_t longest = 0; // of those lines
    std::array<std::uint16_t, 10> wider{};

    static ColumnSurvey of(std::string_view text);

    // Rows that `lines` take when broken after every `columnsPerRow` columns: exact when none is longer,
    // else from the counts above. Words that move to the next row whole are not known here.
    std::int64_t rows(std::int64_t columnsPerRow) const;

private:
    double linesWiderThan(std::int64_t columns) const;
};

// Rows of a line of that width, broken anywhere. An empty line is one row.
constexpr std::int64_t rowsForColumns(std::int64_t columns, std::int64_t columnsPerRow)
{
    return columns <= columnsPerRow ? 1 : (columns + columnsPerRow - 1) / columnsPerRow;
}

// Rows of a line as the text view breaks it: between words, and inside a word that is wider than a row. Exact
// for printable ASCII; elsewhere by columns. `line` has no line end.
std::int64_t rowsForLine(std::string_view line, std::int64_t columnsPerRow);

} // namespace platform
