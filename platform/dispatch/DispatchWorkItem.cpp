// SPDX-License-Identifier: MIT
#include "platform/dispatch/DispatchWorkItem.h"

#include "platform/foundation/Precondition.h"

#include <utility>

namespace platform {

DispatchWorkItem::DispatchWorkItem(std::function<void()> work)
    : work_(std::move(work))
{
    precondition(static_cast<bool>(work_), "the work of a work item must be callable");
}

void DispatchWorkItem::perform()
{
    if (!isCancelled())
        work_();
}

void DispatchWorkItem::cancel()
{
    isCancelled_ = true;
}

bool DispatchWorkItem::isCancelled() const
{
    return isCancelled_;
}

} // namespace platform
