// SPDX-License-Identifier: MIT
#include "platform/graphics/UIFont_p.h"

#include "platform/graphics/GraphicsRuntime_p.h"

#include <QtCore/QStringList>
#include <QtGui/QFontMetricsF>

#include <array>
#include <map>
#include <string>
#include <tuple>
#include <utility>

namespace platform {

namespace {

// More faces than a program has at a time; an animated size must not fill the memory.
constexpr std::size_t cachedFaceCount = 64;

QFont::Weight qWeight(FontWeight weight)
{
    constexpr std::array weights{QFont::ExtraLight, QFont::Thin,      QFont::Light,
                                 QFont::Normal,     QFont::Medium,    QFont::DemiBold,
                                 QFont::Bold,       QFont::ExtraBold, QFont::Black};
    return weights[static_cast<std::size_t>(weight)];
}

// The generic name first: it is the person's own choice of a font, and costs no more than a real one. The
// others are for systems whose configuration does not map it.
QStringList families(FontDesign design)
{
    if (design == FontDesign::monospaced)
        return {QStringLiteral("monospace"), QStringLiteral("DejaVu Sans Mono"),
                QStringLiteral("Noto Sans Mono"), QStringLiteral("Liberation Mono")};
    return {QStringLiteral("sans-serif"), QStringLiteral("DejaVu Sans"), QStringLiteral("Noto Sans"),
            QStringLiteral("Liberation Sans")};
}

std::shared_ptr<const FontFace> makeFace(const UIFont& font)
{
    startGraphics(DisplayMode::offscreen);
    awaitFontConfiguration();
    auto face = std::make_shared<FontFace>();
    auto& q = face->font;
    auto names = families(font.design());
    if (auto family = font.familyName(); !family.empty())
        names.prepend(QString::fromUtf8(family.data(), static_cast<qsizetype>(family.size())));
    q.setFamilies(names);
    q.setStyleHint(font.design() == FontDesign::monospaced ? QFont::Monospace : QFont::SansSerif);
    // Grey edges look the same on every surface, under every transform and inside a layer.
    q.setStyleStrategy(
        static_cast<QFont::StyleStrategy>(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    // Snaps heights to pixels and leaves widths alone: sharp at one pixel a point, and the same columns at
    // every scale.
    q.setHintingPreference(QFont::PreferVerticalHinting);
    q.setWeight(qWeight(font.weight()));
    q.setItalic(font.isItalic());
    // The library takes whole pixels here and fractions only as typographic points of 1/72 inch, which it
    // converts at 96 (or the screen's) dots per inch; whole sizes are what the text-size table gives.
    q.setPixelSize(std::max(1, static_cast<int>(std::lround(font.pointSize()))));

    QFontMetricsF metrics(q);
    face->ascender = metrics.ascent();
    face->descender = metrics.descent();
    face->lineHeight = std::ceil(metrics.ascent() + metrics.descent() + std::max(0.0, metrics.leading()));
    face->xHeight = metrics.xHeight();
    face->capHeight = metrics.capHeight();
    face->columnWidth = metrics.horizontalAdvance(QLatin1Char('0'));
    return face;
}

CGFloat legalSize(CGFloat size)
{
    return size > 0 ? std::min(size, 2000.0) : 1;
}

} // namespace

UIFont::UIFont() = default;

UIFont::UIFont(FontDesign design, CGFloat size, FontWeight weight, FontSlant slant, Family family)
    : design_(design)
    , weight_(weight)
    , slant_(slant)
    , size_(legalSize(size))
    , family_(std::move(family))
{
}

UIFont UIFont::systemFont(CGFloat size, FontWeight weight)
{
    return {FontDesign::standard, size, weight, FontSlant::upright};
}

UIFont UIFont::monospacedSystemFont(CGFloat size, FontWeight weight)
{
    return {FontDesign::monospaced, size, weight, FontSlant::upright};
}

UIFont UIFont::preferredFont(FontTextStyle style, UIContentSizeCategory category, CGFloat textScale,
                             FontDesign design)
{
    auto scale = textScale > 0 && std::isfinite(textScale) ? textScale : 1;
    return {design, preferredPointSize(style, category) * scale, preferredWeight(style), FontSlant::upright};
}

const std::shared_ptr<const FontFace>& UIFont::face() const
{
    if (face_)
        return face_;
    using Key = std::tuple<CGFloat, FontDesign, FontWeight, FontSlant, std::string>;
    static std::map<Key, std::shared_ptr<const FontFace>> faces;
    Key key{size_, design_, weight_, slant_, std::string(familyName())};
    auto found = faces.find(key);
    if (found == faces.end()) {
        if (faces.size() >= cachedFaceCount)
            faces.clear();
        found = faces.emplace(key, makeFace(*this)).first;
    }
    face_ = found->second;
    return face_;
}

CGFloat UIFont::ascender() const
{
    return face()->ascender;
}

CGFloat UIFont::descender() const
{
    return face()->descender;
}

CGFloat UIFont::lineHeight() const
{
    return face()->lineHeight;
}

CGFloat UIFont::xHeight() const
{
    return face()->xHeight;
}

CGFloat UIFont::capHeight() const
{
    return face()->capHeight;
}

CGFloat UIFont::columnWidth() const
{
    return face()->columnWidth;
}

UIFont UIFont::withSize(CGFloat size) const
{
    return {design_, size, weight_, slant_, family_};
}

UIFont UIFont::withWeight(FontWeight weight) const
{
    return {design_, size_, weight, slant_, family_};
}

UIFont UIFont::withDesign(FontDesign design) const
{
    return {design, size_, weight_, slant_, family_};
}

UIFont UIFont::withFamily(std::string_view family) const
{
    return {design_, size_, weight_, slant_,
            family.empty() ? nullptr : std::make_shared<const std::string>(family)};
}

UIFont UIFont::italic() const
{
    return {design_, size_, weight_, FontSlant::italic, family_};
}

CGFloat preferredPointSize(FontTextStyle style, UIContentSizeCategory category)
{
    // Rows as FontTextStyle, columns as UIContentSizeCategory.
    static constexpr unsigned char sizes[][12] = {
        {31, 32, 33, 34, 36, 38, 40, 44, 48, 52, 56, 60}, // largeTitle
        {25, 26, 27, 28, 30, 32, 34, 38, 43, 48, 53, 58}, // title1
        {19, 20, 21, 22, 24, 26, 28, 34, 39, 44, 50, 56}, // title2
        {17, 18, 19, 20, 22, 24, 26, 31, 37, 43, 49, 55}, // title3
        {14, 15, 16, 17, 19, 21, 23, 28, 33, 40, 47, 53}, // headline
        {14, 15, 16, 17, 19, 21, 23, 28, 33, 40, 47, 53}, // body
        {13, 14, 15, 16, 18, 20, 22, 26, 32, 38, 44, 51}, // callout
        {12, 13, 14, 15, 17, 19, 21, 25, 30, 36, 42, 49}, // subheadline
        {12, 12, 12, 13, 15, 17, 19, 23, 27, 33, 38, 44}, // footnote
        {11, 11, 11, 12, 14, 16, 18, 22, 26, 32, 37, 43}, // caption1
        {11, 11, 11, 11, 13, 15, 17, 20, 24, 29, 34, 40}, // caption2
    };
    return sizes[static_cast<std::size_t>(style)][static_cast<std::size_t>(category)];
}

FontWeight preferredWeight(FontTextStyle style)
{
    return style == FontTextStyle::headline ? FontWeight::semibold : FontWeight::regular;
}

} // namespace platform
