// SPDX-License-Identifier: MIT
#include "platform/swiftui/PagedViewNode.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/swiftui/ContentViewNode.h"
#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/GroupNode.h"
#include "platform/swiftui/ViewHost.h"
#include "platform/uikit/UICollectionView.h"
#include "platform/uikit/UICollectionViewCell.h"
#include "platform/uikit/UIPageControl.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat dotsHeight = 28, dotsGap = 4; // points; from the lower edge

} // namespace

// Tells when its content moves; whoever customises the view keeps its delegate for himself.
class PagedViewNode::PageView final : public UICollectionView {
public:
    std::function<void()> onScroll;

protected:
    void contentOffsetDidChange() override
    {
        if (auto action = onScroll)
            action();
    }
};

// A cell with a page's content in its middle.
class PagedViewNode::Page final : public ContentViewNode {
public:
    Page(const NodeContext& context, const RowRun& run, std::size_t index)
        : ContentViewNode(context)
    {
        auto cell = std::make_shared<UICollectionViewCell>();
        cell->setClipsToBounds(true);
        setPlatformView(cell);
        setContent(run.source->makeRow(index, contentContext()));
    }
    void updateRow(const RowRun& run, std::size_t index) { run.source->updateRow(index, content()); }
    UIView& containerView() const override { return *platformView(); }

protected:
    CGSize measure(const ProposedSize& proposal) override { return proposal.replacingUnspecified(); }
    void arrange(CGRect rect, const ProposedSize& proposal) override
    {
        ContentViewNode::arrange(rect, proposal);
        auto size = content().sizeThatFits(ProposedSize::of(rect.size));
        content().place(CGRect::make((rect.width() - size.width) / 2, (rect.height() - size.height) / 2,
                                     size.width, size.height),
                        ProposedSize::of(rect.size));
    }
};

PagedViewNode::PagedViewNode(const NodeContext& context, RowSources pages,
                             std::optional<Binding<int>> selection)
    : PlatformViewNode(context)
    , ViewContainer(context.host)
    , contentView_(std::make_shared<GroupView>())
    , dots_(std::make_shared<UIPageControl>())
    , pages_(std::move(pages))
    , selection_(std::move(selection))
{
    auto pageView = std::make_shared<PageView>();
    pageView->onScroll = [this] { didScroll(); };
    pageView->setPagingEnabled(true);
    pageView->setShowsHorizontalScrollIndicator(false);
    pageView->setShowsVerticalScrollIndicator(false);
    pageView->addSubview(contentView_);
    scrollView_ = pageView;
    dots_->setHidesForSinglePage(true);
    dots_->setBackgroundStyle(UIPageControlBackgroundStyle::prominent); // pages have any colour
    dots_->addAction([this](UIControl&) { goTo(dots_->currentPage(), true); },
                     {UIControlEvents::valueChanged});
    auto whole = std::make_shared<GroupView>();
    whole->addSubview(scrollView_);
    whole->addSubview(dots_);
    setPlatformView(whole);
    isRightToLeft_ = environment<LayoutDirectionKey>() == LayoutDirection::rightToLeft;
    readSelection();
}

PagedViewNode::~PagedViewNode()
{
    static_cast<PageView&>(*scrollView_).onScroll = nullptr; // somebody may keep the view
    dots_->removeAllActions();
    mounted_.clear(); // while the container that they stand in is alive
}

void PagedViewNode::forEachChild(const std::function<void(ViewNode&)>& visit) const
{
    for (const auto& [row, page] : mounted_)
        visit(*page);
}

void PagedViewNode::appendContents(std::vector<std::shared_ptr<UIView>>& views) const
{
    for (const auto& [row, page] : mounted_)
        page->appendPlatformViews(views);
}

NodeContext PagedViewNode::pageContext()
{
    auto inner = context().below(*this);
    inner.container = this;
    return inner;
}

void PagedViewNode::update(RowSources pages, std::optional<Binding<int>> selection)
{
    auto former = std::exchange(pages_, RowTable(std::move(pages)));
    selection_ = std::move(selection);
    std::vector<std::size_t> formerPages;
    for (auto& [row, page] : mounted_)
        formerPages.push_back(row);
    auto places = pages_.follow(former, formerPages);
    auto before = std::exchange(mounted_, {});
    auto place = places.begin();
    auto shown = current_;
    for (auto& [row, page] : before) {
        auto now = *place++;
        // The page that is seen stays in sight, unless somebody says which number shall be seen.
        if (now && !selection_ && static_cast<int>(row) == current_)
            shown = static_cast<int>(*now);
        if (!now || mounted_.contains(*now)) {
            host().retire(std::move(page));
            continue;
        }
        auto [run, index] = pages_.at(*now);
        page->updateRow(run, index);
        mounted_.emplace(*now, std::move(page));
    }
    contentsDidChange();
    shown = std::clamp(shown, 0, std::max(pageCount() - 1, 0));
    if (std::exchange(current_, shown) != shown)
        target_.reset();
    tellSelection(); // of a number that is no page any more
    refresh();
}

