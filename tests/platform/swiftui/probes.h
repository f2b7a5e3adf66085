// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/swiftui.h"
#include "platform/uikit/UIView.h"
#include "tests/support/harness/DeclarativeHarness.h"

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

// A state of the test's own, for bindings.
template <class Value>
std::shared_ptr<platform::StateCell<Value>> cell(Value value = {})
{
    return std::make_shared<platform::StateCell<Value>>(std::move(value));
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
    return harness::AnyHostingController::make(std::move(root));
}

// The names of a view's subviews, in painting order.
inline Log names(const platform::UIView& view)
{
    Log result;
    for (auto& subview : view.subviews())
        result.push_back(subview->accessibility().identifier);
    return result;
}

// A window that shows one description.
struct Shown : harness::DeclarativeHarness {
    template <platform::View Root>
    explicit Shown(Root root)
        : Shown({320, 480}, std::move(root))
    {
    }
    template <platform::View Root>
    Shown(platform::CGSize size, Root root)
        : Shown(size, {}, std::move(root))
    {
    }
    template <platform::View Root>
    Shown(platform::CGSize size, const platform::UITraitCollection& traits, Root root)
        : DeclarativeHarness(size, traits)
        , controller(show(std::move(root)))
    {
    }
    // Of what the description has put on screen.
    platform::UIView& view(std::size_t index = 0) const { return *controller->view()->subviews().at(index); }
    Log names() const { return probes::names(*controller->view()); }
    // Sets a state, and lets everything happen that follows from it.
    template <class Value>
    void set(const Handle<Value>& handle, std::type_identity_t<Value> value)
    {
        (*handle)->set(std::move(value));
        settle();
    }
    template <platform::View Root>
    void update(Root root)
    {
        controller->setRootView(std::move(root));
        settle();
    }

    std::shared_ptr<harness::AnyHostingController> controller;
};

// A window in which what is presented comes and goes, which takes its time.
struct Scene {
    harness::ViewHarness harness;
    std::shared_ptr<harness::AnyHostingController> host;

    template <platform::View Root>
    explicit Scene(Root root, platform::CGSize size = {320, 480},
                   const platform::UITraitCollection& traits = {})
        : harness(size, traits)
        , host(probes::host(std::move(root)))
    {
        harness.show(host);
        settle();
    }
    void settle()
    {
        for (int i = 0; i < 4; ++i) {
            harness.settle();
            harness.advance(std::chrono::seconds(1));
        }
    }
    void press(platform::UIKeyCode key, std::uint8_t modifiers = 0)
    {
        harness.press(key, modifiers);
        settle();
    }
};

} // namespace probes
