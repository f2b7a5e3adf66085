// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ChildrenNode.h"
#include "platform/swiftui/Closure.h"

#include <concepts>
#include <functional>
#include <ranges>
#include <unordered_map>
#include <utility>
#include <vector>

namespace platform {

namespace detail {

template <class Data>
using ElementOf = std::ranges::range_reference_t<const Data>;
template <class Data, class Projection>
using IdentityOf = std::remove_cvref_t<std::invoke_result_t<const Projection&, ElementOf<Data>>>;
template <class Identity>
concept Hashable = requires(const Identity& identity) {
    { std::hash<Identity>{}(identity) } -> std::convertible_to<std::size_t>;
};

} // namespace detail

// The identity of elements that have an `id`.
struct IdentityOfElement {
    auto operator()(const auto& element) const
        requires requires { element.id; }
    {
        return element.id;
    }
};

template <class Data, class Projection, class Content>
class ForEachNode;

// One view for each element: `ForEach{items, &Item::id, [](const Item& item) { return Text{item.title}; }}`, where
// elements with an `id` need no projection. A view
// belongs to its element's identity: it moves with it and keeps its state. Where identities come twice the first of
// them, the second and so on are told apart; that is logged, for it is hardly what was meant.
// The data is copied; a view of a range is kept as such and must outlive the record's next description.
template <std::ranges::input_range Data, class Projection, class Content>
    requires detail::Hashable<detail::IdentityOf<Data, Projection>>
struct ForEach {
    Data data;
    Closure<Projection> identity;
    Closure<Content> content;

    ForEach(Data elements, Projection identityOf, Content makeContent)
        : data(std::move(elements))
        , identity(std::move(identityOf))
        , content(std::move(makeContent))
    {
    }
    ForEach(Data elements, Content makeContent)
        requires std::same_as<Projection, IdentityOfElement>
        : ForEach(std::move(elements), IdentityOfElement{}, std::move(makeContent))
    {
    }

    using Node = ForEachNode<Data, Projection, Content>;
};

template <class Data, class Content>
ForEach(Data, Content) -> ForEach<Data, IdentityOfElement, Content>;

template <class Data, class Projection, class Content>
class ForEachNode final : public ListNode {
    using Record = ForEach<Data, Projection, Content>;
    using Identity = detail::IdentityOf<Data, Projection>;
    using Element = std::remove_cvref_t<std::invoke_result_t<const Content&, detail::ElementOf<Data>>>;

public:
    ForEachNode(const NodeContext& context, const Record& record)
        : ListNode(context)
        , identities_(identitiesOf(record))
    {
        keysOf(identities_); // for what it logs
        for (auto&& element : record.data)
            addChild(makeNode(context.below(*this), std::invoke(record.content, element)));
    }

    void update(const Record& record)
    {
        auto identities = identitiesOf(record);
        bool moved = identities != identities_;
        auto sources = moved ? sourcesFor(identities) : std::vector<std::size_t>();

        // What stays is updated first, at its former index; then what is new is made in its place.
        std::vector<Element> added;
        std::size_t index = 0;
        for (auto&& element : record.data) {
            auto source = moved ? sources[index] : index;
            if (source == newChild)
                added.push_back(std::invoke(record.content, element));
            else
                updateNode<Element>(child(source), std::invoke(record.content, element));
            ++index;
        }
        if (!moved)
            return;
        identities_ = std::move(identities);
        auto next = added.begin();
        rearrange(sources, [&](std::size_t) { return makeNode(context().below(*this), *next++); });
    }

private:
    // An identity and how many of the same came before it.
    struct Key {
        Identity identity;
        std::size_t occurrence;
        bool operator==(const Key&) const = default;
    };
    struct KeyHash {
        std::size_t operator()(const Key& key) const
        {
            return std::hash<Identity>{}(key.identity) ^ (key.occurrence * 0x9e3779b97f4a7c15u);
        }
    };

    static std::vector<Identity> identitiesOf(const Record& record)
    {
        std::vector<Identity> identities;
        if constexpr (std::ranges::sized_range<const Data>)
            identities.reserve(std::ranges::size(record.data));
        for (auto&& element : record.data)
            identities.push_back(std::invoke(record.identity, element));
        return identities;
    }

    std::vector<Key> keysOf(const std::vector<Identity>& identities)
    {
        std::vector<Key> keys;
        keys.reserve(identities.size());
        std::unordered_map<Identity, std::size_t> counts;
        counts.reserve(identities.size());
        for (auto& identity : identities)
            keys.push_back({identity, counts[identity]++});
        if (counts.size() < identities.size())
            reportDuplicates();
        return keys;
    }

    // For each of the new identities the index of the child that it has now.
    std::vector<std::size_t> sourcesFor(const std::vector<Identity>& identities)
    {
        std::unordered_map<Key, std::size_t, KeyHash> former;
        std::size_t index = 0;
        for (auto& key : keysOf(identities_))
            former.emplace(key, index++);
        std::vector<std::size_t> sources;
        sources.reserve(identities.size());
        for (auto& key : keysOf(identities)) {
            auto found = former.find(key);
            sources.push_back(found == former.end() ? newChild : found->second);
        }
        return sources;
    }

    std::vector<Identity> identities_; // of the children, in their order
};

} // namespace platform
