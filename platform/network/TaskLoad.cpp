// SPDX-License-Identifier: MIT
#include "platform/network/TaskLoad_p.h"

#include "platform/network/NSURLErrorCodes.h"
#include "platform/network/NetworkConditions.h"
#include "platform/network/NetworkThread_p.h"
#include "platform/network/OutgoingRequest_p.h"
#include "platform/network/Redirection_p.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace platform {

namespace {

// How often a load that waits for a connection looks for one.
constexpr auto retryInterval = std::chrono::seconds(5);
// Answers that do not continue what is here make a download start anew, so often.
constexpr int mostRestarts = 2;
// Connections that break one after the other and bring less than this much each.
constexpr int mostBreaks = 6;
constexpr std::int64_t enoughNews = 64 * 1024;

Date now()
{
    return HTTPExchangeTimes::now().requested;
}

std::chrono::milliseconds timerInterval(std::chrono::duration<double> interval)
{
    constexpr double longest = 1e12;
    return std::chrono::milliseconds(
        static_cast<std::int64_t>(std::clamp(interval.count() * 1000, 1.0, longest)));
}

} // namespace

TaskLoad::TaskLoad(std::shared_ptr<URLSessionTask> task, std::shared_ptr<URLSessionTaskState> state)
    : task_(std::move(task))
    , state_(std::move(state))
    , core_(state_->core)
    , caching_(*state_)
    , request_(*state_->originalRequest)
{
}

TaskLoad::~TaskLoad() = default;

NSError TaskLoad::error(long code) const
{
    return urlError(code, request_.url);
}

void TaskLoad::makeSink()
{
    metrics_.start = now();
    if (state_->kind == URLSessionTaskState::Kind::data)
        sink_ = makeDataSink(task_, state_, [weak = weak_from_this()] {
            if (auto self = weak.lock(); self && self->transfer_)
                self->transfer_->resume();
        });
    else
        sink_ = makeDownloadSink(task_, state_);
}

void TaskLoad::begin()
{
    makeSink();
    auto longest = core_->configuration().timeoutIntervalForResource;
    resourceTimer_ = NetworkThread::shared().after(timerInterval(longest), [weak = weak_from_this()] {
        if (auto self = weak.lock())
            self->finish(self->error(NSURLErrorTimedOut));
    });
    hop();
}

void TaskLoad::hop(URLRequest next)
{
    request_ = std::move(next);
    hop();
}

void TaskLoad::hop()
{
    response_ = nullptr;
    isQueued_ = false;
    deferred_ = nullptr;
    beginTransaction();
    if (!isLoadable(request_.url))
        return finish(error(NSURLErrorUnsupportedURL));
    auto asked = outgoingRequest(request_, state_->originalRequest->url, core_->configuration());
    if (!isWellFormed(asked))
        return finish(error(NSURLErrorBadURL));
    switch (caching_.consult(std::move(asked))) {
    case LoadCaching::Advice::useStored:
        return deliver(caching_.stored());
    case LoadCaching::Advice::fail:
        return finish(error(NSURLErrorResourceUnavailable));
    case LoadCaching::Advice::load:
        return enqueue(std::make_shared<URLRequest>(caching_.request()));
    }
}

void TaskLoad::enqueue(std::shared_ptr<URLRequest> request)
{
    std::weak_ptr weak = weak_from_this();
    awaitConditions(request_, [weak, request] {
        auto self = weak.lock();
        if (!self || std::exchange(self->isQueued_, true))
            return;
        self->core_->whenFree(request->url.host(), [weak, request](URLSessionCore::Slot slot) {
            auto load = weak.lock();
            if (!load || load->isOver_)
                return;
            load->isQueued_ = !load->isSuspended_;
            if (load->isSuspended_) {
                load->deferred_ = request; // others may go first
                return;
            }
            load->slot_ = std::move(slot);
            load->send(std::move(*request));
        });
    });
}

