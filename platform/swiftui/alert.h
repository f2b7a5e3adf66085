// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/AlertContent.h"
#include "platform/swiftui/AppearanceNode.h"
#include "platform/swiftui/Binding.h"

#include <concepts>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace platform {

class AlertPresenter;

// A value with an identity: a member or a function `id`.
template <class Item>
concept Identifiable = requires(const Item& item) {
    { item.id() } -> std::equality_comparable;
} || requires(const Item& item) {
    { item.id } -> std::equality_comparable;
};

namespace detail {
template <Identifiable Item>
auto identityOf(const Item& item)
{
    if constexpr (requires { item.id(); })
        return item.id();
    else
        return item.id;
}
} // namespace detail

// Shows an alert over the window for as long as the binding holds an item.
template <Identifiable Item>
struct AlertModifier {
    Binding<std::optional<Item>> item;
    std::function<AlertContent(const Item&)> content;
    // Of what the binding is computed from; empty when that is nothing else.
    std::function<void(ViewNode&)> registerReader = {};
    class Node;
};

// Of all items: what needs no type. An alert modifier directly on another one replaces it.
class AlertNode : public AppearanceNode {
public:
    explicit AlertNode(const NodeContext& context);
    ~AlertNode() override;

protected:
    // The item is there, and is `isSame` as the last one was.
    void want(bool isSame, std::function<AlertContent()> make, std::function<void()> clear);
    void wantNothing();

private:
    void follow();
    struct Wish {
        std::function<AlertContent()> make;
        std::function<void()> clear;
    };

    const std::shared_ptr<AlertPresenter> presenter_;
    const bool isReplaced_;
    std::optional<Wish> wish_;
    std::uint64_t identity_ = 0;
};

template <Identifiable Item>
class AlertModifier<Item>::Node : public AlertNode {
public:
    Node(const NodeContext& context, const AlertModifier& modifier)
        : AlertNode(context)
        , modifier_(modifier)
    {
        read();
    }
    void refresh() override { read(); }

protected:
    void updateModifier(const AlertModifier& modifier)
    {
        modifier_ = modifier;
        read();
    }

private:
    using Identity = decltype(detail::identityOf(std::declval<const Item&>()));

    void read()
    {
        forgetSources();
        modifier_.item.registerReader(*this);
        if (modifier_.registerReader)
            modifier_.registerReader(*this);
        auto item = modifier_.item.get();
        if (!item) {
            identity_.reset();
            return wantNothing();
        }
        auto identity = detail::identityOf(*item);
        auto isSame = identity_ && *identity_ == identity;
        identity_ = std::move(identity);
        want(
            isSame, [content = modifier_.content, item = std::move(*item)] { return content(item); },
            [binding = modifier_.item] { binding.set(std::nullopt); });
    }

    AlertModifier modifier_;
    std::optional<Identity> identity_;
};

// Presents `content(item)` while `item` holds one. When the alert goes, the binding is emptied first, then the chosen
// button's action is called. Another item with the same identity leaves the alert as it is; one with another identity
// replaces it. One alert at a time is shown by a window's controller: others wait for it to go. Only the last of
// several alert modifiers one directly on the other counts.
template <Identifiable Item, class Content>
    requires std::is_invocable_r_v<Alert, Content, const Item&>
auto alert(Binding<std::optional<Item>> item, Content content)
{
    return AlertModifier<Item>{std::move(item), std::move(content)};
}

namespace detail {
struct PresentedAlert {
    static constexpr int id = 0;
};
} // namespace detail

// The same while `isPresented` holds true.
template <class Content>
    requires std::is_invocable_r_v<Alert, Content>
auto alert(Binding<bool> isPresented, Content content)
{
    Binding<std::optional<detail::PresentedAlert>> item(
        [isPresented] { return isPresented.get() ? std::optional(detail::PresentedAlert{}) : std::nullopt; },
        [isPresented](const auto& value) { isPresented.set(value.has_value()); });
    return AlertModifier<detail::PresentedAlert>{
        std::move(item), [content = std::move(content)](const detail::PresentedAlert&) { return content(); }};
}

} // namespace platform
