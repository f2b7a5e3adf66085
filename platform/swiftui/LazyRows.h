// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/AnyView.h"
#include "platform/swiftui/ConditionalContent.h"
#include "platform/swiftui/EmptyView.h"
#include "platform/swiftui/ForEach.h"
#include "platform/swiftui/TupleView.h"
#include "platform/swiftui/View.h"

#include <any>
#include <concepts>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <ranges>
#include <typeinfo>
#include <unordered_map>
#include <utility>
#include <vector>

namespace platform {

// Rows that one description gives, each made only when somebody asks for it. A value once made. Main thread only.
class RowSource {
public:
    virtual ~RowSource() = default;
    virtual std::size_t count() const = 0;
    // Requires: the row exists; a node that is updated was made by a source of the same type.
    virtual std::unique_ptr<ViewNode> makeRow(std::size_t row, const NodeContext& context) const = 0;
    virtual void updateRow(std::size_t row, ViewNode& node) const = 0;
    // Where rows of a former source of the same type are in this one; none: gone. Requires: `rows` exist there.
    virtual std::vector<std::optional<std::size_t>> follow(const RowSource& former,
                                                           const std::vector<std::size_t>& rows) const = 0;
    // What a row is known by; empty for one that is its place. Requires: the row exists.
    virtual std::any identityOf(std::size_t) const { return {}; }
    // Whether every row of the former source is here at the same place, and no other.
    virtual bool hasSameRows(const RowSource& former) const = 0;
};

enum class RowKind { row, header, footer };

struct RowRun {
    std::shared_ptr<const RowSource> source;
    RowKind kind = RowKind::row;
    std::size_t section = 0;
    std::size_t place = 0; // in the description: the same for what may be the same rows
};

// What a list shows, in order.
struct RowSources {
    std::vector<RowRun> runs;
    // Of what is added.
    std::size_t section = 0;
    std::size_t place = 0;

