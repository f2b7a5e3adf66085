// SPDX-License-Identifier: MIT
#include "platform/uikit/UIMenuButton.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/TextLayout.h"
#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/ChoiceMenuController.h"
#include "platform/uikit/ControlLook.h"
#include "platform/uikit/UIEvent.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat cornerRadiusOfGround = 8;
constexpr CGFloat sideInset = 12, verticalInset = 6, arrowsWidth = 20;
constexpr CGFloat leastWidth = 56;

TextStyle styleOf(const UIView& view)
{
    auto& traits = view.traitCollection();
    return {.font = UIFont::preferredFont(FontTextStyle::body, traits.preferredContentSizeCategory,
                                          traits.textScale),
            .lineBreak = LineBreak::truncateTail,
            .maxLines = 1};
}

} // namespace

UIMenuButton::UIMenuButton()
    : ring_(std::make_shared<FocusRing>())
{
    addSubview(ring_);
    addAction([](UIControl& control) { static_cast<UIMenuButton&>(control).open(); },
              {UIControlEvents::primaryActionTriggered});
}

UIMenuButton::~UIMenuButton() = default;

void UIMenuButton::setTitles(std::vector<std::string> titles)
{
    assertOnMainThread();
    titles_ = std::move(titles);
    setSelectedIndex(selected_);
    invalidateIntrinsicContentSize();
    setNeedsDisplay();
}

void UIMenuButton::setSelectedIndex(int index)
{
    assertOnMainThread();
    auto wanted = index >= 0 && index < static_cast<int>(titles_.size()) ? index : -1;
    if (std::exchange(selected_, wanted) == wanted)
        return;
    setNeedsDisplay();
    notifyAccessibility(*this, AccessibilityEvent::valueChanged);
}

const std::string& UIMenuButton::title() const
{
    static const std::string none;
    return selected_ >= 0 ? titles_[static_cast<std::size_t>(selected_)] : none;
}

void UIMenuButton::open()
{
    auto weak = std::weak_ptr(std::static_pointer_cast<UIMenuButton>(shared_from_this()));
    auto menu = std::make_shared<ChoiceMenuController>(titles_, selected_, [weak](int index) {
        auto self = weak.lock();
        if (!self || index == self->selected_)
            return;
        self->setSelectedIndex(index);
        self->sendActions({UIControlEvents::valueChanged});
    });
    isOpen_ = ChoiceMenuController::present(menu, *this, [weak] {
        if (auto self = weak.lock()) {
            self->isOpen_ = false;
            notifyAccessibility(*self, AccessibilityEvent::stateChanged);
        }
    });
    notifyAccessibility(*this, AccessibilityEvent::stateChanged);
}

bool UIMenuButton::pressesBegan(const UIPress& press)
{
    auto isPlain = (press.modifiers.rawValue & ~UIKeyModifierFlags::keypad) == 0;
    bool isArrow = press.key == UIKeyCode::down || press.key == UIKeyCode::up;
    if (!isPlain || !isArrow || !isEnabled() || !isFirstResponder())
        return UIControl::pressesBegan(press);
    performPrimaryAction();
    return true;
}

void UIMenuButton::draw(CGContext& context, CGRect)
{
    auto area = bounds();
    auto radius = std::min(cornerRadiusOfGround, area.height() / 2);
    auto shape = UIBezierPath::roundedRect(area, radius);
    context.fill(shape, isHighlighted() || isOpen_ ? UIColor::systemFill() : UIColor::tertiarySystemFill());
    if (isHighContrast(*this))
        context.stroke(UIBezierPath::roundedRect(area.insetBy(0.5, 0.5), radius), UIColor::label());
    bool isMirrored = effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    auto ink = isEnabled() ? UIColor::label() : UIColor::tertiaryLabel();
    TextLayout text(title(), styleOf(*this), std::max(area.width() - 2 * sideInset - arrowsWidth + 4, 1.0));
    auto x = isMirrored ? area.maxX() - sideInset - text.size().width : area.minX() + sideInset;
    text.draw(context, {x, area.midY() - text.size().height / 2}, ink);

    auto middle = isMirrored ? area.minX() + sideInset + 3 : area.maxX() - sideInset - 3;
    StrokeStyle line;
    line.lineWidth = 1.7;
    line.lineCap = LineCap::round;
    line.lineJoin = LineJoin::round;
    for (double up : {-1.0, 1.0}) {
        UIBezierPath arrow;
        arrow.moveTo({middle - 3.5, area.midY() + up * 2.5});
        arrow.addLine({middle, area.midY() + up * 6});
        arrow.addLine({middle + 3.5, area.midY() + up * 2.5});
        context.stroke(arrow, isEnabled() ? tintColor() : ink, line);
    }
}

void UIMenuButton::layoutSubviews()
{
    UIControl::layoutSubviews();
    ring_->showAround(bounds(), cornerRadiusOfGround);
}

void UIMenuButton::controlStateChanged()
{
    ring_->setHidden(!isFirstResponder());
    setNeedsDisplay();
}

CGSize UIMenuButton::intrinsicContentSize() const
{
    auto style = styleOf(*this);
    CGFloat widest = 0;
    constexpr std::size_t titlesMeasured = 200;
    for (std::size_t index = 0; index < std::min(titles_.size(), titlesMeasured); ++index)
        widest = std::max(widest, TextLayout(titles_[index], style).size().width);
    return {std::max(std::ceil(widest) + 2 * sideInset + arrowsWidth, leastWidth),
            std::ceil(style.font.lineHeight()) + 2 * verticalInset};
}

CGSize UIMenuButton::sizeThatFits(CGSize available) const
{
    auto size = intrinsicContentSize();
    return {available.width > 0 ? std::min(size.width, std::max(available.width, leastWidth)) : size.width,
            size.height};
}

void UIMenuButton::tintColorDidChange()
{
    UIControl::tintColorDidChange();
    setNeedsDisplay();
}

void UIMenuButton::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIControl::traitCollectionDidChange(previous);
    invalidateIntrinsicContentSize();
    setNeedsDisplay();
}

AccessibilityProperties UIMenuButton::accessibilityNow() const
{
    auto properties = UIControl::accessibilityNow();
    if (properties.role == AccessibilityRole::none)
        properties.role = AccessibilityRole::menuButton;
    if (properties.value.empty())
        properties.value = title();
    properties.isExpanded = isOpen_;
    return properties;
}

} // namespace platform
