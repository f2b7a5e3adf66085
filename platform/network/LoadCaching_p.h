// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/CachedURLResponse.h"
#include "platform/network/HTTPURLResponse.h"
#include "platform/network/URLSessionTaskState_p.h"

#include <memory>
#include <optional>
#include <string>

namespace platform {

// What the session's cache has to do with one load: what it answers, what it asks about, what it learns. Of downloads, and
// without a cache, nothing. Network thread only.
class LoadCaching {
public:
    explicit LoadCaching(const URLSessionTaskState& state);

    enum class Advice {
        load, // what request() says now
        useStored,
        fail // nothing is stored that may be used, and nothing else is wanted
    };
    // About a request of the load: as it goes out, but for what the cache wants to know.
    Advice consult(URLRequest request);

    const URLRequest& request() const { return validating_ ? *validating_ : asked_; }
    // After useStored and, when it is good still, after renew().
    const CachedURLResponse& stored() const { return *stored_; }
    // Whether this answer is about what is stored.
    bool isConfirmation(const HTTPURLResponse& response) const;
    // After such an answer: whether the stored one is good still. If not, the cache is not asked again by this load.
    bool renew(const HTTPURLResponse& confirmation, HTTPExchangeTimes times);

    // After any answer of the network: what is stored and no longer true goes.
    void invalidate(const URLRequest& request, const HTTPURLResponse& response);
    bool mayStore(const HTTPURLResponse& response) const;
    void store(std::shared_ptr<const HTTPURLResponse> response, std::shared_ptr<const std::string> body,
               HTTPExchangeTimes times);

private:
    // fixed after construction
    std::shared_ptr<URLCache> cache_; // null: none
    bool isStoring_;

    URLRequest asked_;                     // what the cache knows it by
    std::optional<URLRequest> validating_; // what is sent instead while it asks about what is stored
    std::optional<CachedURLResponse> stored_;
    bool isAsked_ = true; // for an answer
};

} // namespace platform
