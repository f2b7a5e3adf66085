// SPDX-License-Identifier: MIT
#include "platform/uikit/UIButton.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/uikit/ControlLook.h"
#include "platform/uikit/UIImageView.h"
#include "platform/uikit/UILabel.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat cornerRadiusOfGround = 8;
constexpr CGFloat imagePadding = 6; // between picture and title
constexpr CGFloat focusRingWidth = 2;
constexpr double pressedAlpha = 0.4; // of title and picture on no ground
constexpr double pressedShade = 0.2; // of black over the ground

UIEdgeInsets defaultInsets(UIButtonStyle style)
{
    return style == UIButtonStyle::plain ? UIEdgeInsets{4, 6, 4, 6} : UIEdgeInsets{7, 12, 7, 12};
}

} // namespace

UIButton::UIButton(UIButtonStyle style)
    : style_(style)
    , contentInsets_(defaultInsets(style))
    , label_(std::make_shared<UILabel>())
    , imageView_(std::make_shared<UIImageView>())
{
    label_->setPreferredFont(FontTextStyle::body);
    label_->setTextAlignment(TextAlignment::center);
    imageView_->setContentMode(UIViewContentMode::scaleAspectFit);
    // To assistive technology the button is one thing.
    label_->accessibility().isHidden = true;
    imageView_->accessibility().isHidden = true;
    addSubview(imageView_);
    addSubview(label_);
    updateColors();
}

const std::string& UIButton::title() const
{
    return label_->text();
}

void UIButton::setTitle(std::string title)
{
    label_->setText(std::move(title));
    contentChanged();
}

const UIImage& UIButton::image() const
{
    return imageView_->image();
}

void UIButton::setImage(UIImage image)
{
    imageView_->setImage(std::move(image));
    contentChanged();
}

void UIButton::setStyle(UIButtonStyle style)
{
    assertOnMainThread();
    if (std::exchange(style_, style) == style)
        return;
    if (!hasOwnInsets_)
        contentInsets_ = defaultInsets(style);
    updateColors();
    contentChanged();
}

void UIButton::setFont(UIFont font)
{
    label_->setFont(std::move(font));
    contentChanged();
}

void UIButton::setContentInsets(UIEdgeInsets insets)
{
    assertOnMainThread();
    hasOwnInsets_ = true;
    contentInsets_ = insets;
    contentChanged();
}

void UIButton::contentChanged()
{
    setNeedsLayout();
    setNeedsDisplay();
    invalidateIntrinsicContentSize();
}

void UIButton::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIControl::traitCollectionDidChange(previous);
    contentChanged(); // text size, direction
}

void UIButton::updateColors()
{
    auto foreground = !isEnabled()        ? UIColor::tertiaryLabel()
        : style_ == UIButtonStyle::filled ? legibleColor(tintColor())
                                          : tintColor();
    label_->setTextColor(foreground);
    imageView_->setTintColor(foreground);
    auto alpha = style_ == UIButtonStyle::plain && isHighlighted() ? pressedAlpha : 1;
    label_->setAlpha(alpha);
    imageView_->setAlpha(alpha);
    setNeedsDisplay();
}

void UIButton::controlStateChanged()
{
    updateColors();
}

void UIButton::tintColorDidChange()
{
    UIControl::tintColorDidChange();
    updateColors();
}

void UIButton::didMoveToSuperview()
{
    UIControl::didMoveToSuperview();
    updateColors();
}

void UIButton::draw(CGContext& context, CGRect)
{
    auto area = bounds();
    auto radius = std::min(cornerRadiusOfGround, area.height() / 2);
    if (style_ != UIButtonStyle::plain) {
        auto ground =
            style_ == UIButtonStyle::filled && isEnabled() ? tintColor() : UIColor::secondarySystemFill();
        auto shape = UIBezierPath::roundedRect(area, radius);
        context.fill(shape, ground);
        if (isHighlighted())
            context.fill(shape, UIColor::black().withAlphaComponent(pressedShade));
    }
    if (isFirstResponder()) {
        auto ring = area.insetBy(focusRingWidth / 2, focusRingWidth / 2);
        auto color = style_ == UIButtonStyle::filled ? UIColor::label() : tintColor();
        if (!ring.isNull())
            context.stroke(UIBezierPath::roundedRect(ring, radius), color, {.lineWidth = focusRingWidth});
    }
}

CGSize UIButton::contentSize() const
{
    auto text = label_->sizeThatFits({unlimitedWidth, 0});
    auto picture = image().size();
    auto padding = !title().empty() && !image().isEmpty() ? imagePadding : 0;
    return {text.width + padding + picture.width, std::max(text.height, picture.height)};
}

CGSize UIButton::intrinsicContentSize() const
{
    auto content = contentSize();
    return {std::max(content.width + contentInsets_.left + contentInsets_.right, 0.0),
            std::max(content.height + contentInsets_.top + contentInsets_.bottom, 0.0)};
}

CGSize UIButton::sizeThatFits(CGSize) const
{
    return intrinsicContentSize();
}

void UIButton::layoutSubviews()
{
    UIControl::layoutSubviews();
    auto area = bounds().inset(contentInsets_);
    if (area.isNull())
        area = {bounds().center(), {}};
    auto content = contentSize();
    auto picture = image().size();
    auto padding = !title().empty() && !image().isEmpty() ? imagePadding : 0;
    auto width = std::min(content.width, area.width());
    auto textWidth = std::max(width - picture.width - padding, 0.0);
    auto textHeight = std::min(label_->sizeThatFits({unlimitedWidth, 0}).height, area.height());

    auto isRightToLeft =
        effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    auto start = area.midX() - width / 2;
    auto pictureX = isRightToLeft ? start + textWidth + padding : start;
    auto textX = isRightToLeft ? start : start + picture.width + padding;
    imageView_->setFrame(
        CGRect::make(pictureX, area.midY() - picture.height / 2, picture.width, picture.height));
    label_->setFrame(CGRect::make(textX, area.midY() - textHeight / 2, textWidth, textHeight));
}

CGFloat UIButton::firstBaselineOffset() const
{
    if (title().empty())
        return UIControl::firstBaselineOffset();
    auto text = label_->sizeThatFits({unlimitedWidth, 0}).height;
    return (intrinsicContentSize().height - text + contentInsets_.top - contentInsets_.bottom) / 2
        + label_->firstBaselineOffset();
}

CGFloat UIButton::lastBaselineOffset() const
{
    if (title().empty())
        return UIControl::lastBaselineOffset();
    return intrinsicContentSize().height - firstBaselineOffset();
}

std::optional<UIView::Cursor> UIButton::cursorAt(CGPoint) const
{
    return Cursor::arrow;
}

AccessibilityProperties UIButton::accessibilityNow() const
{
    auto properties = UIControl::accessibilityNow();
    if (properties.role == AccessibilityRole::none)
        properties.role = AccessibilityRole::button;
    if (properties.label.empty())
        properties.label = title().empty() ? imageView_->accessibility().label : title();
    return properties;
}

} // namespace platform
