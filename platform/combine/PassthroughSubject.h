// SPDX-License-Identifier: MIT
#pragma once

#include "platform/combine/AnyPublisher.h"
#include "platform/combine/SubscriberList.h"

#include <concepts>
#include <memory>
#include <utility>

namespace platform {

template <class Value>
class Published;

// A stream that is sent by hand; a subscriber receives what is sent after it subscribed.
//
// Used on one thread; a source on another thread goes through its queue first. A handler may send,
// subscribe, cancel any subscription and let go of the subject. What a handler sends arrives after
// everybody has received the value being delivered, so all see one order: send() may then return before
// its value has arrived. Letting go of the subject ends the stream without a completion.
template <class Output>
class PassthroughSubject {
public:
    PassthroughSubject() = default;
    PassthroughSubject(const PassthroughSubject&) = delete; // a copy would reach nobody
    PassthroughSubject& operator=(const PassthroughSubject&) = delete;

    AnyPublisher<Output> eraseToAnyPublisher() const
    {
        return AnyPublisher<Output>(
            [list = subscribers_](Subscriber<Output> subscriber) { return list->add(subscriber.state()); });
    }

    template <class OnValue>
    AnyCancellable sink(OnValue onValue, std::function<void(const Completion&)> onCompletion = nullptr) const
    {
        return eraseToAnyPublisher().sink(std::move(onValue), std::move(onCompletion));
    }

    // After the completion it does nothing.
    void send(Output value) { send(*subscribers_, std::move(value)); }
    void send()
        requires std::same_as<Output, Void>
    {
        send(Void{});
    }
    void complete(const Completion& completion) { subscribers_->complete(completion); }

private:
    template <class Value>
    friend class Published;
    template <class Value>
    friend class CurrentValueSubject;

    static void send(SubscriberList& list, Output value)
    {
        using State = typename Subscriber<Output>::State;
        auto delivery = [](const Output& sent) {
            return [&sent](SubscriberBase& subscriber) {
                Subscriber<Output>::receive(static_cast<State&>(subscriber), sent);
            };
        };
        if (!list.isDelivering())
            list.deliver(delivery(value));
        else
            list.deliverLater([value = std::move(value), delivery](SubscriberBase& subscriber) {
                delivery(value)(subscriber);
            });
    }

    const std::shared_ptr<SubscriberList> subscribers_ = std::make_shared<SubscriberList>();
};

} // namespace platform
