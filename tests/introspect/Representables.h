// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/UIViewControllerRepresentable.h"
#include "platform/swiftui/UIViewRepresentable.h"
#include "platform/uikit/UIView.h"

#include <concepts>
#include <memory>
#include <optional>

namespace introspect {

// Declarative views that put one platform entity of a class on screen. Two of different `number` are different.
template <class View>
struct ShownView : platform::UIViewRepresentable<ShownView<View>> {
    int number = 0;

    explicit ShownView(int given = 0)
        : number(given)
    {
    }
    std::shared_ptr<View> makeUIView(const auto&) const { return std::make_shared<View>(); }
    void updateUIView(View&, const auto&) const { }
    // Takes what it is offered.
    std::optional<platform::CGSize> sizeThatFits(const platform::ProposedSize& proposal, View&) const
    {
        return proposal.replacingUnspecified();
    }
    bool operator==(const ShownView&) const = default;
};

template <class Controller>
struct ShownController : platform::UIViewControllerRepresentable<ShownController<Controller>> {
    std::shared_ptr<Controller> makeUIViewController(const auto&) const
    {
        return std::make_shared<Controller>();
    }
    void updateUIViewController(Controller&, const auto&) const { }
    bool operator==(const ShownController&) const = default;
};

template <class Entity>
auto shown()
{
    if constexpr (std::derived_from<Entity, platform::UIView>)
        return ShownView<Entity>();
    else
        return ShownController<Entity>();
}

} // namespace introspect
