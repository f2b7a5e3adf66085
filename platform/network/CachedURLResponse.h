// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Date.h"
#include "platform/network/URLResponse.h"

#include <memory>
#include <string>

namespace platform {

// Where a cache may keep an answer. The numbers are the platform's.
enum class URLCacheStoragePolicy { allowed = 0, allowedInMemoryOnly = 1, notAllowed = 2 };

// When a request went out and when its answer came back; the age of a stored answer is reckoned from them.
struct HTTPExchangeTimes {
    // Both are the present.
    static HTTPExchangeTimes now();

    Date requested;
    Date answered;

    bool operator==(const HTTPExchangeTimes&) const = default;
};

// An answer of a server with its body, decoded, as a cache has it. A value with shared bytes: a copy is two reference
// counts. Any thread.
class CachedURLResponse {
public:
    // An answer of just now. Requires: a response.
    CachedURLResponse(std::shared_ptr<const URLResponse> response, std::string data,
                      URLCacheStoragePolicy storagePolicy = URLCacheStoragePolicy::allowed);
    CachedURLResponse(std::shared_ptr<const URLResponse> response, std::shared_ptr<const std::string> data,
                      URLCacheStoragePolicy storagePolicy, HTTPExchangeTimes times);

    const std::shared_ptr<const URLResponse>& response() const { return response_; }
    const std::string& data() const { return *data_; }
    const std::shared_ptr<const std::string>& sharedData() const { return data_; }
    URLCacheStoragePolicy storagePolicy() const { return storagePolicy_; }
    const HTTPExchangeTimes& times() const { return times_; }

private:
    // fixed after construction
    std::shared_ptr<const URLResponse> response_;
    std::shared_ptr<const std::string> data_;
    URLCacheStoragePolicy storagePolicy_;
    HTTPExchangeTimes times_;
};

} // namespace platform
