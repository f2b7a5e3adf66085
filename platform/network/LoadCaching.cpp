// SPDX-License-Identifier: MIT
#include "platform/network/LoadCaching_p.h"

#include "platform/network/HTTPCaching.h"
#include "platform/network/URLCache.h"
#include "platform/network/URLSessionCore_p.h"

#include <utility>

namespace platform {

LoadCaching::LoadCaching(const URLSessionTaskState& state)
    : cache_(state.core->configuration().urlCache)
    , isStoring_(cache_ && state.kind == URLSessionTaskState::Kind::data)
    , asked_(*state.originalRequest)
{
}

LoadCaching::Advice LoadCaching::consult(URLRequest request)
{
    asked_ = std::move(request);
    stored_ = isStoring_ && isAsked_ ? cache_->cachedResponse(asked_) : std::nullopt;
    validating_ = std::nullopt;
    switch (httpcaching::plan(asked_, stored_, HTTPExchangeTimes::now().requested)) {
    case httpcaching::Plan::useStored:
        return Advice::useStored;
    case httpcaching::Plan::fail:
        return Advice::fail;
    case httpcaching::Plan::validateStored:
        validating_ = httpcaching::validating(asked_, *stored_);
        break;
    case httpcaching::Plan::load:
        break;
    }
    return Advice::load;
}

bool LoadCaching::isConfirmation(const HTTPURLResponse& response) const
{
    return validating_ && response.statusCode() == 304;
}

bool LoadCaching::renew(const HTTPURLResponse& confirmation, HTTPExchangeTimes times)
{
    auto fresh = httpcaching::refreshed(*stored_, confirmation, times);
    if (!fresh) {
        // It speaks of something that is not here.
        isAsked_ = false;
        return false;
    }
    stored_ = std::move(fresh);
    auto* renewed = dynamic_cast<const HTTPURLResponse*>(stored_->response().get());
    if (renewed && httpcaching::mayStore(asked_, *renewed))
        cache_->storeCachedResponse(*stored_, asked_);
    else
        cache_->removeCachedResponse(asked_);
    return true;
}

void LoadCaching::invalidate(const URLRequest& request, const HTTPURLResponse& response)
{
    if (!cache_)
        return;
    for (auto& url : httpcaching::invalidatedBy(request, response))
        cache_->removeCachedResponse(URLRequest(url));
}

bool LoadCaching::mayStore(const HTTPURLResponse& response) const
{
    return isStoring_ && httpcaching::mayStore(asked_, response);
}

void LoadCaching::store(std::shared_ptr<const HTTPURLResponse> response,
                        std::shared_ptr<const std::string> body, HTTPExchangeTimes times)
{
    cache_->storeCachedResponse(
        CachedURLResponse(std::move(response), std::move(body), URLCacheStoragePolicy::allowed, times),
        asked_);
}

} // namespace platform
