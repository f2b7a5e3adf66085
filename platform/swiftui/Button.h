// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ButtonNode.h"
#include "platform/swiftui/Text.h"
#include "platform/swiftui/View.h"

#include <functional>
#include <string>
#include <utility>

namespace platform {

// Does something when it is clicked, tapped, or pressed by Space or Return: `Button{save, Text{"Save"}}`, or
// `Button{"Save", save}`. The label takes the tint colour unless the surroundings have a colour of text, and does
// nothing by itself. Two buttons never count as equal, for actions cannot be compared.
template <View Label>
struct Button {
    std::function<void()> action;
    Label label;

    Button(std::function<void()> whenPressed, Label content)
        : action(std::move(whenPressed))
        , label(std::move(content))
    {
    }
    Button(std::string title, std::function<void()> whenPressed)
        requires std::same_as<Label, Text>
        : Button(std::move(whenPressed), Text{std::move(title)})
    {
    }

    class Node final : public ButtonNode {
    public:
        Node(const NodeContext& context, const Button& button)
            : ButtonNode(context, button.action)
        {
            setContent(makeNode(contentContext(), button.label));
        }
        void update(const Button& button)
        {
            setAction(button.action);
            updateNode(content(), button.label);
        }
    };
};

template <class Action, View Label>
Button(Action, Label) -> Button<Label>;
Button(std::string, std::function<void()>) -> Button<Text>;

} // namespace platform
