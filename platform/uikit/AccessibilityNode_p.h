// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

#include <memory>

#include <QtCore/QPointer>
#include <QtGui/QAccessible>
#include <QtGui/QWindow>

namespace platform {

// A view as the accessibility bus sees it. Asks the view each time and remembers nothing. Main thread only.
class AccessibilityNode : public QAccessibleInterface,
                          public QAccessibleTextInterface,
                          public QAccessibleActionInterface,
                          public QAccessibleValueInterface {
public:
    AccessibilityNode(UIView& view, QWindow* surface);

    bool isValid() const override { return !view_.expired(); }
    QObject* object() const override { return surface_; }
    QWindow* window() const override;
    QAccessibleInterface* parent() const override;
    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text, const QString&) override { }
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    // Text, in UTF-16 units.
    void selection(int index, int* start, int* end) const override;
    int selectionCount() const override;
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    void setSelection(int index, int start, int end) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QString text(int start, int end) const override;
    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType boundary, int* start,
                             int* end) const override;
    QString textAfterOffset(int offset, QAccessible::TextBoundaryType boundary, int* start,
                            int* end) const override;
    QString textAtOffset(int offset, QAccessible::TextBoundaryType boundary, int* start,
                         int* end) const override;
    int characterCount() const override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int start, int end) override;
    QString attributes(int offset, int* start, int* end) const override;

    // The number of a view that has a range.
    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

    // Actions.
    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

    const UIView* view() const { return view_.lock().get(); }

private:
    std::shared_ptr<UIView> live() const { return view_.lock(); }
    // Null for a view without text.
    AccessibleText* content() const;
    AccessibilityRange range() const;
    bool isAdjustable() const;
    QString take(AccessibleText::Range range, int* start, int* end) const;
    QRect onScreen(const CGRect& windowRect) const;

    // fixed after construction
    const std::weak_ptr<UIView> view_;
    const QPointer<QWindow> surface_; // of a UIWindow's node
};

} // namespace platform
