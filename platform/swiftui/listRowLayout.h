// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/LazyListNode.h"
#include "platform/swiftui/ListRowNode.h"

#include <optional>

namespace platform {

// What lies behind the rows; none: what is behind the list.
std::optional<UIColor> listGround(ListStyle style);
// Points below the last row.
CGFloat listEndGap(ListStyle style);

// Where a row stands among its neighbours.
struct RowNeighbours {
    RowKind kind = RowKind::row;
    bool beginsList = false;
    bool beginsSection = false; // with nothing above it that belongs to the section
    bool beginsGroup = false;   // the first row proper
    bool endsGroup = false;
    bool endsList = false;
};
ListRowLayout listRowLayout(ListStyle style, const RowNeighbours& row);

} // namespace platform
