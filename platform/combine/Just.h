// SPDX-License-Identifier: MIT
#pragma once

#include "platform/combine/AnyPublisher.h"

#include <utility>

namespace platform {

// A stream of one value: each subscriber receives it from inside the call that subscribes, and then the end.
template <class Output>
class Just {
public:
    explicit Just(Output value)
        : value_(std::move(value))
    {
    }

    AnyPublisher<Output> eraseToAnyPublisher() const
    {
        return AnyPublisher<Output>([value = value_](const Subscriber<Output>& subscriber) {
            subscriber.receive(value);
            subscriber.complete(Completion::finished());
            return AnyCancellable();
        });
    }

private:
    Output value_;
};

} // namespace platform
