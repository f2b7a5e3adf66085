// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Token.h"
#include "platform/graphics/Geometry.h"

#include <functional>

namespace platform {

class UIView;

// What anybody can see, for what shall not run while nobody does. Main thread only.

// The place that the view takes on screen now with all it shows outside of itself; in its superview's coordinates.
CGRect placeOnScreen(const UIView& view);

// Where a rectangle of the view (its own coordinates) is on screen now, while it and those around it move; in the window's
// coordinates. Conversions of UIView go by where views are going instead.
CGRect rectOnScreen(const UIView& view, CGRect rect);

// Whether a part of `place` (the superview's coordinates) may be seen: the view is in a window that is not minimised,
// neither it nor one around it is hidden or clear, and nothing clips the place away or stands before all of it. The view's
// own alpha does not count: it may be what moves.
bool isInSight(const UIView& view, CGRect place);
inline bool isInSight(const UIView& view)
{
    return isInSight(view, placeOnScreen(view));
}

// Calls back once, when something on screen has changed or a window is shown again: what was out of sight may be in sight
// then. From inside of that change: the callback asks for a frame or a turn, and no more.
[[nodiscard]] Token whenScreenChanges(std::function<void()> callback);

// For windows, and views that change what they show.
void screenDidChange();

} // namespace platform
