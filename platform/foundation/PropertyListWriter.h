// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/PropertyList.h"

#include <string>

namespace platform {

// The XML form of `value` in UTF-8, which parsePropertyList() reads back as an equal value within the same limits:
// reals keep every bit (but which NaN it was), texts their line ends. Keys come in order, so equal values give equal
// texts.
//
// Errors: NSCocoaError::propertyListWriteInvalid for what the form cannot hold: text that is not UTF-8 or has control
// characters other than tab, line feed and carriage return, a date outside of the years 0 to 9999, more than `limits`
// allow. The failure reason names the place: "the text at windows/0/title holds the character U+0001".
[[nodiscard]] Result<std::string> propertyListXML(const PropertyListValue& value,
                                                  const PropertyListLimits& limits = {});

} // namespace platform
