// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

#include <cstddef>
#include <memory>
#include <optional>

namespace platform {

// How the cell of a row looks.
struct ListCellLook {
    std::optional<UIColor> ground;
    UIRectCorner corners = UIRectCorner::none; // that are round
    CGFloat sideMargin = 0;                    // points on both sides that are not the cell's
    bool hasSeparator = false;                 // below, from where the text begins
    CGFloat separatorInset = 0;
    bool hasArrow = false; // at the end of the line: it leads on
    static constexpr CGFloat arrowWidth = 20;
    bool operator==(const ListCellLook&) const = default;
};

// The cell of a list's row: a UITableViewCell or, on systems from 16 on, a UICollectionViewCell. Where a row's content takes
// touches with one control alone, all of the cell belongs to that control. Main thread only.
class ListCell {
public:
    virtual ~ListCell() = default;
    static std::shared_ptr<UIView> make();
    // Requires: `make` made it.
    static ListCell& of(UIView& cell);

    virtual void setLook(const ListCellLook& look) = 0;
    // Makes it an item of a list to assistive technology: the row's number, from 0, of how many.
    virtual void setPosition(std::size_t row, std::size_t count) = 0;
};

} // namespace platform
