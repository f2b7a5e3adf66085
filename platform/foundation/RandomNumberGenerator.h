// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace platform {

// Where random numbers come from; a test gives numbers that it knows.
class RandomNumberGenerator {
public:
    virtual ~RandomNumberGenerator() = default;
    // 64 random bits.
    virtual std::uint64_t next() = 0;
    // One of 0, 1 ... upperBound - 1, each as likely as any other; may take several calls of next().
    // Requires: upperBound > 0.
    std::uint64_t next(std::uint64_t upperBound);
};

// The operating system's numbers, which nobody can foretell. Any thread.
class SystemRandomNumberGenerator final : public RandomNumberGenerator {
public:
    static SystemRandomNumberGenerator& shared();
    using RandomNumberGenerator::next;
    std::uint64_t next() override;
};

} // namespace platform