void PagedViewNode::refresh()
{
    forgetSources();
    isRightToLeft_ = environment<LayoutDirectionKey>() == LayoutDirection::rightToLeft;
    readSelection();
    invalidateLayout();
}

void PagedViewNode::readSelection()
{
    if (!selection_)
        return;
    selection_->registerReader(*this);
    auto wanted = std::clamp(selection_->get(), 0, std::max(pageCount() - 1, 0));
    if (wanted == current_ || isTelling_)
        return;
    if (size_ == CGSize{})
        current_ = wanted;
    else
        goTo(wanted, true);
}

CGFloat PagedViewNode::offsetOf(int page) const
{
    return size_.width * (isRightToLeft_ ? pageCount() - 1 - page : page);
}

int PagedViewNode::pageAt(CGFloat offset) const
{
    if (!(size_.width > 0) || pageCount() == 0)
        return 0;
    auto place = static_cast<int>(std::lround(offset / size_.width));
    return std::clamp(isRightToLeft_ ? pageCount() - 1 - place : place, 0, pageCount() - 1);
}

void PagedViewNode::goTo(int page, bool animated)
{
    if (pageCount() == 0)
        return;
    page = std::clamp(page, 0, pageCount() - 1);
    target_ = page;
    current_ = page;
    dots_->setCurrentPage(page);
    tellSelection();
    scrollView_->setContentOffset({offsetOf(page), 0}, animated ? Animated::yes : Animated::no);
}

void PagedViewNode::didScroll()
{
    if (isArranging_)
        return;
    invalidateLayout();
    auto page = pageAt(scrollView_->contentOffset().x);
    // On the way to where the program goes the pages between are not chosen; a finger takes over.
    if (target_ && !scrollView_->isDragging()) {
        if (page != *target_)
            return;
    }
    target_.reset();
    if (std::exchange(current_, page) == page)
        return;
    dots_->setCurrentPage(page);
    tellSelection();
}

// In a later turn: scrolling may be part of a layout, which must not change what it lays out.
void PagedViewNode::tellSelection()
{
    if (!selection_ || isTelling_)
        return;
    isTelling_ = true;
    RunLoop::main().perform([this, isMounted = std::weak_ptr(isMounted_)] {
        if (!isMounted.lock())
            return;
        isTelling_ = false;
        if (!selection_ || selection_->get() == current_)
            return;
        selection_->set(current_);
        // A binding that refuses has its way.
        if (isMounted.lock() && selection_ && selection_->get() != current_)
            readSelection();
    });
}

void PagedViewNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    PlatformViewNode::arrange(rect, proposal);
    if (std::exchange(isArranging_, true))
        return;
    auto count = pageCount();
    auto moved = std::exchange(size_, rect.size) != rect.size;
    auto width = size_.width;
    UIView::performWithoutAnimation([&] {
        scrollView_->setFrame({{}, size_});
        CGSize content{width * count, size_.height};
        contentView_->setFrame({{}, content});
        auto isStill = !scrollView_->isScrolling() && !scrollView_->isDragging();
        auto isElsewhere = pageAt(scrollView_->contentOffset().x) != current_;
        auto offset = moved || (isStill && isElsewhere) ? offsetOf(current_) : scrollView_->contentOffset().x;
        scrollView_->moveContent(content, {offset, 0});
        dots_->setNumberOfPages(count);
        dots_->setCurrentPage(current_);
        dots_->setSemanticContentAttribute(isRightToLeft_ ? UISemanticContentAttribute::forceRightToLeft
                                                          : UISemanticContentAttribute::forceLeftToRight);
        auto dots = dots_->sizeThatFits({width, dotsHeight});
        auto dotsWidth = std::min(dots.width, width);
        dots_->setFrame(CGRect::make((width - dotsWidth) / 2,
                                     std::max(size_.height - dotsHeight - dotsGap, 0.0), dotsWidth,
                                     std::min(dotsHeight, size_.height)));
    });
    std::map<std::size_t, std::unique_ptr<Page>> kept;
    auto offset = scrollView_->contentOffset().x;
    for (int page = 0; page < count && width > 0; ++page) {
        auto x = offsetOf(page);
        auto isNear = x < offset + 2 * width && x + 2 * width > offset;
        if (!isNear)
            continue;
        auto row = static_cast<std::size_t>(page);
        auto found = mounted_.find(row);
        if (found != mounted_.end()) {
            kept[row] = std::move(found->second);
            mounted_.erase(found);
        } else {
            auto [run, index] = pages_.at(row);
            kept[row] = std::make_unique<Page>(pageContext(), run, index);
            contentsDidChange();
        }
    }
    mounted_ = std::move(kept);
    host().settleBelow(depth());
    for (auto& [row, page] : mounted_)
        page->place(CGRect::make(offsetOf(static_cast<int>(row)), 0, width, size_.height),
                    ProposedSize::of(size_));
    isArranging_ = false;
}

} // namespace platform
