// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/CachedURLResponse.h"
#include "platform/network/HTTPURLResponse.h"
#include "platform/network/URLRequest.h"

#include <optional>
#include <string>
#include <vector>

// What HTTP says about stored answers (RFC 9111, for a private cache), as functions of a request and an answer. Nothing
// here reads a clock, a disk or a network. Any thread.
namespace platform::httpcaching {

// What to do about a request, in view of what is stored for it.
enum class Plan {
    useStored,
    validateStored, // send validating(request, stored); a 304 makes the stored answer good again
    load,
    fail, // the request may not go to the network, and nothing that may be used is stored
};

// By the request's policy and headers, and by the age of what is stored. A request that asks about a state or a range
// itself (If-None-Match, Range) is left to the network. `stored` is what the cache has for the request; of an answer
// that is no HTTP answer nothing is known, so it is stale at once.
Plan plan(const URLRequest& request, const std::optional<CachedURLResponse>& stored, Date now);

// The request with the validators of what is stored: If-None-Match, If-Modified-Since. The same request when there are
// none, or when the stored answer came from another URL (after a redirection), whose validators mean nothing here.
URLRequest validating(URLRequest request, const CachedURLResponse& stored);

// What a 304 makes of the stored answer it was asked about: its fields are renewed, its age begins anew, its body
// stays. Nothing when the 304 speaks of another state than the stored one: then load without validators.
std::optional<CachedURLResponse> refreshed(const CachedURLResponse& stored,
                                           const HTTPURLResponse& notModified, HTTPExchangeTimes times);

// Whether the cache may keep this answer of the network of its own accord.
bool mayStore(const URLRequest& request, const HTTPURLResponse& response);

// After an answer to a request that may have changed something (POST, PUT, DELETE, ...): what is stored for these URLs,
// of the request's own origin, is no longer true. Empty for safe methods and for answers that are errors.
std::vector<URL> invalidatedBy(const URLRequest& request, const HTTPURLResponse& response);

// Seconds since the answer left its origin, and seconds after that for which it counts as fresh.
double currentAge(const CachedURLResponse& stored, Date now);
double freshnessLifetime(const CachedURLResponse& stored, Date now);

// The names of the request fields that chose this answer: those of Vary, in lower case, sorted, and "authorization"
// when the request had one, so that nobody is answered with what another account may see. Nothing for "Vary: *".
std::optional<std::vector<std::string>> selectingFields(const URLRequest& request,
                                                        const URLResponse& response);
// What the request says in those fields, in one text: equal for requests that may have the same answer.
std::string selection(const URLRequest& request, const std::vector<std::string>& fields);

} // namespace platform::httpcaching
