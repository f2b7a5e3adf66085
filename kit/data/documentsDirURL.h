// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/FileManager.h"

namespace zelk {

// The user's documents directory, which need not exist. Requires: the user has one, which one without a home has not.
platform::URL documentsDirURL(const platform::FileManager& manager);

} // namespace zelk