void TaskLoad::awaitConditions(const URLRequest& request, std::function<void()> go)
{
    auto& configuration = core_->configuration();
    bool mayBeMetered = request.allowsCellularAccess && configuration.allowsCellularAccess;
    if (mayBeMetered && !configuration.isDiscretionary)
        return go();
    bool waits =
        configuration.isDiscretionary || configuration.identifier || configuration.waitsForConnectivity;
    auto look = [weak = weak_from_this(), go, waits](bool isMetered) {
        NetworkThread::shared().perform([weak, go, waits, isMetered] {
            auto self = weak.lock();
            if (!self || self->isOver_ || self->isQueued_)
                return;
            if (!isMetered) {
                self->conditionsToken_.cancel();
                go();
            } else if (!waits) {
                self->finish(self->error(NSURLErrorDataNotAllowed));
            }
        });
    };
    if (waits)
        conditionsToken_ = NetworkConditions::shared().observe(look);
    NetworkConditions::shared().whenKnown(look);
}

void TaskLoad::send(URLRequest request)
{
    if (isOver_)
        return;
    request.timeoutInterval =
        std::min(request.timeoutInterval, core_->configuration().timeoutIntervalForRequest);
    if (request_.timeoutInterval.count() <= 0)
        request.timeoutInterval = core_->configuration().timeoutIntervalForRequest;
    sink_->prepare(request);
    if (auto reason = sink_->openError())
        return finish(reason);
    sizeAtSend_ = sink_->byteCount();
    transaction().resourceFetchType = URLSessionTaskMetricsResourceFetchType::networkLoad;

    transfer_ = std::make_unique<HTTPTransfer>(request, sink_->encoding(), weak_from_this());
    updatePause();
}

void TaskLoad::handleHead(std::shared_ptr<const HTTPURLResponse> response)
{
    if (isOver_)
        return;
    response_ = response;
    transaction().response = response;
    noteTimes();
    transaction().networkProtocolName = transfer_->isHTTP2() ? "h2" : "http/1.1";
    if (caching_.isConfirmation(*response))
        return handleConfirmation(*response);
    caching_.invalidate(request_, *response);
    auto next = redirection(request_, *response);
    if (!next)
        return receive(std::move(response));
    if (!*next)
        return finish(error(next->error()));
    if (metrics_.redirectCount >= mostRedirections)
        return finish(error(NSURLErrorHTTPTooManyRedirects));
    redirect(std::move(response), std::move(**next));
}

void TaskLoad::handleConfirmation(const HTTPURLResponse& response)
{
    endTransfer();
    endTransaction();
    if (!caching_.renew(response, exchangeTimes()))
        return hop();
    beginTransaction();
    deliver(caching_.stored());
}

void TaskLoad::redirect(std::shared_ptr<const HTTPURLResponse> response, URLRequest next)
{
    auto follow = [weak = weak_from_this(), response](std::optional<URLRequest> chosen) {
        NetworkThread::shared().perform([weak, response, chosen = std::move(chosen)] {
            auto self = weak.lock();
            // Only the first answer about this very hop counts.
            if (!self || self->isOver_ || !self->awaitsAnswer_ || self->response_ != response)
                return;
            self->awaitsAnswer_ = false;
            if (!chosen) {
                self->receive(response);
                self->updatePause();
                return;
            }
            self->endTransfer();
            self->endTransaction();
            ++self->metrics_.redirectCount;
            {
                std::lock_guard lock(self->state_->mutex);
                self->state_->redirectedRequest = *chosen;
            }
            self->hop(*chosen);
        });
    };
    awaitsAnswer_ = true;
    updatePause();
    if (core_->configuration().identifier || !core_->delegateOf<URLSessionTaskDelegate>(*task_))
        return follow(std::move(next));
    core_->enqueue([core = core_, task = task_, state = state_, response, next = std::move(next), follow] {
        if (auto delegate = core->listenerOf<URLSessionTaskDelegate>(*task))
            delegate->urlSessionTaskWillPerformHTTPRedirection(*state->session, task, response, next, follow);
        else
            follow(next);
    });
}

