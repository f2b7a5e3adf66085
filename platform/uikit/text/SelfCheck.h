// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace platform {

// Debug builds recompute a cached answer now and then and abort when it differs.
#if defined(NDEBUG) || defined(__OPTIMIZE__)
inline constexpr bool provesCaches = false;
#else
inline constexpr bool provesCaches = true;
#endif

// Says which answers to recompute: the first few, then ever fewer, so that the cost stays a fraction.
class SelfCheck {
public:
    bool isDue()
    {
        ++asked_;
        return asked_ < 64 || (asked_ & 63) == 0;
    }

private:
    std::uint64_t asked_ = 0;
};

} // namespace platform
