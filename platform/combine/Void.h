// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// The value of a stream that only says that something happened.
struct Void {
    friend bool operator==(const Void&, const Void&) = default;
};

} // namespace platform