void TaskLoad::receive(std::shared_ptr<const HTTPURLResponse> response)
{
    {
        std::lock_guard lock(state_->mutex);
        state_->response = response;
        state_->expected = response->expectedContentLength();
    }
    auto proceed = [weak = weak_from_this(), response](bool goesOn) {
        NetworkThread::shared().perform([weak, response, goesOn] {
            auto self = weak.lock();
            if (!self || self->isOver_ || !self->awaitsAnswer_ || self->response_ != response)
                return;
            self->awaitsAnswer_ = false;
            if (goesOn)
                self->updatePause();
            else
                self->cancel();
        });
    };
    auto reception = sink_->receive(response, proceed);
    sizeAtSend_ = sink_->byteCount(); // it may have started anew
    switch (reception) {
    case LoadSink::Reception::taken:
        break;
    case LoadSink::Reception::waits:
        awaitsAnswer_ = true;
        updatePause();
        break;
    case LoadSink::Reception::refused:
        endTransfer();
        endTransaction();
        if (++restartCount_ > mostRestarts)
            return finish(error(NSURLErrorBadServerResponse));
        hop();
        break;
    }
}

HTTPTransfer::Intake TaskLoad::takeBytes(std::string_view bytes)
{
    if (isOver_)
        return HTTPTransfer::Intake::taken;
    auto intake = sink_->take(bytes);
    if (intake)
        return *intake;
    finish(intake.error());
    return HTTPTransfer::Intake::refused;
}

void TaskLoad::handlePause()
{
    if (isOver_)
        return;
    sink_->pause();
    std::lock_guard lock(state_->mutex);
    state_->received = sink_->byteCount();
}

void TaskLoad::handleEnd(std::optional<long> code)
{
    if (isOver_)
        return;
    endTransaction();
    transaction().countOfResponseBodyBytesAfterDecoding = sink_->byteCount() - sizeAtSend_;
    if (!code && !sink_->isWhole())
        code = NSURLErrorNetworkConnectionLost;
    if (!code) {
        store();
        return finish(std::nullopt);
    }
    if (!survives(*code))
        finish(error(*code));
}

bool TaskLoad::survives(long code)
{
    bool isBreak = code == NSURLErrorNetworkConnectionLost || code == NSURLErrorTimedOut;
    // Each time a little more has come; a server that gives nothing more is believed.
    auto news = sink_->byteCount() - sizeAtSend_;
    if (isBreak && response_ && sink_->canContinue() && news > 0) {
        if (news >= enoughNews)
            breakCount_ = 0;
        if (++breakCount_ > mostBreaks)
            return false;
        // At first at once, then after 50, 100, 200 ... milliseconds.
        goOnAfter(breakCount_ == 1 ? std::chrono::milliseconds(0)
                                   : std::chrono::milliseconds(25) * (1 << (breakCount_ - 1)));
        return true;
    }
    if (code == NSURLErrorNotConnectedToInternet && core_->configuration().waitsForConnectivity) {
        goOnAfter(retryInterval);
        return true;
    }
    return false;
}

void TaskLoad::goOnAfter(std::chrono::milliseconds delay)
{
    endTransfer();
    if (delay.count() == 0)
        return hop();
    retryTimer_ = NetworkThread::shared().after(delay, [weak = weak_from_this()] {
        if (auto self = weak.lock(); self && !self->isOver_)
            self->hop();
    });
}

void TaskLoad::store()
{
    if (!response_ || redirection(request_, *response_) || !caching_.mayStore(*response_)
        || !transfer_->endIsKnown()) // half an answer would be believed for as long as it is fresh
        return;
    if (auto body = sink_->storableBody())
        caching_.store(response_, std::move(body), exchangeTimes());
}

