// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/HTTPHeaderFields.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace platform {

// The head of an answer, read line by line as it comes; interim answers (1xx) before it are skipped, fields behind the body
// too. What is not a field that may be believed is dropped. A value.
class HTTPHead {
public:
    // Of all lines together, those that are skipped too. There may be HTTPHeaderFields::mostFields fields.
    static constexpr std::size_t mostBytes = 256 * 1024;

    enum class Reading { goesOn, isWhole, isTooLong };
    // A line with its end. Whole is said once.
    Reading take(std::string_view line);

    bool isWhole() const { return isWhole_; }
    int status() const { return status_; }
    // Once, when it is whole.
    HTTPHeaderFields takeFields() { return std::move(fields_); }

private:
    void addPending();

    HTTPHeaderFields fields_;
    std::string name_; // of a field that the next line may continue
    std::string value_;
    std::size_t byteCount_ = 0;
    int status_ = 0;
    bool isWhole_ = false;
};

} // namespace platform
