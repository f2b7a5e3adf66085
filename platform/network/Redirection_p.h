// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/HTTPURLResponse.h"
#include "platform/network/URLRequest.h"

#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// How many a task follows.
inline constexpr int mostRedirections = 20;

// Whether `url` can be loaded: http or https, with a host.
bool isLoadable(const URL& url);
// What a server is asked for: `url` without the user's name and the fragment, which are not told.
std::string addressOf(const URL& url);

// Where the answer leads; nothing when it is no redirection. The request has the new URL, the method that the status asks
// for, and of the old header fields those that may be told to the new origin. Failures are codes of NSURLErrorDomain:
// a target that cannot be read, that is neither http nor https, or that is insecure where the old one was secure.
std::optional<std::expected<URLRequest, long>> redirection(const URLRequest& request,
                                                           const HTTPURLResponse& response);

// Whether a field that the session adds may be told to `url` in a load that began at `first`.
bool mayBeTold(std::string_view field, const URL& first, const URL& url);

} // namespace platform
