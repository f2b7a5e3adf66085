// SPDX-License-Identifier: MIT
#include "platform/uikit/AccessibilityNode_p.h"

#include "platform/uikit/AccessibilityNodes_p.h"
#include "platform/uikit/EventTranslation_p.h"
#include "platform/uikit/UIWindow.h"

#include <QtGui/QGuiApplication>

#include <algorithm>
#include <cmath>

namespace platform {

AccessibilityNode::AccessibilityNode(UIView& view, QWindow* surface)
    : view_(std::static_pointer_cast<UIView>(view.weak_from_this().lock()))
    , surface_(surface)
{
}

QWindow* AccessibilityNode::window() const
{
    if (surface_)
        return surface_;
    auto view = live();
    auto window = view ? view->window() : nullptr;
    return window && window != view ? AccessibilityNodes::node(*window)->window() : nullptr;
}

QAccessibleInterface* AccessibilityNode::parent() const
{
    auto view = live();
    auto above = view ? AccessibilityNodes::parent(*view) : nullptr;
    if (above)
        return AccessibilityNodes::node(*above);
    return QCoreApplication::instance() ? QAccessible::queryAccessibleInterface(qGuiApp) : nullptr;
}

int AccessibilityNode::childCount() const
{
    auto view = live();
    return view ? static_cast<int>(AccessibilityNodes::children(*view).size()) : 0;
}

QAccessibleInterface* AccessibilityNode::child(int index) const
{
    auto view = live();
    if (!view)
        return nullptr;
    auto children = AccessibilityNodes::children(*view);
    return index >= 0 && index < static_cast<int>(children.size())
        ? AccessibilityNodes::node(*children[static_cast<std::size_t>(index)])
        : nullptr;
}

int AccessibilityNode::indexOfChild(const QAccessibleInterface* child) const
{
    auto view = live();
    const auto* node = dynamic_cast<const AccessibilityNode*>(child);
    if (!view || !node)
        return -1;
    auto children = AccessibilityNodes::children(*view);
    auto found = std::ranges::find(children, node->view(), &std::shared_ptr<UIView>::get);
    return found == children.end() ? -1 : static_cast<int>(found - children.begin());
}

QAccessibleInterface* AccessibilityNode::childAt(int x, int y) const
{
    auto view = live();
    if (!view)
        return nullptr;
    auto children = AccessibilityNodes::children(*view);
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
        auto* node = AccessibilityNodes::node(**child);
        if (node->rect().contains(x, y))
            return node;
    }
    return nullptr;
}

QAccessibleInterface* AccessibilityNode::focusChild() const
{
    auto view = live();
    auto window = view ? view->window() : nullptr;
    auto focused = window ? std::dynamic_pointer_cast<UIView>(window->firstResponder()) : nullptr;
    return focused && focused->isDescendant(*view) ? AccessibilityNodes::node(*focused) : nullptr;
}

QString AccessibilityNode::text(QAccessible::Text kind) const
{
    auto view = live();
    if (!view)
        return {};
    auto properties = view->accessibilityNow();
    switch (kind) {
    case QAccessible::Name:
        if (surface_ && properties.label.empty())
            return surface_->title();
        return QString::fromStdString(properties.label);
    case QAccessible::Description:
        return QString::fromStdString(properties.hint);
    case QAccessible::Value:
        return QString::fromStdString(properties.value);
    default:
        return {};
    }
}

QRect AccessibilityNode::onScreen(const CGRect& windowRect) const
{
    auto rect = rectFrom(windowRect).toAlignedRect();
    auto* surface = window();
    return surface ? QRect(surface->mapToGlobal(rect.topLeft()), rect.size()) : rect;
}

QRect AccessibilityNode::rect() const
{
    auto view = live();
    return view ? onScreen(view->convertTo(view->bounds(), nullptr)) : QRect();
}

QAccessible::Role AccessibilityNode::role() const
{
    auto view = live();
    if (!view)
        return QAccessible::NoRole;
    if (view == view->window())
        return QAccessible::Window;
    switch (view->accessibilityNow().role) {
    case AccessibilityRole::none:
    case AccessibilityRole::group:
        return QAccessible::Grouping;
    case AccessibilityRole::staticText:
        return QAccessible::StaticText;
    case AccessibilityRole::textView:
    case AccessibilityRole::textField:
        return QAccessible::EditableText;
    case AccessibilityRole::button:
        return QAccessible::Button;
    case AccessibilityRole::image:
        return QAccessible::Graphic;
    case AccessibilityRole::header:
        return QAccessible::Heading;
    case AccessibilityRole::slider:
        return QAccessible::Slider;
    case AccessibilityRole::toggle:
        return QAccessible::CheckBox;
    case AccessibilityRole::progress:
        return QAccessible::ProgressBar;
    case AccessibilityRole::list:
        return QAccessible::List;
    case AccessibilityRole::listItem:
        return QAccessible::ListItem;
    case AccessibilityRole::link:
        return QAccessible::Link;
    case AccessibilityRole::dialog:
        return QAccessible::Dialog;
    case AccessibilityRole::alert:
        return QAccessible::AlertMessage;
    case AccessibilityRole::window:
        return QAccessible::Window;
    case AccessibilityRole::scrollArea:
        return QAccessible::Pane;
    case AccessibilityRole::spinButton:
        return QAccessible::SpinBox;
    case AccessibilityRole::radioButton:
        return QAccessible::RadioButton;
    case AccessibilityRole::menuButton:
        return QAccessible::ButtonMenu;
    case AccessibilityRole::menu:
        return QAccessible::PopupMenu;
    case AccessibilityRole::menuItem:
        return QAccessible::MenuItem;
    case AccessibilityRole::tab:
        return QAccessible::PageTab;
    case AccessibilityRole::tabList:
        return QAccessible::PageTabList;
    case AccessibilityRole::separator:
        return QAccessible::Separator;
    }
    return QAccessible::NoRole;
}

