// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Date.h"
#include "platform/swiftui/AnyView.h"
#include "platform/swiftui/Binding.h"
#include "platform/swiftui/ControlNode.h"
#include "platform/swiftui/Environment.h"
#include "platform/swiftui/controlStyles.h"

#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

namespace platform {

class UIDatePicker;

enum class DatePickerComponents { hourAndMinute, date, all };

struct DatePickerOptions {
    std::optional<Date> from{}, to{}; // none: no limit
    DatePickerComponents displayedComponents = DatePickerComponents::all;
};

// The wheels of a date picker, alone. Shows what the binding says: a binding that refuses turns them back.
struct DateWheels {
    Binding<Date> selection;
    DatePickerOptions options;
    std::string name; // to assistive technology
    class Node;
};

class DateWheels::Node final : public ControlNode {
public:
    Node(const NodeContext& context, const DateWheels& view);
    ~Node() override;
    void update(const DateWheels& view);
    bool isRigid(Axis axis) const override { return axis == Axis::vertical; }

protected:
    CGSize measure(const ProposedSize& proposal) override;
    void readSources() override;

private:
    void userChanged();

    DateWheels record_;
    std::shared_ptr<UIDatePicker> picker_;
    UIControl::ActionIdentifier onChange_;
};

// A choice of a date, a time of day, or both: `DatePicker{"Departure", date, {.displayedComponents =
// DatePickerComponents::date}}`. The title over wheels.
struct DatePicker {
    std::string title;
    Binding<Date> selection;
    DatePickerOptions options{};
    Environment<LabelsVisibilityKey> labels{};

    auto dynamicProperties() { return std::tie(labels); }
    AnyView body() const;
};

} // namespace platform
