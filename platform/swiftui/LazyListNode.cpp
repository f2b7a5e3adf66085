// SPDX-License-Identifier: MIT
#include "platform/swiftui/LazyListNode.h"

#include "platform/foundation/ProcessInfo.h"
#include "platform/swiftui/GroupNode.h"
#include "platform/swiftui/ListRowNode.h"
#include "platform/swiftui/ViewHost.h"
#include "platform/swiftui/listRowLayout.h"
#include "platform/uikit/UICollectionView.h"
#include "platform/uikit/UITableView.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat margin = 200;       // points of rows that exist above and below what is seen
constexpr CGFloat idealHeight = 480;  // of a list that is not told how high it is
constexpr std::size_t mostRows = 500; // made in one layout, however low they are

// Tells when its content moves; whoever customises the view keeps its delegate for himself.
template <class Base>
class ListView final : public Base {
public:
    std::function<void()> onScroll;

protected:
    void contentOffsetDidChange() override
    {
        Base::contentOffsetDidChange();
        if (auto action = onScroll)
            action();
    }
};

template <class Base>
std::shared_ptr<UIScrollView> makeListView(std::function<void()> onScroll)
{
    auto view = std::make_shared<ListView<Base>>();
    view->onScroll = std::move(onScroll);
    return view;
}

void silence(UIScrollView& view)
{
    if (auto* table = dynamic_cast<ListView<UITableView>*>(&view))
        table->onScroll = nullptr;
    if (auto* collection = dynamic_cast<ListView<UICollectionView>*>(&view))
        collection->onScroll = nullptr;
}

} // namespace

LazyListNode::LazyListNode(const NodeContext& context, ListKind kind, RowSources rows,
                           std::shared_ptr<const RowSelection> selection)
    : PlatformViewNode(context)
    , ViewContainer(context.host)
    , kind_(kind)
    , contentView_(std::make_shared<GroupView>())
    , rows_(std::move(rows))
    , selection_(std::move(selection))
{
    auto onScroll = [this] {
        if (!isArranging_)
            invalidateLayout();
    };
    scrollView_ = ProcessInfo::processInfo().isOperatingSystemAtLeast({16, 0, 0})
        ? makeListView<UICollectionView>(onScroll)
        : makeListView<UITableView>(onScroll);
    scrollView_->setShowsHorizontalScrollIndicator(false);
    scrollView_->addSubview(contentView_);
    scrollView_->accessibility().role = AccessibilityRole::list;
    setPlatformView(scrollView_);
    readEnvironment();
    rowsDidChange();
}

LazyListNode::~LazyListNode()
{
    silence(*scrollView_); // somebody may keep the view
    mounted_.clear();      // while the container that they stand in is alive
}

void LazyListNode::forEachChild(const std::function<void(ViewNode&)>& visit) const
{
    for (const auto& [row, node] : mounted_)
        visit(*node);
}

void LazyListNode::appendContents(std::vector<std::shared_ptr<UIView>>& views) const
{
    for (const auto& [row, node] : mounted_)
        node->appendPlatformViews(views);
}

NodeContext LazyListNode::contentContext()
{
    auto inner = context().below(*this);
    inner.container = this;
    return inner;
}

void LazyListNode::refresh()
{
    forgetSources();
    auto style = style_;
    auto wasRightToLeft = isRightToLeft_;
    readEnvironment();
    showKeyboardState();
    if (style == style_ && wasRightToLeft == isRightToLeft_)
        return;
    width_ = -1; // everything is measured anew
    invalidateLayout();
}

void LazyListNode::readEnvironment()
{
    style_ = environment<ListStyleKey>();
    if (style_ == ListStyle::automatic)
        style_ = kind_ == ListKind::form ? ListStyle::insetGrouped : ListStyle::plain;
    isRightToLeft_ = environment<LayoutDirectionKey>() == LayoutDirection::rightToLeft;
    scrollView_->setBackgroundColor(listGround(style_));
    if (selection_)
        selection_->registerReader(*this);
}

// --- Rows --------------------------------------------------------------------------------------------

void LazyListNode::setRows(RowSources rows)
{
    auto former = std::exchange(rows_, RowTable(std::move(rows)));
    auto update = [this](ListRowNode& node, std::size_t row) {
        auto [run, index] = rows_.at(row);
        node.updateRow(run, index);
    };
    if (rows_.hasSameRows(former)) {
        for (auto& [row, node] : mounted_)
            update(*node, row);
        return;
    }
    std::vector<std::size_t> formerRows;
    for (auto& [row, node] : mounted_)
        formerRows.push_back(row);
    auto places = rows_.follow(former, formerRows);
    auto offset = scrollView_->contentOffset().y;
    auto isAtStart = offset <= -scrollView_->adjustedContentInset().top;
    anchor_.reset();
    auto before = std::exchange(mounted_, {});
    auto place = places.begin();
    for (auto& [formerRow, node] : before) {
        auto row = *place++;
        if (!row || mounted_.contains(*row)) {
            node->letGoOfList();
            host().retire(std::move(node));
            continue;
        }
        auto seen = node->placedRect();
        if (!anchor_ && !isAtStart && seen.maxY() > offset)
            anchor_ = Anchor{*row, seen.minY() - offset};
        update(*node, *row);
        mounted_.emplace(*row, std::move(node));
    }
    rowsDidChange();
    contentsDidChange();
    invalidateLayout();
}

void LazyListNode::rowsDidChange()
{
    heights_.reset(rows_.count());
    scrollView_->accessibility().value = std::to_string(rows_.count());
}

