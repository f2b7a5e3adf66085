// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <type_traits>
#include <utility>

namespace platform {

// A function object as a field of a record: unlike a lambda with captures it can be assigned, so that the record is an
// ordinary value.
template <class Function>
class Closure {
public:
    Closure(Function function)
        : function_(std::in_place, std::move(function))
    {
    }
    Closure(const Closure&) = default;
    Closure(Closure&&) = default;
    ~Closure() = default;
    Closure& operator=(const Closure& other)
    {
        if (this != &other)
            function_.emplace(*other.function_);
        return *this;
    }
    Closure& operator=(Closure&& other)
    {
        if (this != &other)
            function_.emplace(std::move(*other.function_));
        return *this;
    }

    template <class... Arguments>
        requires std::is_invocable_v<const Function&, Arguments...>
    decltype(auto) operator()(Arguments&&... arguments) const
    {
        return std::invoke(*function_, std::forward<Arguments>(arguments)...);
    }

private:
    std::optional<Function> function_; // never empty
};

} // namespace platform
