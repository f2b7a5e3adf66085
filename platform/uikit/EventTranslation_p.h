// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIEvent.h"

#include <optional>

#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtGui/QKeyEvent>
#include <QtGui/QWheelEvent>

namespace platform {

// The window system's words for what the user did, in ours. Pure, but for the desktop's setting of lines a notch.

inline CGPoint pointFrom(QPointF point)
{
    return {point.x(), point.y()};
}
inline QRectF rectFrom(const CGRect& rect)
{
    return rect.isNull() ? QRectF() : QRectF(rect.minX(), rect.minY(), rect.width(), rect.height());
}

UIKeyModifierFlags modifiersFrom(Qt::KeyboardModifiers modifiers);
// None for a button that has no meaning here.
std::optional<UIPointerButton> buttonFrom(Qt::MouseButton button);
// None for a modifier key itself.
std::optional<UIPress> pressFrom(const QKeyEvent& event, Instant time);
UIScrollWheel wheelFrom(const QWheelEvent& event, Instant time);

} // namespace platform
