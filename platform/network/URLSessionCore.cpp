// SPDX-License-Identifier: MIT
#include "platform/network/URLSessionCore_p.h"

#include "platform/foundation/Precondition.h"
#include "platform/network/BackgroundStore_p.h"
#include "platform/network/NetworkThread_p.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

// To one host, whatever a program wishes: a server takes more for an attack.
constexpr int mostConnections = 64;
// Of files that have come, each open or in memory until the delegate has it.
constexpr int mostUntold = 64;
// Of tasks that are known.
constexpr std::size_t leastSweep = 64;

} // namespace

URLSessionCore::URLSessionCore(URLSessionConfiguration configuration,
                               std::weak_ptr<URLSessionDelegate> delegate,
                               std::shared_ptr<DispatchQueue> delegateQueue)
    : configuration_(std::move(configuration))
    , delegate_(std::move(delegate))
    , delegateQueue_(std::move(delegateQueue))
{
    if (!delegateQueue_)
        delegateQueue_ = DispatchQueue::make("org.zelk.platform.url-session.delegate-queue");
    if (configuration_.identifier)
        store_ = BackgroundStore::open(*configuration_.identifier);
}

URLSessionCore::~URLSessionCore() = default;

std::shared_ptr<URLSessionDelegate> URLSessionCore::anyDelegate(URLSessionTask& task)
{
    std::shared_ptr<URLSessionDelegate> own;
    {
        std::lock_guard lock(task.state_->mutex);
        own = task.state_->delegate.lock();
    }
    return own ? own : delegate_.lock();
}

void URLSessionCore::enter(const std::shared_ptr<URLSessionTask>& task)
{
    auto& state = *task->state_;
    std::lock_guard lock(mutex_);
    precondition(!isInvalid_, "a task is made in a session that was made invalid");
    // Those that were let go unstarted. Seldom, as each time all are looked at.
    if (tasks_.size() >= nextSweep_) {
        std::erase_if(tasks_, [](auto& entry) { return entry.second.expired(); });
        nextSweep_ = std::max(leastSweep, tasks_.size() * 2);
    }
    if (state.identifier == 0)
        state.identifier = lastIdentifier_ + 1;
    lastIdentifier_ = std::max(lastIdentifier_, state.identifier);
    tasks_.insert_or_assign(state.identifier, task);
}

void URLSessionCore::taskWillRun(const std::shared_ptr<URLSessionTask>& task)
{
    std::lock_guard lock(mutex_);
    running_.insert_or_assign(task->taskIdentifier(), task);
}

void URLSessionCore::taskDidEnd(const std::shared_ptr<URLSessionTask>& task)
{
    auto session = task->state_->session;
    bool endsRestored = false;
    bool endsAll = false;
    {
        std::lock_guard lock(mutex_);
        bool isFirstEnd = tasks_.erase(task->taskIdentifier()) > 0;
        running_.erase(task->taskIdentifier());
        if (isFirstEnd && task->state_->isRestored)
            endsRestored = --restoredCount_ == 0;
        endsAll = invalidationIsDue_ && running_.empty();
        if (endsAll)
            invalidationIsDue_ = false;
    }
    if (endsRestored)
        enqueue([self = shared_from_this(), session] {
            if (auto delegate = self->delegate_.lock())
                delegate->urlSessionDidFinishEventsForBackgroundURLSession(*session);
        });
    if (endsAll)
        tellInvalidated(session);
}

URLSession::Tasks URLSessionCore::tasks()
{
    URLSession::Tasks result;
    std::lock_guard lock(mutex_);
    for (auto& [identifier, weak] : tasks_) {
        if (auto task = weak.lock(); task && task->state() != URLSessionTask::State::completed)
            result.push_back(std::move(task));
    }
    return result;
}

void URLSessionCore::describe(URLSessionTask& task, const std::string& description)
{
    if (store_)
        store_->describe(task.taskIdentifier(), description);
}

void URLSessionCore::enqueue(DispatchQueue::Work work)
{
    NetworkThread::shared().tell(delegateQueue_, std::move(work));
}

bool URLSessionCore::isCancelled(URLSessionTask& task)
{
    std::lock_guard lock(task.state_->mutex);
    return task.state_->isCancelled;
}

void URLSessionCore::invalidate(const std::shared_ptr<URLSession>& session)
{
    {
        std::lock_guard lock(mutex_);
        if (std::exchange(isInvalid_, true))
            return;
        if (!running_.empty()) {
            invalidationIsDue_ = true;
            return;
        }
    }
    tellInvalidated(session);
}

void URLSessionCore::tellInvalidated(const std::shared_ptr<URLSession>& session)
{
    NetworkThread::shared().perform([self = shared_from_this(), session] {
        self->enqueue([self, session] {
            if (auto delegate = self->delegate_.lock())
                delegate->urlSessionDidBecomeInvalid(*session, std::nullopt);
        });
    });
}

void URLSessionCore::whenFree(const std::string& host, std::function<void(Slot)> go)
{
    NetworkThread::shared().assertIsCurrent();
    hosts_[host].waiting.push_back(std::move(go));
    startNext(host);
}

void URLSessionCore::startNext(const std::string& host)
{
    auto found = hosts_.find(host);
    if (found == hosts_.end())
        return;
    auto& [active, waiting] = found->second;
    if (active == 0 && waiting.empty()) {
        hosts_.erase(found);
        return;
    }
    auto most = std::clamp(configuration_.httpMaximumConnectionsPerHost, 1, mostConnections);
    if (active >= most || waiting.empty())
        return;
    ++active;
    auto go = std::move(waiting.front());
    waiting.pop_front();
    // Nothing of importance is kept in it: its end is its meaning. Later, as it may come in the middle of a load's work.
    Slot slot(nullptr, [weak = weak_from_this(), host](void*) {
        NetworkThread::shared().perform([weak, host] {
            if (auto self = weak.lock()) {
                --self->hosts_[host].active;
                self->startNext(host);
            }
        });
    });
    go(std::move(slot));
}

URLSessionCore::Untold URLSessionCore::noteUntold(Slot& slot)
{
    bool isMuch = ++*untoldCount_ > mostUntold;
    std::shared_ptr<void> note(nullptr, [count = untoldCount_](void*) { --*count; });
    return {std::move(note), isMuch ? std::exchange(slot, nullptr) : nullptr};
}

void URLSessionCore::restoreTasks(const std::shared_ptr<URLSession>& session)
{
    URLSession::Tasks restored;
    for (auto& entry : store_ ? store_->entries() : std::vector<BackgroundStore::Entry>()) {
        auto state = std::make_shared<URLSessionTaskState>();
        state->identifier = entry.identifier;
        state->kind = URLSessionTaskState::Kind::download;
        state->originalRequest = entry.request;
        state->description = entry.description;
        state->session = session;
        state->core = shared_from_this();
        state->partialPath = store_->partialPath(entry.identifier);
        state->partialValidator = entry.validator;
        state->partialSource = entry.source;
        state->partialTotal = entry.total;
        state->isRestored = true;
        restored.push_back(addTask<URLSessionDownloadTask>(state));
    }
    {
        std::lock_guard lock(mutex_);
        restoredCount_ = restored.size();
    }
    for (auto& task : restored)
        task->resume();
}

} // namespace platform
