// SPDX-License-Identifier: MIT
#include "platform/network/LoadSink_p.h"

#include "platform/network/NetworkThread_p.h"
#include "platform/network/URLCache.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace platform {

LoadSink::~LoadSink() = default;

namespace {

// Of bytes that the delegate has been given and has not come to.
constexpr std::size_t mostWaiting = 1024 * 1024;

// Shared with the delegate queue.
struct Waiting {
    std::atomic<std::size_t> bytes = 0;
    std::atomic<bool> isStalled = false;
    std::function<void()> resume; // fixed after construction
};

void handled(const std::shared_ptr<Waiting>& waiting, std::size_t count)
{
    auto left = waiting->bytes.fetch_sub(count) - count;
    if (left <= mostWaiting / 2 && waiting->isStalled.exchange(false))
        NetworkThread::shared().perform([waiting] { waiting->resume(); });
}

class DataSink final : public LoadSink {
public:
    DataSink(std::shared_ptr<URLSessionTask> task, std::shared_ptr<URLSessionTaskState> state,
             std::function<void()> resume)
        : task_(std::static_pointer_cast<URLSessionDataTask>(task))
        , state_(std::move(state))
        , waiting_(std::make_shared<Waiting>())
    {
        waiting_->resume = std::move(resume);
        if (auto& cache = state_->core->configuration().urlCache)
            mostStored_ = std::max(cache->memoryCapacity(), cache->diskCapacity()) / 4;
    }

    HTTPTransfer::Encoding encoding() const override { return HTTPTransfer::Encoding::decoded; }
    void prepare(URLRequest&) override { }
    bool canContinue() const override { return false; }
    std::int64_t byteCount() const override { return byteCount_; }

    Reception receive(const std::shared_ptr<const HTTPURLResponse>& response,
                      std::function<void(bool)> proceed) override
    {
        return announce(response, std::move(proceed)) ? Reception::waits : Reception::taken;
    }

    Result<HTTPTransfer::Intake> take(std::string_view bytes) override
    {
        if (!state_->dataCompletion && waiting_->bytes >= mostWaiting) {
            // Looked at again after it is said, as the queue may have come to its end in between.
            waiting_->isStalled = true;
            if (waiting_->bytes >= mostWaiting || !waiting_->isStalled.exchange(false))
                return HTTPTransfer::Intake::refused;
        }
        byteCount_ += static_cast<std::int64_t>(bytes.size());
        if (state_->dataCompletion) {
            body_ += bytes;
        } else {
            keep(bytes);
            news_ += bytes;
        }
        return HTTPTransfer::Intake::taken;
    }

    void pause() override
    {
        auto& core = *state_->core;
        auto chunk = std::exchange(news_, {});
        if (chunk.empty() || !core.delegateOf<URLSessionDataDelegate>(*task_))
            return;
        waiting_->bytes += chunk.size();
        core.enqueue([state = state_, task = task_, waiting = waiting_, chunk = std::move(chunk)] {
            if (auto delegate = state->core->listenerOf<URLSessionDataDelegate>(*task))
                delegate->urlSessionDataTaskDidReceiveData(*state->session, task, chunk);
            handled(waiting, chunk.size());
        });
    }

    bool announce(const std::shared_ptr<const URLResponse>& response,
                  std::function<void(bool)> proceed) override
    {
        auto& core = *state_->core;
        if (state_->dataCompletion || !core.delegateOf<URLSessionDataDelegate>(*task_))
            return false;
        core.enqueue([state = state_, task = task_, response, proceed = std::move(proceed)] {
            auto delegate = state->core->listenerOf<URLSessionDataDelegate>(*task);
            if (!delegate) {
                proceed(true);
                return;
            }
            using Disposition = URLSessionDataDelegate::ResponseDisposition;
            delegate->urlSessionDataTaskDidReceiveResponse(
                *state->session, task, response,
                [proceed](Disposition disposition) { proceed(disposition == Disposition::allow); });
        });
        return true;
    }

    void deliver(const CachedURLResponse& stored) override
    {
        byteCount_ = static_cast<std::int64_t>(stored.data().size());
        if (state_->dataCompletion) {
            body_ = stored.data();
            return;
        }
        if (stored.data().empty())
            return;
        state_->core->tell<URLSessionDataDelegate>(
            task_, [task = task_, session = state_->session, data = stored.sharedData()](auto& delegate) {
                delegate.urlSessionDataTaskDidReceiveData(*session, task, *data);
            });
    }

    void finish(const std::optional<Error>& error) override
    {
        if (!state_->dataCompletion)
            return;
        std::shared_ptr<const URLResponse> response;
        {
            std::lock_guard lock(state_->mutex);
            response = state_->response;
        }
        URLSession::DataLoad load{std::move(body_), std::move(response)};
        completion_ = [state = state_, error, load = std::move(load)]() mutable {
            auto completion = std::exchange(state->dataCompletion, nullptr);
            if (error)
                completion(std::unexpected(*error));
            else
                completion(std::move(load));
        };
    }

    std::move_only_function<void()> takeCompletion() override { return std::move(completion_); }

    std::shared_ptr<const std::string> storableBody() override
    {
        if (byteCount_ > mostStored_)
            return nullptr;
        return std::make_shared<const std::string>(state_->dataCompletion ? body_ : std::move(stored_));
    }

private:
    void keep(std::string_view bytes)
    {
        if (byteCount_ <= mostStored_)
            stored_ += bytes;
        else
            std::string().swap(stored_);
    }

    // fixed after construction
    std::shared_ptr<URLSessionDataTask> task_;
    std::shared_ptr<URLSessionTaskState> state_;
    std::shared_ptr<Waiting> waiting_;
    std::int64_t mostStored_ = -1;

    std::int64_t byteCount_ = 0;
    std::string body_;   // for the completion
    std::string news_;   // for the delegate
    std::string stored_; // for the cache
    std::move_only_function<void()> completion_;
};

} // namespace

std::unique_ptr<LoadSink> makeDataSink(std::shared_ptr<URLSessionTask> task,
                                       std::shared_ptr<URLSessionTaskState> state,
                                       std::function<void()> resume)
{
    return std::make_unique<DataSink>(std::move(task), std::move(state), std::move(resume));
}

} // namespace platform
