// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/LazyRows.h"
#include "platform/swiftui/PlatformViewNode.h"
#include "platform/swiftui/RowHeights.h"
#include "platform/swiftui/RowSelection.h"
#include "platform/swiftui/RowTable.h"
#include "platform/swiftui/ViewContainer.h"

#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace platform {

class ListRowNode;
class UIScrollView;
struct UIPress;

enum class ListStyle {
    automatic,    // plain for lists, inset groups for forms
    plain,        // from edge to edge
    grouped,      // the same in groups on a grey ground
    insetGrouped, // groups as cards with a margin
    inset,        // plain with a margin, without a ground
    sidebar,      // the same, for the side of a window
};
struct ListStyleKey : environment_keys::Key<ListStyle, ListStyle::automatic> { };

enum class ListKind { list, form };

// The node of lists, without the types of their rows. Its platform view is a UITableView or, on systems from 16 on, a
// UICollectionView, with a cell for each row that exists.
//
// A layout begins at a row that stays where it is on screen, the anchor: the first that was in sight. From there rows are
// made and measured in both directions until the view and a margin are full; the others go. Then the offset follows from
// the heights as they are known now.
class LazyListNode : public PlatformViewNode, public ViewContainer {
public:
    LazyListNode(const NodeContext& context, ListKind kind, RowSources rows,
                 std::shared_ptr<const RowSelection> selection = nullptr);
    ~LazyListNode() override;

    void forEachChild(const std::function<void(ViewNode&)>& visit) const override;
    void appendContents(std::vector<std::shared_ptr<UIView>>& views) const override;
    UIView& containerView() const override { return *contentView_; }
    void refresh() override;
    const std::shared_ptr<UIScrollView>& scrollView() const { return scrollView_; }

protected:
    void setRows(RowSources rows);
    void setSelection(std::shared_ptr<const RowSelection> selection);
    CGSize measure(const ProposedSize& proposal) override;
    void arrange(CGRect rect, const ProposedSize& proposal) override;

private:
    struct Anchor {
        std::size_t row = 0;
        CGFloat screenY = 0; // of the row's top, from the top of the view
    };
    NodeContext contentContext();
    void readEnvironment();
    void rowsDidChange();
    Anchor anchorInSight(CGFloat height);
    CGFloat measureRow(std::size_t row);
    struct RowRange {
        std::size_t first = 0;
        std::size_t end = 0;
    };
    RowRange fill(const Anchor& anchor, CGFloat height);
    CGFloat reach(Anchor anchor, CGFloat height); // gives the offset
    void placeRows();
    // By keys and pointer: see LazyListKeyboard.cpp.
    void attach(ListRowNode& node);
    std::optional<std::size_t> rowOf(const ListRowNode& node) const;
    bool handleKey(const UIPress& press, const ListRowNode& node);
    std::optional<std::size_t> nextRow(std::size_t row, std::ptrdiff_t step) const;
    void goTo(std::size_t row);
    void choose(std::size_t row);
    void showInSight(std::size_t row);
    void showKeyboardState();
    void followFocus();
    CGFloat endGap() const;

    // fixed after construction
    const ListKind kind_;
    std::shared_ptr<UIScrollView> scrollView_;
    std::shared_ptr<UIView> contentView_; // apart from the indicators, which are the scroll view's own
    // main thread only
    RowTable rows_;
    RowHeights heights_;
    std::map<std::size_t, std::unique_ptr<ListRowNode>> mounted_;
    std::optional<Anchor> anchor_; // that a change of the rows has left in sight
    ListStyle style_ = ListStyle::plain;
    CGFloat width_ = -1; // that the heights are for
    bool isRightToLeft_ = false;
    bool isArranging_ = false;
    bool hasEstimate_ = false;
    std::shared_ptr<const RowSelection> selection_; // null: rows are not chosen
    std::optional<std::size_t> awaitsFocus_;        // to be given once the row exists
    std::shared_ptr<bool> isMounted_ = std::make_shared<bool>(true);
    RowRange wanted_; // of the rows that the last layout needed
};

} // namespace platform
