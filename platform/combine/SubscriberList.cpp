// SPDX-License-Identifier: MIT
#include "platform/combine/SubscriberList.h"

#include <algorithm>
#include <utility>

namespace platform {

SubscriberList::SubscriberList() = default;
SubscriberList::~SubscriberList() = default;

AnyCancellable SubscriberList::add(std::shared_ptr<SubscriberBase> subscriber)
{
    if (completion_) {
        subscriber->complete(*completion_);
        return {};
    }
    // Weak, so that what the handlers hold goes when the stream ends, not when the subscription does.
    AnyCancellable subscription([list = weak_from_this(), added = std::weak_ptr(subscriber)] {
        auto owner = list.lock();
        auto alive = added.lock();
        if (owner && alive)
            owner->remove(alive.get());
    });
    slots_.push_back({std::move(subscriber), lastEvent_});
    return subscription;
}

void SubscriberList::remove(const SubscriberBase* subscriber)
{
    auto found =
        std::ranges::find(slots_, subscriber, [](const Slot& slot) { return slot.subscriber.get(); });
    if (found == slots_.end())
        return;
    auto removed = std::move(found->subscriber); // released last: its handlers may own anything
    if (isDelivering_)
        hasRemovedSlots_ = true;
    else
        slots_.erase(found);
}

void SubscriberList::deliver(const Delivery& delivery)
{
    if (completion_)
        return;
    auto self = shared_from_this();
    isDelivering_ = true;
    deliverEvent(delivery, ++lastEvent_);
    finishDelivery();
}

void SubscriberList::deliverLater(Delivery delivery)
{
    if (!completion_)
        waiting_.push_back({std::move(delivery), ++lastEvent_});
}

void SubscriberList::complete(const Completion& completion)
{
    if (completion_)
        return;
    auto self = shared_from_this();
    completion_ = completion;
    waiting_.push_back(
        {[completion](SubscriberBase& subscriber) { subscriber.complete(completion); }, ++lastEvent_});
    if (std::exchange(isDelivering_, true))
        return;
    finishDelivery();
}

// By index: handlers may add slots, which come behind, and empty others.
void SubscriberList::deliverEvent(const Delivery& delivery, std::uint64_t number)
{
    for (std::size_t index = 0, count = slots_.size(); index < count; ++index) {
        if (slots_[index].lastEventBefore >= number)
            continue;
        if (auto subscriber = slots_[index].subscriber)
            delivery(*subscriber);
    }
}

void SubscriberList::finishDelivery()
{
    while (!waiting_.empty()) {
        auto event = std::move(waiting_.front());
        waiting_.pop_front();
        deliverEvent(event.delivery, event.number);
    }
    isDelivering_ = false;
    std::vector<Slot> ended; // released last: what handlers own may come back here
    if (completion_)
        ended.swap(slots_);
    else if (std::exchange(hasRemovedSlots_, false))
        std::erase_if(slots_, [](const Slot& slot) { return !slot.subscriber; });
}

} // namespace platform
