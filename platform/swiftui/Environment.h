// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/EnvironmentScope.h"
#include "platform/swiftui/ViewNode.h"

#include <memory>
#include <utility>

namespace platform {

// A value of the surroundings. A field of a view record, named in its dynamicProperties(); the view is updated when the
// value changes. Before the view is mounted it is the default. Main thread only.
template <EnvironmentKey Key>
class Environment {
public:
    using Value = typename Key::Value;

    const Value& get() const { return value_; }
    operator const Value&() const { return value_; }
    const Value& operator*() const { return value_; }
    const Value* operator->() const { return &value_; }

    void connect(ViewNode& node, std::shared_ptr<void>&) { value_ = node.environment<Key>(); }

    // What it reads is no part of what the record says.
    friend bool operator==(const Environment&, const Environment&) { return true; }

private:
    Value value_ = Key::defaultValue();
};

} // namespace platform
