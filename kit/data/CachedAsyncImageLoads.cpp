// SPDX-License-Identifier: MIT
#include "kit/data/CachedAsyncImageLoads_p.h"

#include "kit/data/URLSessionTaskController.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/network/CachedURLResponse.h"
#include "platform/network/NSURLErrorCodes.h"
#include "platform/network/URLCache.h"
#include "platform/network/URLResponse.h"

#include <algorithm>
#include <deque>
#include <optional>
#include <utility>
#include <vector>

namespace zelk {

using namespace platform;

namespace {

// Gathers the body of one task, as long as it is not too long. On the session's delegate queue; `completion` is called
// there, once.
class ImageDataCollector final : public URLSessionTaskController, public URLSessionDataDelegate {
public:
    using Completion = std::function<void(ImageLoadOutcome)>;

    ImageDataCollector(URLRequest request, std::shared_ptr<URLCache> cache, Completion completion)
        : request_(std::move(request))
        , cache_(std::move(cache))
        , completion_(std::move(completion))
    {
    }

    void urlSessionDataTaskDidReceiveResponse(URLSession&, const std::shared_ptr<URLSessionDataTask>&,
                                              const std::shared_ptr<const URLResponse>& response,
                                              std::function<void(ResponseDisposition)> completion) override
    {
        auto length = response->expectedContentLength();
        isTooLong_ = length > maximumImageDataSize;
        if (!isTooLong_ && length > 0)
            data_.reserve(static_cast<std::size_t>(length));
        completion(isTooLong_ ? ResponseDisposition::cancel : ResponseDisposition::allow);
    }

    void urlSessionDataTaskDidReceiveData(URLSession&, const std::shared_ptr<URLSessionDataTask>& task,
                                          const std::string& data) override
    {
        if (isTooLong_)
            return;
        isTooLong_ = static_cast<std::int64_t>(data_.size() + data.size()) > maximumImageDataSize;
        if (isTooLong_)
            task->cancel();
        else
            data_.append(data);
    }

    void urlSessionTaskDidComplete(URLSession&, const std::shared_ptr<URLSessionTask>&,
                                   const std::optional<Error>& error) override
    {
        auto completion = std::exchange(completion_, nullptr);
        if (!completion)
            return;
        if (isTooLong_)
            return completion(
                {platform::failure(urlError(NSURLErrorDataLengthExceedsMaximum, request_.url))});
        if (error)
            return completion({std::unexpected(*error)});
        auto data = std::make_shared<const std::string>(std::move(data_));
        keepUnderOwnRequest(data);
        completion({data, isFromLocalCache()});
    }

private:
    bool isFromLocalCache() const
    {
        return metrics() && !metrics()->transactionMetrics.empty()
            && metrics()->transactionMetrics.back().resourceFetchType
            == URLSessionTaskMetricsResourceFetchType::localCache;
    }

    // So that what came by redirections is found at once the next time, under the name that the view knows.
    void keepUnderOwnRequest(const std::shared_ptr<const std::string>& data)
    {
        if (!cache_ || !metrics() || metrics()->redirectCount < 1 || metrics()->transactionMetrics.empty())
            return;
        const auto& transactions = metrics()->transactionMetrics;
        const auto& response = transactions.back().response;
        if (!response)
            return;
        for (const auto& transaction : transactions)
            cache_->removeCachedResponse(transaction.request);
        cache_->storeCachedResponse(
            CachedURLResponse(response, data, URLCacheStoragePolicy::allowed, HTTPExchangeTimes::now()),
            request_);
    }

    // fixed after construction
    const URLRequest request_;
    const std::shared_ptr<URLCache> cache_;
    // the delegate queue's
    Completion completion_;
    std::string data_;
    bool isTooLong_ = false;
};

// Who waits for a load. The stop callback runs on the main thread, where tokens of views are stopped.
struct Waiter {
    Waiter(std::function<void(const ImageLoadOutcome&)> done, std::stop_token token,
           std::function<void()> stopped)
        : completion(std::move(done))
        , onStop(std::move(token), std::move(stopped))
    {
    }

    std::function<void(const ImageLoadOutcome&)> completion; // null: waits no longer
    std::stop_callback<std::function<void()>> onStop;
};

struct Load {
    URLRequest request;
    std::shared_ptr<URLCache> cache;
    std::shared_ptr<URLSession> session; // a session that is let go completes, but nobody else keeps ours
    std::shared_ptr<ImageDataCollector> collector; // which the task holds weakly
    std::shared_ptr<URLSessionDataTask> task;
    std::deque<Waiter> waiters; // whose places never change
};

// What is under way. Main thread only.
class Loads {
public:
    static Loads& shared()
    {
        static Loads& loads = *new Loads; // threads may still call back when statics go
        return loads;
    }

    void join(const URLRequest& request, const std::shared_ptr<URLSession>& session, std::stop_token token,
              std::function<void(const ImageLoadOutcome&)> completion)
    {
        auto load = find(request, session->configuration().urlCache);
        if (!load)
            load = start(request, session);
        load->waiters.emplace_back(std::move(completion), std::move(token),
                                   [this, weakLoad = std::weak_ptr(load), number = load->waiters.size()] {
                                       if (auto stopped = weakLoad.lock())
                                           leave(stopped, number);
                                   });
    }

private:
    std::shared_ptr<Load> find(const URLRequest& request, const std::shared_ptr<URLCache>& cache)
    {
        auto found = std::find_if(loads_.begin(), loads_.end(), [&](const auto& load) {
            return load->cache == cache && load->request == request;
        });
        return found == loads_.end() ? nullptr : *found;
    }

    std::shared_ptr<Load> start(const URLRequest& request, const std::shared_ptr<URLSession>& session)
    {
        auto load = std::make_shared<Load>(
            Load{request, session->configuration().urlCache, session, nullptr, nullptr, {}});
        loads_.push_back(load);
        load->collector = std::make_shared<ImageDataCollector>(
            request, load->cache, [this, weakLoad = std::weak_ptr(load)](ImageLoadOutcome outcome) {
                RunLoop::main().perform([this, weakLoad, outcome = std::move(outcome)] {
                    if (auto finished = weakLoad.lock())
                        finish(finished, outcome);
                });
            });
        load->task = session->dataTask(request);
        load->task->setDelegate(load->collector);
        load->task->resume();
        return load;
    }

    void finish(const std::shared_ptr<Load>& load, const ImageLoadOutcome& outcome)
    {
        std::erase(loads_, load);
        for (auto& waiter : load->waiters) // one may stop another meanwhile
            if (auto completion = std::exchange(waiter.completion, nullptr))
                completion(outcome);
    }

    void leave(const std::shared_ptr<Load>& load, std::size_t number)
    {
        load->waiters[number].completion = nullptr;
        if (std::any_of(load->waiters.begin(), load->waiters.end(),
                        [](const Waiter& waiter) { return waiter.completion != nullptr; }))
            return;
        std::erase(loads_, load);
        load->task->cancel();
        RunLoop::main().perform([load] { }); // goes when the callback that led here has returned
    }

    std::vector<std::shared_ptr<Load>> loads_;
};

} // namespace

void loadImageData(const URLRequest& request, const std::shared_ptr<URLSession>& session,
                   std::stop_token token, std::function<void(const ImageLoadOutcome&)> completion)
{
    assertOnMainThread();
    if (!token.stop_requested())
        Loads::shared().join(request, session, std::move(token), std::move(completion));
}

} // namespace zelk
