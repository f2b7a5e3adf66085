// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"

namespace platform {

// The right to change the settings in a folder, held by one process at a time while the object lives. The system gives
// it back when a process ends, however it ends.
class DefaultsLock {
public:
    // Makes the lock file if there is none. Waits up to 10 seconds for another process, so that one that was stopped
    // does not stop the others. Errors: the file-write codes.
    [[nodiscard]] static Result<DefaultsLock> take(const URL& file);

    DefaultsLock(DefaultsLock&& other) noexcept;
    DefaultsLock& operator=(DefaultsLock&&) = delete; // nothing needs it
    ~DefaultsLock();

private:
    explicit DefaultsLock(int descriptor)
        : descriptor_(descriptor)
    {
    }

    int descriptor_;
};

} // namespace platform
