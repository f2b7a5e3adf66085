// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/LazyListNode.h"
#include "platform/swiftui/LazyRows.h"
#include "platform/swiftui/RowSelection.h"
#include "platform/swiftui/Section.h"
#include "platform/swiftui/environment.h"

#include <concepts>
#include <memory>
#include <optional>
#include <tuple>
#include <utility>

namespace platform {

inline auto listStyle(ListStyle style)
{
    return environment<ListStyleKey>(style);
}

// A column of rows that scrolls: `List{items, [](const Item& item) { return Text{item.title}; }}`, `List{rows...}` with
// views, ForEach and Section in any order. Only the rows in sight and some around them exist; one that scrolls out of sight
// loses its state and begins anew when it comes back. Takes all that is offered.
//
// `List{chosen, items, content}` with a `Binding<std::optional<Identity>>` lets the user choose one row, by pointer or keys.
// Arrows, Page Up and Down, Home and End go from row to row; Return and Space press the button or link of a row.
//
// A row is as wide as the list and as high as its content wants to be, at least 44 points. What changes above the rows in
// sight, or was estimated and turns out different, does not move them.
template <View... Views>
struct List {
    std::tuple<Views...> views;
    std::shared_ptr<const RowSelection> selection; // null: rows are not chosen

    explicit List(Views... each)
        : views(std::move(each)...)
    {
    }
    template <class Data, class Content>
        requires(!View<Data>)
    List(Data data, Content content)
        : views(ForEach{std::move(data), std::move(content)})
    {
    }
    template <class Data, class Projection, class Content>
        requires(!View<Data>)
    List(Data data, Projection identity, Content content)
        : views(ForEach{std::move(data), std::move(identity), std::move(content)})
    {
    }

    template <class Identity, class Data, class Content>
        requires(!View<Data>)
    List(Binding<std::optional<Identity>> chosen, Data data, Content content)
        : views(ForEach{std::move(data), std::move(content)})
        , selection(std::make_shared<BoundRowSelection<Identity>>(std::move(chosen)))
    {
        static_assert(std::same_as<Identity, detail::IdentityOf<Data, IdentityOfElement>>);
    }
    template <class Identity, class Data, class Projection, class Content>
        requires(!View<Data>)
    List(Binding<std::optional<Identity>> chosen, Data data, Projection identity, Content content)
        : views(ForEach{std::move(data), std::move(identity), std::move(content)})
        , selection(std::make_shared<BoundRowSelection<Identity>>(std::move(chosen)))
    {
        static_assert(std::same_as<Identity, detail::IdentityOf<Data, Projection>>);
    }

    class Node final : public LazyListNode {
    public:
        Node(const NodeContext& context, const List& list)
            : LazyListNode(context, ListKind::list, rowsOf(list), list.selection)
        {
        }
        void update(const List& list)
        {
            setRows(rowsOf(list));
            setSelection(list.selection);
        }

    private:
        static RowSources rowsOf(const List& list)
        {
            RowSources rows;
            appendEach(rows, list.views);
            return rows;
        }
    };
};
template <View... Views>
List(Views...) -> List<Views...>;
template <class Data, class Content>
    requires(!View<Data>)
List(Data, Content) -> List<ForEach<Data, IdentityOfElement, Content>>;
template <class Data, class Projection, class Content>
    requires(!View<Data>)
List(Data, Projection, Content) -> List<ForEach<Data, Projection, Content>>;
template <class Identity, class Data, class Content>
    requires(!View<Data>)
List(Binding<std::optional<Identity>>, Data, Content) -> List<ForEach<Data, IdentityOfElement, Content>>;
template <class Identity, class Data, class Projection, class Content>
    requires(!View<Data>)
List(Binding<std::optional<Identity>>, Data, Projection, Content) -> List<ForEach<Data, Projection, Content>>;

} // namespace platform
