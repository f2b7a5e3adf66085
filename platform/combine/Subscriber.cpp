// SPDX-License-Identifier: MIT
#include "platform/combine/Subscriber.h"

namespace platform {

SubscriberBase::SubscriberBase(std::function<void(const Completion&)> onCompletion)
    : onCompletion_(std::move(onCompletion))
{
}

SubscriberBase::~SubscriberBase() = default;

void SubscriberBase::complete(const Completion& completion)
{
    if (isActive_.exchange(false) && onCompletion_)
        onCompletion_(completion);
}

} // namespace platform
