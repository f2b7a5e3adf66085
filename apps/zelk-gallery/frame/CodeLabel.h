// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/TextLayout.h"
#include "platform/uikit/UIView.h"

#include <string_view>
#include <vector>

namespace gallery {

// Draws code line by line in a monospaced font, each kind of word in its colour. Code reads from left to right in every
// language.
class CodeLabel final : public platform::UIView {
public:
    CodeLabel();
    void setCode(std::string_view code); // outlives the view
    platform::CGSize sizeThatFits(platform::CGSize available) const override;
    platform::CGSize intrinsicContentSize() const override { return size_; }
    void draw(platform::CGContext& context, platform::CGRect dirty) override;
    void traitCollectionDidChange(const platform::UITraitCollection& previous) override;

private:
    struct Word {
        platform::TextLayout layout;
        platform::CGPoint place;
        platform::UIColor color;
    };
    void arrange();

    std::string_view code_;
    std::vector<Word> words_;
    platform::CGSize size_;
};

} // namespace gallery
