// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

#include <cstddef>
#include <functional>
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

    // What its list does with a key that nothing inside takes, true when it does, and with a press on the row; none of both
    // when the list has gone.
    std::function<bool(const UIPress&)> onKey;
    std::function<void()> onPress;
    virtual void setChosen(bool isChosen) = 0;
    // Whether the keyboard can come to the row from outside of the list.
    virtual void setReachable(bool isReachable) = 0;
    // What has the keyboard when the row has it: a control inside, or the cell.
    virtual void focus() = 0;
};

} // namespace platform
