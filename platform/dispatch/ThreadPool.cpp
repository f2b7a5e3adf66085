// SPDX-License-Identifier: MIT
#include "platform/dispatch/ThreadPool_p.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace platform {

namespace {

// Enough for queues that wait for files while others compute.
constexpr std::size_t leastBusyLimit = 4;

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
    std::unique_lock lock(mutex_);
    for (;;) {
        if (pending_.empty()) {
            ++idle_;
            if (auto onIdle = idle_ == workers_ ? onIdle_ : nullptr) {
                lock.unlock();
                (*onIdle)();
                lock.lock();
            }
            hasWork_.wait(lock, [this] { return !pending_.empty(); });
            --idle_;
        }
        auto work = std::move(pending_.front());
        pending_.pop_front();
        lock.unlock();
        work();
        work = nullptr; // may submit
        lock.lock();
    }
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
