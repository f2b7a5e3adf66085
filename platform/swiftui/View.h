// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ViewNode.h"

#include <concepts>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>

namespace platform {

// A declarative view is a copyable record. It either describes itself by other views, in `body() const`, or it is a
// primitive and names the node that brings it on screen, constructible from (const NodeContext&, const V&) and with
// `update(const V&)`. A record that has == is compared, and an equal one is not looked at again.
template <class V>
concept CompositeView = std::copyable<V> && requires(const V& view) { view.body(); };
template <class V>
concept PrimitiveView = std::copyable<V> && requires { typename V::Node; };
template <class V>
concept View = CompositeView<V> || PrimitiveView<V>;

template <CompositeView V>
class CompositeNode;

namespace detail {
template <class V>
struct NodeOf {
    using Type = typename V::Node;
};
template <CompositeView V>
struct NodeOf<V> {
    using Type = CompositeNode<V>;
};
} // namespace detail

// The node that brings a V on screen. The static type of a description is the identity of its place: a place that
// is described by the same type keeps its node.
template <View V>
using NodeOf = typename detail::NodeOf<V>::Type;

// Here and elsewhere what is made for each type of view is handed on as its base at once: the standard library's helpers
// would all be instantiated for that type too, and views have long types.
template <View V>
std::unique_ptr<ViewNode> makeNode(const NodeContext& context, const V& view)
{
    return std::unique_ptr<ViewNode>(new NodeOf<V>(context, view));
}

// Requires: `node` was made from a V.
template <View V>
void updateNode(ViewNode& node, const V& view)
{
    static_cast<NodeOf<V>&>(node).update(view);
}

namespace detail {

// Whether a description can be skipped because it says what the last one said.
template <class Record>
bool isSameRecord(const Record& a, const Record& b)
{
    if constexpr (std::equality_comparable<Record>)
        return a == b;
    else
        return false;
}

// The fields of a record that live in its node: state, bindings, environment, observed objects. A record names them
// once: `auto dynamicProperties() { return std::tie(count, font); }`.
template <class Record>
concept HasDynamicProperties = requires(Record& record) { record.dynamicProperties(); };

} // namespace detail

// What a node keeps for one dynamic property between descriptions.
using PropertyStorage = std::vector<std::shared_ptr<void>>;

namespace detail {

// Gives each dynamic property its storage, in order; the first time it makes it.
template <class Record>
void connectProperties(Record& record, ViewNode& node, PropertyStorage& storage)
{
    if constexpr (HasDynamicProperties<Record>) {
        std::apply(
            [&](auto&... property) {
                storage.resize(sizeof...(property));
                std::size_t index = 0;
                (property.connect(node, storage[index++]), ...);
            },
            record.dynamicProperties());
    }
}

} // namespace detail
} // namespace platform

#include "platform/swiftui/CompositeNode.h"
