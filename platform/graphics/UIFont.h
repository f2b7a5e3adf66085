// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIContentSizeCategory.h"

#include <memory>
#include <string>
#include <string_view>

namespace platform {

enum class FontWeight { ultraLight, thin, light, regular, medium, semibold, bold, heavy, black };
enum class FontDesign { standard, monospaced };
enum class FontSlant { upright, italic };

// What a text is for; the person's text-size setting gives it a size.
enum class FontTextStyle {
    largeTitle,
    title1,
    title2,
    title3,
    headline,
    body,
    callout,
    subheadline,
    footnote,
    caption1,
    caption2
};

struct FontFace; // the font as the shaping library has it, with its metrics

// A font, as a value: design, size in points, weight, slant, and a family if one was asked for. Which family
// is really drawn depends on what is installed; characters that it lacks come from whatever font has them. Metrics are looked up at first use
// and start graphics off-screen when nothing has. Main thread only.
class UIFont {
public:
    // The body font at the default text size.
    UIFont();
    // A size that is not a positive number counts as 1, one above 2000 as 2000. Glyphs are drawn at the
    // nearest whole size.
    static UIFont systemFont(CGFloat size, FontWeight weight = FontWeight::regular);
    static UIFont monospacedSystemFont(CGFloat size, FontWeight weight = FontWeight::regular);
    static UIFont boldSystemFont(CGFloat size) { return systemFont(size, FontWeight::bold); }
    // `textScale` is the desktop's own text scaling, on top of the category.
    static UIFont preferredFont(FontTextStyle style,
                                UIContentSizeCategory category = UIContentSizeCategory::large,
                                CGFloat textScale = 1, FontDesign design = FontDesign::standard);

    FontDesign design() const { return design_; }
    // The family asked for; empty for the family of the design.
    std::string_view familyName() const { return family_ ? std::string_view(*family_) : std::string_view(); }
    FontWeight weight() const { return weight_; }
    FontSlant slant() const { return slant_; }
    bool isItalic() const { return slant_ == FontSlant::italic; }
    CGFloat pointSize() const { return size_; }

    // Distances from the baseline, both positive, in points.
    CGFloat ascender() const;
    CGFloat descender() const;
    // From baseline to baseline: ascender, descender and the gap that the font asks for.
    CGFloat lineHeight() const;
    CGFloat xHeight() const;
    CGFloat capHeight() const;
    // The advance of the digit 0: in a monospaced font, of every narrow character.
    CGFloat columnWidth() const;

    UIFont withSize(CGFloat size) const;
    UIFont withWeight(FontWeight weight) const;
    UIFont withDesign(FontDesign design) const;
    // The design is what stands in where the family is not installed. Empty: the family of the design.
    UIFont withFamily(std::string_view family) const;
    UIFont italic() const;
    UIFont bold() const { return withWeight(FontWeight::bold); }

    friend bool operator==(const UIFont& a, const UIFont& b)
    {
        return a.size_ == b.size_ && a.design_ == b.design_ && a.weight_ == b.weight_ && a.slant_ == b.slant_
            && a.familyName() == b.familyName();
    }

    // The shared face; never null. For the drawing code.
    const std::shared_ptr<const FontFace>& face() const;

private:
    using Family = std::shared_ptr<const std::string>;

    UIFont(FontDesign design, CGFloat size, FontWeight weight, FontSlant slant, Family family = nullptr);

    FontDesign design_ = FontDesign::standard;
    FontWeight weight_ = FontWeight::regular;
    FontSlant slant_ = FontSlant::upright;
    CGFloat size_ = 17;
    Family family_;                                // null: the design's
    mutable std::shared_ptr<const FontFace> face_; // looked up at first use
};

// The platform's text-size table. The size is in points, before the desktop's own text scaling.
CGFloat preferredPointSize(FontTextStyle style, UIContentSizeCategory category);
FontWeight preferredWeight(FontTextStyle style);

} // namespace platform
