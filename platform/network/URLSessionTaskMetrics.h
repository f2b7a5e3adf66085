// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Date.h"
#include "platform/network/URLRequest.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace platform {

class URLResponse;

enum class URLSessionTaskMetricsResourceFetchType {
    unknown = 0,
    networkLoad = 1,
    serverPush = 2,
    localCache = 3
};

// One request of a task and its answer: a task has one a hop, and one more where a stored answer was asked about.
struct URLSessionTaskTransactionMetrics {
    explicit URLSessionTaskTransactionMetrics(URLRequest sent)
        : request(std::move(sent))
    {
    }

    URLRequest request;
    // Null when none came.
    std::shared_ptr<const URLResponse> response;
    URLSessionTaskMetricsResourceFetchType resourceFetchType =
        URLSessionTaskMetricsResourceFetchType::unknown;
    std::optional<Date> fetchStartDate;
    // These two only for what went over the network.
    std::optional<Date> requestStartDate;
    std::optional<Date> responseStartDate;
    std::optional<Date> responseEndDate;
    // "http/1.1" or "h2"; empty when nothing was loaded.
    std::string networkProtocolName;
    // Of the body, decoded.
    std::int64_t countOfResponseBodyBytesAfterDecoding = 0;
};

struct URLSessionTaskMetrics {
    std::vector<URLSessionTaskTransactionMetrics> transactionMetrics; // in order
    Date start;
    Date end;
    int redirectCount = 0;
};

} // namespace platform
