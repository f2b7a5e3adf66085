// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/URLRequest.h"
#include "platform/network/URLSessionConfiguration.h"

namespace platform {

// `request` with what the session adds and what its policy tells caches on the way. A load that began at `first` tells its
// secrets to no other server.
URLRequest outgoingRequest(const URLRequest& request, const URL& first,
                           const URLSessionConfiguration& configuration);

// Whether its method and its fields can be sent as they are, and nothing else with them.
bool isWellFormed(const URLRequest& request);

} // namespace platform
