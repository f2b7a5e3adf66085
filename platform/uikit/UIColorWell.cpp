// SPDX-License-Identifier: MIT
#include "platform/uikit/UIColorWell.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/ColorPanelController.h"
#include "platform/uikit/ControlLook.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat diameter = 28, rimWidth = 3;

} // namespace

UIColorWell::UIColorWell()
{
    setUp();
}

UIColorWell::UIColorWell(CGRect frame)
    : UIControl(frame)
{
    setUp();
}

UIColorWell::~UIColorWell() = default;

void UIColorWell::setUp()
{
    ring_ = std::make_shared<FocusRing>();
    addSubview(ring_);
    addAction([](UIControl& control) { static_cast<UIColorWell&>(control).open(); },
              {UIControlEvents::primaryActionTriggered});
}

void UIColorWell::setSelectedColor(std::optional<UIColor> color)
{
    assertOnMainThread();
    if (std::exchange(color_, std::move(color)) == color_)
        return;
    setNeedsDisplay();
    notifyAccessibility(*this, AccessibilityEvent::valueChanged);
}

void UIColorWell::open()
{
    auto weak = std::weak_ptr(std::static_pointer_cast<UIColorWell>(shared_from_this()));
    auto present = color_.value_or(UIColor::white()).resolved(traitCollection().colorAppearance());
    auto panel = std::make_shared<ColorPanelController>(present, [weak](const UIColor& color) {
        auto self = weak.lock();
        if (!self || self->color_ == color)
            return;
        self->setSelectedColor(color);
        self->sendActions({UIControlEvents::valueChanged});
    });
    isOpen_ = ColorPanelController::present(panel, *this, [weak] {
        if (auto self = weak.lock())
            self->isOpen_ = false;
    });
}

CGRect UIColorWell::disc() const
{
    auto area = bounds();
    auto side = std::min({diameter, area.width(), area.height()});
    return CGRect::make(area.midX() - side / 2, area.midY() - side / 2, side, side);
}

void UIColorWell::draw(CGContext& context, CGRect)
{
    auto place = disc();
    auto alpha = isEnabled() ? 1.0 : disabledAlpha;
    // A rim of all hues.
    const UIColor hues[] = {UIColor::systemRed(),    UIColor::systemOrange(), UIColor::systemYellow(),
                            UIColor::systemGreen(),  UIColor::systemTeal(),   UIColor::systemBlue(),
                            UIColor::systemPurple(), UIColor::systemPink()};
    constexpr double fullTurn = 6.283185307179586;
    auto count = static_cast<double>(std::size(hues));
    for (std::size_t index = 0; index < std::size(hues); ++index) {
        UIBezierPath arc;
        auto start = fullTurn * (static_cast<double>(index) / count - 0.25);
        auto radius = place.width() / 2 - rimWidth / 2;
        arc.moveTo({place.midX() + radius * std::cos(start), place.midY() + radius * std::sin(start)});
        arc.addArc(place.center(), radius, start, start + fullTurn / count + 0.02);
        context.stroke(arc, hues[index].withAlphaComponent(alpha), {.lineWidth = rimWidth});
    }
    auto inner = place.insetBy(rimWidth + 2, rimWidth + 2);
    if (inner.isEmpty() || !color_)
        return;
    auto color = color_->resolved(context.appearance());
    context.fill(UIBezierPath::oval(inner), color.withAlphaComponent(alpha * color.components().alpha));
    context.stroke(UIBezierPath::oval(inner), UIColor::separator());
}

void UIColorWell::layoutSubviews()
{
    UIControl::layoutSubviews();
    ring_->showAround(disc(), disc().width() / 2);
}

void UIColorWell::controlStateChanged()
{
    ring_->setHidden(!isFirstResponder());
    setNeedsDisplay();
}

CGSize UIColorWell::intrinsicContentSize() const
{
    return {diameter, diameter};
}

CGSize UIColorWell::sizeThatFits(CGSize) const
{
    return intrinsicContentSize();
}

AccessibilityProperties UIColorWell::accessibilityNow() const
{
    auto properties = UIControl::accessibilityNow();
    if (properties.role == AccessibilityRole::none)
        properties.role = AccessibilityRole::menuButton;
    properties.isExpanded = isOpen_;
    return properties;
}

} // namespace platform
