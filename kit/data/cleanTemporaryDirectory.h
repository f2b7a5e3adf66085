// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/FileManager.h"

#include <memory>

namespace platform {
class DispatchQueue;
}

namespace zelk {

// Empties the manager's temporary directory, on the queue or, without one, before it returns. What cannot be removed stays,
// unsaid; nobody is told when it is done. The manager must live until then.
void cleanTemporaryDirectory(const platform::FileManager& manager,
                             const std::shared_ptr<platform::DispatchQueue>& queue = nullptr);

} // namespace zelk
