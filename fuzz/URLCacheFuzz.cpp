// SPDX-License-Identifier: MIT
// Any bytes are a record of a cache or nothing; and a record that was read is the same when it is written and read again.
#include "platform/foundation/Precondition.h"
#include "platform/network/URLCacheEntry_p.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

using namespace platform;

namespace {

void check(std::string bytes)
{
    auto record = decodeURLCacheRecord(std::move(bytes));
    if (auto variants = std::get_if<URLCacheVariants>(&record)) {
        auto again = decodeURLCacheRecord(encoded(*variants));
        precondition(std::get_if<URLCacheVariants>(&again) && std::get<URLCacheVariants>(again) == *variants,
                     "a list of variants changes");
    } else if (auto answer = std::get_if<URLCacheAnswer>(&record)) {
        auto written = encodedHead(*answer).append(answer->response.data());
        auto again = decodeURLCacheRecord(written);
        auto same = std::get_if<URLCacheAnswer>(&again);
        precondition(same && encodedHead(*same).append(same->response.data()) == written,
                     "an answer changes");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    check(std::string(bytes));
    // Past the checksum, which nobody guesses: the input is a head, with a body of nothing.
    check(sealedURLCacheHead(bytes));
    return 0;
}