// --- Layout ------------------------------------------------------------------------------------------

CGFloat LazyListNode::endGap() const
{
    return heights_.count() > 0 ? listEndGap(style_) : 0;
}

CGSize LazyListNode::measure(const ProposedSize& proposal)
{
    return proposal.replacingUnspecified({idealHeight, std::min(heights_.total() + endGap(), idealHeight)});
}

LazyListNode::Anchor LazyListNode::anchorInSight(CGFloat height)
{
    auto inset = scrollView_->adjustedContentInset();
    auto offset = scrollView_->contentOffset().y;
    if (offset <= -inset.top)
        return {0, -offset};
    // At the end of what is known: the end stays in sight, whatever the rows before it turn out to be.
    auto last = heights_.count() - 1;
    auto end = heights_.total() + endGap() + inset.bottom - height;
    if (offset >= end - 0.5 && offset > 0)
        return {last, height - inset.bottom - endGap() - measureRow(last)};
    for (auto& [row, node] : mounted_) {
        auto seen = node->placedRect();
        if (seen.maxY() > offset && seen.minY() < offset + height)
            return {row, seen.minY() - offset};
    }
    auto row = heights_.rowAt(offset);
    return {row, heights_.offset(row) - offset};
}

CGFloat LazyListNode::measureRow(std::size_t row)
{
    auto [run, index] = rows_.at(row);
    auto& slot = mounted_[row];
    auto isNew = !slot;
    if (isNew) {
        slot = std::make_unique<ListRowNode>(contentContext(), run, index);
        attach(*slot);
        contentsDidChange();
    }
    auto& node = *slot;
    // Rows of the same kind in the same section are a group.
    auto isAlike = [&](std::size_t other, bool ofAnyKind) {
        auto& neighbour = rows_.at(other).run;
        return neighbour.section == run.section && (ofAnyKind || neighbour.kind == run.kind);
    };
    auto isLast = row + 1 == rows_.count();
    RowNeighbours neighbours{.kind = run.kind,
                             .beginsList = row == 0,
                             .beginsSection = row == 0 || !isAlike(row - 1, true),
                             .beginsGroup = row == 0 || !isAlike(row - 1, false),
                             .endsGroup = isLast || !isAlike(row + 1, false),
                             .endsList = isLast};
    auto changed = node.setLayout(listRowLayout(style_, neighbours));
    if (run.kind == RowKind::row)
        node.cell().setPosition(row, rows_.count());
    if (isNew || changed)
        host().settleBelow(depth());
    auto height = node.sizeThatFits({width_, std::nullopt}).height;
    heights_.set(row, height);
    return heights_.height(row);
}

LazyListNode::RowRange LazyListNode::fill(const Anchor& anchor, CGFloat height)
{
    std::size_t made = 0;
    auto y = anchor.screenY;
    auto row = anchor.row;
    for (; row < heights_.count() && y < height + margin && made < mostRows; ++row, ++made)
        y += measureRow(row);
    auto end = row;
    y = anchor.screenY;
    for (row = anchor.row; row > 0 && y > -margin && made < mostRows; ++made)
        y -= measureRow(--row);
    return {row, end};
}

CGFloat LazyListNode::reach(Anchor anchor, CGFloat height)
{
    // Where the content ends inside of the view another row has to be the anchor, which may have to be measured first.
    constexpr int mostTries = 4;
    CGFloat offset = 0;
    for (int i = 0; i < mostTries; ++i) {
        wanted_ = fill(anchor, height);
        if (!std::exchange(hasEstimate_, true))
            heights_.estimateFromMeasured();
        auto inset = scrollView_->adjustedContentInset();
        auto first = -inset.top;
        auto last = std::max(heights_.total() + endGap() + inset.bottom - height, first);
        auto wished = heights_.offset(anchor.row) - anchor.screenY;
        offset = std::clamp(wished, first, last);
        if (std::abs(offset - wished) < 0.5)
            break;
        auto row = heights_.rowAt(offset);
        anchor = {row, heights_.offset(row) - offset};
    }
    return offset;
}

void LazyListNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    PlatformViewNode::arrange(rect, proposal);
    if (std::exchange(isArranging_, true))
        return;
    auto hasRows = heights_.count() > 0;
    auto anchor = anchor_;
    if (!anchor && hasRows && width_ >= 0)
        anchor = anchorInSight(rect.height());
    if (rect.width() != width_) {
        width_ = rect.width();
        heights_.reset(heights_.count());
    }
    if (!anchor && hasRows)
        anchor = anchorInSight(rect.height());
    anchor_.reset();
    wanted_ = {};
    CGFloat offset = 0;
    if (anchor)
        offset = reach(*anchor, rect.height());
    std::erase_if(mounted_, [&](const auto& each) {
        auto isWanted = each.first >= wanted_.first && each.first < wanted_.end;
        // Who writes in a row goes on writing when it scrolls away.
        return !isWanted && !(each.first < heights_.count() && each.second->hasFocus());
    });
    UIView::performWithoutAnimation([&] {
        contentView_->setFrame({{}, {width_, heights_.total()}});
        scrollView_->moveContent({width_, heights_.total() + endGap()}, {0, offset});
    });
    placeRows();
    isArranging_ = false;
}

void LazyListNode::placeRows()
{
    for (auto& [row, node] : mounted_) {
        auto rect = CGRect::make(0, heights_.offset(row), width_, heights_.height(row));
        node->place(rect, {width_, std::nullopt});
    }
    showKeyboardState();
    if (awaitsFocus_)
        followFocus();
}

} // namespace platform
