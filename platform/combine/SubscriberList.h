// SPDX-License-Identifier: MIT
#pragma once

#include "platform/combine/AnyCancellable.h"
#include "platform/combine/Subscriber.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace platform {

// The part of a subject that does not depend on what it sends. Held by std::shared_ptr, so that it outlives
// its subject while it delivers. Used on one thread.
//
// What is sent from a handler waits until everybody has received what is being delivered: all subscribers
// see the same order. A subscriber receives what is sent after it was added.
class SubscriberList : public std::enable_shared_from_this<SubscriberList> {
public:
    using Delivery = std::function<void(SubscriberBase&)>;

    SubscriberList();
    SubscriberList(const SubscriberList&) = delete; // subscriptions refer to it
    SubscriberList& operator=(const SubscriberList&) = delete;
    virtual ~SubscriberList();

    // After the completion it only completes `subscriber` and keeps nothing.
    AnyCancellable add(std::shared_ptr<SubscriberBase> subscriber);

    // Requires: nothing is being delivered. Does nothing after the completion. Subscribers may do anything,
    // let go of the subject included.
    void deliver(const Delivery& delivery);
    // Delivers after what is being delivered now.
    void deliverLater(Delivery delivery);
    void complete(const Completion& completion);

    bool isDelivering() const { return isDelivering_; }
    bool isCompleted() const { return completion_.has_value(); }

private:
    struct Slot {
        std::shared_ptr<SubscriberBase> subscriber; // null when it was removed during a delivery
        std::uint64_t lastEventBefore;
    };
    struct Event {
        Delivery delivery;
        std::uint64_t number;
    };

    void remove(const SubscriberBase* subscriber);
    void deliverEvent(const Delivery& delivery, std::uint64_t number);
    void finishDelivery();

    std::vector<Slot> slots_;
    std::deque<Event> waiting_;
    std::uint64_t lastEvent_ = 0;
    std::optional<Completion> completion_;
    bool isDelivering_ = false;
    bool hasRemovedSlots_ = false;
};

} // namespace platform
