// SPDX-License-Identifier: MIT
#include "platform/network/CachedURLResponse.h"

#include "platform/foundation/Precondition.h"

#include <chrono>
#include <utility>

namespace platform {

HTTPExchangeTimes HTTPExchangeTimes::now()
{
    // Ages outlive the process and are compared with what servers say, so this is the calendar's time.
    std::chrono::duration<double> time = std::chrono::system_clock::now().time_since_epoch();
    return {Date{time.count()}, Date{time.count()}};
}

CachedURLResponse::CachedURLResponse(std::shared_ptr<const URLResponse> response, std::string data,
                                     URLCacheStoragePolicy storagePolicy)
    : CachedURLResponse(std::move(response), std::make_shared<const std::string>(std::move(data)),
                        storagePolicy, HTTPExchangeTimes::now())
{
}

CachedURLResponse::CachedURLResponse(std::shared_ptr<const URLResponse> response,
                                     std::shared_ptr<const std::string> data,
                                     URLCacheStoragePolicy storagePolicy, HTTPExchangeTimes times)
    : response_(std::move(response))
    , data_(std::move(data))
    , storagePolicy_(storagePolicy)
    , times_(times)
{
    precondition(response_ && data_, "a cached response has a response and data");
}

} // namespace platform
