// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"
#include "platform/services/PHAssetChangeRequest.h"

#include <functional>
#include <memory>
#include <vector>

namespace platform {

using PHPhotosRequests = std::vector<std::shared_ptr<PHAssetChangeRequest>>;

// What `changes` asks for while it runs on this thread.
PHPhotosRequests collectPhotosRequests(const std::function<void()>& changes);
// Adds to what the block asks for that runs on this thread. Requires: one does.
void addPhotosRequest(std::shared_ptr<PHAssetChangeRequest> request);

// Carries out all of them or none.
[[nodiscard]] Result<void> carryOut(const PHPhotosRequests& requests);

} // namespace platform