void TaskLoad::deliver(const CachedURLResponse& stored)
{
    transaction().resourceFetchType = URLSessionTaskMetricsResourceFetchType::localCache;
    transaction().response = stored.response();
    transaction().countOfResponseBodyBytesAfterDecoding = static_cast<std::int64_t>(stored.data().size());
    endTransaction();
    {
        std::lock_guard lock(state_->mutex);
        state_->response = stored.response();
        state_->received = state_->expected = static_cast<std::int64_t>(stored.data().size());
    }
    auto proceed = [weak = weak_from_this(), stored](bool goesOn) {
        NetworkThread::shared().perform([weak, stored, goesOn] {
            auto self = weak.lock();
            if (!self || self->isOver_ || !std::exchange(self->awaitsAnswer_, false))
                return;
            if (!goesOn)
                return self->cancel();
            self->sink_->deliver(stored);
            self->finish(std::nullopt);
        });
    };
    awaitsAnswer_ = sink_->announce(stored.response(), proceed);
    if (awaitsAnswer_)
        return;
    sink_->deliver(stored);
    finish(std::nullopt);
}

HTTPExchangeTimes TaskLoad::exchangeTimes()
{
    return {*transaction().requestStartDate, *transaction().responseStartDate};
}

void TaskLoad::beginTransaction()
{
    metrics_.transactionMetrics.emplace_back(request_);
    transaction().fetchStartDate = now();
}

void TaskLoad::noteTimes()
{
    transaction().requestStartDate = transfer_->requestStart();
    transaction().responseStartDate = transfer_->responseStart();
}

void TaskLoad::endTransfer()
{
    if (transfer_)
        noteTimes();
    transfer_ = nullptr;
    slot_ = nullptr;
}

void TaskLoad::endTransaction()
{
    transaction().responseEndDate = now();
}

void TaskLoad::setPaused(bool isPaused)
{
    isSuspended_ = isPaused;
    // One that rests leaves its place to others, and goes on without one.
    if (isPaused)
        slot_ = nullptr;
    else if (deferred_)
        enqueue(std::exchange(deferred_, nullptr));
    updatePause();
}

void TaskLoad::updatePause()
{
    if (transfer_)
        transfer_->setPaused(isSuspended_ || awaitsAnswer_);
}

void TaskLoad::cancel(URLSessionTaskState::ResumeDataCompletion resumeData)
{
    if (!sink_)
        makeSink(); // it was never begun
    auto data = resumeData && !isOver_ ? sink_->giveResumeData() : std::nullopt;
    if (resumeData)
        core_->enqueue([resumeData = std::move(resumeData), data = std::move(data)] { resumeData(data); });
    finish(NSError(urlError(NSURLErrorCancelled, request_.url)));
}

void TaskLoad::finish(std::optional<Error> reason)
{
    if (std::exchange(isOver_, true))
        return;
    auto self = shared_from_this(); // the state lets go of it
    resourceTimer_.cancel();
    retryTimer_.cancel();
    conditionsToken_.cancel();
    metrics_.end = now();
    {
        std::lock_guard lock(state_->mutex);
        // Of a load that was cancelled as its last byte came, not all was told.
        if (state_->isCancelled && !reason)
            reason = error(NSURLErrorCancelled);
    }
    sink_->finish(reason);
    auto completion = sink_->takeCompletion();
    URLSessionCore::Untold untold;
    if (state_->kind == URLSessionTaskState::Kind::download && !reason)
        untold = core_->noteUntold(slot_);
    endTransfer();
    {
        std::lock_guard lock(state_->mutex);
        state_->error = reason;
        state_->state = URLSessionTask::State::completed;
    }
    bool isForCompletion = static_cast<bool>(completion);
    core_->enqueue([core = core_, task = task_, state = state_, metrics = std::move(metrics_),
                    isForCompletion, completion = std::move(completion),
                    untold = std::move(untold)]() mutable {
        if (auto delegate = core->delegateOf<URLSessionTaskDelegate>(*task))
            delegate->urlSessionTaskDidFinishCollecting(*state->session, task, metrics);
        if (isForCompletion)
            return std::exchange(completion, nullptr)();
        if (auto delegate = core->delegateOf<URLSessionTaskDelegate>(*task))
            delegate->urlSessionTaskDidComplete(*state->session, task,
                                                task->error()); // it may have failed since
    });
    core_->taskDidEnd(task_);
    state_->load = nullptr;
}

} // namespace platform
