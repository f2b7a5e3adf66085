// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Date.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace platform::httpcaching {

// The header fields that caching goes by, read from a stranger's text.

// Delta-seconds of RFC 9111, 1.2.2: what is too large counts as 2^31, what is no number as nothing.
std::optional<std::int64_t> parseDeltaSeconds(std::string_view text);

// HTTP-date in its three forms (RFC 9110, 5.6.7). A two-digit year that is more than 50 years after `now` means the
// century before.
std::optional<Date> parseDate(std::string_view text, Date now);

// Cache-Control of a request or a response (RFC 9111, 5.2). A directive that is there but unreadable is taken at its
// strictest, and so is one that is there twice.
struct Directives {
    bool isNoStore = false;
    bool isNoCache = false; // a no-cache that names fields too: more than it asks, and allowed
    bool mustRevalidate = false;
    bool isPublic = false;
    bool isOnlyIfCached = false;
    std::optional<std::int64_t> maxAge;
    std::optional<std::int64_t> maxStale; // the largest number when any age will do
    std::optional<std::int64_t> minFresh;
};
Directives parseDirectives(std::string_view text);

// The elements of a comma-separated list, trimmed, empty ones left out, quoted strings kept together.
void forEachElement(std::string_view list, const std::function<void(std::string_view)>& body);

bool equalsIgnoringCase(std::string_view a, std::string_view b);

} // namespace platform::httpcaching
