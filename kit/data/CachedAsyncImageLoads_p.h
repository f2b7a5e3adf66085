// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"
#include "platform/network/URLRequest.h"
#include "platform/network/URLSession.h"

#include <functional>
#include <memory>
#include <stop_token>
#include <string>

namespace zelk {

// The bytes of a picture, or why there are none.
struct ImageLoadOutcome {
    platform::Result<std::shared_ptr<const std::string>> data;
    bool isFromLocalCache = false;
};

// Larger bodies are refused as soon as that is known: NSURLErrorDataLengthExceedsMaximum.
inline constexpr std::int64_t maximumImageDataSize = 64LL * 1024 * 1024;

// Loads what a view wants, together with the views that want the same of the same cache at this time. Calls back once, on
// the main thread, or not at all after `token` was stopped; when nobody is left the load is cancelled. A picture that came
// by redirections is stored under `request`, and what was stored for the requests on the way is removed.
// Main thread only, stopping the token included.
void loadImageData(const platform::URLRequest& request, const std::shared_ptr<platform::URLSession>& session,
                   std::stop_token token, std::function<void(const ImageLoadOutcome&)> completion);

} // namespace zelk
