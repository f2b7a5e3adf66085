// SPDX-License-Identifier: MIT
#include "bottomsheet/SheetDrag.h"

#include <algorithm>
#include <chrono>

namespace bottomsheet {

using platform::DragGesture;

namespace {

constexpr platform::CGFloat flickSpeed = 1400; // points a second
constexpr double farEnough = 0.2;              // of the height asked for
constexpr platform::CGFloat minimumDistance = 10;

// Nothing where no time has passed between the two.
std::optional<platform::CGFloat> speedBetween(const DragGesture::Value& before, const DragGesture::Value& now)
{
    auto seconds = std::chrono::duration<double>(now.time - before.time).count();
    if (!(seconds > 0))
        return std::nullopt;
    return (now.translation.dy - before.translation.dy) / seconds;
}

} // namespace

void SheetDrag::change(const DragGesture::Value& value) const
{
    if (!isPresented.get())
        return;
    draggedOffset.set(value.translation.dy);
    // The sample may be the last of an earlier drag: that one lies long enough back to give no speed that counts.
    if (const auto& previous = previousDragValue.get()) {
        if (auto speed = speedBetween(*previous, value); speed && *speed > flickSpeed)
            return dismiss();
    }
    previousDragValue.set(value);
}

void SheetDrag::end(const DragGesture::Value& value) const
{
    auto drag = *this; // what dismissing calls may remove the sheet that keeps this
    if (value.translation.dy > farEnough * std::max(height, 0.0))
        dismiss();
    drag.draggedOffset.set(0);
}

void SheetDrag::cancel() const
{
    draggedOffset.set(0);
}

void SheetDrag::dismiss() const
{
    if (!isPresented.get())
        return;
    auto told = onDismiss;
    isPresented.set(false);
    if (told)
        told();
}

DragGesture SheetDrag::gesture() const
{
    return {.minimumDistance = minimumDistance,
            .coordinateSpace = platform::CoordinateSpace::local,
            .changed = [drag = *this](const DragGesture::Value& value) { drag.change(value); },
            .ended = [drag = *this](const DragGesture::Value& value) { drag.end(value); },
            .cancelled = [drag = *this] { drag.cancel(); }};
}

} // namespace bottomsheet