QAccessible::State AccessibilityNode::state() const
{
    QAccessible::State state;
    auto view = live();
    if (!view) {
        state.invalid = true;
        return state;
    }
    auto window = view->window();
    auto properties = view->accessibilityNow();
    state.disabled = !properties.isEnabled;
    state.readOnly = properties.isReadOnly;
    state.multiLine = properties.isMultiLine;
    state.selected = properties.isSelected;
    state.modal = properties.isModal;
    state.busy = properties.isBusy;
    state.focusable = view->canBecomeFirstResponder();
    state.focused = window && window->isKeyWindow() && view->isFirstResponder();
    state.active = surface_ && window && window->isKeyWindow();
    state.checkable =
        properties.role == AccessibilityRole::toggle || properties.role == AccessibilityRole::radioButton;
    state.expandable = properties.role == AccessibilityRole::menuButton;
    state.expanded = state.expandable && properties.isExpanded;
    state.collapsed = state.expandable && !properties.isExpanded;
    state.checked = state.checkable && properties.isSelected;
    if (content()) {
        state.selectableText = true;
        state.editable = !properties.isReadOnly;
    }
    if (window) {
        auto place = view->convertTo(view->bounds(), nullptr);
        state.offscreen = place.intersection({{}, window->bounds().size}).isEmpty();
    }
    return state;
}

void* AccessibilityNode::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TextInterface && content())
        return static_cast<QAccessibleTextInterface*>(this);
    if (type == QAccessible::ActionInterface && !actionNames().isEmpty())
        return static_cast<QAccessibleActionInterface*>(this);
    if (auto view = live(); type == QAccessible::ValueInterface && view && view->accessibilityNow().range)
        return static_cast<QAccessibleValueInterface*>(this);
    return nullptr;
}

AccessibilityRange AccessibilityNode::range() const
{
    auto view = live();
    return view ? view->accessibilityNow().range.value_or(AccessibilityRange{}) : AccessibilityRange{};
}

bool AccessibilityNode::isAdjustable() const
{
    auto view = live();
    if (!view)
        return false;
    auto properties = view->accessibilityNow();
    return properties.range && properties.isEnabled && !properties.isReadOnly
        && properties.role != AccessibilityRole::progress;
}

QVariant AccessibilityNode::currentValue() const
{
    return range().value;
}

void AccessibilityNode::setCurrentValue(const QVariant& value)
{
    auto view = live();
    auto number = value.toDouble();
    if (!view || !isAdjustable() || !std::isfinite(number))
        return;
    auto [minimum, maximum, current, step] = range();
    view->accessibilitySetValue(std::clamp(number, minimum, maximum));
}

QVariant AccessibilityNode::maximumValue() const
{
    return range().maximum;
}

QVariant AccessibilityNode::minimumValue() const
{
    return range().minimum;
}

QVariant AccessibilityNode::minimumStepSize() const
{
    return range().step;
}

QStringList AccessibilityNode::actionNames() const
{
    auto view = live();
    if (!view)
        return {};
    auto properties = view->accessibilityNow();
    if (!properties.isEnabled)
        return {};
    switch (properties.role) {
    case AccessibilityRole::button:
    case AccessibilityRole::link:
    case AccessibilityRole::listItem:
    case AccessibilityRole::menuButton:
    case AccessibilityRole::menuItem:
    case AccessibilityRole::tab:
        return {QAccessibleActionInterface::pressAction()};
    case AccessibilityRole::toggle:
    case AccessibilityRole::radioButton:
        return {QAccessibleActionInterface::toggleAction()};
    default:
        break;
    }
    if (isAdjustable())
        return {QAccessibleActionInterface::increaseAction(), QAccessibleActionInterface::decreaseAction()};
    return view->canBecomeFirstResponder() ? QStringList{QAccessibleActionInterface::setFocusAction()}
                                           : QStringList();
}

void AccessibilityNode::doAction(const QString& name)
{
    auto view = live();
    if (!view || !actionNames().contains(name))
        return;
    if (name == QAccessibleActionInterface::setFocusAction())
        view->becomeFirstResponder();
    else if (name == QAccessibleActionInterface::increaseAction())
        view->accessibilityAdjust(1);
    else if (name == QAccessibleActionInterface::decreaseAction())
        view->accessibilityAdjust(-1);
    else
        view->accessibilityActivate(); // the node may be gone
}

} // namespace platform
