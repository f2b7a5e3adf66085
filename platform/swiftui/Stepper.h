// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Binding.h"
#include "platform/swiftui/ControlNode.h"
#include "platform/swiftui/LabeledControl.h"
#include "platform/swiftui/Text.h"
#include "platform/uikit/ValueRange.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace platform {

class UIStepper;

struct StepperOptions {
    ValueRange in{0, 100};
    double step = 1;
    bool wraps = false; // past one end comes the other
};

// The two buttons of a stepper, alone. Shows what the binding says: a binding that refuses keeps its value.
struct StepperButtons {
    Binding<double> value;
    StepperOptions options;
    std::string name; // to assistive technology

    class Node;
};

class StepperButtons::Node final : public ControlNode {
public:
    Node(const NodeContext& context, const StepperButtons& view);
    ~Node() override;
    void update(const StepperButtons& view);
    bool isRigid(Axis) const override { return true; }

protected:
    void readSources() override;

private:
    void userChanged();

    StepperButtons record_;
    std::shared_ptr<UIStepper> stepper_;
};

// A number that goes up and down by steps: `Stepper{"Copies: 3", copies, {.in = {1, 99}}}`. A row of the label and two
// buttons.
template <View Label>
struct Stepper {
    Label label;
    Binding<double> value;
    StepperOptions options;
    std::string name;

    Stepper(std::string title, Binding<double> binding, StepperOptions stepperOptions = {})
        requires std::same_as<Label, Text>
        : Stepper(Text{title}, std::move(binding), stepperOptions, title)
    {
    }
    // `spoken` is the name for assistive technology.
    Stepper(Label content, Binding<double> binding, StepperOptions stepperOptions = {},
            std::string spoken = {})
        : label(std::move(content))
        , value(std::move(binding))
        , options(stepperOptions)
        , name(std::move(spoken))
    {
    }

    auto body() const { return LabeledControl{label, !name.empty(), StepperButtons{value, options, name}}; }
};

Stepper(std::string, Binding<double>) -> Stepper<Text>;
Stepper(std::string, Binding<double>, StepperOptions) -> Stepper<Text>;
Stepper(const char*, Binding<double>) -> Stepper<Text>;
Stepper(const char*, Binding<double>, StepperOptions) -> Stepper<Text>;

} // namespace platform
