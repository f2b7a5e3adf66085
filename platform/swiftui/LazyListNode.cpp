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
#include <typeinfo>
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

LazyListNode::LazyListNode(const NodeContext& context, ListKind kind, RowSources rows)
    : PlatformViewNode(context)
    , ViewContainer(context.host)
    , kind_(kind)
    , contentView_(std::make_shared<GroupView>())
    , rows_(std::move(rows))
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
    countRows();
    heights_.reset(starts_.back());
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
    readEnvironment();
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
}

// --- Rows --------------------------------------------------------------------------------------------

void LazyListNode::countRows()
{
    starts_.assign(1, 0);
    for (const auto& run : rows_.runs)
        starts_.push_back(starts_.back() + run.source->count());
    scrollView_->accessibility().value = std::to_string(starts_.back());
}

LazyListNode::Place LazyListNode::placeOf(std::size_t row) const
{
    auto next = std::ranges::upper_bound(starts_, row);
    auto run = static_cast<std::size_t>(next - starts_.begin()) - 1;
    return {run, row - starts_[run]};
}

bool LazyListNode::hasSameRows(const RowSources& a, const RowSources& b)
{
    return std::ranges::equal(a.runs, b.runs, [](const RowRun& x, const RowRun& y) {
        return x.place == y.place && x.kind == y.kind && x.section == y.section
            && typeid(*x.source) == typeid(*y.source) && x.source->hasSameRows(*y.source);
    });
}

std::vector<std::optional<std::size_t>>
LazyListNode::follow(const RowSources& former, const std::vector<std::size_t>& formerStarts) const
{
    std::vector<std::optional<std::size_t>> result;
    auto next = mounted_.begin();
    for (std::size_t run = 0; run < former.runs.size(); ++run) {
        std::vector<std::size_t> rows;
        for (; next != mounted_.end() && next->first < formerStarts[run + 1]; ++next)
            rows.push_back(next->first - formerStarts[run]);
        if (rows.empty())
            continue;
        auto& before = former.runs[run];
        auto now = std::ranges::find_if(rows_.runs, [&](const RowRun& each) {
            return each.place == before.place && each.kind == before.kind
                && typeid(*each.source) == typeid(*before.source);
        });
        if (now == rows_.runs.end()) {
            result.resize(result.size() + rows.size());
            continue;
        }
        auto start = starts_[static_cast<std::size_t>(now - rows_.runs.begin())];
        for (auto& row : now->source->follow(*before.source, rows))
            result.push_back(row ? std::optional(start + *row) : std::nullopt);
    }
    return result;
}

void LazyListNode::setRows(RowSources rows)
{
    auto former = std::exchange(rows_, std::move(rows));
    if (hasSameRows(former, rows_)) {
        for (auto& [row, node] : mounted_) {
            auto [run, index] = placeOf(row);
            node->updateRow(rows_.runs[run], index);
        }
        return;
    }
    auto formerStarts = starts_;
    countRows();
    auto places = follow(former, formerStarts);
    auto offset = scrollView_->contentOffset().y;
    auto isAtStart = offset <= -scrollView_->adjustedContentInset().top;
    anchor_.reset();
    auto before = std::exchange(mounted_, {});
    auto place = places.begin();
    for (auto& [formerRow, node] : before) {
        auto row = *place++;
        if (!row || mounted_.contains(*row)) {
            host().retire(std::move(node));
            continue;
        }
        auto seen = node->placedRect();
        if (!anchor_ && !isAtStart && seen.maxY() > offset)
            anchor_ = Anchor{*row, seen.minY() - offset};
        auto [run, index] = placeOf(*row);
        node->updateRow(rows_.runs[run], index);
        mounted_.emplace(*row, std::move(node));
    }
    heights_.reset(starts_.back());
    contentsDidChange();
    invalidateLayout();
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
    auto [run, index] = placeOf(row);
    auto& slot = mounted_[row];
    auto isNew = !slot;
    if (isNew) {
        slot = std::make_unique<ListRowNode>(contentContext(), rows_.runs[run], index);
        contentsDidChange();
    }
    auto& node = *slot;
    const auto& runs = rows_.runs;
    auto kind = runs[run].kind;
    // The neighbours: rows of the same kind in the same section are a group.
    auto isAlike = [&](std::size_t other, bool ofAnyKind) {
        auto& neighbour = runs[placeOf(other).run];
        return neighbour.section == runs[run].section && (ofAnyKind || neighbour.kind == kind);
    };
    RowNeighbours neighbours{.kind = kind,
                             .beginsList = row == 0,
                             .beginsSection = row == 0 || !isAlike(row - 1, true),
                             .beginsGroup = row == 0 || !isAlike(row - 1, false),
                             .endsGroup = row + 1 == starts_.back() || !isAlike(row + 1, false),
                             .endsList = row + 1 == starts_.back()};
    auto changed = node.setLayout(listRowLayout(style_, neighbours));
    if (kind == RowKind::row)
        node.cell().setPosition(row, starts_.back());
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
}

} // namespace platform
