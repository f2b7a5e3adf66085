// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ContentViewNode.h"
#include "platform/swiftui/LazyRows.h"
#include "platform/swiftui/ListCell.h"

#include <memory>

namespace platform {

// How a row stands in its list.
struct ListRowLayout {
    ListCellLook look;
    UIEdgeInsets insets;   // between the cell and its content; left is where reading begins
    CGFloat gap = 0;       // above the cell, nobody's
    CGFloat minHeight = 0; // of the cell
    bool operator==(const ListRowLayout&) const = default;
};

// The node of a list's row: a cell with the row's content. Owned by the list's node.
class ListRowNode final : public ContentViewNode {
public:
    ListRowNode(const NodeContext& context, const RowRun& run, std::size_t index);
    ~ListRowNode() override;

    // Requires: the run's source is of the type that the row was made by.
    void updateRow(const RowRun& run, std::size_t index) { run.source->updateRow(index, content()); }
    // True when it may have another size now.
    bool setLayout(ListRowLayout layout);
    ListCell& cell() const { return ListCell::of(*platformView()); }
    UIView& containerView() const override { return *platformView(); }
    bool hasFocus() const; // the keyboard is somewhere inside
    void letGoOfList();

protected:
    NodeContext contentContext() override;
    CGSize measure(const ProposedSize& proposal) override;
    void arrange(CGRect rect, const ProposedSize& proposal) override;

private:
    std::shared_ptr<EnvironmentScope> environment_;
    ListRowLayout layout_;
    bool leadsOn_ = false; // holds a link
};

} // namespace platform
