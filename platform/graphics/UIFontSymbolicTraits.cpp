// SPDX-License-Identifier: MIT
#include "platform/graphics/UIFontSymbolicTraits.h"

#include "platform/graphics/UIFont_p.h"

#include <QtCore/QStringList>
#include <QtGui/QFontDatabase>
#include <QtGui/QFontInfo>

#include <algorithm>

namespace platform {

std::optional<UIFont> fontWithSymbolicTraits(const UIFont& font, UIFontSymbolicTraits traits)
{
    bool isBold = contains(traits, UIFontSymbolicTraits::bold);
    bool isItalic = contains(traits, UIFontSymbolicTraits::italic);
    auto found = UIFont::systemFont(font.pointSize(), isBold ? FontWeight::bold : FontWeight::regular)
                     .withDesign(font.design());
    if (isItalic)
        found = found.italic();
    auto family = QFontInfo(qFont(found)).family();
    auto styles = QFontDatabase::styles(family);
    bool exists = std::ranges::any_of(styles, [&](const QString& style) {
        return QFontDatabase::bold(family, style) == isBold
            && QFontDatabase::italic(family, style) == isItalic;
    });
    return exists ? std::optional(found) : std::nullopt;
}

} // namespace platform
