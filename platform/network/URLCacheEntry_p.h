// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/CachedURLResponse.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// The format of the cache's files. A file is one record and, of an answer, the body after it; numbers are little-endian,
// texts preceded by their lengths:
//
//     magic, version     8 bytes
//     checksum           8 bytes, over the head
//     size of the head   4 bytes
//     head               its kind, then what belongs to that; of an answer also the body's size and checksum
//     body               to the end of the file
//
// Files are read as if a stranger had written them: what does not fit exactly is nothing.
namespace platform {

// An answer, for a URL and a selection among its variants (empty when there is but one).
struct URLCacheAnswer {
    std::string url;
    std::string variant;
    CachedURLResponse response;
};

// What the answers for a URL depend on. The generation is of this list alone, so that variants found by an earlier one
// are not found again.
struct URLCacheVariants {
    std::string url;
    std::string generation;
    std::vector<std::string> fields;

    bool operator==(const URLCacheVariants&) const = default;
};

// All of the file but the body, which follows it.
std::string encodedHead(const URLCacheAnswer& answer);
std::string encoded(const URLCacheVariants& variants);

using URLCacheRecord = std::variant<std::monostate, URLCacheAnswer, URLCacheVariants>;
// Nothing when the bytes are no whole record, or damaged.
URLCacheRecord decodeURLCacheRecord(std::string bytes);

// The beginning of a file with that head.
std::string sealedURLCacheHead(std::string_view head);

} // namespace platform
