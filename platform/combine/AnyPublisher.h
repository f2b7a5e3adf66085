// SPDX-License-Identifier: MIT
#pragma once

#include "platform/combine/AnyCancellable.h"
#include "platform/combine/Subscriber.h"
#include "platform/combine/Void.h"

#include <concepts>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace platform {

// Runs work elsewhere, in the order given: `[](auto work) { DispatchQueue::main()->async(std::move(work)); }`.
using Scheduler = std::function<void(std::move_only_function<void()> work)>;

// A stream of values that may finish or fail with an Error. A description, copied freely: it does nothing
// until somebody subscribes, and then anew for each subscriber. Values arrive on the thread that sends
// them; operators keep their order. After a subscription is cancelled no function of its chain is called.
template <class Output>
class AnyPublisher {
public:
    using Source = std::function<AnyCancellable(Subscriber<Output>)>;

    // `source` is called for each subscriber; what it returns is cancelled with the subscription. It may
    // send from inside the call.
    explicit AnyPublisher(Source source)
        : source_(std::move(source))
    {
    }

    AnyCancellable subscribe(Subscriber<Output> subscriber) const;

    // The functions are released when the stream ends or the subscription is cancelled. `onValue` may
    // omit its parameter when the values are Void.
    template <class OnValue>
    AnyCancellable sink(OnValue onValue, std::function<void(const Completion&)> onCompletion = nullptr) const;

    // Hands each value to `setter`, a member variable, a member function or a function of
    // (Object&, const Output&), as long as `target` lives; keeps it not alive.
    template <class Object, class Setter>
    AnyCancellable assign(std::weak_ptr<Object> target, Setter setter) const;

    template <class Transform>
    auto map(Transform transform) const
        -> AnyPublisher<std::decay_t<std::invoke_result_t<Transform&, const Output&>>>;

    template <std::predicate<const Output&> Predicate>
    AnyPublisher filter(Predicate isIncluded) const;

    // Leaves out values that equal the one before.
    AnyPublisher removeDuplicates() const
        requires std::equality_comparable<Output>;

    // Values and completion arrive where `scheduler` runs its work. The one operator that may be upstream
    // of another thread.
    AnyPublisher receiveOn(Scheduler scheduler) const;

private:
    Source source_;
};

template <class Output>
AnyCancellable AnyPublisher<Output>::subscribe(Subscriber<Output> subscriber) const
{
    std::weak_ptr<SubscriberBase> state = subscriber.state();
    return AnyCancellable([state, upstream = source_(std::move(subscriber))]() mutable {
        if (auto active = state.lock())
            active->cancel();
        upstream.cancel();
    });
}

template <class Output>
template <class OnValue>
AnyCancellable AnyPublisher<Output>::sink(OnValue onValue,
                                          std::function<void(const Completion&)> onCompletion) const
{
    if constexpr (std::same_as<Output, Void> && std::invocable<OnValue&>)
        return subscribe(Subscriber<Output>(
            [onValue = std::move(onValue)](const Void&) mutable { onValue(); }, std::move(onCompletion)));
    else
        return subscribe(Subscriber<Output>(std::move(onValue), std::move(onCompletion)));
}

template <class Output>
template <class Object, class Setter>
AnyCancellable AnyPublisher<Output>::assign(std::weak_ptr<Object> target, Setter setter) const
{
    return sink([target = std::move(target), setter = std::move(setter)](const Output& value) mutable {
        auto object = target.lock();
        if (!object)
            return;
        if constexpr (std::is_member_object_pointer_v<Setter>)
            std::invoke(setter, *object) = value;
        else
            std::invoke(setter, *object, value);
    });
}

template <class Output>
template <class Transform>
auto AnyPublisher<Output>::map(Transform transform) const
    -> AnyPublisher<std::decay_t<std::invoke_result_t<Transform&, const Output&>>>
{
    using Mapped = std::decay_t<std::invoke_result_t<Transform&, const Output&>>;
    return AnyPublisher<Mapped>([upstream = *this, transform](Subscriber<Mapped> downstream) {
        return upstream.subscribe(Subscriber<Output>(
            [transform, downstream](const Output& value) mutable { downstream.receive(transform(value)); },
            [downstream](const Completion& completion) { downstream.complete(completion); }));
    });
}

template <class Output>
template <std::predicate<const Output&> Predicate>
AnyPublisher<Output> AnyPublisher<Output>::filter(Predicate isIncluded) const
{
    return AnyPublisher([upstream = *this, isIncluded](Subscriber<Output> downstream) {
        return upstream.subscribe(Subscriber<Output>(
            [isIncluded, downstream](const Output& value) mutable {
                if (isIncluded(value))
                    downstream.receive(value);
            },
            [downstream](const Completion& completion) { downstream.complete(completion); }));
    });
}

template <class Output>
AnyPublisher<Output> AnyPublisher<Output>::removeDuplicates() const
    requires std::equality_comparable<Output>
{
    return AnyPublisher([upstream = *this](Subscriber<Output> downstream) {
        return upstream.subscribe(Subscriber<Output>(
            [previous = std::optional<Output>(), downstream](const Output& value) mutable {
                if (previous == value)
                    return;
                previous = value;
                downstream.receive(value);
            },
            [downstream](const Completion& completion) { downstream.complete(completion); }));
    });
}

template <class Output>
AnyPublisher<Output> AnyPublisher<Output>::receiveOn(Scheduler scheduler) const
{
    return AnyPublisher([upstream = *this, scheduler = std::move(scheduler)](Subscriber<Output> downstream) {
        return upstream.subscribe(Subscriber<Output>(
            [scheduler, downstream](const Output& value) {
                scheduler([downstream, value] { downstream.receive(value); });
            },
            [scheduler, downstream](const Completion& completion) {
                scheduler([downstream, completion] { downstream.complete(completion); });
            }));
    });
}

} // namespace platform
