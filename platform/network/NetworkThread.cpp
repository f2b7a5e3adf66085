// SPDX-License-Identifier: MIT
#include "platform/network/NetworkThread_p.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/Precondition.h"
#include "platform/network/HTTPConnections_p.h"

#include <algorithm>
#include <atomic>
#include <deque>
#include <map>
#include <mutex>
#include <pthread.h>
#include <signal.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace platform {

namespace {

// Nothing is due before somebody says so.
constexpr auto longestSleep = std::chrono::hours(1);
// No sum with it overflows.
constexpr auto longestDelay = std::chrono::hours(24 * 365);
// Of work that was given, between two looks at the connections: the first loads go out while the others are prepared.
constexpr std::size_t mostAtOnce = 16;

} // namespace

NetworkDescriptor::~NetworkDescriptor() = default;

struct NetworkThread::State {
    // fixed once the thread runs
    std::thread thread;
    std::thread::id identity;
    pid_t process = ::getpid();
    HTTPConnections* connections = new HTTPConnections;

    std::atomic<bool> isOver = false;
    std::mutex mutex;
    std::deque<Work> waiting; // guarded by mutex

    // network thread only
    using TimerKey = std::pair<Clock::time_point, std::uint64_t>;
    std::map<TimerKey, Work> timers;
    std::uint64_t lastTimer = 0;
    std::vector<std::shared_ptr<NetworkDescriptor>> descriptors;
    std::vector<std::pair<std::shared_ptr<DispatchQueue>, Work>> news;

    bool isCurrent() const { return std::this_thread::get_id() == identity; }
    void runWork();
    void runTimers();
    void handleDescriptors();
    void giveNews();
    void wait();
};

struct NetworkThread::StopAtExit {
    NetworkThread& thread;
    ~StopAtExit() { thread.stop(); }
};

NetworkThread& NetworkThread::shared()
{
    // Never destroyed, as anybody may still hold its address; only stopped. What the library unmakes at the end was made
    // before that was arranged for: it outlives the thread, which may be in the middle of a connection then.
    static auto& instance = *new NetworkThread;
    static const StopAtExit stop{instance};
    return instance;
}

NetworkThread::NetworkThread()
    : state_(std::make_unique<State>())
{
    std::unique_lock lock(state_->mutex); // until the thread knows itself
    state_->thread = std::thread([this] {
        ::pthread_setname_np(::pthread_self(), "zelk-network");
        // That a server has gone is learnt from the write that fails. No more than that: threads that are started from
        // here inherit it.
        sigset_t mask;
        ::sigemptyset(&mask);
        ::sigaddset(&mask, SIGPIPE);
        ::pthread_sigmask(SIG_BLOCK, &mask, nullptr);
        run();
    });
    state_->identity = state_->thread.get_id();
}

void NetworkThread::run()
{
    std::unique_lock(state_->mutex).unlock();
    while (!state_->isOver) {
        state_->runWork();
        // Before timers, so that none runs out over bytes that are here.
        state_->connections->drive();
        state_->runTimers();
        state_->handleDescriptors();
        state_->giveNews();
        state_->wait();
    }
}

void NetworkThread::State::runWork()
{
    for (std::size_t count = 0; count < mostAtOnce; ++count) {
        std::unique_lock lock(mutex);
        if (waiting.empty())
            return;
        auto work = std::move(waiting.front());
        waiting.pop_front();
        lock.unlock();
        work();
    }
}

void NetworkThread::State::runTimers()
{
    // Those that are made meanwhile are for the next turn.
    auto now = Clock::now();
    while (!timers.empty() && timers.begin()->first.first <= now) {
        auto work = std::move(timers.begin()->second);
        timers.erase(timers.begin());
        work();
    }
}

void NetworkThread::State::handleDescriptors()
{
    for (auto& descriptor : descriptors)
        descriptor->handle();
    std::erase_if(descriptors, [](auto& descriptor) { return descriptor->descriptor() < 0; });
}

void NetworkThread::State::giveNews()
{
    for (auto& [queue, work] : std::exchange(news, {}))
        queue->async(std::move(work));
}

void NetworkThread::State::wait()
{
    {
        std::lock_guard lock(mutex);
        if (!waiting.empty())
            return; // connections are looked at in the next turn all the same
    }
    auto until = Clock::now() + longestSleep;
    if (!timers.empty())
        until = std::min(until, timers.begin()->first.first);
    std::vector<HTTPConnections::Other> others;
    for (auto& descriptor : descriptors) {
        others.push_back({descriptor->descriptor(), descriptor->events()});
        until = std::min(until, descriptor->deadline().value_or(until));
    }
    connections->wait(until, others);
}

void NetworkThread::stop()
{
    // Of another process that this one was forked from, or the one that ends it all: there is nobody to wait for.
    if (state_->process != ::getpid() || state_->isCurrent())
        return;
    state_->isOver = true;
    state_->connections->wake();
    state_->thread.join();
}

void NetworkThread::perform(Work work)
{
    {
        std::lock_guard lock(state_->mutex);
        state_->waiting.push_back(std::move(work));
        if (state_->waiting.size() > 1)
            return; // it is awake or being woken
    }
    if (!state_->isCurrent())
        state_->connections->wake();
}

void NetworkThread::assertIsCurrent() const
{
    precondition(state_->isCurrent(), "a load is touched off the network thread");
}

HTTPConnections& NetworkThread::connections()
{
    return *state_->connections;
}

Token NetworkThread::after(Clock::duration delay, Work work)
{
    State::TimerKey key{Clock::now() + std::min<Clock::duration>(delay, longestDelay), ++state_->lastTimer};
    state_->timers.emplace(key, std::move(work));
    return Token([this, key] { state_->timers.erase(key); });
}

void NetworkThread::tell(const std::shared_ptr<DispatchQueue>& queue, Work work)
{
    assertIsCurrent();
    state_->news.emplace_back(queue, std::move(work));
}

void NetworkThread::lookAfter(std::shared_ptr<NetworkDescriptor> descriptor)
{
    state_->descriptors.push_back(std::move(descriptor));
}

} // namespace platform
