// SPDX-License-Identifier: MIT
#include "platform/uikit/text/TextHeights.h"

#include "platform/graphics/TextColumns.h"
#include "platform/uikit/text/SelfCheck.h"
#include "platform/uikit/text/TextScan.h"

#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr std::int64_t smallText = 1 << 20; // bytes
constexpr std::size_t sampleSize = 48;      // pieces
constexpr std::size_t correctionLimit = 8192;

// Behind the line end that begins at `end`.
std::size_t afterLineEndAt(std::string_view bytes, std::size_t end)
{
    return end + (bytes[end] == '\r' && end + 1 < bytes.size() && bytes[end + 1] == '\n' ? 2 : 1);
}

} // namespace

TextHeights::TextHeights(const TextBuffer& text)
    : text_(text)
{
}

void TextHeights::setRows(std::int64_t columnsPerRow, CGFloat rowHeight)
{
    columnsPerRow = std::max<std::int64_t>(columnsPerRow, 1);
    if (columnsPerRow == columnsPerRow_ && rowHeight == rowHeight_)
        return;
    corrections_.clear();
    rowHeight_ = rowHeight;
    if (columnsPerRow == columnsPerRow_)
        return;
    columnsPerRow_ = columnsPerRow;
    validSums_ = 1;
    hasSample_ = false;
}

void TextHeights::handleNewText()
{
    corrections_.clear();
    validSums_ = 1;
    hasSample_ = false;
}

void TextHeights::handleEdit(Utf8Offset at, std::int64_t removed, std::int64_t inserted)
{
    auto& pieces = text_.pieces();
    // The edit may have joined its first piece to the one before.
    auto first = pieces.find(at).piece;
    validSums_ = std::min(validSums_, first > 0 ? first : std::size_t{1});
    // An edited line is measured afresh; what stands behind it has moved.
    auto line = text_.lineRange(text_.lineContaining(at));
    auto from = corrections_.lower_bound(line.start);
    std::map<Utf8Offset, CGFloat> moved;
    auto oldEnd = at + removed;
    for (auto it = from; it != corrections_.end(); ++it) {
        if (it->first >= oldEnd && it->first + (inserted - removed) >= line.end)
            moved.emplace_hint(moved.end(), it->first + (inserted - removed), it->second);
    }
    corrections_.erase(from, corrections_.end());
    corrections_.merge(moved);
}

// --- Rows of pieces ------------------------------------------------------------------------------

bool TextHeights::isSmall() const
{
    return text_.size() <= smallText;
}

bool TextHeights::isMeasured(std::size_t piece) const
{
    auto& at = text_.pieces()[piece];
    return at.hasColumns() && at.hasRows(columnsPerRow_);
}

std::int64_t TextHeights::countRows(std::size_t piece) const
{
    auto& at = text_.pieces()[piece];
    auto& survey = at.columns();
    if (survey.longest <= columnsPerRow_)
        return survey.lines;
    std::int64_t rows = 0;
    auto bytes = at.bytes();
    for (auto start = afterLineEnd(bytes, 1); start < bytes.size();) {
        auto end = findLineEnd(bytes, start);
        if (end == bytes.size())
            break;
        rows += rowsForLine(bytes.substr(start, end - start), columnsPerRow_);
        start = afterLineEndAt(bytes, end);
    }
    return rows;
}

void TextHeights::measure(std::size_t piece) const
{
    if (piece >= text_.pieces().size() || isMeasured(piece))
        return;
    text_.pieces()[piece].rememberRows(countRows(piece), columnsPerRow_);
    if (validSums_ <= piece + 1)
        return;
    // The sums behind it stay when nothing comes out differently, as for most pieces.
    for (auto at = piece; at + 1 < validSums_; ++at) {
        auto after = sumsAfter(at, sums_[at]);
        if (after == sums_[at + 1])
            return;
        sums_[at + 1] = after;
    }
}

TextHeights::Sums TextHeights::sumsAfter(std::size_t piece, Sums before) const
{
    auto& at = text_.pieces()[piece];
    if (!isMeasured(piece)) {
        // Lines that are not known to be longer than a row are not.
        if (at.lineEnds() > 0)
            return {before.rows + std::max(0.0, rowsOfOpenLine(before) - 1)
                        + rowsPerLine_ * static_cast<double>(at.lineEnds()),
                    0};
        return {before.rows, before.columns + at.size()};
    }
    auto& survey = at.columns();
    if (at.lineEnds() == 0)
        return {before.rows, before.columns + survey.head};
    auto rows = before.rows + static_cast<double>(at.rows());
    auto bytes = at.bytes();
    auto end = before.columns == 0 && survey.head > columnsPerRow_ ? findLineEnd(bytes, 0) : 0;
    rows += rowsOfFirstLine(piece, before.columns, survey.head, bytes.substr(0, end));
    return {rows, survey.tail};
}

