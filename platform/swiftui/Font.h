// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIFont.h"

#include <optional>

namespace platform {

// A font as a wish: a text style or a size, with what was changed of it. It becomes a real font where it is shown, in the
// text size of that place. A plain value.
class Font {
public:
    static Font system(FontTextStyle style) { return Font(style, 0); }
    static Font system(CGFloat size) { return Font(std::nullopt, size); } // points; no text size changes it
    static Font largeTitle() { return system(FontTextStyle::largeTitle); }
    static Font title() { return system(FontTextStyle::title1); }
    static Font title2() { return system(FontTextStyle::title2); }
    static Font title3() { return system(FontTextStyle::title3); }
    static Font headline() { return system(FontTextStyle::headline); }
    static Font body() { return system(FontTextStyle::body); }
    static Font callout() { return system(FontTextStyle::callout); }
    static Font subheadline() { return system(FontTextStyle::subheadline); }
    static Font footnote() { return system(FontTextStyle::footnote); }
    static Font caption() { return system(FontTextStyle::caption1); }
    static Font caption2() { return system(FontTextStyle::caption2); }

    Font monospaced() const
    {
        auto changed = *this;
        changed.design_ = FontDesign::monospaced;
        return changed;
    }
    Font weight(FontWeight weight) const
    {
        auto changed = *this;
        changed.weight_ = weight;
        return changed;
    }
    Font bold() const { return weight(FontWeight::bold); }
    Font italic() const
    {
        auto changed = *this;
        changed.isItalic_ = true;
        return changed;
    }

    UIFont resolved(UIContentSizeCategory category, double textScale) const
    {
        auto font = style_ ? UIFont::preferredFont(*style_, category, textScale) : UIFont::systemFont(size_);
        font = font.withDesign(design_);
        if (weight_)
            font = font.withWeight(*weight_);
        return isItalic_ ? font.italic() : font;
    }

    bool operator==(const Font&) const = default;

private:
    Font(std::optional<FontTextStyle> style, CGFloat size)
        : style_(style)
        , size_(size)
    {
    }

    std::optional<FontTextStyle> style_;
    CGFloat size_;
    FontDesign design_ = FontDesign::standard;
    std::optional<FontWeight> weight_;
    bool isItalic_ = false;
};

} // namespace platform
