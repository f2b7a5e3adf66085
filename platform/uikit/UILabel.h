// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/TextLayout.h"
#include "platform/uikit/UIView.h"

#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

// A text that is shown, not edited or selected. LF, CR and CR LF begin a new line. The text stands in the middle of
// the view's height. Main thread only.
class UILabel : public UIView {
public:
    UILabel();
    explicit UILabel(CGRect frame);
    ~UILabel() override;

    const std::string& text() const { return text_; }
    void setText(std::string text); // UTF-8; bytes that are not show as U+FFFD
    const UIFont& font() const { return font_; }
    void setFont(UIFont font);
    // A font for this purpose in the text size of the surroundings; it follows when that changes.
    void setPreferredFont(FontTextStyle style, FontDesign design = FontDesign::standard);
    const UIColor& textColor() const { return textColor_; }
    void setTextColor(UIColor color); // default: label
    // Natural: where the text's own direction begins, the view's for a text without one.
    TextAlignment textAlignment() const { return textAlignment_; }
    void setTextAlignment(TextAlignment alignment);
    int numberOfLines() const { return numberOfLines_; }
    void setNumberOfLines(int lines); // default 1; 0 or less: as many as it takes
    LineBreak lineBreak() const { return lineBreak_; }
    void setLineBreak(LineBreak lineBreak); // default: the end is truncated
    // The width at which a text of several lines wraps to tell its intrinsic size; 0: its present width.
    CGFloat preferredMaxLayoutWidth() const { return preferredMaxLayoutWidth_; }
    void setPreferredMaxLayoutWidth(CGFloat width);
    bool isTruncated() const; // in its present bounds
    // Distances of the first and the last baseline from the top of the text when it is set that wide.
    struct Baselines {
        CGFloat first = 0;
        CGFloat last = 0;
    };
    Baselines baselines(CGFloat width) const;

    void draw(CGContext& context, CGRect dirty) override;
    void layoutSubviews() override;
    CGSize sizeThatFits(CGSize available) const override;
    CGSize intrinsicContentSize() const override;
    CGFloat firstBaselineOffset() const override;
    CGFloat lastBaselineOffset() const override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    AccessibilityProperties accessibilityNow() const override;

private:
    // The text at one width, a layout a paragraph. The layouts of labels that were not asked for long are let go, so that a
    // thousand of them off the screen cost little; their sizes stay.
    struct Shaped {
        struct Paragraph {
            TextLayout layout;
            CGFloat y = 0;
        };
        CGFloat width = 0; // asked for
        int maxLines = 0;
        UIUserInterfaceLayoutDirection direction{};
        CGSize size;
        bool isTruncated = false;
        std::vector<Paragraph> paragraphs;
    };
    const Shaped& shaped(CGFloat width, int maxLines) const;
    Shaped& remembered(CGFloat width, int maxLines) const; // with or without its layouts
    Shaped shape(CGFloat width, int maxLines) const;
    const Shaped& shapedInBounds() const;
    void contentChanged();
    BaseDirection baseDirection(std::string_view paragraph) const;

    std::string text_;
    UIFont font_;
    std::optional<FontTextStyle> fontStyle_;
    FontDesign fontDesign_ = FontDesign::standard;
    UIColor textColor_;
    TextAlignment textAlignment_ = TextAlignment::natural;
    LineBreak lineBreak_ = LineBreak::truncateTail;
    int numberOfLines_ = 1;
    CGFloat preferredMaxLayoutWidth_ = 0;
    CGFloat wrappedWidth_ = 0;          // that the intrinsic size was last told for
    mutable std::vector<Shaped> cache_; // the last few widths asked for, newest first
    class Recent;
    mutable std::optional<std::list<const UILabel*>::iterator> recent_; // among those that have layouts
};

} // namespace platform
