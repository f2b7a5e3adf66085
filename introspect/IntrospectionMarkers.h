// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSObject.h"

#include <string_view>

// How marker controllers and their views are told from the entities that a search may find.
namespace introspect {

// A bool attached to the markers.
inline constexpr std::string_view isIntrospectionPlatformEntityKey = "isIntrospectionPlatformEntity";
// A std::weak_ptr<IntrospectionPlatformViewController> attached to the probe's view.
inline constexpr std::string_view introspectionControllerKey = "introspectionController";

void markAsIntrospectionPlatformEntity(platform::NSObject& entity);
bool isIntrospectionPlatformEntity(const platform::NSObject& entity);

} // namespace introspect
