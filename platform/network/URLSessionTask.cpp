// SPDX-License-Identifier: MIT
#include "platform/network/URLSessionTask.h"

#include "platform/network/NetworkThread_p.h"
#include "platform/network/TaskLoad_p.h"
#include "platform/network/URLSessionCore_p.h"

#include <utility>

namespace platform {

URLSessionTask::URLSessionTask(std::shared_ptr<URLSessionTaskState> state)
    : state_(std::move(state))
{
}

URLSessionTask::~URLSessionTask() = default;

std::size_t URLSessionTask::taskIdentifier() const
{
    return state_->identifier;
}

const std::optional<URLRequest>& URLSessionTask::originalRequest() const
{
    return state_->originalRequest;
}

URLRequest URLSessionTask::currentRequest() const
{
    std::lock_guard lock(state_->mutex);
    return state_->redirectedRequest ? *state_->redirectedRequest : *state_->originalRequest;
}

std::shared_ptr<const URLResponse> URLSessionTask::response() const
{
    std::lock_guard lock(state_->mutex);
    return state_->response;
}

std::optional<Error> URLSessionTask::error() const
{
    std::lock_guard lock(state_->mutex);
    return state_->error;
}

URLSessionTask::State URLSessionTask::state() const
{
    std::lock_guard lock(state_->mutex);
    return state_->state;
}

std::int64_t URLSessionTask::countOfBytesReceived() const
{
    std::lock_guard lock(state_->mutex);
    return state_->received;
}

std::int64_t URLSessionTask::countOfBytesExpectedToReceive() const
{
    std::lock_guard lock(state_->mutex);
    return state_->expected;
}

std::string URLSessionTask::taskDescription() const
{
    std::lock_guard lock(state_->mutex);
    return state_->description;
}

void URLSessionTask::setTaskDescription(std::string description)
{
    {
        std::lock_guard lock(state_->mutex);
        state_->description = description;
    }
    state_->core->describe(*this, description);
}

void URLSessionTask::setDelegate(std::weak_ptr<URLSessionTaskDelegate> delegate)
{
    std::lock_guard lock(state_->mutex);
    state_->delegate = std::move(delegate);
}

void URLSessionTask::resume()
{
    {
        std::lock_guard lock(state_->mutex);
        if (state_->state != State::suspended || --state_->suspensions > 0)
            return;
        state_->state = State::running;
    }
    auto self = sharedFrom(this);
    state_->core->taskWillRun(self);
    NetworkThread::shared().perform([self] {
        auto& state = self->state_;
        // As it is now: who resumes and who suspends at the same time may have come here in another order.
        auto now = self->state();
        if (state->load)
            return state->load->setPaused(now == State::suspended);
        if (now == State::completed) // cancelled meanwhile
            return state->core->taskDidEnd(self);
        if (now == State::suspended)
            return;
        state->load = std::make_shared<TaskLoad>(self, state);
        state->load->begin();
    });
}

void URLSessionTask::suspend()
{
    {
        std::lock_guard lock(state_->mutex);
        if (state_->state != State::running && state_->state != State::suspended)
            return;
        ++state_->suspensions;
        if (std::exchange(state_->state, State::suspended) == State::suspended)
            return;
    }
    NetworkThread::shared().perform([self = sharedFrom(this)] {
        if (auto load = self->state_->load)
            load->setPaused(self->state() == State::suspended);
    });
}

void URLSessionTask::cancel()
{
    stop(nullptr);
}

void URLSessionTask::stop(std::function<void(std::optional<std::string>)> resumeData)
{
    bool isLate = false;
    {
        std::lock_guard lock(state_->mutex);
        isLate = state_->state == State::canceling || state_->state == State::completed;
        if (!isLate) {
            state_->state = State::canceling;
            state_->isCancelled = true;
        }
    }
    if (isLate) {
        if (resumeData)
            state_->core->delegateQueue()->async(
                [resumeData = std::move(resumeData)] { resumeData(std::nullopt); });
        return;
    }
    auto self = sharedFrom(this);
    state_->core->taskWillRun(self);
    NetworkThread::shared().perform([self, resumeData = std::move(resumeData)]() mutable {
        auto& state = self->state_;
        if (self->state() == State::completed) {
            if (resumeData)
                state->core->delegateQueue()->async(
                    [resumeData = std::move(resumeData)] { resumeData(std::nullopt); });
            return state->core->taskDidEnd(self);
        }
        if (!state->load)
            state->load = std::make_shared<TaskLoad>(self, state);
        auto load = state->load;
        load->cancel(std::move(resumeData));
    });
}

void URLSessionDownloadTask::cancelByProducingResumeData(
    std::function<void(std::optional<std::string>)> completion)
{
    stop(std::move(completion));
}

} // namespace platform
