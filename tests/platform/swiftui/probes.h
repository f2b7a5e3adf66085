// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/State.h"
#include "platform/swiftui/UIHostingController.h"
#include "platform/swiftui/UIViewRepresentable.h"
#include "platform/uikit/UIView.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// The smallest views that tests of the declarative layer stand on.
namespace probes {

using Log = std::vector<std::string>;

// A platform view of a fixed size that is found by its name.
struct Leaf : platform::UIViewRepresentable<Leaf> {
    explicit Leaf(std::string nameOfView, platform::CGSize wanted = {20, 10})
        : name(std::move(nameOfView))
        , size(wanted)
    {
    }
    std::string name;
    platform::CGSize size;
    bool operator==(const Leaf&) const = default;

    std::shared_ptr<platform::UIView> makeUIView(const auto&) const
    {
        return std::make_shared<platform::UIView>();
    }
    void updateUIView(platform::UIView& view, const auto&) const { view.accessibility().identifier = name; }
    std::optional<platform::CGSize> sizeThatFits(const platform::ProposedSize&, platform::UIView&) const
    {
        return size;
    }
};

// A view that takes all that it is offered.
struct Filler : platform::UIViewRepresentable<Filler> {
    explicit Filler(std::string nameOfView)
        : name(std::move(nameOfView))
    {
    }
    std::string name;
    bool operator==(const Filler&) const = default;

    std::shared_ptr<platform::UIView> makeUIView(const auto&) const
    {
        auto view = std::make_shared<platform::UIView>();
        view->accessibility().identifier = name;
        return view;
    }
    void updateUIView(platform::UIView&, const auto&) const { }
    std::optional<platform::CGSize> sizeThatFits(const platform::ProposedSize& offer, platform::UIView&) const
    {
        return offer.replacingUnspecified();
    }
};

// Hands a binding to the test that wrote the view.
template <class Value>
using Handle = std::shared_ptr<std::optional<platform::Binding<Value>>>;
template <class Value>
Handle<Value> makeHandle()
{
    return std::make_shared<std::optional<platform::Binding<Value>>>();
}

// A view that shows what a function makes of one state, which the test sets by the handle.
template <class Value, platform::View Body>
struct Stateful {
    Handle<Value> handle;
    std::function<Body(const Value&)> describe;
    platform::State<Value> value{};

    auto dynamicProperties() { return std::tie(value); }
    auto body() const
    {
        *handle = value.binding();
        return describe(value.get());
    }
};
template <class Value, class Describe>
auto stateful(Handle<Value> handle, Value initial, Describe describe)
{
    using Body = decltype(describe(initial));
    return Stateful<Value, Body>{std::move(handle), std::move(describe), platform::State<Value>(initial)};
}

template <platform::View Root>
auto host(Root root)
{
    return std::make_shared<platform::UIHostingController<Root>>(std::move(root));
}

// The names of a view's subviews, in painting order.
inline Log names(const platform::UIView& view)
{
    Log result;
    for (auto& subview : view.subviews())
        result.push_back(subview->accessibility().identifier);
    return result;
}

} // namespace probes
