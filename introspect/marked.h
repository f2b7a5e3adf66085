// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/UUID.h"
#include "platform/swiftui/AnyView.h"

namespace introspect {

// The content between the anchor with that id and the probe, both without size and hidden from assistive technology.
platform::AnyView marked(platform::AnyView content, const platform::UUID& id, platform::AnyView probe);

} // namespace introspect
