// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/swiftui/Alignment.h"
#include "platform/swiftui/Forward.h"

namespace platform {

// Where `node`, `size` large, stands in `rect` by `alignment`; `reader` is told when the layout direction changes.
CGRect alignedRect(ViewNode& reader, ViewNode& node, CGSize size, Alignment alignment, CGRect rect);

} // namespace platform
