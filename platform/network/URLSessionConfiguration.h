// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/HTTPHeaderFields.h"
#include "platform/network/URLRequest.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace platform {

class URLCache;

// How a session loads; copied when the session is made. A value.
struct URLSessionConfiguration {
    // With the shared cache.
    static URLSessionConfiguration defaultSession();
    // Nothing that it loads touches the disk but the files that downloads make; no cache.
    static URLSessionConfiguration ephemeral();
    // A session whose downloads go on at the program's next start, when it makes a session of the same identifier.
    static URLSessionConfiguration background(std::string identifier);

    // Of background sessions only.
    std::optional<std::string> identifier;
    // The system may choose the moment: such loads wait while the connection is metered.
    bool isDiscretionary = false;
    // False: loads over a metered connection fail with NSURLErrorDataNotAllowed, in background sessions they wait.
    bool allowsCellularAccess = true;
    // A load waits for a connection rather than fails with NSURLErrorNotConnectedToInternet.
    bool waitsForConnectivity = false;
    // Used where a request has the protocol's policy.
    URLRequestCachePolicy requestCachePolicy = URLRequestCachePolicy::useProtocolCachePolicy;
    // From one byte to the next. The smaller of this and the request's own applies.
    std::chrono::duration<double> timeoutIntervalForRequest = std::chrono::seconds(60);
    // From the start to the last byte: NSURLErrorTimedOut.
    std::chrono::duration<double> timeoutIntervalForResource = std::chrono::hours(7 * 24);
    // Loads from one host at a time, from 1 to 64; further ones wait their turn, and no time runs for them.
    int httpMaximumConnectionsPerHost = 6;
    // Sent with each request that does not have them itself.
    HTTPHeaderFields httpAdditionalHeaders;
    // Null: nothing is cached. Serves data tasks only.
    std::shared_ptr<URLCache> urlCache;
};

} // namespace platform
