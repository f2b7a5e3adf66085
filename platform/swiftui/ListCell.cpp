// SPDX-License-Identifier: MIT
#include "platform/swiftui/ListCell.h"

#include "platform/foundation/ProcessInfo.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/uikit/UICollectionViewCell.h"
#include "platform/uikit/UIControl.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UITableViewCell.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace platform {

namespace {

constexpr CGFloat cardRadius = 10, focusRadius = 6;
constexpr double chosenAlpha = 0.18; // of the tint, behind a row that is chosen

// The controls below `view`, but none inside of another.
void collectControls(const UIView& view, std::vector<std::shared_ptr<UIControl>>& controls)
{
    for (const auto& subview : view.subviews()) {
        if (auto control = std::dynamic_pointer_cast<UIControl>(subview))
            controls.push_back(control);
        else
            collectControls(*subview, controls);
    }
}

bool isPressable(const UIControl& control)
{
    auto role = control.accessibilityNow().role;
    return control.isEnabled() && !control.isHidden()
        && (role == AccessibilityRole::button || role == AccessibilityRole::link);
}

// The first control that takes the keyboard.
std::shared_ptr<UIView> focusableIn(const UIView& view)
{
    std::vector<std::shared_ptr<UIControl>> controls;
    collectControls(view, controls);
    for (auto& control : controls) {
        if (!control->isHidden() && control->canBecomeFirstResponder())
            return control;
    }
    return nullptr;
}

void drawArrow(CGContext& context, CGRect area, bool isRightToLeft)
{
    constexpr CGFloat distance = 16, half = 4.5; // from the edge, and of its height
    auto sign = isRightToLeft ? -1 : 1;
    auto tip = isRightToLeft ? area.minX() + distance : area.maxX() - distance;
    UIBezierPath path;
    path.moveTo({tip - sign * half, area.midY() - half});
    path.addLine({tip, area.midY()});
    path.addLine({tip - sign * half, area.midY() + half});
    context.stroke(path, UIColor::tertiaryLabel(),
                   {.lineWidth = 2, .lineCap = LineCap::round, .lineJoin = LineJoin::round});
}

template <class Base>
class Cell final : public Base, public ListCell {
public:
    void setLook(const ListCellLook& look) override
    {
        if (look == look_)
            return;
        look_ = look;
        this->setNeedsDisplay();
    }
    void setPosition(std::size_t row, std::size_t count) override
    {
        auto& properties = this->accessibility();
        properties.role = AccessibilityRole::listItem;
        properties.isReadOnly = true;
        properties.range = AccessibilityRange{.minimum = 1,
                                              .maximum = static_cast<double>(count),
                                              .value = static_cast<double>(row + 1),
                                              .step = 1};
    }
    void setChosen(bool isChosen) override
    {
        this->accessibility().isSelected = isChosen;
        if (std::exchange(isChosen_, isChosen) != isChosen)
            this->setNeedsDisplay();
    }
    void setReachable(bool isReachable) override { isReachable_ = isReachable; }
    bool canBecomeFirstResponder() const override { return isReachable_ && !focusableIn(*this); }
    void focus() override
    {
        isReachable_ = true;
        if (auto control = focusableIn(*this))
            control->becomeFirstResponder();
        else
            this->becomeFirstResponder();
    }
    bool becomeFirstResponder() override
    {
        this->setNeedsDisplay();
        return Base::becomeFirstResponder();
    }
    bool resignFirstResponder() override
    {
        this->setNeedsDisplay();
        return Base::resignFirstResponder();
    }
    bool pressesBegan(const UIPress& press) override
    {
        auto handle = onKey; // which may let go of the cell
        return (handle && handle(press)) || Base::pressesBegan(press);
    }
    // All of the row belongs to its button or link.
    void touchesBegan(UITouch& touch) override
    {
        std::vector<std::shared_ptr<UIControl>> controls;
        collectControls(*this, controls);
        auto isOnly = controls.size() == 1 && isPressable(*controls.front());
        if (!isOnly || touch.button != UIPointerButton::primary) {
            if (onPress && touch.button == UIPointerButton::primary && controls.empty())
                isPressed_ = true;
            else
                Base::touchesBegan(touch);
            return;
        }
        pressed_ = controls.front();
        controls.front()->setHighlighted(true);
        this->setNeedsDisplay();
    }
    void touchesMoved(UITouch& touch) override
    {
        if (auto control = pressed_.lock())
            control->setHighlighted(this->bounds().contains(touch.location(*this)));
        else if (!isPressed_)
            Base::touchesMoved(touch);
    }
    void touchesEnded(UITouch& touch) override
    {
        auto keptAlive = this->weak_from_this().lock();
        if (auto control = letGo()) {
            if (this->bounds().contains(touch.location(*this)))
                control->performPrimaryAction(); // which may remove the row
        } else if (std::exchange(isPressed_, false)) {
            if (auto press = onPress; press && this->bounds().contains(touch.location(*this)))
                press();
        } else {
            Base::touchesEnded(touch);
        }
    }
    void touchesCancelled(UITouch& touch) override
    {
        if (!letGo() && !std::exchange(isPressed_, false))
            Base::touchesCancelled(touch);
    }
    void draw(CGContext& context, CGRect) override
    {
        auto area = this->bounds().insetBy(look_.sideMargin, 0);
        if (area.isEmpty())
            return;
        if (look_.ground) {
            if (look_.corners != UIRectCorner::none)
                context.fill(UIBezierPath::roundedRect(area, cardRadius, look_.corners), *look_.ground);
            else
                context.fill(area, *look_.ground);
        }
        if (isChosen_)
            context.fill(area, this->tintColor().withAlphaComponent(chosenAlpha));
        if (!pressed_.expired())
            context.fill(area, UIColor::quaternarySystemFill());
        if (this->isFirstResponder())
            context.stroke(UIBezierPath::roundedRect(area.insetBy(2, 2), focusRadius), this->tintColor(),
                           {.lineWidth = 2});
        auto isRightToLeft =
            this->effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
        if (look_.hasArrow)
            drawArrow(context, area, isRightToLeft);
        if (!look_.hasSeparator)
            return;
        auto hair = 1 / std::max(context.scale(), 1.0);
        auto width = std::max(area.width() - look_.separatorInset, 0.0);
        context.fill(
            CGRect::make(isRightToLeft ? area.minX() : area.maxX() - width, area.maxY() - hair, width, hair),
            UIColor::separator());
    }

private:
    std::shared_ptr<UIControl> letGo()
    {
        auto control = std::exchange(pressed_, {}).lock();
        if (control) {
            control->setHighlighted(false);
            this->setNeedsDisplay();
        }
        return control;
    }

    ListCellLook look_;
    bool isChosen_ = false;
    bool isReachable_ = false;
    bool isPressed_ = false;           // by a touch, to be chosen
    std::weak_ptr<UIControl> pressed_; // by a touch beside it
};

} // namespace

std::shared_ptr<UIView> ListCell::make()
{
    if (ProcessInfo::processInfo().isOperatingSystemAtLeast({16, 0, 0}))
        return std::make_shared<Cell<UICollectionViewCell>>();
    return std::make_shared<Cell<UITableViewCell>>();
}

ListCell& ListCell::of(UIView& cell)
{
    return dynamic_cast<ListCell&>(cell);
}

} // namespace platform
