// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

namespace introspect {

// A box for one reference that keeps nothing alive. Initially empty; empties by itself when the object goes.
template <class Object>
class Weak {
public:
    Weak() = default;
    Weak(std::weak_ptr<Object> object)
        : object_(std::move(object))
    {
    }

    std::shared_ptr<Object> wrappedValue() const { return object_.lock(); }
    void setWrappedValue(std::weak_ptr<Object> object) { object_ = std::move(object); }

private:
    std::weak_ptr<Object> object_;
};

} // namespace introspect
