// SPDX-License-Identifier: MIT
#include "platform/graphics/TextLayout_p.h"

#include "platform/foundation/Precondition.h"
#include "platform/graphics/CGContextBackend_p.h"
#include "platform/graphics/UIFont_p.h"

#include <QtGui/QFontMetricsF>

#include <algorithm>

namespace platform {

namespace {

// Wider than the library can lay out, so never reached.
constexpr CGFloat widestLine = 16'000'000;

bool isLimited(CGFloat width)
{
    return width > 0 && width < widestLine;
}

// Signs for what has no ink or would upset the shaping. The control pictures are rare in fonts; a box says
// as much: something is here.
class Signs {
public:
    explicit Signs(const QFont& font)
        : font_(font)
    {
    }

    char16_t operator()(char32_t character)
    {
        if (character == '\t')
            return 0;
        if (character < 0x20)
            return picture(static_cast<char16_t>(0x2400 + character));
        if (character == 0x7F)
            return picture(0x2421);
        // The library draws a soft hyphen at the end of a text and nowhere else; an end may be cut off later.
        if (character == 0xAD)
            return 0x200B;
        auto needsSign = character <= 0x9F || character == 0x2028 || character == 0x2029
            || character == 0xFEFF || character == 0xFFFC;
        return needsSign ? box() : 0;
    }

private:
    char16_t picture(char16_t sign) { return QFontMetricsF(font_).inFontUcs4(sign) ? sign : box(); }
    char16_t box()
    {
        if (!box_)
            box_ = QFontMetricsF(font_).inFontUcs4(0x25AF) ? 0x25AF : 0xFFFD;
        return box_;
    }

