// SPDX-License-Identifier: MIT
#pragma once

#include "platform/combine/Published.h"
#include "platform/foundation/Precondition.h"
#include "platform/swiftui/Binding.h"
#include "platform/swiftui/ObjectObservation.h"
#include "platform/swiftui/environment.h"

#include <concepts>
#include <functional>
#include <memory>
#include <utility>

namespace platform {

// Objects whose changes update the views that have them. Fields of a view record, named in its dynamicProperties().
// Main thread only.

namespace detail {

template <std::derived_from<ObservableObject> Object>
class ObjectProperty {
public:
    const std::shared_ptr<Object>& object() const { return object_; }
    Object* operator->() const { return &operator*(); }
    Object& operator*() const
    {
        precondition(object_ != nullptr, "a view uses an observed object that nobody gave it");
        return *object_;
    }
    // Reads and writes a published value of the object, which the binding keeps alive.
    template <class Value>
    Binding<Value> binding(Published<Value> Object::* member) const
    {
        auto object = object_;
        precondition(object != nullptr, "a view uses an observed object that nobody gave it");
        return Binding<Value>([object, member] { return ((*object).*member).get(); },
                              [object, member](Value value) { ((*object).*member).set(std::move(value)); });
    }

protected:
    std::shared_ptr<Object> object_;
};

} // namespace detail

// An object that somebody else made.
template <std::derived_from<ObservableObject> Object>
class ObservedObject : public detail::ObjectProperty<Object> {
public:
    explicit(false) ObservedObject(std::shared_ptr<Object> object) { this->object_ = std::move(object); }

    void connect(ViewNode& node, std::shared_ptr<void>& storage)
    {
        ObjectObservation::connect(node, storage, this->object_);
    }
    friend bool operator==(const ObservedObject& a, const ObservedObject& b)
    {
        return a.object() == b.object();
    }
};

// An object that belongs to the view's place: made when the view is mounted, once, and let go with it.
template <std::derived_from<ObservableObject> Object>
class StateObject : public detail::ObjectProperty<Object> {
public:
    explicit StateObject(std::function<std::shared_ptr<Object>()> make)
        : make_(std::move(make))
    {
    }

    void connect(ViewNode& node, std::shared_ptr<void>& storage)
    {
        auto made = std::static_pointer_cast<ObjectObservation>(storage);
        this->object_ = made ? std::static_pointer_cast<Object>(made->object()) : make_();
        ObjectObservation::connect(node, storage, this->object_);
    }
    friend bool operator==(const StateObject&, const StateObject&) { return true; }

private:
    std::function<std::shared_ptr<Object>()> make_;
};

template <std::derived_from<ObservableObject> Object>
struct EnvironmentObjectKey {
    using Value = std::shared_ptr<Object>;
    static Value defaultValue() { return nullptr; }
};

// The object of that type that `environmentObject` gave the surroundings. Null in object() when there is none; using it
// then is a fault.
template <std::derived_from<ObservableObject> Object>
class EnvironmentObject : public detail::ObjectProperty<Object> {
public:
    void connect(ViewNode& node, std::shared_ptr<void>& storage)
    {
        this->object_ = node.environment<EnvironmentObjectKey<Object>>();
        ObjectObservation::connect(node, storage, this->object_);
    }
    friend bool operator==(const EnvironmentObject&, const EnvironmentObject&) { return true; }
};

// Gives an object to all of the content that asks for its type.
template <std::derived_from<ObservableObject> Object>
auto environmentObject(std::shared_ptr<Object> object)
{
    return environment<EnvironmentObjectKey<Object>>(std::move(object));
}

} // namespace platform
