// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ConditionalContent.h"
#include "platform/swiftui/Environment.h"
#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/Spacer.h"
#include "platform/swiftui/accessibility.h"
#include "platform/swiftui/controlStyles.h"
#include "platform/swiftui/placement.h"
#include "platform/swiftui/stacks.h"

#include <tuple>
#include <utility>

namespace platform {

// A row of a label, where reading begins, and a control at its end. A control that says the label itself keeps assistive
// technology from hearing it twice.
template <View Label, View Control>
struct LabeledControl {
    Label label;
    bool controlSaysLabel = false;
    Control control;
    Environment<LabelsVisibilityKey> labels{};
    Environment<IsEnabledKey> isEnabled{};
    Environment<ForegroundColorKey> color{};

    LabeledControl(Label text, bool saysLabel, Control element)
        : label(std::move(text))
        , controlSaysLabel(saysLabel)
        , control(std::move(element))
    {
    }
    auto dynamicProperties() { return std::tie(labels, isEnabled, color); }
    auto body() const
    {
        return HStack{when(*labels == LabelsVisibility::visible,
                           [&] {
                               auto hidden =
                                   controlSaysLabel ? AccessibilityHidden::yes : AccessibilityHidden::no;
                               auto ink = *isEnabled ? *color : std::optional(UIColor::tertiaryLabel());
                               return HStack{{.spacing = 0},
                                             label | foregroundColor(ink) | accessibilityHidden(hidden),
                                             Spacer{}};
                           }),
                      control | layoutPriority(1)};
    }
};

} // namespace platform
