// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Binding.h"
#include "platform/swiftui/ControlNode.h"
#include "platform/uikit/ValueRange.h"

#include <functional>
#include <memory>
#include <string>

namespace platform {

class UISlider;

struct SliderOptions {
    ValueRange in{};   // the ends of the range; made proper where they are not
    double step = 0;   // what values are a whole number of from the lower end; 0: any
    std::string label; // its name to assistive technology
    // True when the user takes the thumb, false when it is let go; both for each key.
    std::function<void(bool isEditing)> onEditingChanged{};
};

// A choice of a number by dragging: `Slider{volume, {.in = {0, 11}, .label = "Volume"}}`. As wide as there is room. Shows
// what the binding says: a binding that refuses a value puts the thumb back.
struct Slider {
    Binding<double> value;
    SliderOptions options{};

    class Node;
};

class Slider::Node final : public ControlNode {
public:
    Node(const NodeContext& context, const Slider& view);
    ~Node() override;
    void update(const Slider& view);
    bool isRigid(Axis axis) const override { return axis == Axis::vertical; }

protected:
    CGSize measure(const ProposedSize& proposal) override;
    void readSources() override;

private:
    void userChanged();
    void editingChanged(bool isEditing) const;

    Slider record_;
    std::shared_ptr<UISlider> slider_;
};

} // namespace platform
