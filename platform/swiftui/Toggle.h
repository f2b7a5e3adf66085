// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Binding.h"
#include "platform/swiftui/Button.h"
#include "platform/swiftui/ConditionalContent.h"
#include "platform/swiftui/ControlNode.h"
#include "platform/swiftui/Environment.h"
#include "platform/swiftui/LabeledControl.h"
#include "platform/swiftui/Text.h"
#include "platform/swiftui/controlStyles.h"

#include <memory>
#include <string>
#include <tuple>
#include <utility>

namespace platform {

class UISwitch;

// The switch of a toggle, alone. Shows what the binding says: a binding that refuses puts it back.
struct ToggleSwitch {
    Binding<bool> isOn;
    std::string name; // to assistive technology

    class Node;
    bool operator==(const ToggleSwitch&) const = default;
};

class ToggleSwitch::Node final : public ControlNode {
public:
    Node(const NodeContext& context, const ToggleSwitch& view);
    ~Node() override;
    void update(const ToggleSwitch& view);
    bool isRigid(Axis) const override { return true; }

protected:
    void readSources() override;

private:
    class Switch;
    void userChanged();

    ToggleSwitch record_;
    std::shared_ptr<Switch> switch_;
};

// A choice between on and off: `Toggle{"Wi-Fi", isOn}`, or `Toggle{isOn, label, "Wi-Fi"}` where the name is for assistive
// technology. A row of the label and a switch, or, in the button style, a button that stays pressed.
template <View Label>
struct Toggle {
    Binding<bool> isOn;
    Label label;
    std::string name;
    Environment<ToggleStyleKey> style{};

    Toggle(Binding<bool> binding, Label content, std::string spoken = {})
        : isOn(std::move(binding))
        , label(std::move(content))
        , name(std::move(spoken))
    {
    }
    Toggle(std::string title, Binding<bool> binding)
        requires std::same_as<Label, Text>
        : Toggle(std::move(binding), Text{title}, title)
    {
    }

    auto dynamicProperties() { return std::tie(isOn, style); }
    auto body() const
    {
        return when(
            *style == ToggleStyle::button_, [&] { return ToggleButton{isOn, label}; },
            [&] { return LabeledControl{label, !name.empty(), ToggleSwitch{isOn, name}}; });
    }

private:
    // The button of the button style.
    struct ToggleButton {
        Binding<bool> isOn;
        Label label;

        auto dynamicProperties() { return std::tie(isOn); }
        auto body() const
        {
            auto binding = isOn;
            bool isSet = binding.get();
            return Button{[binding] { binding.set(!binding.get()); }, label}
            | buttonStyle(isSet ? ButtonStyle::borderedProminent : ButtonStyle::bordered)
                | toggledState(isSet);
        }
    };
};

template <class Label>
Toggle(Binding<bool>, Label) -> Toggle<Label>;
template <class Label>
Toggle(Binding<bool>, Label, std::string) -> Toggle<Label>;
template <class Label>
Toggle(Binding<bool>, Label, const char*) -> Toggle<Label>;
Toggle(std::string, Binding<bool>) -> Toggle<Text>;

} // namespace platform
