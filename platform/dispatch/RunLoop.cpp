// SPDX-License-Identifier: MIT
#include "platform/dispatch/RunLoop.h"

#include "platform/foundation/MainThreadWork.h"
#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

namespace platform {

namespace {

std::atomic<bool> mainClockIsVirtual = false;

constexpr std::size_t observerRoundsLimit = 100;

Instant saturatedSum(Instant start, Duration delay)
{
    if (delay > Duration::zero() && start > Instant::max() - delay)
        return Instant::max();
    return start + std::max(delay, Duration::zero());
}

} // namespace

struct RunLoop::State {
    // Order of deadlines, then the order in which work was given.
    struct Key {
        Instant deadline;
        std::uint64_t sequence;
        auto operator<=>(const Key&) const = default;
    };
    struct ObserverKey {
        int phase;
        std::uint64_t sequence;
        auto operator<=>(const ObserverKey&) const = default;
    };

    Instant now() const { return clock.load()->now(); }
    bool isDue() const { return isTurnRequested || (!work.empty() && work.begin()->first.deadline <= now()); }
    void keepRemainingDelays(Duration shift);

    // fixed after construction
    const std::thread::id owner = std::this_thread::get_id();
    const SystemClock systemClock;

    // written on the own thread, read on any
    std::atomic<const Clock*> clock = &systemClock;

    // guarded by `mutex`
    mutable std::mutex mutex;
    std::condition_variable changed;
    std::map<Key, Work> work;
    std::unordered_map<std::uint64_t, Instant> cancellableDeadlines;
    std::uint64_t nextSequence = 0;
    std::shared_ptr<const std::function<void()>> wakeUp;
    bool isTurnRequested = false;
    bool isStopRequested = false;

