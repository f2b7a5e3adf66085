// SPDX-License-Identifier: MIT
#include "introspect/IntrospectionMarkers.h"

#include <string>

namespace introspect {

void markAsIntrospectionPlatformEntity(platform::NSObject& entity)
{
    entity.setAssociatedObject(std::string(isIntrospectionPlatformEntityKey), true);
}

bool isIntrospectionPlatformEntity(const platform::NSObject& entity)
{
    const auto* isMarked = entity.associatedObject<bool>(isIntrospectionPlatformEntityKey);
    return isMarked && *isMarked;
}

} // namespace introspect
