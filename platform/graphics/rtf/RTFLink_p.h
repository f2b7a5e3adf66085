// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/TextAttributes.h"

#include <optional>
#include <string_view>

namespace platform {

// The link of a field by its instruction, `HYPERLINK "http://example.org/" \l "part"`: a URL, or the text when
// it is none; nothing when the instruction asks for something else.
std::optional<AttributeValue> linkOfField(std::string_view instruction);

// A link as an attribute has it: a URL, or the text when it is none. Nothing when it is empty.
std::optional<AttributeValue> linkValue(std::string_view target);

} // namespace platform
