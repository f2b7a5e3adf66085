// SPDX-License-Identifier: MIT
#include "platform/dispatch/DispatchQueue.h"

#include "platform/dispatch/DelayedWork_p.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/ThreadPool_p.h"
#include "platform/foundation/Precondition.h"

#include <condition_variable>
#include <deque>
#include <future>
#include <mutex>

namespace platform {

// The queue proper, kept alive by its handle and by the pool while it has work there.
//
// At most one thread is inside the queue (`isOccupied`). It is either a worker of the pool, which runs
// pieces until it meets a waiting sync() or has had its share, or a thread in sync(), which enters when its
// place has come to the front and runs its own piece only. Whoever leaves hands on to the front.
struct DispatchQueue::State : std::enable_shared_from_this<State> {
    // A piece of work, or the place of a thread that waits in sync().
    struct Piece {
        Work work;
        const void* waiter = nullptr;
    };

    explicit State(std::string givenLabel)
        : label(std::move(givenLabel))
    {
    }

    void append(Work work);
    void runOnWorker();
    void runWaiting(Work& work);
    void run(Work& work, std::unique_lock<std::mutex>& lock);
    void handOn(std::unique_lock<std::mutex>& lock);
    bool isCurrent() const;

    // fixed after construction
    const std::string label;

    std::mutex mutex;
    std::condition_variable changed;
    // guarded by `mutex`
    std::deque<Piece> pieces;
    int suspensions = 0;
    bool isOccupied = false;
    bool isSubmitted = false; // a worker will come
};

namespace {

// Pieces that a worker runs before other queues get their turn.
constexpr int share = 32;

// The queues whose work the calling thread is part of, innermost first.
struct Scope {
    const void* queue;
    const Scope* outer;
};
thread_local const Scope* innermostScope = nullptr;

} // namespace

bool DispatchQueue::State::isCurrent() const
{
    for (auto scope = innermostScope; scope; scope = scope->outer)
        if (scope->queue == this)
            return true;
    return false;
}

void DispatchQueue::State::append(Work work)
{
    std::unique_lock lock(mutex);
    pieces.push_back({.work = std::move(work)});
    handOn(lock);
}

// Lets the piece at the front go on if nothing keeps it. Called with the lock held, which it may give up: a worker that is
// woken would wait for it.
void DispatchQueue::State::handOn(std::unique_lock<std::mutex>& lock)
{
    if (pieces.empty() || isOccupied || isSubmitted || suspensions > 0)
        return;
    if (pieces.front().waiter) {
        changed.notify_all();
        return;
    }
    isSubmitted = true;
    lock.unlock();
    ThreadPool::shared().submit([self = shared_from_this()] { self->runOnWorker(); });
}

// Called with the lock held, which it gives up meanwhile.
void DispatchQueue::State::run(Work& work, std::unique_lock<std::mutex>& lock)
{
    isOccupied = true;
    lock.unlock();
    const Scope scope{this, innermostScope};
    innermostScope = &scope;
    work();
    work = nullptr; // what it holds is released as part of the queue's work
    innermostScope = scope.outer;
    lock.lock();
    isOccupied = false;
}

void DispatchQueue::State::runOnWorker()
{
    std::unique_lock lock(mutex);
    isSubmitted = false;
    for (int ran = 0; ran < share && suspensions == 0 && !isOccupied; ++ran) {
        if (pieces.empty() || pieces.front().waiter)
            break;
        auto work = std::move(pieces.front().work);
        pieces.pop_front();
        run(work, lock);
    }
    handOn(lock);
}

void DispatchQueue::State::runWaiting(Work& work)
{
    std::unique_lock lock(mutex);
    pieces.push_back({.waiter = &work});
    auto canEnter = [&] { return !isOccupied && suspensions == 0 && pieces.front().waiter == &work; };
    if (!canEnter()) {
        ThreadPool::Waiting waiting;
        changed.wait(lock, canEnter);
    }
    pieces.pop_front();
    run(work, lock);
    handOn(lock);
}

DispatchQueue::DispatchQueue(std::shared_ptr<State> state)
    : state_(std::move(state))
{
}

DispatchQueue::~DispatchQueue() = default;

// Never destroyed, like the main run loop.
const std::shared_ptr<DispatchQueue>& DispatchQueue::main()
{
    static const auto& queue = *new std::shared_ptr<DispatchQueue>(new DispatchQueue(nullptr));
    return queue;
}

std::shared_ptr<DispatchQueue> DispatchQueue::make(std::string label, Initially state)
{
    auto shared = std::make_shared<State>(std::move(label));
    shared->suspensions = state == Initially::suspended ? 1 : 0;
    return std::shared_ptr<DispatchQueue>(new DispatchQueue(std::move(shared)));
}

const std::string& DispatchQueue::label() const
{
    static const auto& mainLabel = *new std::string("main");
    return state_ ? state_->label : mainLabel;
}

bool DispatchQueue::isCurrent() const
{
    return state_ ? state_->isCurrent() : isOnMainThread();
}

void DispatchQueue::async(Work work)
{
    precondition(static_cast<bool>(work), "work given to a queue must be callable");
    if (state_)
        state_->append(std::move(work));
    else
        RunLoop::main().perform(std::move(work));
}

void DispatchQueue::async(std::shared_ptr<DispatchWorkItem> item)
{
    async([item = std::move(item)] { item->perform(); });
}

void DispatchQueue::asyncAfter(Duration delay, Work work)
{
    precondition(static_cast<bool>(work), "work given to a queue must be callable");
    if (!state_)
        return RunLoop::main().performAfter(delay, std::move(work));
    DelayedWork::performAfter(
        delay, [state = state_, work = std::move(work)]() mutable { state->append(std::move(work)); });
}

void DispatchQueue::asyncAfter(Instant deadline, Work work)
{
    precondition(static_cast<bool>(work), "work given to a queue must be callable");
    if (!state_)
        return RunLoop::main().performAt(deadline, std::move(work));
    DelayedWork::performAt(
        deadline, [state = state_, work = std::move(work)]() mutable { state->append(std::move(work)); });
}

void DispatchQueue::asyncAfter(Duration delay, std::shared_ptr<DispatchWorkItem> item)
{
    asyncAfter(delay, [item = std::move(item)] { item->perform(); });
}

void DispatchQueue::runAndWait(Work work)
{
    if (isCurrent())
        preconditionFailure("sync on the queue '" + label() + "' from itself would wait for ever");
    if (auto state = state_) // the work may let the queue go
        return state->runWaiting(work);
    // The promise dies with work that the loop drops, and then nobody waits for it any more.
    std::promise<void> done;
    auto isDone = done.get_future();
    RunLoop::main().perform([&work, done = std::move(done)]() mutable {
        work();
        done.set_value();
    });
    ThreadPool::Waiting waiting;
    isDone.wait();
}

void DispatchQueue::suspend()
{
    precondition(state_ != nullptr, "the main queue cannot be suspended");
    std::lock_guard lock(state_->mutex);
    ++state_->suspensions;
}

void DispatchQueue::resume()
{
    precondition(state_ != nullptr, "the main queue cannot be resumed");
    std::unique_lock lock(state_->mutex);
    if (state_->suspensions == 0)
        preconditionFailure("the queue '" + state_->label + "' was resumed more often than suspended");
    --state_->suspensions;
    state_->handOn(lock);
}

} // namespace platform