    void add(std::shared_ptr<const RowSource> source, RowKind kind = RowKind::row)
    {
        runs.push_back({std::move(source), kind, section, place});
    }
    // Runs `append` for what stands as number `index` at the present place.
    template <class Append>
    void within(std::size_t index, const Append& append)
    {
        auto former = std::exchange(place, place * 1'000'003 + index + 1);
        append();
        place = former;
    }
};

// One view as a row.
template <View V>
class SingleRow final : public RowSource {
public:
    explicit SingleRow(V view)
        : view_(std::move(view))
    {
    }
    std::size_t count() const override { return 1; }
    std::unique_ptr<ViewNode> makeRow(std::size_t, const NodeContext& context) const override
    {
        return makeNode(context, view_);
    }
    void updateRow(std::size_t, ViewNode& node) const override { updateNode(node, view_); }
    std::vector<std::optional<std::size_t>> follow(const RowSource&,
                                                   const std::vector<std::size_t>& rows) const override
    {
        return {rows.begin(), rows.end()};
    }
    bool hasSameRows(const RowSource&) const override { return true; }

private:
    V view_;
};

// A row for each element, known by its identity.
template <class Data, class Projection, class Content>
class ForEachRows final : public RowSource {
    using Record = ForEach<Data, Projection, Content>;
    using Identity = detail::IdentityOf<Data, Projection>;
    using Element = std::remove_cvref_t<std::invoke_result_t<const Content&, detail::ElementOf<Data>>>;
    static constexpr bool hasRandomAccess =
        std::ranges::random_access_range<const Data> && std::ranges::sized_range<const Data>;

public:
    explicit ForEachRows(Record record)
        : record_(std::move(record))
    {
        if constexpr (!hasRandomAccess) {
            for (auto&& element : record_.data)
                elements_.push_back(element);
        }
    }
    std::size_t count() const override
    {
        if constexpr (hasRandomAccess)
            return static_cast<std::size_t>(std::ranges::size(record_.data));
        else
            return elements_.size();
    }
    std::unique_ptr<ViewNode> makeRow(std::size_t row, const NodeContext& context) const override
    {
        return makeNode<Element>(context, std::invoke(record_.content, element(row)));
    }
    void updateRow(std::size_t row, ViewNode& node) const override
    {
        platform::updateNode<Element>(node, std::invoke(record_.content, element(row)));
    }
    std::any identityOf(std::size_t row) const override { return Identity(identity(row)); }
    bool hasSameRows(const RowSource& source) const override
    {
        auto& former = static_cast<const ForEachRows&>(source);
        if (former.count() != count())
            return false;
        for (std::size_t row = 0; row < count(); ++row) {
            if (!(former.identity(row) == identity(row)))
                return false;
        }
        return true;
    }
    std::vector<std::optional<std::size_t>> follow(const RowSource& source,
                                                   const std::vector<std::size_t>& rows) const override
    {
        auto& former = static_cast<const ForEachRows&>(source);
        // Where identities come twice, the first, the second and so on are told apart.
        std::unordered_map<Identity, std::vector<std::size_t>> places;
        places.reserve(count());
        for (std::size_t row = 0; row < count(); ++row)
            places[identity(row)].push_back(row);
        std::unordered_map<Identity, std::vector<std::size_t>> formerPlaces;
        for (std::size_t row : rows)
            formerPlaces[former.identity(row)];
        for (std::size_t row = 0; row < former.count(); ++row) {
            if (auto found = formerPlaces.find(former.identity(row)); found != formerPlaces.end())
                found->second.push_back(row);
        }
        std::vector<std::optional<std::size_t>> result;
        for (std::size_t row : rows) {
            auto id = former.identity(row);
            auto& before = formerPlaces[id];
            auto occurrence = static_cast<std::size_t>(std::ranges::find(before, row) - before.begin());
            auto found = places.find(id);
            if (found == places.end() || occurrence >= found->second.size())
                result.emplace_back();
            else
                result.emplace_back(found->second[occurrence]);
        }
        return result;
    }

private:
    decltype(auto) element(std::size_t row) const
    {
        if constexpr (hasRandomAccess)
            return std::ranges::begin(
                record_.data)[static_cast<std::ranges::range_difference_t<const Data>>(row)];
        else
            return (elements_[row]);
    }
    Identity identity(std::size_t row) const { return std::invoke(record_.identity, element(row)); }

    struct Nothing {
        void push_back(const auto&) { }
    };
    Record record_;
    [[no_unique_address]] std::conditional_t<hasRandomAccess, Nothing,
                                             std::vector<std::ranges::range_value_t<const Data>>> elements_;
};

// What a view is as rows: elements, groups and conditions give theirs, nothing gives none, anything else is one row.
template <View V>
void appendRows(RowSources& rows, const V& view)
{
    rows.add(std::make_shared<SingleRow<V>>(view));
}
inline void appendRows(RowSources&, const EmptyView&) { }
template <class Data, class Projection, class Content>
void appendRows(RowSources& rows, const ForEach<Data, Projection, Content>& view)
{
    rows.add(std::make_shared<ForEachRows<Data, Projection, Content>>(view));
}
template <View... Views>
void appendRows(RowSources& rows, const TupleView<Views...>& view);
template <View... Views>
void appendRows(RowSources& rows, const Group<Views...>& group);
template <View First, View Second>
void appendRows(RowSources& rows, const ConditionalContent<First, Second>& view)
{
    rows.within(view.isFirst() ? 0 : 1,
                [&] { view.visit([&](const auto& each) { appendRows(rows, each); }); });
}

template <View... Views>
void appendEach(RowSources& rows, const std::tuple<Views...>& views)
{
    std::size_t index = 0;
    std::apply([&](const auto&... each) { (rows.within(index++, [&] { appendRows(rows, each); }), ...); },
               views);
}
template <View... Views>
void appendRows(RowSources& rows, const TupleView<Views...>& view)
{
    appendEach(rows, view.views);
}
template <View... Views>
void appendRows(RowSources& rows, const Group<Views...>& group)
{
    appendEach(rows, group.views);
}

} // namespace platform
