// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIColor.h"
#include "platform/swiftui/Binding.h"
#include "platform/swiftui/ControlNode.h"
#include "platform/swiftui/LabeledControl.h"
#include "platform/swiftui/Text.h"

#include <memory>
#include <string>
#include <utility>

namespace platform {

class UIColorWell;

// The well of a colour picker, alone. Shows what the binding says: a binding that refuses keeps its colour.
struct ColorWell {
    Binding<UIColor> selection;
    std::string name; // to assistive technology
    class Node;
};

class ColorWell::Node final : public ControlNode {
public:
    Node(const NodeContext& context, const ColorWell& view);
    ~Node() override;
    void update(const ColorWell& view);
    bool isRigid(Axis) const override { return true; }

protected:
    void readSources() override;

private:
    void userChanged();

    ColorWell record_;
    std::shared_ptr<UIColorWell> well_;
    UIControl::ActionIdentifier onChange_;
};

// A choice of a colour: a row of the title and a well that opens a panel. `ColorPicker{"Tint", tint}`
struct ColorPicker {
    std::string title;
    Binding<UIColor> selection;

    auto body() const { return LabeledControl{Text{title}, true, ColorWell{selection, title}}; }
};

} // namespace platform
