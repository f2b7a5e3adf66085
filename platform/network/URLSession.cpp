// SPDX-License-Identifier: MIT
#include "platform/network/URLSession.h"

#include "platform/network/BackgroundStore_p.h"
#include "platform/network/URLSessionCore_p.h"

#include <utility>

namespace platform {

const std::shared_ptr<URLSession>& URLSession::shared()
{
    static const auto session = make(URLSessionConfiguration::defaultSession());
    return session;
}

std::shared_ptr<URLSession> URLSession::make(URLSessionConfiguration configuration,
                                             std::weak_ptr<URLSessionDelegate> delegate,
                                             std::shared_ptr<DispatchQueue> delegateQueue)
{
    auto core = std::make_shared<URLSessionCore>(std::move(configuration), std::move(delegate),
                                                 std::move(delegateQueue));
    std::shared_ptr<URLSession> session(new URLSession(core));
    core->restoreTasks(session);
    return session;
}

URLSession::URLSession(std::shared_ptr<URLSessionCore> core)
    : core_(std::move(core))
{
}

URLSession::~URLSession() = default;

const URLSessionConfiguration& URLSession::configuration() const
{
    return core_->configuration();
}

const std::shared_ptr<DispatchQueue>& URLSession::delegateQueue() const
{
    return core_->delegateQueue();
}

std::shared_ptr<URLSessionTaskState> URLSession::newState(URLRequest request)
{
    auto state = std::make_shared<URLSessionTaskState>();
    state->originalRequest = std::move(request);
    state->session = sharedFrom(this);
    state->core = core_;
    return state;
}

std::shared_ptr<URLSessionDataTask> URLSession::dataTask(URLRequest request, DataCompletion completion)
{
    auto state = newState(std::move(request));
    state->dataCompletion = std::move(completion);
    return core_->addTask<URLSessionDataTask>(std::move(state));
}

std::shared_ptr<URLSessionDownloadTask> URLSession::downloadTask(URLRequest request,
                                                                 DownloadCompletion completion)
{
    auto state = newState(std::move(request));
    state->kind = URLSessionTaskState::Kind::download;
    state->downloadCompletion = std::move(completion);
    auto task = core_->addTask<URLSessionDownloadTask>(state);
    // A completion would not be there at the next start.
    if (auto& store = core_->store(); store && !state->downloadCompletion) {
        state->partialPath = store->partialPath(state->identifier);
        store->put({.identifier = state->identifier,
                    .request = *state->originalRequest,
                    .description = {},
                    .validator = {},
                    .source = {},
                    .total = std::nullopt});
    }
    return task;
}

std::shared_ptr<URLSessionDownloadTask> URLSession::downloadTask(const std::string& resumeData,
                                                                 DownloadCompletion completion)
{
    auto data = decodeResumeData(resumeData);
    // An URL that nothing is loaded from: the task says so when it runs.
    auto state = newState(data ? data->request : URLRequest(URL::fileURL("/")));
    state->kind = URLSessionTaskState::Kind::download;
    state->downloadCompletion = std::move(completion);
    if (data) {
        state->partialPath = data->path;
        state->partialValidator = data->validator;
        state->partialSource = data->source;
        state->partialTotal = data->total;
    }
    return core_->addTask<URLSessionDownloadTask>(std::move(state));
}

void URLSession::getAllTasks(std::function<void(Tasks)> completion)
{
    core_->delegateQueue()->async(
        [core = core_, completion = std::move(completion)] { completion(core->tasks()); });
}

void URLSession::finishTasksAndInvalidate()
{
    if (this != shared().get())
        core_->invalidate(sharedFrom(this));
}

void URLSession::invalidateAndCancel()
{
    if (this == shared().get())
        return;
    for (auto& task : core_->tasks())
        task->cancel();
    core_->invalidate(sharedFrom(this));
}

} // namespace platform
