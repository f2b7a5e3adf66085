// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/URLSession.h"
#include "platform/network/URLSessionTaskState_p.h"

#include <atomic>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>

namespace platform {

class BackgroundStore;

// What a session consists of, for its tasks and their loads.
class URLSessionCore : public std::enable_shared_from_this<URLSessionCore> {
public:
    URLSessionCore(URLSessionConfiguration configuration, std::weak_ptr<URLSessionDelegate> delegate,
                   std::shared_ptr<DispatchQueue> delegateQueue);
    ~URLSessionCore();

    const URLSessionConfiguration& configuration() const { return configuration_; }
    const std::shared_ptr<DispatchQueue>& delegateQueue() const { return delegateQueue_; }

    // Any thread.
    template <class Task>
    std::shared_ptr<Task> addTask(std::shared_ptr<URLSessionTaskState> state)
    {
        std::shared_ptr<Task> task(new Task(state));
        enter(task);
        return task;
    }
    // From now on the task lives until it ends.
    void taskWillRun(const std::shared_ptr<URLSessionTask>& task);
    // After its last call was given to the delegate queue.
    void taskDidEnd(const std::shared_ptr<URLSessionTask>& task);
    URLSession::Tasks tasks();
    void describe(URLSessionTask& task, const std::string& description);
    void invalidate(const std::shared_ptr<URLSession>& session);

    // Whoever hears of `task`; null when nobody of that kind is there.
    template <class Delegate>
    std::shared_ptr<Delegate> delegateOf(URLSessionTask& task)
    {
        return std::dynamic_pointer_cast<Delegate>(anyDelegate(task));
    }
    // The same for what is told before the end: nobody once the task is cancelled.
    template <class Delegate>
    std::shared_ptr<Delegate> listenerOf(URLSessionTask& task)
    {
        return isCancelled(task) ? nullptr : delegateOf<Delegate>(task);
    }
    // Gives `work` to the delegate queue, with what else is to be told now. Network thread only.
    void enqueue(DispatchQueue::Work work);
    // Calls `call(delegate)` on the delegate queue, if there is such a delegate then. Network thread only.
    template <class Delegate, class Call>
    void tell(const std::shared_ptr<URLSessionTask>& task, Call call)
    {
        enqueue([self = shared_from_this(), task, call = std::move(call)]() mutable {
            if (auto delegate = self->template listenerOf<Delegate>(*task))
                call(*delegate);
        });
    }

    // Calls `go` as soon as the host may be asked once more; while the slot is held, that is taken. Network thread only.
    using Slot = std::shared_ptr<void>;
    void whenFree(const std::string& host, std::function<void(Slot)> go);

    // What has come and has not been told counts as long as the first is kept, which ends on any thread. Where much waits
    // for the delegate, whoever has come keeps `slot` too, so that no more comes.
    using Untold = std::pair<std::shared_ptr<void>, Slot>;
    Untold noteUntold(Slot& slot);

    // Of a background session whose files are free: null otherwise.
    const std::shared_ptr<BackgroundStore>& store() const { return store_; }
    // Makes the tasks that an earlier start left; they run on.
    void restoreTasks(const std::shared_ptr<URLSession>& session);

private:
    bool isCancelled(URLSessionTask& task);
    std::shared_ptr<URLSessionDelegate> anyDelegate(URLSessionTask& task);
    void enter(const std::shared_ptr<URLSessionTask>& task);
    void startNext(const std::string& host);
    void tellInvalidated(const std::shared_ptr<URLSession>& session);

    // fixed after construction
    URLSessionConfiguration configuration_;
    std::weak_ptr<URLSessionDelegate> delegate_;
    std::shared_ptr<DispatchQueue> delegateQueue_;
    std::shared_ptr<std::atomic<int>> untoldCount_ = std::make_shared<std::atomic<int>>(0);
    std::shared_ptr<BackgroundStore> store_;

    std::mutex mutex_;
    // guarded by mutex_
    std::size_t lastIdentifier_ = 0;
    std::map<std::size_t, std::weak_ptr<URLSessionTask>> tasks_;
    std::size_t nextSweep_ = 0;
    std::map<std::size_t, std::shared_ptr<URLSessionTask>> running_;
    bool isInvalid_ = false;
    bool invalidationIsDue_ = false;
    std::size_t restoredCount_ = 0; // those that have not ended

    struct Host {
        int active = 0;
        std::deque<std::function<void(Slot)>> waiting;
    };
    std::map<std::string, Host> hosts_; // network thread only
};

} // namespace platform
