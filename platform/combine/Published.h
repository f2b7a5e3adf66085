// SPDX-License-Identifier: MIT
#pragma once

#include "platform/combine/CurrentValueSubject.h"
#include "platform/combine/ObservableObject.h"
#include "platform/foundation/Precondition.h"

#include <utility>

namespace platform {

// A value of an observable object that is announced when it is set, even to what it was. The order is:
// stored, then sent by publisher(), then the owner's notice. A member of its owner:
//
//     class Player : public ObservableObject {
//     public:
//         Published<bool> isPlaying{this, false};
//     };
template <class Value>
class Published {
public:
    Published(ObservableObject* owner, Value value)
        : owner_(owner)
        , subject_(std::move(value))
    {
        precondition(owner != nullptr, "a published value needs an owner to announce it");
    }
    Published(const Published&) = delete; // belongs to its owner
    Published& operator=(const Published&) = delete;

    // Good until the value is set.
    const Value& get() const { return subject_.value(); }
    operator const Value&() const { return get(); }
    const Value* operator->() const { return &get(); }

    // Observers may let go of the owner: after these it may be gone.
    void set(Value value)
    {
        auto notice = owner_->objectWillChange().subscribers_;
        subject_.send(std::move(value));
        PassthroughSubject<Void>::send(*notice, Void{});
    }
    void operator=(Value value) { set(std::move(value)); }
    // Changes a copy in place and sets it: `names.modify([](auto& names) { names.push_back("x"); })`.
    template <class Change>
    void modify(Change change)
    {
        Value changed = get();
        change(changed);
        set(std::move(changed));
    }

    // The present value at once, then each new one.
    AnyPublisher<Value> publisher() const { return subject_.eraseToAnyPublisher(); }

private:
    ObservableObject* const owner_; // contains this
    CurrentValueSubject<Value> subject_;
};

} // namespace platform
