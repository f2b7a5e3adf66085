// SPDX-License-Identifier: MIT
#include "platform/foundation/MainThreadWork.h"

#include <atomic>
#include <utility>

namespace platform {

namespace {

std::atomic<void (*)(MainThreadWork)> executor = nullptr;

} // namespace

void setMainThreadExecutor(void (*execute)(MainThreadWork))
{
    executor = execute;
}

bool performOnMainThread(MainThreadWork& work)
{
    auto execute = executor.load();
    if (execute)
        execute(std::move(work));
    return execute != nullptr;
}

} // namespace platform
