// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/PropertyList.h"

#include <span>
#include <string>

namespace platform {

// The settings that a command line gives as pairs `-key value`, the program's name not among the arguments. A value
// that is a property list in XML, with or without the plist tag around it, is what it says; any other is text. An
// argument that begins with "-" is a value only if a number follows, so `-verbose -level -3` gives a level alone.
// Arguments that begin with "--" are the program's own, as is everything behind "--" itself. The last of equal keys
// counts.
PropertyListDictionary defaultsFromArguments(std::span<const std::string> arguments);

// Those of the running process. Valid for ever.
const PropertyListDictionary& argumentDefaults();

} // namespace platform
