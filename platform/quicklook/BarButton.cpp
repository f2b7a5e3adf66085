// SPDX-License-Identifier: MIT
#include "platform/quicklook/BarButton.h"

#include "platform/graphics/CGContext.h"
#include "platform/uikit/UILabel.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat height = 26, symbolWidth = 28, disclosureWidth = 16, titleInset = 8;
constexpr CGFloat radius = 6, strokeWidth = 1.5, focusRingWidth = 2;

// In a square of 16 points around the origin.
UIBezierPath pathOf(BarSymbol symbol)
{
    UIBezierPath path;
    switch (symbol) {
    case BarSymbol::search:
        path.append(UIBezierPath::oval(CGRect::make(-6, -6, 9, 9)));
        path.moveTo({2, 2});
        path.addLine({6, 6});
        break;
    case BarSymbol::previous:
        path.moveTo({-5, 2.5});
        path.addLine({0, -2.5});
        path.addLine({5, 2.5});
        break;
    case BarSymbol::next:
        path.moveTo({-5, -2.5});
        path.addLine({0, 2.5});
        path.addLine({5, -2.5});
        break;
    case BarSymbol::close:
        path.moveTo({-4, -4});
        path.addLine({4, 4});
        path.moveTo({4, -4});
        path.addLine({-4, 4});
        break;
    case BarSymbol::disclosure:
        path.moveTo({-3, -1.5});
        path.addLine({0, 1.5});
        path.addLine({3, -1.5});
        break;
    case BarSymbol::more:
        for (CGFloat x : {-5.0, 0.0, 5.0})
            path.append(UIBezierPath::oval(CGRect::make(x - 1.3, -1.3, 2.6, 2.6)));
        break;
    case BarSymbol::none:
        break;
    }
    return path;
}

} // namespace

BarButton::BarButton(BarSymbol symbol)
    : symbol_(symbol)
{
}

const std::string& BarButton::title() const
{
    static const std::string none;
    return label_ ? label_->text() : none;
}

void BarButton::setTitle(std::string title)
{
    if (!label_) {
        label_ = std::make_shared<UILabel>();
        label_->setPreferredFont(FontTextStyle::footnote);
        label_->setTextColor(UIColor::secondaryLabel());
        label_->setUserInteractionEnabled(false);
        label_->accessibility().isHidden = true;
        addSubview(label_);
    }
    label_->setText(std::move(title));
    setNeedsLayout();
    invalidateIntrinsicContentSize();
}

void BarButton::setTitleColor(UIColor color)
{
    if (label_)
        label_->setTextColor(std::move(color));
}

void BarButton::draw(CGContext& context, CGRect)
{
    auto area = bounds();
    if (isHovered_ || isHighlighted() || isSelected()) {
        auto& ground = isHighlighted() ? UIColor::systemFill() : UIColor::tertiarySystemFill();
        context.fill(UIBezierPath::roundedRect(area, radius), ground);
    }
    if (isFirstResponder()) {
        StrokeStyle ring;
        ring.lineWidth = focusRingWidth;
        context.stroke(UIBezierPath::roundedRect(area.insetBy(1, 1), radius), tintColor(), ring);
    }
    auto isMirrored = effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    auto half = label_ ? (disclosureWidth + 2) / 2 : area.width() / 2;
    auto path = pathOf(symbol_).transformed(CGAffineTransform::translation(
        isMirrored ? area.minX() + half : area.maxX() - half, std::round(area.midY())));
    auto color = isEnabled() ? UIColor::secondaryLabel() : UIColor::quaternaryLabel();
    if (symbol_ == BarSymbol::more)
        context.fill(path, color);
    else
        context.stroke(path, color, {strokeWidth, LineCap::round, LineJoin::round, 10, {}, 0});
}

void BarButton::layoutSubviews()
{
    UIControl::layoutSubviews();
    if (!label_)
        return;
    auto isMirrored = effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    auto trailing = symbol_ == BarSymbol::none ? titleInset : disclosureWidth + 2;
    auto area = bounds();
    auto width = std::max(area.width() - titleInset - trailing, 0.0);
    label_->setFrame(CGRect::make(isMirrored ? trailing : titleInset, 0, width, area.height()));
}

CGSize BarButton::intrinsicContentSize() const
{
    if (!label_)
        return {symbolWidth, height};
    auto trailing = symbol_ == BarSymbol::none ? titleInset : disclosureWidth + 2;
    return {std::ceil(label_->sizeThatFits({unlimitedWidth, 0}).width) + titleInset + trailing, height};
}

CGSize BarButton::sizeThatFits(CGSize) const
{
    return intrinsicContentSize();
}

void BarButton::pointerEntered()
{
    isHovered_ = true;
    setNeedsDisplay();
}

void BarButton::pointerExited()
{
    isHovered_ = false;
    setNeedsDisplay();
}

AccessibilityProperties BarButton::accessibilityNow() const
{
    auto properties = UIControl::accessibilityNow();
    properties.role = AccessibilityRole::button;
    if (properties.label.empty())
        properties.label = title();
    return properties;
}

} // namespace platform
