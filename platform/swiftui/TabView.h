// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Binding.h"
#include "platform/swiftui/LazyRows.h"
#include "platform/swiftui/UIViewControllerRepresentable.h"
#include "platform/swiftui/environment.h"

#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace platform {

// Tabs with a bar to choose from, or pages to swipe through with dots that say which one is seen.
enum class TabViewStyle { automatic, page };
struct TabViewStyleKey : environment_keys::Key<TabViewStyle, TabViewStyle::automatic> { };
inline auto tabViewStyle(TabViewStyle style)
{
    return environment<TabViewStyleKey>(style);
}

// What the bar shows of a tab.
struct TabItem {
    std::string title;
    std::string systemImage; // a symbol; may be empty
    bool operator==(const TabItem&) const = default;
};

struct TabItemModifier {
    TabItem item;
    template <View Content>
    Content body(const Content& content) const
    {
        return content;
    }
    bool operator==(const TabItemModifier&) const = default;
};

// Outermost on a tab of a TabView: `inbox | tabItem("Inbox", "tray")`
inline auto tabItem(std::string title, std::string systemImage = {})
{
    return TabItemModifier{{std::move(title), std::move(systemImage)}};
}

namespace detail {

template <class V>
TabItem tabItemOf(const V&)
{
    return {};
}
template <class Content>
TabItem tabItemOf(const ModifiedContent<Content, TabItemModifier>& view)
{
    return view.modifier.item;
}

} // namespace detail

// What a TabView says of itself, without the types of its views.
struct TabViewRecord {
    std::optional<Binding<int>> selection;
    RowSources pages;
    std::vector<TabItem> items; // of tabs that stand in the record one by one
    std::vector<AnyView> tabs;  // the same
};

// Chooses by the style of its surroundings when it is mounted.
class TabViewNode : public UnaryNode {
public:
    TabViewNode(const NodeContext& context, TabViewRecord record);
    void update(TabViewRecord record);

private:
    bool isPaged_;
};

// Several views of which one is seen: `TabView{inbox | tabItem("Inbox"), drafts | tabItem("Drafts")}`, with
// `selection` the number of the one that is seen, from 0. In the page style a ForEach gives a page for each element, made
// when it comes into sight.
template <View... Views>
struct TabView {
    std::optional<Binding<int>> selection;
    std::tuple<Views...> views;

    explicit TabView(Views... each)
        : views(std::move(each)...)
    {
    }
    TabView(Binding<int> selected, Views... each)
        : selection(std::move(selected))
        , views(std::move(each)...)
    {
    }

    class Node final : public TabViewNode {
    public:
        Node(const NodeContext& context, const TabView& view)
            : TabViewNode(context, recordOf(view))
        {
        }
        void update(const TabView& view) { TabViewNode::update(recordOf(view)); }

    private:
        static TabViewRecord recordOf(const TabView& view)
        {
            TabViewRecord record{view.selection, {}, {}, {}};
            appendEach(record.pages, view.views);
            std::apply(
                [&](const auto&... each) {
                    (record.items.push_back(detail::tabItemOf(each)), ...);
                    (record.tabs.emplace_back(each), ...);
                },
                view.views);
            return record;
        }
    };
};

} // namespace platform
