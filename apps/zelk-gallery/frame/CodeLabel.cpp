// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/CodeLabel.h"

#include "apps/zelk-gallery/frame/CodeView.h"
#include "apps/zelk-gallery/frame/tokens.h"

#include "platform/graphics/CGContext.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace gallery {

using namespace platform;

namespace {

UIColor colorOf(TokenKind kind)
{
    switch (kind) {
    case TokenKind::keyword:
        return UIColor::dynamic({0.61, 0.14, 0.58}, {0.99, 0.43, 0.70});
    case TokenKind::type:
        return UIColor::dynamic({0.11, 0.35, 0.62}, {0.45, 0.78, 0.98});
    case TokenKind::text:
        return UIColor::dynamic({0.72, 0.16, 0.12}, {0.99, 0.48, 0.42});
    case TokenKind::number:
        return UIColor::dynamic({0.13, 0.24, 0.80}, {0.85, 0.79, 0.49});
    case TokenKind::comment:
        return UIColor::secondaryLabel();
    case TokenKind::plain:
        break;
    }
    return UIColor::label();
}

} // namespace

CodeLabel::CodeLabel()
{
    setUserInteractionEnabled(false);
    accessibility().role = AccessibilityRole::staticText;
}

void CodeLabel::setCode(std::string_view code)
{
    if (code.data() == code_.data() && code.size() == code_.size())
        return;
    code_ = code;
    accessibility().label = std::string(code);
    arrange();
}

void CodeLabel::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIView::traitCollectionDidChange(previous);
    arrange();
}

CGSize CodeLabel::sizeThatFits(CGSize) const
{
    return size_;
}

void CodeLabel::arrange()
{
    const auto& traits = traitCollection();
    auto font = UIFont::preferredFont(FontTextStyle::caption1, traits.preferredContentSizeCategory,
                                      traits.textScale, FontDesign::monospaced);
    auto height = std::round(font.lineHeight() * 1.3);
    words_.clear();
    size_ = {};
    for (auto rest = code_; !rest.empty();) {
        auto line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        CGFloat x = 0;
        for (auto [kind, word] : tokens(line)) {
            TextLayout layout(word, {.font = font, .baseDirection = BaseDirection::leftToRight});
            auto width = layout.size().width;
            if (word.find_first_not_of(' ') != std::string_view::npos)
                words_.push_back({std::move(layout), {x, size_.height}, colorOf(kind)});
            x += width;
        }
        size_.width = std::max(size_.width, std::ceil(x));
        size_.height += height;
    }
    invalidateIntrinsicContentSize();
    setNeedsDisplay();
}

void CodeLabel::draw(CGContext& context, CGRect dirty)
{
    for (const auto& word : words_) {
        if (word.place.y < dirty.maxY() && word.place.y + word.layout.size().height > dirty.minY())
            word.layout.draw(context, word.place, word.color);
    }
}

void CodeView::update(CodeLabel& label) const
{
    label.setCode(code);
}

} // namespace gallery
