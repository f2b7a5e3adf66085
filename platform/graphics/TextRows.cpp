// SPDX-License-Identifier: MIT
#include "platform/graphics/TextRows.h"

#include "platform/graphics/TextColumns.h"
#include "platform/graphics/Utf8Decoder_p.h"

#include <algorithm>
#include <limits>

namespace platform {

namespace {

constexpr int mostMarks = 8;

bool isLeftOut(char32_t c)
{
    return c == 0xAD || c == 0xFEFF || (c >= 0x202A && c <= 0x202E) || (c >= 0x2060 && c <= 0x206F)
        || (c >= 0xFFF9 && c <= 0xFFFB) || (c >= 0xE0000 && c <= 0xE007F);
}

// What is shown for a character: itself, but for those that could drive a terminal or end a row.
char32_t harmless(char32_t c)
{
    if (c < 0x20)
        return 0x2400 + c;
    if (c == 0x7F)
        return 0x2421;
    if (c >= 0x80 && c < 0xA0)
        return 0xFFFD;
    return c == 0x2028 || c == 0x2029 ? U' ' : c;
}

// Closing punctuation of East Asia does not begin a row.
bool clingsToPrevious(char32_t c)
{
    return std::u32string_view(U"、。，．！？：；）」』】〉》ー").contains(c);
}

void append(std::string& text, char32_t c)
{
    auto add = [&](char32_t byte) { text += static_cast<char>(byte); };
    if (c < 0x80)
        return add(c);
    if (c < 0x800) {
        add(0xC0 | c >> 6);
    } else {
        if (c < 0x10000) {
            add(0xE0 | c >> 12);
        } else {
            add(0xF0 | c >> 18);
            add(0x80 | (c >> 12 & 0x3F));
        }
        add(0x80 | (c >> 6 & 0x3F));
    }
    add(0x80 | (c & 0x3F));
}

// Takes characters one by one and gives rows.
class RowBreaker {
public:
    explicit RowBreaker(const TerminalPane& pane)
        : width_(pane.width ? std::max(*pane.width, 1) : std::numeric_limits<std::int64_t>::max())
        , height_(pane.height ? std::max(*pane.height, 1) : std::numeric_limits<std::int64_t>::max())
        , skip_(std::max<std::int64_t>(pane.skip, 0))
    {
    }

    bool isFilled() const { return height_ == 0; }
    std::string takeText() { return std::move(text_); }

    void take(char32_t c)
    {
        if (c == '\t')
            return takeTab();
        if (isLeftOut(c))
            return;
        c = harmless(c);
        auto columns = columnsOf(c);
        if (columns == 0)
            return takeMark(c);
        if (columns > width_) {
            columns = 1;
            c = U'?';
        }
        bool isWide = columns == 2;
        if (isWide && !row_.empty() && !clingsToPrevious(c))
            noteBreak();
        // What moves to the next row can leave too little room there as well.
        while (column_ + columns > width_) {
            if (clingsToPrevious(c) && break_ == row_.size() && earlierBreak_ > 0) {
                break_ = earlierBreak_;
                breakColumn_ = earlierBreakColumn_;
            }
            bool hangs = c == ' '; // over the end, where nothing is to be seen of it
            if (hangs)
                noteBreak();
            breakRow();
            if (hangs)
                return;
        }
        append(row_, c);
        column_ += columns;
        marks_ = 0;
        if (c == ' ' || c == '-' || isWide)
            noteBreak();
    }

    void endLine()
    {
        emit(row_);
        begin({}, 0);
    }

private:
    void takeTab()
    {
        auto end = std::min(column_ + tabColumns - column_ % tabColumns, width_);
        if (column_ >= width_) {
            breakRow();
            return;
        }
        row_.append(static_cast<std::size_t>(end - column_), ' ');
        column_ = end;
        marks_ = 0;
        noteBreak();
    }

    void takeMark(char32_t c)
    {
        if (row_.empty())
            take(U' '); // or it would stand on what is left of the pane
        if (++marks_ <= mostMarks)
            append(row_, c);
        // The break after a wide character goes behind its marks.
        if (break_ > 0 && breakColumn_ == column_)
            noteBreak();
    }

    void noteBreak()
    {
        if (break_ != row_.size()) {
            earlierBreak_ = break_;
            earlierBreakColumn_ = breakColumn_;
        }
        break_ = row_.size();
        breakColumn_ = column_;
    }

    // What follows the last place to break goes to the next row.
    void breakRow()
    {
        auto end = break_ > 0 ? break_ : row_.size();
        auto rest = row_.substr(end);
        auto restColumns = break_ > 0 ? column_ - breakColumn_ : 0;
        row_.resize(end);
        row_.resize(row_.find_last_not_of(' ') + 1); // npos + 1 is 0
        emit(row_);
        begin(std::move(rest), restColumns);
    }

    void begin(std::string row, std::int64_t column)
    {
        row_ = std::move(row);
        column_ = column;
        break_ = earlierBreak_ = 0;
        if (row_.empty())
            marks_ = 0;
    }

    void emit(std::string_view row)
    {
        if (skip_ > 0) {
            --skip_;
        } else if (height_ > 0) {
            text_.append(row).append("\n");
            --height_;
        }
    }

    const std::int64_t width_;
    std::int64_t height_, skip_; // rows left
    std::string text_, row_;
    std::int64_t column_ = 0;
    // the last places in row_ where it may be broken; 0: none
    std::size_t break_ = 0, earlierBreak_ = 0;
    std::int64_t breakColumn_ = 0, earlierBreakColumn_ = 0;
    int marks_ = 0; // on the last character
};

} // namespace

TerminalRows terminalRows(std::string_view text, const TerminalPane& pane)
{
    RowBreaker rows(pane);
    for (std::size_t at = 0; at < text.size() && !rows.isFilled();) {
        auto decoded = decodeCharacter(text, at);
        at += decoded.length;
        if (decoded.character == '\r' && text.substr(at).starts_with('\n'))
            ++at;
        if (decoded.character == '\r' || decoded.character == '\n')
            rows.endLine();
        else
            rows.take(decoded.character);
        bool isUnended = at == text.size() && decoded.character != '\r' && decoded.character != '\n';
        if (isUnended)
            rows.endLine();
    }
    return {.text = rows.takeText(), .isFilled = rows.isFilled()};
}

} // namespace platform
