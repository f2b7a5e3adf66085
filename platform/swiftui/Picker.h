// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Binding.h"
#include "platform/swiftui/ConditionalContent.h"
#include "platform/swiftui/ControlNode.h"
#include "platform/swiftui/Environment.h"
#include "platform/swiftui/LabeledControl.h"
#include "platform/swiftui/Text.h"
#include "platform/swiftui/controlStyles.h"

#include <concepts>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace platform {

class UIMenuButton;
class UIPickerView;
class UISegmentedControl;

// What pickers choose among, without the values' type.
struct PickerChoice {
    std::string name; // to assistive technology
    std::vector<std::string> titles;
    int selected = -1;                    // none
    std::function<int(int index)> select; // gives the index that is selected then
};

// The row of segments of a picker.
struct SegmentedChoice {
    PickerChoice choice;
    class Node;
};

class SegmentedChoice::Node final : public ControlNode {
public:
    Node(const NodeContext& context, const SegmentedChoice& view);
    ~Node() override;
    void update(const SegmentedChoice& view);
    bool isRigid(Axis axis) const override { return axis == Axis::vertical; }

protected:
    CGSize measure(const ProposedSize& proposal) override;
    void readSources() override;

private:
    void userChanged();

    PickerChoice choice_;
    std::shared_ptr<UISegmentedControl> control_;
};

// The button with the menu of a picker.
struct MenuChoice {
    PickerChoice choice;
    class Node;
};

class MenuChoice::Node final : public ControlNode {
public:
    Node(const NodeContext& context, const MenuChoice& view);
    ~Node() override;
    void update(const MenuChoice& view);
    bool isRigid(Axis axis) const override { return axis == Axis::vertical; }

protected:
    void readSources() override;

private:
    void userChanged();

    PickerChoice choice_;
    std::shared_ptr<UIMenuButton> button_;
    UIControl::ActionIdentifier onChange_;
};

// The wheel of a picker.
struct WheelChoice {
    PickerChoice choice;
    class Node;
};

class WheelChoice::Node final : public ControlNode {
public:
    Node(const NodeContext& context, const WheelChoice& view);
    ~Node() override;
    void update(const WheelChoice& view);
    bool isRigid(Axis axis) const override { return axis == Axis::vertical; }

protected:
    CGSize measure(const ProposedSize& proposal) override;
    void readSources() override;

private:
    class Delegate;

    std::shared_ptr<Delegate> delegate_; // knows the choice
    std::shared_ptr<UIPickerView> picker_;
};

template <std::equality_comparable Value>
struct PickerOption {
    Value tag;
    std::string title;
};

// A choice of one of a few: `Picker{"Flavour", flavour, {{Flavour::lemon, "Lemon"}, {Flavour::mint, "Mint"}}}`. A value
// that is not among the options selects none. A row of segments, or a menu or a wheel in
// those styles.
template <std::equality_comparable Value>
struct Picker {
    std::string title;
    Binding<Value> selection;
    std::vector<PickerOption<Value>> options;
    Environment<PickerStyleKey> style{};

    Picker(std::string label, Binding<Value> binding, std::vector<PickerOption<Value>> choices)
        : title(std::move(label))
        , selection(std::move(binding))
        , options(std::move(choices))
    {
    }

    auto dynamicProperties() { return std::tie(selection, style); }
    auto body() const
    {
        return when(
            *style == PickerStyle::wheel, [&] { return WheelChoice{choice()}; },
            [&] {
                return when(
                    *style == PickerStyle::menu,
                    [&] { return LabeledControl{Text{title}, true, MenuChoice{choice()}}; },
                    [&] { return SegmentedChoice{choice()}; });
            });
    }

private:
    static int indexOf(const std::vector<PickerOption<Value>>& options, const Value& value)
    {
        for (std::size_t index = 0; index < options.size(); ++index) {
            if (options[index].tag == value)
                return static_cast<int>(index);
        }
        return -1;
    }
    PickerChoice choice() const
    {
        PickerChoice result{.name = title, .selected = indexOf(options, selection.get())};
        for (auto& option : options)
            result.titles.push_back(option.title);
        result.select = [binding = selection, options = options](int index) {
            if (index >= 0 && static_cast<std::size_t>(index) < options.size())
                binding.set(options[static_cast<std::size_t>(index)].tag);
            return indexOf(options, binding.get());
        };
        return result;
    }
};

template <class Value>
Picker(std::string, Binding<Value>, std::vector<PickerOption<Value>>) -> Picker<Value>;

} // namespace platform
