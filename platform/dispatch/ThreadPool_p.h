// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace platform {

// The few threads that run the work of all background queues. Started when there is work and nobody idle to
// do it; they stay until the process ends, but for those that only filled in. Any thread.
class ThreadPool {
public:
    using Work = std::move_only_function<void()>;

    static ThreadPool& shared();

    void submit(Work work);

    // Whether no work waits or runs.
    bool isIdle() const;
    // Called, without a lock held, by a worker after which the pool is idle.
    void setOnIdle(std::function<void()> onIdle);

    // While it lives, the calling thread waits for other work. If that thread is one of the pool's, another
    // may take its place, so that queues waiting for each other never run out of threads.
    class Waiting {
    public:
        Waiting();
        Waiting(const Waiting&) = delete; // counted once
        Waiting& operator=(const Waiting&) = delete;
        ~Waiting();
    };

private:
    ThreadPool();
    void startWorkerIfNeeded();
    void runWorker();
    void notifyIfIdle(std::unique_lock<std::mutex>& lock);

    // fixed after construction
    const std::size_t busyLimit_;
    // guarded by mutex_
    mutable std::mutex mutex_;
    std::condition_variable hasWork_;
    std::deque<Work> pending_;
    std::size_t workers_ = 0;
    std::size_t idle_ = 0;
    std::size_t waiting_ = 0;
    std::shared_ptr<const std::function<void()>> onIdle_;
};

} // namespace platform
