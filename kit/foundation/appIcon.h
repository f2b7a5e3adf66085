// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Bundle.h"
#include "platform/graphics/UIImage.h"

#include <optional>

namespace zelk {

// The program's icon: the last file of the primary icon that the information dictionary lists; without such a list, the
// image named AppIcon, else AppIcon.icns of the resources. Nothing when that does not load. Reads and decodes files at
// each call. Any thread.
std::optional<platform::UIImage> appIcon(const platform::Bundle& bundle = *platform::Bundle::main());

} // namespace zelk
