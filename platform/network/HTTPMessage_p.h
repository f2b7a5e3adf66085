// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/HTTPHeaderFields.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// Parts of header fields, as servers of any intention write them. All are total: what cannot be read is nothing.

// Without the spaces, tabs and line ends around it.
std::string_view trimmed(std::string_view text);

struct ContentType {
    std::string mimeType; // lower case; empty when it is none
    std::string charset;
};
ContentType parseContentType(std::string_view value);

// Digits only, in the range; of "5, 5" the one when all are the same.
std::optional<std::int64_t> parseContentLength(std::string_view value);

struct ContentRange {
    std::int64_t first = 0;
    std::int64_t last = 0;             // not before first
    std::optional<std::int64_t> total; // beyond last
};
// "bytes 5-9/10" and "bytes 5-9/*".
std::optional<ContentRange> parseContentRange(std::string_view value);

// The name that a Content-Disposition proposes, decoded, in any of its forms; not yet safe.
std::optional<std::string> parseDispositionFilename(std::string_view value);

// `name` as the name of one file: its last component, valid UTF-8 without control characters, at most 255 bytes;
// empty when there is no such.
std::string safeFilename(std::string_view name);

// What If-Range can be sent: the entity tag, when it is a strong one; nothing else is sure to name these very bytes.
std::optional<std::string> strongValidator(const HTTPHeaderFields& fields);

} // namespace platform
