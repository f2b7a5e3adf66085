// SPDX-License-Identifier: MIT
#include "platform/uikit/AccessibilityBridge.h"

#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/AccessibilityNode_p.h"
#include "platform/uikit/AccessibilityNodes_p.h"
#include "platform/uikit/UIWindow.h"

#include <unordered_map>

namespace platform {

namespace {

std::unordered_map<const UIView*, QAccessible::Id>& nodeIds()
{
    // Never destroyed: views may go after everything else.
    static auto& ids = *new std::unordered_map<const UIView*, QAccessible::Id>;
    return ids;
}

bool isHiddenFromAccessibility(const UIView& view)
{
    return view.isHidden() || view.accessibilityNow().isHidden;
}

bool isElement(const UIView& view)
{
    return view.accessibilityNow().role != AccessibilityRole::none;
}

// Of what is not inside of `modal` only what leads there is heard of. Null: everything is.
void collectChildren(const UIView& view, const UIView* modal, std::vector<std::shared_ptr<UIView>>& found)
{
    for (const auto& subview : view.subviews()) {
        if (isHiddenFromAccessibility(*subview))
            continue;
        if (modal && !subview->isDescendant(*modal) && !modal->isDescendant(*subview))
            continue;
        if (isElement(*subview))
            found.push_back(subview);
        else
            collectChildren(*subview, modal, found);
    }
}

} // namespace

QAccessibleInterface* AccessibilityNodes::node(UIView& view, QWindow* surface)
{
    auto& ids = nodeIds();
    if (auto found = ids.find(&view); found != ids.end()) {
        auto* known = QAccessible::accessibleInterface(found->second);
        // The library drops the node of a surface together with it.
        if (known && (!surface || known->window() == surface))
            return known;
        if (known)
            QAccessible::deleteAccessibleInterface(found->second);
        ids.erase(found);
    }
    auto* made = new AccessibilityNode(view, surface);
    ids.emplace(&view, QAccessible::registerAccessibleInterface(made));
    AccessibilityBridge::nodeCount_ = static_cast<int>(ids.size());
    return made;
}

std::vector<std::shared_ptr<UIView>> AccessibilityNodes::children(const UIView& view)
{
    std::vector<std::shared_ptr<UIView>> found;
    auto window = view.window();
    auto modal = window ? window->modalView() : nullptr;
    collectChildren(view, modal.get(), found);
    return found;
}

std::shared_ptr<UIView> AccessibilityNodes::parent(const UIView& view)
{
    auto above = view.superview();
    while (above && above->superview() && !isElement(*above))
        above = above->superview();
    return above;
}

void AccessibilityBridge::drop(const UIView& view)
{
    auto& ids = nodeIds();
    auto found = ids.find(&view);
    if (found == ids.end())
        return;
    auto id = found->second;
    ids.erase(found);
    nodeCount_ = static_cast<int>(ids.size());
    if (QAccessible::accessibleInterface(id))
        QAccessible::deleteAccessibleInterface(id);
}

namespace {

// Null when nobody listens or the view is not to be heard of.
QAccessibleInterface* listenedNode(UIView& view)
{
    if (!QAccessible::isActive() || !view.window())
        return nullptr;
    if (!isElement(view) && &view != view.window().get())
        return nullptr;
    return AccessibilityNodes::node(view);
}

void send(QAccessibleInterface* node, QAccessible::Event kind)
{
    QAccessibleEvent event(node, kind);
    QAccessible::updateAccessibility(&event);
}

void sendText(UIView& view, QAccessibleInterface* node, AccessibilityEvent event)
{
    auto* text = view.accessibleText();
    auto caret = text ? static_cast<int>(text->caretOffset()) : 0;
    if (event == AccessibilityEvent::caretMoved) {
        QAccessibleTextCursorEvent moved(node, caret);
        QAccessible::updateAccessibility(&moved);
    } else if (event == AccessibilityEvent::selectionChanged) {
        auto selection = text ? text->selection() : AccessibleText::Range{};
        QAccessibleTextSelectionEvent selected(node, static_cast<int>(selection.start),
                                               static_cast<int>(selection.end));
        selected.setCursorPosition(caret);
        QAccessible::updateAccessibility(&selected);
    } else {
        // Readers ask for what they want of the new text; a gigabyte is not sent to them.
        QAccessibleTextUpdateEvent replaced(node, 0, {}, {});
        QAccessible::updateAccessibility(&replaced);
    }
}

} // namespace

void notifyAccessibility(UIView& view, AccessibilityEvent event)
{
    auto* node = listenedNode(view);
    if (!node)
        return;
    switch (event) {
    case AccessibilityEvent::focused:
        send(node, QAccessible::Focus);
        break;
    case AccessibilityEvent::labelChanged:
        send(node, QAccessible::NameChanged);
        break;
    case AccessibilityEvent::valueChanged: {
        QAccessibleValueChangeEvent changed(node, node->text(QAccessible::Value));
        QAccessible::updateAccessibility(&changed);
        break;
    }
    case AccessibilityEvent::stateChanged: {
        QAccessible::State any;
        any.disabled = any.readOnly = any.selected = any.checked = any.busy = true;
        QAccessibleStateChangeEvent changed(node, any);
        QAccessible::updateAccessibility(&changed);
        break;
    }
    case AccessibilityEvent::childrenChanged:
        send(node, QAccessible::ObjectReorder);
        break;
    case AccessibilityEvent::caretMoved:
    case AccessibilityEvent::selectionChanged:
    case AccessibilityEvent::textReplaced:
        sendText(view, node, event);
        break;
    }
}

void notifyAccessibilityTextInserted(UIView& view, std::size_t offset, std::u16string_view text)
{
    if (auto* node = listenedNode(view)) {
        QAccessibleTextInsertEvent event(
            node, static_cast<int>(offset),
            QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size())));
        QAccessible::updateAccessibility(&event);
    }
}

void notifyAccessibilityTextRemoved(UIView& view, std::size_t offset, std::u16string_view text)
{
    if (auto* node = listenedNode(view)) {
        QAccessibleTextRemoveEvent event(
            node, static_cast<int>(offset),
            QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size())));
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace platform
