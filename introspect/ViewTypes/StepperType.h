// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A stepper.
struct StepperType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<StepperType, platform::UIStepper> iOS{};
    static constexpr catalogue::visionOSRow<StepperType, platform::UIStepper> visionOS{};
};
inline constexpr StepperType stepper;

} // namespace introspect
