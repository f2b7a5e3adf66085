// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/StringTable.h"

#include <vector>

namespace platform {

// What keeps `translation` from standing in for `reference`: keys that are missing or unknown there, texts that are
// empty, and formats that take other arguments than the reference's. The places are in `translation`; a missing
// key has the first line.
std::vector<StringTableDiagnostic> compareStringTables(const StringTable& translation,
                                                       const StringTable& reference);

} // namespace platform
