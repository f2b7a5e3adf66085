// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/swiftui/Binding.h"
#include "platform/swiftui/Gesture.h"
#include "platform/swiftui/State.h"

#include <functional>
#include <optional>

namespace bottomsheet {

// What dragging its top bar does to a sheet: it follows, and goes when it is thrown down or pulled far enough. A value
// that speaks of the sheet's state. Main thread only.
struct SheetDrag {
    platform::State<platform::CGFloat> draggedOffset;
    platform::State<std::optional<platform::DragGesture::Value>> previousDragValue;
    platform::Binding<bool> isPresented;
    platform::CGFloat height = 0; // that was asked for, however much of it there is room for
    std::function<void()> onDismiss;

    // Not for a sheet that is away. A sheet thrown down goes before the finger is lifted.
    void change(const platform::DragGesture::Value& value) const;
    void end(const platform::DragGesture::Value& value) const;
    void cancel() const; // something else took the pointer: the sheet goes back to its place
    // Presented no more, then the word of it. Nothing for a sheet that is away. Either may remove the sheet.
    void dismiss() const;

    platform::DragGesture gesture() const;
};

} // namespace bottomsheet
