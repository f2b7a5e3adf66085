// SPDX-License-Identifier: MIT
#include "platform/swiftui/ListRowNode.h"

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/NavigationLink.h"
#include "platform/uikit/UIWindow.h"

#include <algorithm>
#include <cmath>

namespace platform {

ListRowNode::ListRowNode(const NodeContext& context, const RowRun& run, std::size_t index)
    : ContentViewNode(context)
    , environment_(std::make_shared<EnvironmentScope>(context.environment))
{
    auto cell = ListCell::make();
    auto row = std::make_shared<ListRowKey::Row>();
    environment_->set<ListRowKey>(row);
    if (run.kind != RowKind::row) {
        environment_->set<FontKey>(Font::footnote());
        environment_->set<ForegroundColorKey>(UIColor::secondaryLabel());
        cell->accessibility().role = AccessibilityRole::group;
    }
    setPlatformView(std::move(cell));
    setContent(run.source->makeRow(index, contentContext()));
    leadsOn_ = row->leadsOn;
}

ListRowNode::~ListRowNode()
{
    letGoOfList();
}

void ListRowNode::letGoOfList()
{
    cell().onKey = nullptr; // somebody may keep the cell
    cell().onPress = nullptr;
}

NodeContext ListRowNode::contentContext()
{
    auto inner = ContentViewNode::contentContext();
    inner.environment = environment_;
    return inner;
}

bool ListRowNode::setLayout(ListRowLayout layout)
{
    if (leadsOn_) {
        layout.look.hasArrow = true;
        layout.insets.right += ListCellLook::arrowWidth;
    }
    cell().setLook(layout.look);
    auto isSame =
        layout.insets == layout_.insets && layout.gap == layout_.gap && layout.minHeight == layout_.minHeight;
    layout_ = layout;
    if (!isSame)
        invalidateLayout();
    return !isSame;
}

bool ListRowNode::hasFocus() const
{
    auto window = platformView()->window();
    auto focused = window ? std::dynamic_pointer_cast<UIView>(window->firstResponder()) : nullptr;
    return focused && focused->isDescendant(*platformView());
}

CGSize ListRowNode::measure(const ProposedSize& proposal)
{
    auto width = usableLength(proposal.width.value_or(0));
    auto& insets = layout_.insets;
    auto inner = std::max(width - insets.left - insets.right, 0.0);
    auto height = content().sizeThatFits({inner, std::nullopt}).height;
    if (!std::isfinite(height))
        height = 0; // what would be endless is as high as a row at least is
    // In whole points: rows begin on pixels, wherever the list stands.
    return {width, layout_.gap + std::ceil(std::max(height + insets.top + insets.bottom, layout_.minHeight))};
}

void ListRowNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    auto cell = CGRect::make(rect.minX(), rect.minY() + layout_.gap, rect.width(),
                             std::max(rect.height() - layout_.gap, 0.0));
    ContentViewNode::arrange(cell, proposal);
    auto& insets = layout_.insets;
    ProposedSize offer{std::max(cell.width() - insets.left - insets.right, 0.0), std::nullopt};
    auto size = content().sizeThatFits(offer);
    auto isMirrored = environment_->value<LayoutDirectionKey>(this) == LayoutDirection::rightToLeft;
    auto x = isMirrored ? cell.width() - insets.left - size.width : insets.left;
    auto room = cell.height() - insets.top - insets.bottom;
    content().place(CGRect::make(x, insets.top + (room - size.height) / 2, size.width, size.height), offer);
}

} // namespace platform
