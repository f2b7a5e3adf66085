// SPDX-License-Identifier: MIT
#include "platform/uikit/text/ColumnSurvey.h"

#include "platform/graphics/TextColumns.h"
#include "platform/uikit/text/TextScan.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

std::uint16_t capped(std::int64_t columns)
{
    return static_cast<std::uint16_t>(std::min<std::int64_t>(columns, 65535));
}

} // namespace

ColumnSurvey ColumnSurvey::of(std::string_view text)
{
    ColumnSurvey survey;
    auto end = findLineEnd(text, 0);
    survey.head = capped(platform::columns(text.substr(0, end)));
    while (end < text.size()) {
        auto start = end + 1;
        if (text[end] == '\r' && start < text.size() && text[start] == '\n')
            ++start;
        end = findLineEnd(text, start);
        auto width = capped(platform::columns(text.substr(start, end - start)));
        if (end == text.size()) {
            survey.tail = width;
            break;
        }
        ++survey.lines;
        survey.longest = std::max(survey.longest, width);
        for (std::size_t i = 0; i < widths.size() && width > widths[i]; ++i)
            ++survey.wider[i];
    }
    return survey;
}

double ColumnSurvey::linesWiderThan(std::int64_t columns) const
{
    if (columns >= longest)
        return 0;
    auto above = std::upper_bound(widths.begin(), widths.end(), columns) - widths.begin();
    double lowWidth = above == 0 ? 0 : widths[above - 1];
    double lowCount = above == 0 ? lines : wider[above - 1];
    double highWidth = above == std::ssize(widths) ? longest : std::min(widths[above], longest);
    double highCount = above == std::ssize(widths) || widths[above] >= longest ? 0 : wider[above];
    if (highWidth <= lowWidth)
        return highCount;
    return lowCount
        + (highCount - lowCount) * (static_cast<double>(columns) - lowWidth) / (highWidth - lowWidth);
}

std::int64_t ColumnSurvey::rows(std::int64_t columnsPerRow) const
{
    if (longest <= columnsPerRow)
        return lines;
    // Each line has one row, one more if it is wider than a row, one more if wider than two ...
    double rows = lines;
    for (auto width = columnsPerRow; width < longest; width += columnsPerRow)
        rows += std::max(1.0, linesWiderThan(width));
    return static_cast<std::int64_t>(std::llround(rows));
}

std::int64_t rowsForLine(std::string_view line, std::int64_t columnsPerRow)
{
    auto width = static_cast<std::int64_t>(line.size());
    if (!isPlainASCII(line))
        return rowsForColumns(platform::columns(line), columnsPerRow);
    std::int64_t rows = 1;
    while (width > columnsPerRow) {
        // Spaces at a row's end hang over it; the next row begins with the word after them.
        auto limit = static_cast<std::size_t>(columnsPerRow);
        std::size_t next = limit;
        if (line[limit] == ' ') {
            while (next < line.size() && line[next] == ' ')
                ++next;
        } else if (auto space = line.substr(0, limit).rfind(' '); space != std::string_view::npos) {
            next = space + 1;
        }
        line.remove_prefix(next);
        width -= static_cast<std::int64_t>(next);
        rows += width > 0;
    }
    return rows;
}

} // namespace platform
