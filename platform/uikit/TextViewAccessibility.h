// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIAccessibility.h"
#include "platform/uikit/text/TextOffsets.h"

namespace platform {

class UITextView;

// A text view's text as assistive technology asks for it: each answer reads only the part that is asked for.
// Owned by the text view, which outlives it. Main thread only.
class TextViewAccessibility final : public AccessibleText {
public:
    explicit TextViewAccessibility(UITextView& view)
        : view_(view)
    {
    }

    std::size_t characterCount() const override;
    std::u16string text(Range range) const override;
    std::size_t caretOffset() const override;
    void setCaretOffset(std::size_t offset) override;
    Range selection() const override;
    void setSelection(Range range) override;
    // A line is a row on screen, a paragraph ends at a line end.
    Range rangeAround(std::size_t offset, Boundary boundary) const override;
    CGRect characterRect(std::size_t offset) const override;
    std::optional<std::size_t> offsetAt(CGPoint windowPoint) const override;
    void scrollTo(Range range) override;

private:
    Utf8Offset toUtf8(std::size_t offset) const;
    std::size_t fromUtf8(Utf8Offset offset) const;
    Range fromUtf8(TextRange range) const;
    TextRange rowAround(Utf8Offset offset) const;

    UITextView& view_;
};

} // namespace platform
