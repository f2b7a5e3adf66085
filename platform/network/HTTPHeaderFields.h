// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// Orders the names of header fields without regard to the case of ASCII letters.
struct HTTPFieldNameLess {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const;
};

// The header fields of a message by name, in any case: each name once, fields that came several times joined by ", ".
using HTTPHeaderFields = std::map<std::string, std::string, HTTPFieldNameLess>;

// Nothing when there is no such field.
std::optional<std::string> valueForHTTPHeaderField(const HTTPHeaderFields& fields, std::string_view name);
// Appends to what is there, after ", ".
void addHTTPHeaderField(HTTPHeaderFields& fields, std::string_view name, std::string_view value);

// Whether a field may be sent or believed: the name is a token; the value has no control characters but the
// tab, and no white space around it.
bool isValidHTTPHeaderField(std::string_view name, std::string_view value);

} // namespace platform
