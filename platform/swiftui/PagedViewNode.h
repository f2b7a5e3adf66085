// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Binding.h"
#include "platform/swiftui/PlatformViewNode.h"
#include "platform/swiftui/RowTable.h"
#include "platform/swiftui/ViewContainer.h"

#include <map>
#include <memory>
#include <optional>

namespace platform {

class UIPageControl;
class UIScrollView;

// Pages side by side that turn one by one, and dots below them that say which is seen. Only the pages in sight and their
// neighbours exist. The platform view holds a UICollectionView with a cell for each such page, and a UIPageControl.
class PagedViewNode final : public PlatformViewNode, public ViewContainer {
public:
    PagedViewNode(const NodeContext& context, RowSources pages, std::optional<Binding<int>> selection);
    ~PagedViewNode() override;

    void update(RowSources pages, std::optional<Binding<int>> selection);
    void refresh() override;
    void forEachChild(const std::function<void(ViewNode&)>& visit) const override;
    void appendContents(std::vector<std::shared_ptr<UIView>>& views) const override;
    UIView& containerView() const override { return *contentView_; }

protected:
    CGSize measure(const ProposedSize& proposal) override
    {
        return proposal.replacingUnspecified({320, 240});
    }
    void arrange(CGRect rect, const ProposedSize& proposal) override;

private:
    class Page;
    class PageView;
    NodeContext pageContext();
    int pageCount() const { return static_cast<int>(pages_.count()); }
    int pageAt(CGFloat offset) const;
    CGFloat offsetOf(int page) const;
    void goTo(int page, bool animated);
    void readSelection();
    void didScroll();
    void tellSelection();

    // fixed after construction
    std::shared_ptr<UIScrollView> scrollView_;
    std::shared_ptr<UIView> contentView_;
    std::shared_ptr<UIPageControl> dots_;
    const std::shared_ptr<bool> isMounted_ = std::make_shared<bool>(true);
    // main thread only
    RowTable pages_;
    std::optional<Binding<int>> selection_;
    std::map<std::size_t, std::unique_ptr<Page>> mounted_;
    CGSize size_;
    int current_ = 0;           // that is seen, or on its way to be
    std::optional<int> target_; // that the program scrolls to
    bool isRightToLeft_ = false;
    bool isArranging_ = false;
    bool isTelling_ = false;
};

} // namespace platform
