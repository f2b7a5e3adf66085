// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Binding.h"
#include "platform/swiftui/StateCell.h"

#include <memory>
#include <utility>

namespace platform {

// A value that belongs to a view's place: it stays while the record is described anew, and the view is updated
// when it changes. A field of a view record, named in its dynamicProperties(). Before the view is mounted it has its
// initial value and forgets what is set. Main thread only.
template <class Value>
class State {
public:
    State(Value initial = {})
        : initial_(std::move(initial))
    {
    }

    const Value& get() const { return cell_ ? cell_->value() : initial_; }
    operator const Value&() const { return get(); }
    const Value& operator*() const { return get(); }
    const Value* operator->() const { return &get(); }
    void set(Value value) const
    {
        if (cell_)
            cell_->set(std::move(value));
    }
    // For children that read and change it. Requires: the view is mounted (inside of a body it is).
    Binding<Value> binding() const
    {
        return cell_ ? Binding<Value>(cell_) : Binding<Value>::constant(initial_);
    }

    void connect(ViewNode& node, std::shared_ptr<void>& storage)
    {
        if (!storage)
            storage = std::make_shared<StateCell<Value>>(initial_);
        cell_ = std::static_pointer_cast<StateCell<Value>>(storage);
        node.dependOn(cell_);
    }

    // The initial value counts only once, at mounting, so records that differ in it are the same.
    friend bool operator==(const State&, const State&) { return true; }

private:
    Value initial_;
    std::shared_ptr<StateCell<Value>> cell_;
};

} // namespace platform
