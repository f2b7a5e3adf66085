// SPDX-License-Identifier: MIT
// The shaping library answers for carets: one place for an offset. Where runs meet, two places belong to one
// offset, and which of them it gives depends on more than the direction. So the characters of a line of mixed
// direction are measured by their glyphs.
#include "platform/graphics/TextLayout_p.h"

#include <QtGui/QGlyphRun>
#include <QtGui/QRawFont>

#include <algorithm>

namespace platform {

namespace {

struct InkBox {
    CGFloat left;
    CGFloat right;
    bool isRightToLeft;
};

// Direction marks, joiners and the like. The Arabic signs that stand under a number are of the same category
// and visible.
bool isInvisible(char32_t character)
{
    auto isArabicSign = (character >= 0x600 && character <= 0x605) || character == 0x6DD || character == 0x8E2
        || character == 0x70F;
    return QChar::category(character) == QChar::Other_Format && !isArabicSign;
}

bool isMark(char32_t character)
{
    auto category = QChar::category(character);
    return category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing;
}

// The glyphs drawn for some characters. For an invisible one the shaping library draws the font's space and
// moves on by nothing, in an order of its own, so spaces count only where the text has one.
std::vector<InkBox> visibleGlyphs(const QTextLine& line, int from, int length, bool hasSpace)
{
    std::vector<InkBox> glyphs;
    for (auto& run : line.glyphRuns(from, length)) {
        auto font = run.rawFont();
        auto positions = run.positions();
        auto indexes = run.glyphIndexes();
        auto advances = font.isValid() ? font.advancesForGlyphIndexes(indexes) : QList<QPointF>();
        // Boxes that stand for a script of which no font is installed.
        if (advances.size() != positions.size())
            return {};
        auto space = hasSpace ? QList<quint32>() : font.glyphIndexesForString(QStringLiteral(" "));
        for (qsizetype i = 0; i < positions.size(); ++i) {
            auto left = positions[i].x();
            if (space.isEmpty() || indexes[i] != space.front())
                glyphs.push_back({left, left + std::max(advances[i].x(), 0.0), run.isRightToLeft()});
        }
    }
    return glyphs;
}

// The place of what a person counts as one character, by its glyphs; nothing where there are none, as for a
// tab. Marks stand on their base and take no room, though their font may give them some: where each code
// point has a glyph they are left out. Fewer glyphs were put together, and the first stands for all; more
// were taken apart, and all of them count.
std::optional<InkBox> inkBox(const QTextLine& line, const QString& text, int from, int end)
{
    std::vector<char32_t> visible;
    for (auto character : text.mid(from, end - from).toUcs4()) {
        if (!isInvisible(character))
            visible.push_back(character);
    }
    if (visible.empty())
        return std::nullopt;
    auto isSpace = [](char32_t character) { return QChar::isSpace(character); };
    auto hasSpace = std::any_of(visible.begin(), visible.end(), isSpace);
    auto glyphs = visibleGlyphs(line, from, end - from, hasSpace);
    if (glyphs.empty())
        return std::nullopt;
    auto box = glyphs.front();
    for (std::size_t i = 1; i < glyphs.size() && glyphs.size() >= visible.size(); ++i) {
        if (glyphs.size() == visible.size() && isMark(visible[i]))
            continue;
        box.left = std::min(box.left, glyphs[i].left);
        box.right = std::max(box.right, glyphs[i].right);
    }
    return box;
}

// The characters of a ligature have one glyph and so one place; each gets an equal part of it.
void splitLigatures(std::vector<CharacterEdges>& edges)
{
    for (std::size_t begin = 0; begin < edges.size();) {
        auto whole = edges[begin];
        auto end = begin + 1;
        while (whole.left < whole.right && end < edges.size() && edges[end].left == whole.left
               && edges[end].right == whole.right)
            ++end;
        auto part = (whole.right - whole.left) / static_cast<CGFloat>(end - begin);
        for (auto i = begin; i < end && end - begin > 1; ++i) {
            auto place = static_cast<CGFloat>(whole.isRightToLeft ? end - 1 - i : i - begin);
            edges[i].left = whole.left + part * place;
            edges[i].right = edges[i].left + part;
        }
        begin = end;
    }
}

// What the carets say, where there are no glyphs to measure.
void measureByCarets(CharacterEdges& edge, const QTextLine& line, QChar character, int at, int next)
{
    auto leading = line.cursorToX(at);
    auto ownEnd = at;
    auto trailing = line.cursorToX(&ownEnd, QTextLine::Trailing);
    // A tab has the base's direction, so the place after it is its end.
    if (character == QLatin1Char('\t') || (leading == trailing && !isInvisible(character.unicode())))
        trailing = line.cursorToX(next);
    edge.left = std::min(leading, trailing);
    edge.right = std::max(leading, trailing);
}

} // namespace

std::vector<CharacterEdges> measureCharacters(const QTextLayout& layout, const QTextLine& line,
                                              bool baseIsRightToLeft,
                                              const std::function<std::size_t(qsizetype)>& byteOf)
{
    std::vector<CharacterEdges> result;
    auto shown = layout.text();
    auto end = line.textStart() + line.textLength();
    for (auto at = line.textStart(); at < end;) {
        auto next = std::min(layout.nextCursorPosition(at), end);
        if (next <= at)
            break;
        CharacterEdges edge{{byteOf(at), byteOf(next)}, 0, 0, baseIsRightToLeft};
        if (auto box = inkBox(line, shown, at, next)) {
            edge.left = box->left;
            edge.right = box->right;
            edge.isRightToLeft = box->isRightToLeft;
        } else {
            measureByCarets(edge, line, shown[at], at, next);
        }
        result.push_back(edge);
        at = next;
    }
    splitLigatures(result);
    return result;
}

} // namespace platform
