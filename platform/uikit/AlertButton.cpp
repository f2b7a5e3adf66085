// SPDX-License-Identifier: MIT
#include "platform/uikit/AlertButton.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UIScrollView.h"
#include "platform/uikit/shortened.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat minimumHeight = 44;
constexpr std::size_t mostTitle = 400; // bytes
constexpr CGFloat sideInset = 12, edgeInset = 11;
constexpr CGFloat ringInset = 3, ringWidth = 2, ringRadius = 8;

} // namespace

AlertButton::AlertButton(std::shared_ptr<UIAlertAction> action)
    : action_(std::move(action))
    , label_(std::make_shared<UILabel>())
{
    label_->setText(shortened(action_->title(), mostTitle));
    label_->setTextAlignment(TextAlignment::center);
    label_->setNumberOfLines(0);
    label_->accessibility().isHidden = true; // the button is one thing
    addSubview(label_);
    setEnabled(action_->isEnabled());
    updateLook();
}

void AlertButton::setDefault(bool isDefault)
{
    isDefault_ = isDefault;
    updateLook();
}

void AlertButton::setShowsFocus(bool shows)
{
    if (std::exchange(showsFocus_, shows) != shows)
        setNeedsDisplay();
}

void AlertButton::updateLook()
{
    auto& traits = traitCollection();
    auto font =
        UIFont::preferredFont(FontTextStyle::body, traits.preferredContentSizeCategory, traits.textScale);
    label_->setFont(isDefault_ ? font.withWeight(FontWeight::semibold) : font);
    auto isDestructive = action_->style() == UIAlertActionStyle::destructive;
    label_->setTextColor(!isEnabled()        ? UIColor::tertiaryLabel()
                             : isDestructive ? UIColor::systemRed()
                                             : tintColor());
    setNeedsDisplay();
    setNeedsLayout();
}

CGFloat AlertButton::naturalWidth() const
{
    return label_->sizeThatFits({unlimitedWidth, 0}).width + 2 * sideInset;
}

CGFloat AlertButton::heightFitting(CGFloat width) const
{
    auto text = label_->sizeThatFits({std::max(width - 2 * sideInset, 1.0), 0});
    return std::max(minimumHeight, std::ceil(text.height + 2 * edgeInset));
}

void AlertButton::layoutSubviews()
{
    UIControl::layoutSubviews();
    auto room = bounds().insetBy(sideInset, 0);
    label_->setFrame(room.isNull() ? bounds() : room);
}

void AlertButton::draw(CGContext& context, CGRect)
{
    if (isHighlighted())
        context.fill(bounds(), UIColor::systemFill());
    else if (isHovered_ && isEnabled())
        context.fill(bounds(), UIColor::quaternarySystemFill());
    auto ring = bounds().insetBy(ringInset, ringInset);
    if (showsFocus_ && isFirstResponder() && !ring.isNull())
        context.stroke(UIBezierPath::roundedRect(ring, ringRadius), tintColor(), {.lineWidth = ringWidth});
}

bool AlertButton::pressesBegan(const UIPress& press)
{
    if (onPress && onPress(press))
        return true;
    return UIControl::pressesBegan(press);
}

bool AlertButton::becomeFirstResponder()
{
    auto done = UIControl::becomeFirstResponder();
    if (auto column = std::dynamic_pointer_cast<UIScrollView>(superview()); done && column)
        column->scrollRectToVisible(frame());
    return done;
}

void AlertButton::pointerEntered()
{
    isHovered_ = true;
    setNeedsDisplay();
}

void AlertButton::pointerExited()
{
    isHovered_ = false;
    setNeedsDisplay();
}

void AlertButton::controlStateChanged()
{
    updateLook();
}

void AlertButton::didMoveToSuperview()
{
    UIControl::didMoveToSuperview();
    updateLook();
}

void AlertButton::tintColorDidChange()
{
    UIControl::tintColorDidChange();
    updateLook();
}

void AlertButton::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIControl::traitCollectionDidChange(previous);
    updateLook();
}

AccessibilityProperties AlertButton::accessibilityNow() const
{
    auto properties = UIControl::accessibilityNow();
    properties.role = AccessibilityRole::button;
    properties.label = label_->text();
    return properties;
}

} // namespace platform
