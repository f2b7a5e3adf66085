// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/StackNode.h"

#include <optional>
#include <tuple>
#include <utility>

namespace platform {

template <class Stack, View... Views>
class StackOfNode;

struct HStackOptions {
    VerticalAlignment alignment = VerticalAlignment::center;
    std::optional<CGFloat> spacing; // points; none: 8
    bool operator==(const HStackOptions&) const = default;
};

// A row, from where reading begins: `HStack{icon, title}`, `HStack{{.spacing = 4}, icon, title}`.
template <View... Views>
struct HStack {
    HStackOptions options;
    std::tuple<Views...> views;

    explicit HStack(Views... each)
        : views(std::move(each)...)
    {
    }
    HStack(HStackOptions stackOptions, Views... each)
        : options(stackOptions)
        , views(std::move(each)...)
    {
    }

    using Node = StackOfNode<HStack, Views...>;
    StackLayout layout() const
    {
        return {.axis = Axis::horizontal,
                .spacing = options.spacing.value_or(StackLayout{}.spacing),
                .verticalAlignment = options.alignment};
    }
    friend bool operator==(const HStack& a, const HStack& b)
        requires(std::equality_comparable<Views> && ...)
    = default;
};

struct VStackOptions {
    HorizontalAlignment alignment = HorizontalAlignment::center;
    std::optional<CGFloat> spacing; // points; none: 8
    bool operator==(const VStackOptions&) const = default;
};

// A column, from the top: `VStack{title, text}`, `VStack{{.alignment = HorizontalAlignment::leading}, title, text}`.
template <View... Views>
struct VStack {
    VStackOptions options;
    std::tuple<Views...> views;

    explicit VStack(Views... each)
        : views(std::move(each)...)
    {
    }
    VStack(VStackOptions stackOptions, Views... each)
        : options(stackOptions)
        , views(std::move(each)...)
    {
    }

    using Node = StackOfNode<VStack, Views...>;
    StackLayout layout() const
    {
        return {.axis = Axis::vertical,
                .spacing = options.spacing.value_or(StackLayout{}.spacing),
                .horizontalAlignment = options.alignment};
    }
    friend bool operator==(const VStack& a, const VStack& b)
        requires(std::equality_comparable<Views> && ...)
    = default;
};

template <class Stack, View... Views>
class StackOfNode final : public TupleChildren<StackNode, Views...> {
public:
    StackOfNode(const NodeContext& context, const Stack& stack)
        : TupleChildren<StackNode, Views...>(context, stack.views, stack.layout())
    {
    }
    void update(const Stack& stack)
    {
        this->setLayout(stack.layout());
        this->updateChildren(stack.views);
    }
};

} // namespace platform