// Rows of the line that the piece's first line end ends; `columns` of it are in this piece. One that begins
// before is counted by columns, one that begins here by its words, `line`.
double TextHeights::rowsOfFirstLine(std::size_t piece, std::int64_t open, std::int64_t columns,
                                    std::string_view line) const
{
    // The second half of a cut line end ends no line.
    if (text_.pieces().cutsLineEnd(piece))
        return 0;
    bool isWhole = open == 0 && columns > columnsPerRow_;
    return static_cast<double>(isWhole ? rowsForLine(line, columnsPerRow_)
                                       : rowsForColumns(open + columns, columnsPerRow_));
}

const TextHeights::Sums& TextHeights::sums(std::size_t piece) const
{
    auto count = text_.pieces().size();
    if (validSums_ <= count) {
        if (isSmall()) {
            for (std::size_t each = validSums_ - 1; each < count; ++each) {
                if (!isMeasured(each))
                    text_.pieces()[each].rememberRows(countRows(each), columnsPerRow_);
            }
        } else if (!hasSample_) {
            takeSample();
        }
        sums_.resize(count + 1);
        for (; validSums_ <= count; ++validSums_)
            sums_[validSums_] = sumsAfter(validSums_ - 1, sums_[validSums_ - 1]);
    }
    return sums_[piece];
}

void TextHeights::takeSample() const
{
    hasSample_ = true;
    auto& pieces = text_.pieces();
    double rows = 0, lines = 0;
    for (std::size_t i = 0; i < sampleSize; ++i) {
        auto& survey = pieces[i * pieces.size() / sampleSize].columns();
        rows += static_cast<double>(survey.rows(columnsPerRow_));
        lines += static_cast<double>(survey.lines);
    }
    rowsPerLine_ = lines > 0 ? rows / lines : 1;
}

double TextHeights::rowsOfOpenLine(const Sums& sums) const
{
    return static_cast<double>(rowsForColumns(sums.columns, columnsPerRow_));
}

std::size_t TextHeights::measuredPieces() const
{
    std::size_t measured = 0;
    for (std::size_t piece = 0; piece < text_.pieces().size(); ++piece)
        measured += isMeasured(piece);
    return measured;
}

// --- Heights -------------------------------------------------------------------------------------

double TextHeights::rowsAbove(std::size_t piece, std::size_t offset) const
{
    auto before = sums(piece);
    if (offset == 0 && before.columns == 0)
        return before.rows;
    auto bytes = text_.pieces()[piece].bytes();
    double rows = before.rows;
    auto open = before.columns; // columns of the line so far, from earlier pieces
    bool isFirst = true;
    std::size_t start = 0;
    for (;;) {
        auto end = findLineEnd(bytes, start);
        if (end >= offset) {
            open += columns(bytes.substr(start, offset - start));
            return rows + static_cast<double>(open / columnsPerRow_);
        }
        auto line = bytes.substr(start, end - start);
        rows += isFirst ? rowsOfFirstLine(piece, open, columns(line), line)
                        : static_cast<double>(rowsForLine(line, columnsPerRow_));
        isFirst = false;
        open = 0;
        start = afterLineEndAt(bytes, end);
        if (start > offset)
            return rows;
    }
}

CGFloat TextHeights::correctionBefore(Utf8Offset offset) const
{
    CGFloat sum = 0;
    for (auto it = corrections_.begin(); it != corrections_.end() && it->first < offset; ++it)
        sum += it->second;
    return sum;
}

CGFloat TextHeights::total() const
{
    auto& pieces = text_.pieces();
    auto last = sums(pieces.size());
    auto rows = rowsOfOpenLine(last);
    if (rows > 1 && isMeasured(pieces.size() - 1) && pieces[pieces.size() - 1].lineEnds() > 0) {
        // All of the last line is in the last piece.
        auto bytes = pieces[pieces.size() - 1].bytes();
        rows = static_cast<double>(rowsForLine(bytes.substr(bytes.find_last_of("\r\n") + 1), columnsPerRow_));
    }
    return (last.rows + rows) * rowHeight_ + correctionBefore(text_.end() + 1);
}

