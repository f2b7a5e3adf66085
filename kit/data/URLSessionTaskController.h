// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/URLSessionDelegate.h"
#include "platform/network/URLSessionTaskMetrics.h"

#include <memory>
#include <optional>

namespace zelk {

// Keeps what a session measured of one task. Made for each load; used on the session's delegate queue only.
class URLSessionTaskController : public virtual platform::URLSessionTaskDelegate {
public:
    // Nothing until the task is about to complete.
    const std::optional<platform::URLSessionTaskMetrics>& metrics() const { return metrics_; }

    void urlSessionTaskDidFinishCollecting(platform::URLSession&,
                                           const std::shared_ptr<platform::URLSessionTask>&,
                                           const platform::URLSessionTaskMetrics& metrics) override
    {
        metrics_ = metrics;
    }

private:
    std::optional<platform::URLSessionTaskMetrics> metrics_;
};

} // namespace zelk