    // own thread only
    std::map<ObserverKey, std::shared_ptr<Observer>> observers;
    std::uint64_t nextObserver = 0;
    std::uint64_t firstVirtualSequence = 0;
    int turnDepth = 0;
    bool isRunningObservers = false;
};

bool isOnMainThread()
{
    return RunLoop::main().isOnOwnThread();
}

void assertOnMainThread(std::source_location caller)
{
    if (isOnMainThread()) [[likely]]
        return;
    preconditionFailure(std::string(caller.function_name()) + " called off the main thread", caller);
}

// Never destroyed: other threads may still give work while the process exits.
RunLoop& RunLoop::main()
{
    static RunLoop& loop = [] -> RunLoop& {
        auto& made = *new RunLoop;
        setMainThreadExecutor([](MainThreadWork work) { main().perform(std::move(work)); });
        return made;
    }();
    return loop;
}

RunLoop::RunLoop()
    : state_(std::make_unique<State>())
{
}

RunLoop::~RunLoop() = default;

const Clock& RunLoop::clock() const
{
    return *state_->clock.load();
}

bool RunLoop::isOnOwnThread() const
{
    return std::this_thread::get_id() == state_->owner;
}

void RunLoop::perform(Work work)
{
    add(Instant::min(), std::move(work), false);
}

void RunLoop::performAt(Instant deadline, Work work)
{
    add(deadline, std::move(work), false);
}

void RunLoop::performAfter(Duration delay, Work work)
{
    add(saturatedSum(clock().now(), delay), std::move(work), false);
}

Token RunLoop::schedule(Instant deadline, Work work)
{
    auto sequence = add(deadline, std::move(work), true);
    return Token([this, sequence] { cancel(sequence); });
}

// A deadline is never before the present, read under the lock: so work given during a turn always sorts
// behind all work of that turn.
std::uint64_t RunLoop::add(Instant deadline, Work work, bool isCancellable)
{
    precondition(static_cast<bool>(work), "work given to a run loop must be callable");
    std::shared_ptr<const std::function<void()>> wakeUp;
    std::uint64_t sequence;
    {
        std::lock_guard lock(state_->mutex);
        deadline = std::max(deadline, state_->now());
        sequence = state_->nextSequence++;
        auto added = state_->work.emplace(State::Key{deadline, sequence}, std::move(work)).first;
        if (isCancellable)
            state_->cancellableDeadlines.emplace(sequence, deadline);
        if (added != state_->work.begin())
            return sequence;
        wakeUp = state_->wakeUp;
    }
    state_->changed.notify_all();
    if (wakeUp)
        (*wakeUp)();
    return sequence;
}

void RunLoop::cancel(std::uint64_t sequence)
{
    std::map<State::Key, Work>::node_type cancelled; // released without the lock
    std::lock_guard lock(state_->mutex);
    auto found = state_->cancellableDeadlines.find(sequence);
    if (found == state_->cancellableDeadlines.end())
        return;
    cancelled = state_->work.extract({found->second, sequence});
    state_->cancellableDeadlines.erase(found);
}

void RunLoop::requestTurn()
{
    std::shared_ptr<const std::function<void()>> wakeUp;
    {
        std::lock_guard lock(state_->mutex);
        if (std::exchange(state_->isTurnRequested, true))
            return;
        wakeUp = state_->wakeUp;
    }
    state_->changed.notify_all();
    if (wakeUp)
        (*wakeUp)();
}

Token RunLoop::addBeforeSleepObserver(int phase, Observer observer)
{
    precondition(isOnOwnThread(), "an observer is added on the run loop's own thread");
    State::ObserverKey key{phase, state_->nextObserver++};
    state_->observers.emplace(key, std::make_shared<Observer>(std::move(observer)));
    return Token([this, key] { state_->observers.erase(key); });
}

bool RunLoop::runPending()
{
    precondition(isOnOwnThread(), "RunLoop::runPending is called on the run loop's own thread");
    ++state_->turnDepth;
    bool didSomething = runDueWork();
    if (!state_->isRunningObservers)
        didSomething |= runObservers();
    --state_->turnDepth;
    return didSomething;
}

bool RunLoop::runDueWork()
{
    std::unique_lock lock(state_->mutex);
    const auto turn = state_->now();
    const auto firstOfNextTurn = state_->nextSequence;
    bool didSomething = false;
    state_->isTurnRequested = false;
    while (!state_->work.empty()) {
        auto next = state_->work.begin();
        if (next->first.deadline > turn || next->first.sequence >= firstOfNextTurn)
            break;
        state_->cancellableDeadlines.erase(next->first.sequence);
        auto work = std::move(next->second);
        state_->work.erase(next);
        lock.unlock();
        work();
        work = nullptr; // may give new work
        didSomething = true;
        lock.lock();
    }
    return didSomething;
}

bool RunLoop::runObservers()
{
    auto& observers = state_->observers;
    state_->isRunningObservers = true;
    std::size_t busyCalls = 0;
    bool phaseDidSomething = false;
    for (auto next = observers.begin(); next != observers.end();) {
        const auto key = next->first;
        auto observer = next->second; // it may cancel itself
        if ((*observer)()) {
            phaseDidSomething = true;
            ++busyCalls;
        }
        next = observers.upper_bound(key);
        bool isPhaseOver = next == observers.end() || next->first.phase != key.phase;
        if (!isPhaseOver || !std::exchange(phaseDidSomething, false))
            continue;
        if (busyCalls > observerRoundsLimit * std::max<std::size_t>(observers.size(), 1)) {
            if (&clock() != &state_->systemClock)
                preconditionFailure("the observers before sleep never come to rest; the busy phase is "
                                    + std::to_string(key.phase));
            requestTurn();
            break;
        }
        // What was asked for until here is seen to by the round that starts now.
        std::lock_guard lock(state_->mutex);
        state_->isTurnRequested = false;
        next = observers.begin();
    }
    state_->isRunningObservers = false;
    return busyCalls > 0;
}

std::optional<Instant> RunLoop::nextDeadline() const
{
    std::lock_guard lock(state_->mutex);
    const auto now = state_->now();
    if (state_->isTurnRequested)
        return now;
    if (state_->work.empty())
        return std::nullopt;
    return std::max(state_->work.begin()->first.deadline, now);
}

void RunLoop::setWakeUp(std::function<void()> wakeUp)
{
    std::shared_ptr<const std::function<void()>> replacement;
    if (wakeUp)
        replacement = std::make_shared<const std::function<void()>>(std::move(wakeUp));
    std::lock_guard lock(state_->mutex);
    state_->wakeUp.swap(replacement);
}

void RunLoop::run()
{
    precondition(isOnOwnThread(), "RunLoop::run is called on the run loop's own thread");
    precondition(&clock() == &state_->systemClock,
                 "RunLoop::run cannot move a virtual clock; advance it instead");
    for (;;) {
        runPending();
        sleep([] { return false; });
        std::lock_guard lock(state_->mutex);
        if (std::exchange(state_->isStopRequested, false))
            return;
    }
}

void RunLoop::stop()
{
    {
        std::lock_guard lock(state_->mutex);
        state_->isStopRequested = true;
    }
    state_->changed.notify_all();
}

void RunLoop::sleep(const std::function<bool()>& isOver)
{
    // An hour at most, so that no deadline overflows the wait.
    constexpr Duration longest = std::chrono::hours(1);
    std::unique_lock lock(state_->mutex);
    while (!state_->isStopRequested && !state_->isDue() && !isOver()) {
        // Under a virtual clock only new work can end the sleep.
        if (state_->work.empty() || state_->clock.load() != &state_->systemClock)
            state_->changed.wait(lock);
        else
            state_->changed.wait_for(lock,
                                     std::min(longest, state_->work.begin()->first.deadline - state_->now()));
    }
}

void RunLoop::wakeSleeper()
{
    // Taken so that the sleeper is either before its check or already waiting.
    {
        std::lock_guard lock(state_->mutex);
    }
    state_->changed.notify_all();
}

void RunLoop::State::keepRemainingDelays(Duration shift)
{
    std::map<Key, Work> shifted;
    while (!work.empty()) {
        auto node = work.extract(work.begin());
        auto& key = node.key();
        if (key.deadline != Instant::max())
            key.deadline += shift;
        if (auto found = cancellableDeadlines.find(key.sequence); found != cancellableDeadlines.end())
            found->second = key.deadline;
        shifted.insert(shifted.end(), std::move(node));
    }
    work = std::move(shifted);
}

void RunLoop::setVirtualClock(const Clock& clock)
{
    precondition(isOnOwnThread(), "a virtual clock is made on the main thread");
    precondition(!mainClockIsVirtual, "only one virtual clock at a time");
    precondition(state_->turnDepth == 0, "a virtual clock cannot come in the middle of a turn");
    std::lock_guard lock(state_->mutex);
    state_->keepRemainingDelays(clock.now() - state_->now());
    state_->firstVirtualSequence = state_->nextSequence;
    state_->clock = &clock;
    mainClockIsVirtual = true;
}

void RunLoop::removeVirtualClock()
{
    precondition(isOnOwnThread(), "a virtual clock goes on the main thread");
    precondition(state_->turnDepth == 0, "a virtual clock cannot go in the middle of a turn");
    std::vector<Work> dropped; // released without the lock
    std::unique_lock lock(state_->mutex);
    for (auto next = state_->work.begin(); next != state_->work.end();) {
        if (next->first.sequence < state_->firstVirtualSequence) {
            ++next;
            continue;
        }
        state_->cancellableDeadlines.erase(next->first.sequence);
        dropped.push_back(std::move(next->second));
        next = state_->work.erase(next);
    }
    state_->keepRemainingDelays(state_->systemClock.now() - state_->now());
    state_->clock = &state_->systemClock;
    mainClockIsVirtual = false;
    lock.unlock();
}

bool RunLoop::isMainClockVirtual()
{
    return mainClockIsVirtual;
}

} // namespace platform
