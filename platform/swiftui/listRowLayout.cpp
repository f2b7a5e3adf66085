// SPDX-License-Identifier: MIT
#include "platform/swiftui/listRowLayout.h"

namespace platform {

namespace {

constexpr CGFloat side = 16;       // points beside the content, and beside cards
constexpr CGFloat inside = 11;     // above and below the content
constexpr CGFloat rowHeight = 44;  // at least
constexpr CGFloat groupGap = 22;   // between groups
constexpr CGFloat sidebarSide = 8; // beside rows that have no ground

bool isGrouped(ListStyle style)
{
    return style == ListStyle::grouped || style == ListStyle::insetGrouped;
}

} // namespace

std::optional<UIColor> listGround(ListStyle style)
{
    switch (style) {
    case ListStyle::automatic:
    case ListStyle::plain:
        return UIColor::systemBackground();
    case ListStyle::grouped:
    case ListStyle::insetGrouped:
        return UIColor::systemGroupedBackground();
    case ListStyle::inset:
    case ListStyle::sidebar:
        break;
    }
    return std::nullopt;
}

CGFloat listEndGap(ListStyle style)
{
    return isGrouped(style) ? groupGap : 0;
}

ListRowLayout listRowLayout(ListStyle style, const RowNeighbours& row)
{
    ListRowLayout layout;
    auto margin = style == ListStyle::insetGrouped                 ? side
        : style == ListStyle::inset || style == ListStyle::sidebar ? sidebarSide
                                                                   : 0;
    layout.insets = {inside, margin + side, inside, margin + side};
    layout.look.sideMargin = margin;
    if (row.beginsSection && isGrouped(style))
        layout.gap = row.kind == RowKind::header && row.beginsList ? groupGap / 2 : groupGap;
    if (row.kind != RowKind::row) {
        auto isHeader = row.kind == RowKind::header;
        layout.insets.top = isHeader ? 8 : 6;
        layout.insets.bottom = isHeader ? 6 : 4;
        return layout;
    }
    layout.minHeight = rowHeight;
    layout.look.separatorInset = side;
    if (isGrouped(style)) {
        layout.look.ground = UIColor::secondarySystemGroupedBackground();
        layout.look.hasSeparator = !row.endsGroup;
    } else {
        layout.look.hasSeparator = style != ListStyle::sidebar && !row.endsList;
    }
    if (style == ListStyle::insetGrouped) {
        auto top = UIRectCorner::topLeft | UIRectCorner::topRight;
        auto bottom = UIRectCorner::bottomLeft | UIRectCorner::bottomRight;
        layout.look.corners =
            (row.beginsGroup ? top : UIRectCorner::none) | (row.endsGroup ? bottom : UIRectCorner::none);
    }
    return layout;
}

} // namespace platform
