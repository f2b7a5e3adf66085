// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/URL.h"
#include "platform/network/HTTPHeaderFields.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// What a load may take from the cache. The numbers are the platform's.
enum class URLRequestCachePolicy {
    // What HTTP says: an answer that is fresh is used, one that is stale is asked about.
    useProtocolCachePolicy = 0,
    // The cache is not asked, and its validators are not sent.
    reloadIgnoringLocalCacheData = 1,
    // Any stored answer, however old; the network only when there is none.
    returnCacheDataElseLoad = 2,
    // Any stored answer; without one the load fails with NSURLErrorResourceUnavailable.
    returnCacheDataDontLoad = 3,
    // As reloadIgnoringLocalCacheData, and caches on the way are asked not to answer.
    reloadIgnoringLocalAndRemoteCacheData = 4,
    // A stored answer is used only after its origin has confirmed it.
    reloadRevalidatingCacheData = 5,
};

// What to load and how, as a value: two are equal when all fields are.
struct URLRequest {
    URLRequest(URL requested, URLRequestCachePolicy policy = URLRequestCachePolicy::useProtocolCachePolicy,
               std::chrono::duration<double> timeout = std::chrono::seconds(60))
        : url(std::move(requested))
        , cachePolicy(policy)
        , timeoutInterval(timeout)
    {
    }

    URL url;
    URLRequestCachePolicy cachePolicy;
    // How long the load may go without a byte before it fails with NSURLErrorTimedOut; none when not positive.
    std::chrono::duration<double> timeoutInterval;
    std::string httpMethod = "GET";
    HTTPHeaderFields allHTTPHeaderFields;
    std::string httpBody;
    // False: a load over a metered connection fails with NSURLErrorDataNotAllowed.
    bool allowsCellularAccess = true;

    std::optional<std::string> value(std::string_view field) const
    {
        return valueForHTTPHeaderField(allHTTPHeaderFields, field);
    }
    void setValue(std::string_view value, std::string_view field)
    {
        allHTTPHeaderFields.insert_or_assign(field, value);
    }

    bool operator==(const URLRequest&) const = default;
};

} // namespace platform

template <>
struct std::hash<platform::URLRequest> {
    std::size_t operator()(const platform::URLRequest& request) const noexcept
    {
        return std::hash<platform::URL>{}(request.url) ^ std::hash<std::string>{}(request.httpMethod);
    }
};
