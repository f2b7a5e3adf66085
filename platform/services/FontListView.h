// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UITableView.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace platform {

// Families in rows of one height, each in its own face. Only the rows in sight exist, so only their fonts are loaded. The
// arrows, Home, End and Page Up and Down move the choice, Return and Space pick it. Main thread only.
class FontListView : public UITableView {
public:
    struct Row {
        std::string text;
        bool isHeading = false;
        bool operator==(const Row&) const = default;
    };

    FontListView();

    std::function<void(const std::string& family)> onPick;
    void setRows(std::vector<Row> rows);
    std::size_t cellCount() const { return cells_.size(); }

    void layoutSubviews() override;
    bool canBecomeFirstResponder() const override { return !rows_.empty(); }
    bool becomeFirstResponder() override;
    bool resignFirstResponder() override;
    bool pressesBegan(const UIPress& press) override;
    AccessibilityProperties accessibilityNow() const override;

protected:
    void contentOffsetDidChange() override;

private:
    class Cell;
    CGRect rowFrame(std::size_t index) const;
    void placeCells();
    void moveChoice(std::ptrdiff_t step);
    void showChoice();

    std::vector<Row> rows_;
    std::map<std::size_t, std::shared_ptr<Cell>> cells_; // by their row
    std::size_t chosen_ = 0;
};

} // namespace platform
