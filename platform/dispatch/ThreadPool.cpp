// SPDX-License-Identifier: MIT
#include "platform/dispatch/ThreadPool_p.h"

#include <algorithm>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace platform {

namespace {

// Enough for queues that wait for files while others compute.
constexpr std::size_t leastBusyLimit = 4;
// Of setpriority(): where cores are few, the main thread goes first, as people wait for it.
constexpr int yieldingBy = 5;

thread_local bool isWorker = false;

} // namespace

// Never destroyed: its threads run until the process ends.
ThreadPool& ThreadPool::shared()
{
    static ThreadPool& pool = *new ThreadPool;
    return pool;
}

ThreadPool::ThreadPool()
    : busyLimit_(std::max<std::size_t>(leastBusyLimit, std::thread::hardware_concurrency()))
{
}

void ThreadPool::submit(Work work)
{
    {
        std::lock_guard lock(mutex_);
        pending_.push_back(std::move(work));
        startWorkerIfNeeded();
    }
    hasWork_.notify_one();
}

bool ThreadPool::isIdle() const
{
    std::lock_guard lock(mutex_);
    return pending_.empty() && idle_ == workers_;
}

void ThreadPool::setOnIdle(std::function<void()> onIdle)
{
    std::shared_ptr<const std::function<void()>> replacement;
    if (onIdle)
        replacement = std::make_shared<const std::function<void()>>(std::move(onIdle));
    std::lock_guard lock(mutex_);
    onIdle_.swap(replacement);
}

// Called with the lock held.
void ThreadPool::startWorkerIfNeeded()
{
    if (pending_.size() <= idle_ || workers_ - waiting_ >= busyLimit_)
        return;
    ++workers_;
    std::thread([this] { runWorker(); }).detach();
}

void ThreadPool::runWorker()
{
    isWorker = true;
    auto thread = static_cast<id_t>(::gettid());
    ::setpriority(PRIO_PROCESS, thread, ::getpriority(PRIO_PROCESS, thread) + yieldingBy);
    std::unique_lock lock(mutex_);
    for (;;) {
        if (workers_ - waiting_ > busyLimit_)
            break; // the one whose place this worker took has come back
        if (pending_.empty()) {
            ++idle_;
            notifyIfIdle(lock);
            hasWork_.wait(lock, [this] { return !pending_.empty(); });
            --idle_;
            continue;
        }
        auto work = std::move(pending_.front());
        pending_.pop_front();
        lock.unlock();
        work();
        work = nullptr; // may submit
        lock.lock();
    }
    --workers_;
    if (!pending_.empty())
        hasWork_.notify_one(); // the call that woke this worker was for another
    notifyIfIdle(lock);
}

// Called with the lock held, which it gives up meanwhile.
void ThreadPool::notifyIfIdle(std::unique_lock<std::mutex>& lock)
{
    auto onIdle = pending_.empty() && idle_ == workers_ ? onIdle_ : nullptr;
    if (!onIdle)
        return;
    lock.unlock();
    (*onIdle)();
    lock.lock();
}

ThreadPool::Waiting::Waiting()
{
    if (!isWorker)
        return;
    auto& pool = shared();
    std::lock_guard lock(pool.mutex_);
    ++pool.waiting_;
    pool.startWorkerIfNeeded();
}

ThreadPool::Waiting::~Waiting()
{
    if (!isWorker)
        return;
    auto& pool = shared();
    std::lock_guard lock(pool.mutex_);
    --pool.waiting_;
}

} // namespace platform