CGFloat TextHeights::above(const TextFragment& fragment) const
{
    auto place = text_.pieces().find(fragment.range.start);
    if (place.piece > 0)
        measure(place.piece - 1);
    measure(place.piece);
    double rows = 0;
    if (place.piece < text_.pieces().size()) {
        rows = rowsAbove(place.piece, place.offset);
    } else {
        auto& last = sums(place.piece);
        rows = last.rows + static_cast<double>(last.columns / columnsPerRow_);
    }
    return rows * rowHeight_ + correctionBefore(fragment.range.start);
}

TextHeights::Place TextHeights::at(CGFloat height) const
{
    auto count = text_.pieces().size();
    if (!(height > 0) || count == 0)
        return {firstFragment(text_), 0};
    if (height >= total()) {
        auto last = lastFragment(text_);
        return {last, estimate(last)};
    }
    // Corrections are few rows among many: take off those before the place found, and look once more.
    auto row = height / rowHeight_;
    for (int round = 0; round < 2; ++round) {
        sums(count);
        auto above =
            std::upper_bound(sums_.begin(), sums_.begin() + static_cast<std::ptrdiff_t>(count), row,
                             [&](double value, const Sums& sum) {
                                 return value < sum.rows + static_cast<double>(sum.columns / columnsPerRow_);
                             });
        auto piece = static_cast<std::size_t>(std::max<std::ptrdiff_t>(above - sums_.begin() - 1, 0));
        if (round == 1)
            return placeInPiece(piece, row);
        measure(piece);
        auto rough = placeInPiece(piece, row);
        if (corrections_.empty())
            return rough;
        row = std::max(0.0, (height - correctionBefore(rough.fragment.range.start)) / rowHeight_);
    }
    return {};
}

// Walks the lines of one piece until `row` is reached.
TextHeights::Place TextHeights::placeInPiece(std::size_t piece, double row) const
{
    auto bytes = text_.pieces()[piece].bytes();
    auto before = sums(piece);
    auto rows = before.rows;
    auto open = before.columns;
    bool isFirst = true;
    std::size_t start = 0;
    while (start < bytes.size()) {
        auto end = findLineEnd(bytes, start);
        auto line = bytes.substr(start, end - start);
        auto taken = end == bytes.size()
            ? static_cast<double>(rowsForColumns(open + columns(line), columnsPerRow_))
            : isFirst ? rowsOfFirstLine(piece, open, columns(line), line)
                      : static_cast<double>(rowsForLine(line, columnsPerRow_));
        if (row < rows + taken || end == bytes.size()) {
            // Inside of a line that began long before: by columns from where this piece begins.
            auto column = static_cast<std::int64_t>(std::max(0.0, row - rows)) * columnsPerRow_ - open;
            auto inside = std::clamp<std::int64_t>(column, 0, std::ssize(line));
            auto fragment =
                fragmentAt(text_, text_.pieces().start(piece) + static_cast<std::int64_t>(start) + inside);
            auto offset = row * rowHeight_ + correctionBefore(fragment.range.start) - above(fragment);
            return {fragment, std::max(0.0, offset)};
        }
        rows += taken;
        open = 0;
        isFirst = false;
        start = afterLineEndAt(bytes, end);
    }
    auto fragment = fragmentAt(text_, text_.pieces().start(piece + 1));
    return {fragment, 0};
}

CGFloat TextHeights::estimate(const TextFragment& fragment) const
{
    std::string scratch;
    auto text = text_.view(fragment.textRange(), scratch);
    if (!fragment.beginsLine || !fragment.endsLine)
        return static_cast<double>(columns(text)) / static_cast<double>(columnsPerRow_) * rowHeight_;
    // As the sums count it: a line that crosses a piece's border by columns, any other by its words.
    auto start = text_.pieces().find(fragment.range.start).piece;
    bool isWhole = start < text_.pieces().size() && text_.pieces().start(start + 1) > fragment.textEnd();
    return static_cast<double>(isWhole ? rowsForLine(text, columnsPerRow_)
                                       : rowsForColumns(columns(text), columnsPerRow_))
        * rowHeight_;
}

void TextHeights::correct(const TextFragment& fragment, CGFloat height)
{
    auto difference = height - estimate(fragment);
    if (std::abs(difference) < 0.01) {
        corrections_.erase(fragment.range.start);
        return;
    }
    corrections_[fragment.range.start] = difference;
    if (corrections_.size() > correctionLimit) {
        // The half that is further away goes.
        auto middle = std::next(corrections_.begin(), static_cast<std::ptrdiff_t>(correctionLimit / 2));
        if (middle->first <= fragment.range.start)
            corrections_.erase(corrections_.begin(), middle);
        else
            corrections_.erase(middle, corrections_.end());
    }
}

} // namespace platform
