// SPDX-License-Identifier: MIT
#include "platform/swiftui/TabView.h"

#include "platform/graphics/SymbolImage.h"
#include "platform/swiftui/ContentController.h"
#include "platform/swiftui/PagedViewNode.h"
#include "platform/swiftui/ViewHost.h"
#include "platform/uikit/UITabBarController.h"
#include "platform/uikit/UIView.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

// Tabs with a bar: a tab controller with a controller for each.
class TabsNode final : public ViewControllerNode {
public:
    TabsNode(const NodeContext& context, TabViewRecord record)
        : ViewControllerNode(context)
        , tabs_(std::make_shared<UITabBarController>())
    {
        std::vector<std::shared_ptr<UIViewController>> controllers;
        for (auto& tab : record.tabs) {
            pages_.push_back(std::make_shared<ContentController>(tab, context.environment));
            controllers.push_back(pages_.back());
        }
        tabs_->setViewControllers(std::move(controllers));
        tabs_->onSelect = [this](std::size_t index) {
            if (record_.selection) {
                record_.selection->set(static_cast<int>(index));
                readSelection(); // a binding that refuses has its way
            }
        };
        show(std::move(record));
        adopt(tabs_, [] { });
    }
    ~TabsNode() override
    {
        tabs_->onSelect = nullptr;
        release();
        tabs_->setViewControllers({}); // they hold on to their surroundings
    }
    void update(TabViewRecord record)
    {
        // As many as there were, as the static type says.
        for (std::size_t i = 0; i < pages_.size(); ++i)
            pages_[i]->setContent(record.tabs[i]);
        show(std::move(record));
    }
    void refresh() override
    {
        forgetSources();
        readEnvironment();
        readSelection();
    }

private:
    void show(TabViewRecord record)
    {
        record_ = std::move(record);
        auto scale = std::max(context().environment->value<DisplayScaleKey>(nullptr), 1.0);
        std::vector<UITabBarItem> items;
        for (auto& item : record_.items)
            items.push_back(
                {item.title,
                 item.systemImage.empty() ? UIImage() : symbolImage(item.systemImage, {}, scale)});
        tabs_->setTabBarItems(std::move(items));
        refresh();
    }
    void readEnvironment()
    {
        auto isMirrored = environment<LayoutDirectionKey>() == LayoutDirection::rightToLeft;
        tabs_->view()->setSemanticContentAttribute(isMirrored ? UISemanticContentAttribute::forceRightToLeft
                                                              : UISemanticContentAttribute::forceLeftToRight);
    }
    void readSelection()
    {
        if (!record_.selection || pages_.empty())
            return;
        record_.selection->registerReader(*this);
        auto last = static_cast<int>(pages_.size()) - 1;
        auto wanted = static_cast<std::size_t>(std::clamp(record_.selection->get(), 0, last));
        if (wanted != tabs_->selectedIndex())
            tabs_->setSelectedIndex(wanted);
    }

    TabViewRecord record_;
    std::shared_ptr<UITabBarController> tabs_;
    std::vector<std::shared_ptr<ContentController>> pages_;
};

} // namespace

TabViewNode::TabViewNode(const NodeContext& context, TabViewRecord record)
    : UnaryNode(context)
    , isPaged_(context.environment->value<TabViewStyleKey>(nullptr) == TabViewStyle::page)
{
    auto inner = context.below(*this);
    if (isPaged_)
        setChild(
            std::make_unique<PagedViewNode>(inner, std::move(record.pages), std::move(record.selection)));
    else
        setChild(std::make_unique<TabsNode>(inner, std::move(record)));
}

void TabViewNode::update(TabViewRecord record)
{
    if (isPaged_)
        static_cast<PagedViewNode&>(child()).update(std::move(record.pages), std::move(record.selection));
    else
        static_cast<TabsNode&>(child()).update(std::move(record));
}

} // namespace platform
