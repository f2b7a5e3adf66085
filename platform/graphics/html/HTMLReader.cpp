// SPDX-License-Identifier: MIT
// The library reads HTML into paragraphs of formatted pieces. It would also open the pictures and style sheets
// that a document names: here it gets nothing for any of them.
#include "platform/graphics/html/HTMLReader_p.h"

#include "platform/foundation/NSMutableAttributedString.h"
#include "platform/graphics/GraphicsRuntime.h"
#include "platform/graphics/UIColor.h"
#include "platform/graphics/UIFont.h"
#include "platform/graphics/rtf/RTFLink_p.h"

#include <QtCore/QVariant>
#include <QtGui/QGuiApplication>
#include <QtGui/QPalette>
#include <QtGui/QTextBlock>
#include <QtGui/QTextDocument>
#include <QtGui/QTextList>

#include <algorithm>
#include <iterator>

namespace platform {

namespace {

constexpr CGFloat ordinarySize = 12; // points
constexpr CGFloat pixelsPerTypographicPoint = 96.0 / 72.0;

class IsolatedDocument final : public QTextDocument {
public:
    QVariant loadResource(int, const QUrl&) override { return {}; }
};

CGFloat sizeOf(const QTextCharFormat& format)
{
    auto size = ordinarySize;
    if (format.hasProperty(QTextFormat::FontPixelSize))
        size = format.intProperty(QTextFormat::FontPixelSize);
    else if (format.hasProperty(QTextFormat::FontPointSize))
        size = format.doubleProperty(QTextFormat::FontPointSize) * pixelsPerTypographicPoint;
    if (!format.hasProperty(QTextFormat::FontSizeAdjustment))
        return size;
    // From x-small to xxx-large, as the library draws them; headings have such sizes.
    constexpr CGFloat scales[] = {0.7, 0.8, 1.0, 1.2, 1.5, 2.0, 2.4};
    auto step = std::clamp(format.intProperty(QTextFormat::FontSizeAdjustment) + 2, 0,
                           static_cast<int>(std::size(scales)) - 1);
    return size * scales[step];
}

FontWeight weightOf(const QTextCharFormat& format)
{
    constexpr FontWeight weights[] = {FontWeight::ultraLight, FontWeight::ultraLight, FontWeight::thin,
                                      FontWeight::light,      FontWeight::regular,    FontWeight::medium,
                                      FontWeight::semibold,   FontWeight::bold,       FontWeight::heavy,
                                      FontWeight::black};
    if (!format.hasProperty(QTextFormat::FontWeight))
        return FontWeight::regular;
    return weights[std::clamp(format.fontWeight() / 100, 0, static_cast<int>(std::size(weights)) - 1)];
}

UIFont fontOf(const QTextCharFormat& format)
{
    auto font = UIFont::systemFont(sizeOf(format), weightOf(format));
    auto families = format.fontFamilies().toStringList();
    auto isMonospaced = [](const QString& family) {
        return family.compare(QStringLiteral("monospace"), Qt::CaseInsensitive) == 0
            || family.startsWith(QStringLiteral("courier"), Qt::CaseInsensitive);
    };
    if (format.fontFixedPitch() || std::ranges::any_of(families, isMonospaced))
        font = font.withDesign(FontDesign::monospaced);
    auto family = families.isEmpty() ? std::string() : families.first().toStdString();
    // The generic names are what a design is.
    if (family != "monospace" && family != "sans-serif")
        font = font.withFamily(family);
    return format.fontItalic() ? font.italic() : font;
}

UIColor colorOf(const QBrush& brush)
{
    auto color = brush.color();
    return {color.redF(), color.greenF(), color.blueF(), color.alphaF()};
}

TextAttributes attributesOf(const QTextCharFormat& format)
{
    TextAttributes attributes{{std::string(NSFontAttributeName), fontOf(format)}};
    auto link = linkValue(format.anchorHref().toStdString());
    if (link)
        attributes.set(NSLinkAttributeName, *link);
    // The library gives links the colour of the person's own theme, which is not the document's.
    auto isThemeColor = link && format.foreground() == QGuiApplication::palette().brush(QPalette::Link);
    if (format.hasProperty(QTextFormat::ForegroundBrush) && !isThemeColor)
        attributes.set(NSForegroundColorAttributeName, colorOf(format.foreground()));
    if (format.hasProperty(QTextFormat::BackgroundBrush) && format.background().style() != Qt::NoBrush)
        attributes.set(NSBackgroundColorAttributeName, colorOf(format.background()));
    if (format.fontUnderline() || format.underlineStyle() == QTextCharFormat::SingleUnderline)
        attributes.set(NSUnderlineStyleAttributeName, NSUnderlineStyle::single);
    if (format.fontStrikeOut())
        attributes.set(NSStrikethroughStyleAttributeName, NSUnderlineStyle::single);
    if (format.verticalAlignment() == QTextCharFormat::AlignSuperScript)
        attributes.set(NSSuperscriptAttributeName, 1);
    else if (format.verticalAlignment() == QTextCharFormat::AlignSubScript)
        attributes.set(NSSuperscriptAttributeName, -1);
    return attributes;
}

// What stands before an item of a list: as the platform has it, a sign between two tabulators.
std::string markerOf(const QTextBlock& block)
{
    auto* list = block.textList();
    if (!list)
        return {};
    auto isNumbered = list->format().style() <= QTextListFormat::ListDecimal;
    auto sign = isNumbered ? list->itemText(block).toStdString() : std::string("•");
    return std::string(static_cast<std::size_t>(std::clamp(list->format().indent(), 1, 32)), '\t') + sign
        + "\t";
}

// Halves of characters, which a document may name by their numbers, become U+FFFD.
String textOf(QString text)
{
    for (qsizetype at = text.isValidUtf16() ? text.size() : 0; at < text.size(); ++at) {
        auto isPair = text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
        if (isPair)
            ++at;
        else if (text[at].isSurrogate())
            text[at] = QChar::ReplacementCharacter;
    }
    return text.toUtf8().toStdString();
}

} // namespace

NSAttributedString readHTML(std::string_view html)
{
    startGraphics(DisplayMode::offscreen);
    IsolatedDocument document;
    document.setUndoRedoEnabled(false);
    document.setHtml(QString::fromUtf8(html.data(), static_cast<qsizetype>(html.size())));
    NSMutableAttributedString all;
    for (auto block = document.begin(); block.isValid(); block = block.next()) {
        auto ordinary = attributesOf(block.charFormat());
        if (block != document.begin())
            all.append(NSAttributedString("\n", ordinary));
        if (auto marker = markerOf(block); !marker.empty())
            all.append(NSAttributedString(marker, ordinary));
        for (auto piece = block.begin(); !piece.atEnd(); ++piece) {
            auto fragment = piece.fragment();
            all.append(NSAttributedString(textOf(fragment.text()), attributesOf(fragment.charFormat())));
        }
    }
    return all;
}

} // namespace platform