    const QFont& font_;
    char16_t box_ = 0;
};

QTextOption textOption(const TextStyle& style, bool hasWidth)
{
    QTextOption option;
    if (style.lineBreak == LineBreak::none || !hasWidth)
        option.setWrapMode(QTextOption::ManualWrap);
    else
        option.setWrapMode(style.lineBreak == LineBreak::character
                               ? QTextOption::WrapAnywhere
                               : QTextOption::WrapAtWordBoundaryOrAnywhere);
    constexpr Qt::LayoutDirection directions[]{Qt::LayoutDirectionAuto, Qt::LeftToRight, Qt::RightToLeft};
    option.setTextDirection(directions[static_cast<int>(style.baseDirection)]);
    // The lines are placed by us, so that a line of unlimited width has a place too.
    option.setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setTabStopDistance(style.tabStop > 0 ? style.tabStop : 8 * style.font.columnWidth());
    return option;
}

Utf16Text checkedText(std::string_view utf8, const TextStyle& style)
{
    precondition(utf8.size() < (std::size_t(1) << 30), "a paragraph of a gigabyte was given to TextLayout");
    return Utf16Text(utf8, Signs(qFont(style.font)));
}

} // namespace

TextLayout::Shaped::Shaped(std::string_view utf8, const TextStyle& textStyle, CGFloat width)
    : style(textStyle)
    , text(checkedText(utf8, textStyle))
    , layout(shapedCopy(), qFont(textStyle.font))
{
    // Without this the glyphs are forgotten after the layout and shaped again by each drawing.
    layout.setCacheEnabled(true);
    layout.setTextOption(textOption(style, isLimited(width)));
    isRightToLeft = style.baseDirection == BaseDirection::rightToLeft
        || (style.baseDirection == BaseDirection::automatic && text.hasRightToLeft()
            && text.string().isRightToLeft());
    makeLines(width);
    if (style.lineBreak == LineBreak::truncateTail && style.maxLines > 0 && isLimited(width))
        truncate(width);
    placeLines(width);
}

// The library lets the spaces at a break hang over the line, which is right between words. Where lines are
// broken at any character, each has its column, so spaces are shaped as the kind that does not hang. Among
// right-to-left characters that kind would join numbers in another order.
QString TextLayout::Shaped::shapedCopy() const
{
    auto copy = text.string();
    if (style.lineBreak == LineBreak::character && !text.hasRightToLeft())
        copy.replace(QLatin1Char(' '), QChar(QChar::Nbsp));
    return copy;
}

void TextLayout::Shaped::makeLines(CGFloat width)
{
    if (isLimited(width) && style.font.design() == FontDesign::monospaced) {
        // As many columns as fit, and a little room, since the library counts ink that leans out of its
        // column as width.
        auto column = style.font.columnWidth();
        width = std::max(std::floor(width / column + 1e-6), 1.0) * column + 0.3 * column;
    }
    layout.beginLayout();
    // One more than shown tells whether something is left over.
    auto limit = style.maxLines > 0 ? style.maxLines + 1 : 0;
    while (limit == 0 || layout.lineCount() < limit) {
        auto line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(isLimited(width) ? width : widestLine);
    }
    layout.endLayout();
}

void TextLayout::Shaped::truncate(CGFloat width)
{
    if (layout.lineCount() <= style.maxLines)
        return;
    auto start = layout.lineAt(style.maxLines - 1).textStart();
    auto whole = layout.text();
    auto ending = QString(QChar(0x2026));
    auto fits = [&](qsizetype end) {
        QTextLayout trial(whole.mid(start, end - start) + ending, layout.font());
        auto option = layout.textOption();
        option.setWrapMode(QTextOption::ManualWrap);
        trial.setTextOption(option);
        trial.beginLayout();
        auto line = trial.createLine();
        line.setLineWidth(widestLine);
        trial.endLayout();
        return line.naturalTextWidth() <= width;
    };
    // The last line's text is the longest that can fit; what fits beside the ellipsis is a little less.
    auto low = qsizetype(start);
    auto high = qsizetype(layout.lineAt(style.maxLines - 1).textStart()
                          + layout.lineAt(style.maxLines - 1).textLength());
    while (low < high) {
        auto middle = low + (high - low + 1) / 2;
        if (fits(middle))
            low = middle;
        else
            high = middle - 1;
    }
    auto end = validPosition(low);
    while (end > start && whole[end - 1].isSpace())
        --end;

    auto shown = whole.left(end) + ending;
    // The last word, now short, would fit at the end of the line before.
    if (start > 0 && whole[start - 1].isSpace())
        shown[start - 1] = QChar::LineSeparator;
    cut = end;
    layout.setText(shown);
    makeLines(width);
}

void TextLayout::Shaped::placeLines(CGFloat width)
{
    auto& font = *style.font.face();
    auto shownLines = style.maxLines > 0 ? std::min(style.maxLines, layout.lineCount()) : layout.lineCount();
    auto align = style.alignment;
    if (align == TextAlignment::natural)
        align = isRightToLeft ? TextAlignment::right : TextAlignment::left;
    // A line of characters from other fonts may be higher; it never is lower, and a difference by rounding
    // does not count, so plain text has one height.
    auto baselineInLine = std::round(font.ascender + (font.lineHeight - font.ascender - font.descender) / 2);
    CGFloat y = 0;
    lines.reserve(static_cast<std::size_t>(shownLines));
    for (int i = 0; i < shownLines; ++i) {
        auto line = layout.lineAt(i);
        TextLine placed;
        placed.width = line.naturalTextWidth();
        auto room = isLimited(width) ? width - placed.width : 0;
        placed.x = align == TextAlignment::left ? 0 : align == TextAlignment::center ? room / 2 : room;
        auto descentInLine = font.lineHeight - baselineInLine;
        auto ascent = line.ascent() > baselineInLine + 1 ? std::ceil(line.ascent()) : baselineInLine;
        auto descent = line.descent() > descentInLine + 1 ? std::ceil(line.descent()) : descentInLine;
        placed.y = y;
        placed.height = ascent + descent;
        placed.baseline = y + ascent;
        placed.bytes = {byteOf(line.textStart()), byteOf(line.textStart() + line.textLength())};
        // In a line set from right to left what hangs over the end lies to the left of the ink.
        auto inkLeft = line.naturalTextRect().x() - line.x();
        line.setPosition({placed.x - inkLeft, placed.baseline - line.ascent()});
        y += placed.height;
        size.width = std::max(size.width, placed.width);
        lines.push_back(placed);
    }
    lines.back().bytes.end = text.byteCount();
    size.height = y;
    edges.resize(lines.size());
}

std::size_t TextLayout::Shaped::byteOf(qsizetype position) const
{
    return isTruncated() && position > cut ? text.byteCount() : text.byteOf(position);
}

qsizetype TextLayout::Shaped::positionOf(std::size_t byte) const
{
    auto position = text.utf16Of(byte);
    if (isTruncated() && position > cut)
        return byte >= text.byteCount() ? cut + 1 : cut;
    return validPosition(position);
}

qsizetype TextLayout::Shaped::validPosition(qsizetype position) const
{
    auto at = static_cast<int>(position);
    return layout.isValidCursorPosition(at) ? at : layout.previousCursorPosition(at);
}

TextLayout::TextLayout(std::string_view utf8, const TextStyle& style, CGFloat width)
    : shaped_(std::make_unique<Shaped>(utf8, style, width))
{
}

TextLayout::TextLayout(TextLayout&&) noexcept = default;
TextLayout& TextLayout::operator=(TextLayout&&) noexcept = default;
TextLayout::~TextLayout() = default;

CGSize TextLayout::size() const
{
    return shaped_->size;
}

const std::vector<TextLine>& TextLayout::lines() const
{
    return shaped_->lines;
}

bool TextLayout::isRightToLeft() const
{
    return shaped_->isRightToLeft;
}

bool TextLayout::isTruncated() const
{
    return shaped_->isTruncated() || shaped_->layout.lineCount() > static_cast<int>(shaped_->lines.size());
}

void TextLayout::draw(CGContext& context, CGPoint origin, const UIColor& color) const
{
    auto clip = context.clipBounds().offsetBy(-origin.x, -origin.y);
    if (clip.isEmpty())
        return;
    auto& painter = painterOf(context);
    painter.setPen(qColor(shaped_->style.color.value_or(color), context.appearance()));
    auto first = lineAt(clip.minY());
    // Ink may stand out of its line: accents upwards, tails downwards.
    first -= first > 0 ? 1 : 0;
    for (auto i = first; i < lines().size(); ++i) {
        auto& line = lines()[i];
        if (line.y - line.height > clip.maxY())
            break;
        shaped_->layout.lineAt(static_cast<int>(i)).draw(&painter, {origin.x, origin.y});
    }
}

} // namespace platform
