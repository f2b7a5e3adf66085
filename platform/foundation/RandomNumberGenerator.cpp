// SPDX-License-Identifier: MIT
#include "platform/foundation/RandomNumberGenerator.h"

#include "platform/foundation/Precondition.h"

#include <cerrno>

#include <sys/random.h>

namespace platform {

namespace {

__extension__ using Product = unsigned __int128;

} // namespace

// The high half of a random fraction's product with the bound. The lowest products are drawn again, as many as would make
// some results likelier than others.
std::uint64_t RandomNumberGenerator::next(std::uint64_t upperBound)
{
    precondition(upperBound > 0, "a random number below zero was asked for");
    auto product = Product(next()) * upperBound;
    if (static_cast<std::uint64_t>(product) < upperBound) {
        auto surplus = -upperBound % upperBound;
        while (static_cast<std::uint64_t>(product) < surplus)
            product = Product(next()) * upperBound;
    }
    return static_cast<std::uint64_t>(product >> 64);
}

SystemRandomNumberGenerator& SystemRandomNumberGenerator::shared()
{
    static SystemRandomNumberGenerator generator;
    return generator;
}

std::uint64_t SystemRandomNumberGenerator::next()
{
    std::uint64_t number = 0;
    // Eight bytes come whole or, before the system has gathered enough at its start, interrupted.
    ssize_t count = 0;
    do {
        count = ::getrandom(&number, sizeof number, 0);
    } while (count < 0 && errno == EINTR);
    precondition(count == sizeof number, "the operating system gives no random numbers");
    return number;
}

} // namespace platform
