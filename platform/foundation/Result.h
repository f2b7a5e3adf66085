// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Error.h"

#include <expected>
#include <utility>

namespace platform {

// What a throwing operation of the platform returns here: its value, or the error. Functions that return
// one are [[nodiscard]].
template <class Value>
using Result = std::expected<Value, Error>;

// The failure of a Result: `return failure(NSCocoaError::fileReadNoSuchFile)`.
template <class Reason>
std::unexpected<Error> failure(Reason&& reason)
{
    return std::unexpected<Error>(Error(std::forward<Reason>(reason)));
}
inline std::unexpected<Error> failure(NSCocoaError code, NSError::UserInfo userInfo = {})
{
    return std::unexpected<Error>(Error(NSError(code, std::move(userInfo))));
}

} // namespace platform

// Gives the value of a Result, or returns its error from the enclosing function. A statement expression,
// as GCC and clang have it, so that it can stand inside an expression, another TRY included: each has a
// variable of its own name.
#define TRY(expression) ZELK_TRY_AS(expression, __COUNTER__)
#define ZELK_TRY_AS(expression, number) ZELK_TRY_NAMED(expression, number)
#define ZELK_TRY_NAMED(expression, number)                                                                   \
    __extension__({                                                                                          \
        auto tryResult##number = (expression);                                                               \
        if (!tryResult##number.has_value())                                                                  \
            return ::std::unexpected(::std::move(tryResult##number).error());                                \
        ::std::move(tryResult##number).value();                                                              \
    })
