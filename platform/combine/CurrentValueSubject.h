// SPDX-License-Identifier: MIT
#pragma once

#include "platform/combine/PassthroughSubject.h"

#include <memory>
#include <utility>

namespace platform {

// A PassthroughSubject that remembers its last value: a subscriber receives that at once, from inside the
// call that subscribes it, and then what is sent.
template <class Output>
class CurrentValueSubject {
public:
    explicit CurrentValueSubject(Output value)
        : core_(std::make_shared<Core>(std::move(value)))
    {
    }
    CurrentValueSubject(const CurrentValueSubject&) = delete; // a copy would reach nobody
    CurrentValueSubject& operator=(const CurrentValueSubject&) = delete;

    // Good until the next send.
    const Output& value() const { return core_->value; }

    AnyPublisher<Output> eraseToAnyPublisher() const
    {
        return AnyPublisher<Output>([core = core_](Subscriber<Output> subscriber) {
            auto subscription = core->add(subscriber.state());
            if (!core->isCompleted()) {
                const Output present = core->value; // the handler may send
                subscriber.receive(present);
            }
            return subscription;
        });
    }

    template <class OnValue>
    AnyCancellable sink(OnValue onValue, std::function<void(const Completion&)> onCompletion = nullptr) const
    {
        return eraseToAnyPublisher().sink(std::move(onValue), std::move(onCompletion));
    }

    // value() is the new one before anybody receives it. After the completion it does nothing.
    void send(Output value)
    {
        if (core_->isCompleted())
            return;
        core_->value = value;
        PassthroughSubject<Output>::send(*core_, std::move(value));
    }
    void complete(const Completion& completion) { core_->complete(completion); }

private:
    struct Core final : SubscriberList {
        explicit Core(Output initial)
            : value(std::move(initial))
        {
        }
        Output value;
    };

    const std::shared_ptr<Core> core_;
};

} // namespace platform
