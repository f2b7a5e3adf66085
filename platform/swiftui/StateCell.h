// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ChangeSource.h"

#include <concepts>
#include <utility>

namespace platform {

// Where a value lives that views read and change. Main thread only.
template <class Value>
class StateCell : public ChangeSource {
public:
    explicit StateCell(Value value)
        : value_(std::move(value))
    {
    }

    const Value& value() const { return value_; }
    // Who reads it is updated before the run loop sleeps; an equal value changes nothing.
    void set(Value value)
    {
        if constexpr (std::equality_comparable<Value>) {
            if (value == value_)
                return;
        }
        prepareForChange();
        value_ = std::move(value);
        notify();
    }

private:
    Value value_;
};

} // namespace platform
