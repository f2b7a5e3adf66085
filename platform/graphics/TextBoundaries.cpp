// SPDX-License-Identifier: MIT
// A boundary is searched in a window around the offset, which grows while its edge may have decided the
// answer. A window begins where a character certainly begins: at an ASCII character or a letter, which
// nothing before them can join.
#include "platform/graphics/TextBoundaries.h"

#include "platform/graphics/Utf16Text_p.h"
#include "platform/graphics/Utf8Decoder_p.h"

#include <QtCore/QTextBoundaryFinder>

#include <algorithm>

namespace platform {

namespace {

constexpr std::size_t graphemeReach = 4 * 1024;
constexpr std::size_t wordReach = 16 * 1024;

bool isPrintableASCII(char byte)
{
    return byte >= 0x20 && byte < 0x7F;
}

// Whether a character certainly begins with `character`. Letters do in scripts that do not build syllables
// of several letters, and no others are needed: spaces are near in those.
bool surelyBegins(char32_t character)
{
    if (character < 0x80)
        return character >= 0x20 && character < 0x7F;
    auto isSimpleScript = character < 0x900 || (character >= 0x1E00 && character < 0x2000)
        || (character >= 0x3041 && character < 0xA000);
    auto category = QChar::category(character);
    return isSimpleScript
        && (category == QChar::Letter_Lowercase || category == QChar::Letter_Uppercase
            || category == QChar::Letter_Other);
}

// Where to begin looking so as to see `offset` in its context: before it, at most `reach` bytes back.
std::size_t windowStart(std::string_view text, std::size_t offset, std::size_t reach)
{
    auto limit = offset > reach ? offset - reach : 0;
    auto at = offset;
    while (at > limit) {
        at = characterStart(text, at - 1);
        auto decoded = decodeCharacter(text, at);
        if (decoded.isWellFormed && surelyBegins(decoded.character))
            return at;
    }
    return at;
}

// The beginning of the character that ends after `offset`, or at it when `offset` is between two.
// Requires: offset < text.size(), at the beginning of a sequence.
std::size_t startOfGraphemeAt(std::string_view text, std::size_t offset)
{
    auto begin = windowStart(text, offset, graphemeReach);
    // The character at `offset` belongs to the window, since it decides whether a boundary is before it.
    auto end = offset + decodeCharacter(text, offset).length;
    Utf16Text window(text.substr(begin, end - begin));
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, window.string());
    auto local = window.utf16Of(offset - begin);
    finder.setPosition(local);
    if (!finder.isAtBoundary())
        local = std::max(finder.toPreviousBoundary(), qsizetype(0));
    return begin + window.byteOf(local);
}

struct WordWindow {
    std::size_t begin;
    std::size_t end;
    Utf16Text text;
    QTextBoundaryFinder finder;

    WordWindow(std::string_view whole, std::size_t from, std::size_t to)
        : begin(from)
        , end(to)
        , text(whole.substr(from, to - from))
        , finder(QTextBoundaryFinder::Word, text.string())
    {
    }
};

// Gives `search` ever larger windows around `offset` until it finds something that the window's edges did
// not decide, or the window has its full size.
template <class Search>
auto searchWords(std::string_view text, std::size_t offset, Search search)
{
    for (std::size_t reach = 128;; reach *= 8) {
        auto isLast = reach >= wordReach;
        reach = std::min(reach, wordReach);
        auto begin = offset > reach ? characterStart(text, offset - reach) : 0;
        auto end = text.size() - offset > reach ? characterStart(text, offset + reach) : text.size();
        WordWindow window(text, begin, end);
        auto found = search(window);
        auto touchesBegin = begin > 0 && found.begin <= begin;
        auto touchesEnd = end < text.size() && found.end >= end;
        if (isLast || !(touchesBegin || touchesEnd))
            return found;
    }
}

} // namespace

std::size_t nextGrapheme(std::string_view text, std::size_t offset)
{
    if (offset >= text.size())
        return text.size();
    // Two ASCII characters never join.
    if (isPrintableASCII(text[offset]) && (offset + 1 == text.size() || isPrintableASCII(text[offset + 1])))
        return offset + 1;
    offset = characterStart(text, offset);
    for (std::size_t reach = 64;; reach *= 8) {
        reach = std::min(reach, graphemeReach);
        auto end = text.size() - offset > reach ? characterStart(text, offset + reach) : text.size();
        Utf16Text window(text.substr(offset, end - offset));
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, window.string());
        auto next = finder.toNextBoundary();
        auto result = offset + window.byteOf(next < 0 ? window.string().size() : next);
        if (result < end || end == text.size() || reach == graphemeReach)
            return result;
    }
}

std::size_t graphemeStart(std::string_view text, std::size_t offset)
{
    if (offset >= text.size())
        return text.size();
    offset = characterStart(text, offset);
    if (isPrintableASCII(text[offset]) || offset == 0)
        return offset;
    return startOfGraphemeAt(text, offset);
}

std::size_t previousGrapheme(std::string_view text, std::size_t offset)
{
    offset = offset >= text.size() ? text.size() : characterStart(text, offset);
    if (offset == 0)
        return 0;
    if (isPrintableASCII(text[offset - 1]))
        return offset - 1;
    return startOfGraphemeAt(text, characterStart(text, offset - 1));
}

ByteRange wordRange(std::string_view text, std::size_t offset)
{
    if (text.empty())
        return {};
    offset = offset >= text.size() ? previousGrapheme(text, text.size()) : graphemeStart(text, offset);
    return searchWords(text, offset, [offset](WordWindow& window) {
        auto& finder = window.finder;
        auto at = window.text.utf16Of(offset - window.begin);
        finder.setPosition(at);
        auto start = finder.isAtBoundary() ? at : finder.toPreviousBoundary();
        finder.setPosition(at);
        auto end = finder.toNextBoundary();
        return ByteRange{window.begin + window.text.byteOf(std::max(start, qsizetype(0))),
                         window.begin + window.text.byteOf(end < 0 ? window.text.string().size() : end)};
    });
}

std::size_t nextWordEnd(std::string_view text, std::size_t offset)
{
    if (offset >= text.size())
        return text.size();
    offset = characterStart(text, offset);
    return searchWords(text, offset,
                       [offset](WordWindow& window) {
                           auto& finder = window.finder;
                           finder.setPosition(window.text.utf16Of(offset - window.begin));
                           auto at = finder.toNextBoundary();
                           while (at >= 0 && !(finder.boundaryReasons() & QTextBoundaryFinder::EndOfItem))
                               at = finder.toNextBoundary();
                           auto end = at < 0 ? window.end : window.begin + window.text.byteOf(at);
                           return ByteRange{offset, end};
                       })
        .end;
}

std::size_t previousWordStart(std::string_view text, std::size_t offset)
{
    offset = offset >= text.size() ? text.size() : characterStart(text, offset);
    if (offset == 0)
        return 0;
    return searchWords(text, offset,
                       [offset](WordWindow& window) {
                           auto& finder = window.finder;
                           finder.setPosition(window.text.utf16Of(offset - window.begin));
                           auto at = finder.toPreviousBoundary();
                           while (at >= 0 && !(finder.boundaryReasons() & QTextBoundaryFinder::StartOfItem))
                               at = finder.toPreviousBoundary();
                           auto begin = at < 0 ? window.begin : window.begin + window.text.byteOf(at);
                           return ByteRange{begin, offset};
                       })
        .begin;
}

} // namespace platform
