// SPDX-License-Identifier: MIT
#include "platform/uikit/text/TextBuffer.h"

#include "platform/foundation/Precondition.h"
#include "platform/foundation/TextSurvey.h"
#include "platform/uikit/text/SelfCheck.h"
#include "platform/uikit/text/TextScan.h"

#include <algorithm>
#include <functional>

namespace platform {

namespace {

std::vector<TextPiece> cutIntoPieces(std::string_view bytes)
{
    std::vector<TextPiece> pieces;
    pieces.reserve(bytes.size() / TextPiece::sizeLimit + 1);
    for (std::size_t at = 0; at < bytes.size(); at += TextPiece::sizeLimit)
        pieces.emplace_back(bytes.substr(at, TextPiece::sizeLimit));
    return pieces;
}

// One piece a block of the survey that was made while the text was read: nothing is walked again.
std::vector<TextPiece> piecesOfSurvey(std::string_view bytes, const TextSurvey& survey)
{
    std::vector<TextPiece> pieces;
    pieces.reserve(survey.blocks.size());
    for (std::size_t i = 0; i < survey.blocks.size(); ++i) {
        auto start = i * survey.blockSize;
        auto block = bytes.substr(start, survey.blockSize);
        auto after = start + block.size();
        // The survey counts a cut line end in the second block only, a piece counts it on both sides.
        bool isCut = after < bytes.size() && block.back() == '\r' && bytes[after] == '\n';
        pieces.emplace_back(block, survey.blocks[i].lineEnds + isCut, survey.blocks[i].isASCII);
        if constexpr (provesCaches) {
            static SelfCheck check;
            if (check.isDue())
                precondition(pieces.back().lineEnds() == countLineEnds(block)
                                 && pieces.back().isASCII() == isASCII(block),
                             "the survey that came with a text is of that text");
        }
    }
    return pieces;
}

std::vector<TextPiece> piecesOf(const String& text)
{
    auto bytes = text.utf8();
    auto survey = text.survey();
    bool isUsable = survey && survey->size == bytes.size() && survey->blockSize > 0
        && survey->blockSize <= static_cast<std::size_t>(TextPiece::sizeLimit);
    return isUsable ? piecesOfSurvey(bytes, *survey) : cutIntoPieces(bytes);
}

} // namespace

TextBuffer::TextBuffer(String text)
    : original_(std::move(text))
    , pieces_(piecesOf(original_))
{
}

String TextBuffer::text() const
{
    if (!isFlatValid_) {
        flat_ = string({{0}, end()});
        isFlatValid_ = true;
    }
    return flat_;
}

bool TextBuffer::isPartOfOriginal(std::string_view bytes) const
{
    auto original = original_.utf8();
    std::less_equal<const char*> isNotAfter;
    return isNotAfter(original.data(), bytes.data())
        && isNotAfter(bytes.data() + bytes.size(), original.data() + original.size());
}

String TextBuffer::string(TextRange range) const
{
    std::string scratch;
    auto bytes = view(range, scratch);
    if (isPartOfOriginal(bytes)) {
        if (bytes.size() == original_.size())
            return original_;
        return String::adopting(std::make_shared<const String>(original_), bytes);
    }
    auto copy =
        std::make_shared<const std::string>(scratch.empty() ? std::string(bytes) : std::move(scratch));
    return String::adopting(copy, *copy);
}

std::function<String()> TextBuffer::deferredString(TextRange range) const
{
    if (auto bytes = contiguous(range); bytes && isPartOfOriginal(*bytes))
        return [text = string(range)] { return text; };
    auto first = pieces_.find(range.start);
    auto last = pieces_.find(range.end);
    std::vector<TextPiece> pieces;
    for (auto piece = first.piece; piece < pieces_.size() && piece <= last.piece; ++piece)
        pieces.push_back(pieces_[piece]);
    // The original is kept by its text, everything else by the storage.
    return [original = original_, storage = storage_, pieces = std::move(pieces), offset = first.offset,
            size = static_cast<std::size_t>(range.size())] {
        auto copy = std::make_shared<std::string>();
        copy->reserve(size + offset);
        for (auto& piece : pieces)
            copy->append(piece.bytes());
        return String::adopting(copy, std::string_view(*copy).substr(offset, size));
    };
}

std::string TextBuffer::text(TextRange range) const
{
    std::string copy;
    copy.reserve(static_cast<std::size_t>(range.size()));
    for (auto at = range.start; at < range.end;) {
        auto chunk = chunkAt(at).substr(0, static_cast<std::size_t>(range.end - at));
        copy.append(chunk);
        at = at + std::ssize(chunk);
    }
    return copy;
}

std::optional<std::string_view> TextBuffer::contiguous(TextRange range) const
{
    if (range.isEmpty())
        return std::string_view();
    auto [piece, offset] = pieces_.find(range.start);
    auto bytes = pieces_[piece].bytes().substr(offset);
    auto size = static_cast<std::size_t>(range.size());
    auto together = bytes.size();
    while (together < size && pieces_[piece + 1].bytes().data() == bytes.data() + together)
        together += pieces_[++piece].bytes().size();
    if (together < size)
        return std::nullopt;
    return std::string_view(bytes.data(), size);
}

std::string_view TextBuffer::view(TextRange range, std::string& scratch) const
{
    if (auto bytes = contiguous(range))
        return *bytes;
    scratch = text(range);
    return scratch;
}

std::string_view TextBuffer::chunkAt(Utf8Offset offset) const
{
    auto [piece, inside] = pieces_.find(offset);
    return piece == pieces_.size() ? std::string_view() : pieces_[piece].bytes().substr(inside);
}

// --- Lines ---------------------------------------------------------------------------------------

Utf8Offset TextBuffer::lineStart(LineNumber line) const
{
    precondition(line.value >= 0 && line.value < lineCount(), "a line number is inside the text");
    if (line.value == 0)
        return {0};
    auto piece = pieces_.pieceOfLineEnd(line.value);
    // The second half of a cut line end is counted in the piece before.
    auto ordinal = line.value - pieces_.lineEndsBefore(piece) + pieces_.cutsLineEnd(piece);
    auto bytes = pieces_[piece].bytes();
    auto inside = afterLineEnd(bytes, ordinal);
    precondition(inside != std::string_view::npos, "a piece holds the line ends that it counts");
    auto start = pieces_.start(piece) + static_cast<std::int64_t>(inside);
    return inside == bytes.size() && pieces_.cutsLineEnd(piece + 1) ? start + 1 : start;
}

TextRange TextBuffer::lineRange(LineNumber line) const
{
    auto next = line + 1;
    return {lineStart(line), next.value < lineCount() ? lineStart(next) : end()};
}

LineNumber TextBuffer::lineContaining(Utf8Offset offset) const
{
    auto [piece, inside] = pieces_.find(offset);
    auto lines = pieces_.lineEndsBefore(piece);
    if (piece < pieces_.size())
        lines += countLineEnds(pieces_[piece].bytes(), inside);
    // The "\r" before the piece is counted already: its "\n" is not another line end, and a place before that is
    // still in the line.
    lines -= pieces_.cutsLineEnd(piece);
    if constexpr (provesCaches) {
        static SelfCheck check;
        if (check.isDue()) {
            LineNumber line{lines};
            precondition(lineStart(line) <= offset
                             && (lines + 1 == lineCount() || lineStart(line + 1) > offset),
                         "the line index agrees with itself");
        }
    }
    return {lines};
}

int TextBuffer::lineEndSize(TextRange range) const
{
    if (range.isEmpty())
        return 0;
    auto last = byteAt(range.end - 1);
    if (last == '\n')
        return range.size() > 1 && byteAt(range.end - 2) == '\r' ? 2 : 1;
    return last == '\r' ? 1 : 0;
}

// --- UTF-16 --------------------------------------------------------------------------------------

Utf16Offset TextBuffer::utf16Offset(Utf8Offset offset) const
{
    auto [piece, inside] = pieces_.find(offset);
    auto units = pieces_.utf16UnitsBefore(piece);
    if (piece < pieces_.size()) {
        auto& at = pieces_[piece];
        units +=
            at.isASCII() ? static_cast<std::int64_t>(inside) : countUtf16Units(at.bytes().substr(0, inside));
    }
    return {units};
}

Utf8Offset TextBuffer::utf8Offset(Utf16Offset offset) const
{
    auto piece = pieces_.pieceOfUtf16Unit(std::max<std::int64_t>(offset.value, 0));
    if (piece == pieces_.size())
        return end();
    auto& at = pieces_[piece];
    auto unit = std::max<std::int64_t>(offset.value, 0) - pieces_.utf16UnitsBefore(piece);
    auto inside = at.isASCII() ? static_cast<std::size_t>(unit) : offsetOfUtf16Unit(at.bytes(), unit);
    return pieces_.start(piece) + static_cast<std::int64_t>(inside);
}

// --- Editing -------------------------------------------------------------------------------------

TextEdit TextBuffer::replace(TextRange range, std::string_view text)
{
    return splice(range, storage_->keep(text));
}

TextEdit TextBuffer::replaceSharing(TextRange range, const String& text)
{
    // A small text is copied: kept alone, it would keep all that it is a part of.
    constexpr std::size_t worthSharing = 64 * 1024;
    return splice(range, text.size() < worthSharing ? storage_->keep(text.utf8()) : storage_->keep(text));
}

TextEdit TextBuffer::splice(TextRange range, std::string_view kept)
{
    auto pieces = cutIntoPieces(kept);
    auto removed = pieces_.splice(range, pieces);
    TextEdit edit{range.start, std::move(removed), std::move(pieces), range.size(), std::ssize(kept)};
    auto border = pieces_.find(range.start + edit.insertedSize);
    if (border.offset == 0)
        pieces_.join(border.piece);
    if (auto start = pieces_.find(range.start); start.offset == 0)
        pieces_.join(start.piece);
    isFlatValid_ = false;
    flat_ = {};
    return edit;
}

void TextBuffer::apply(const TextEdit& edit)
{
    pieces_.splice({edit.at, edit.at + edit.removedSize}, edit.inserted);
    isFlatValid_ = false;
    flat_ = {};
}

} // namespace platform
