// SPDX-License-Identifier: MIT
#pragma once

#include "platform/combine/Completion.h"

#include <atomic>
#include <functional>
#include <memory>
#include <utility>

namespace platform {

// What all subscribers have, whatever they receive.
class SubscriberBase {
public:
    explicit SubscriberBase(std::function<void(const Completion&)> onCompletion);
    SubscriberBase(const SubscriberBase&) = delete; // shared between a stream and its subscription
    SubscriberBase& operator=(const SubscriberBase&) = delete;
    virtual ~SubscriberBase();

    bool isActive() const { return isActive_; }
    void complete(const Completion& completion);
    void cancel() { isActive_ = false; }

private:
    const std::function<void(const Completion&)> onCompletion_;
    std::atomic<bool> isActive_ = true; // cancelled on one side while values arrive on the other
};

// The receiving end of a stream: values, then at most one completion, then nothing, whatever the source does.
// A handle: copies are the same subscriber.
template <class Output>
class Subscriber {
public:
    class State final : public SubscriberBase {
    public:
        State(std::function<void(const Output&)> handleValue,
              std::function<void(const Completion&)> onCompletion)
            : SubscriberBase(std::move(onCompletion))
            , onValue(std::move(handleValue))
        {
        }
        const std::function<void(const Output&)> onValue;
    };

    explicit Subscriber(std::function<void(const Output&)> onValue,
                        std::function<void(const Completion&)> onCompletion = nullptr)
        : state_(std::make_shared<State>(std::move(onValue), std::move(onCompletion)))
    {
    }

    void receive(const Output& value) const { receive(*state_, value); }
    void complete(const Completion& completion) const { state_->complete(completion); }

    static void receive(State& state, const Output& value)
    {
        if (state.isActive())
            state.onValue(value);
    }
    const std::shared_ptr<State>& state() const { return state_; }

private:
    std::shared_ptr<State> state_;
};

} // namespace platform
