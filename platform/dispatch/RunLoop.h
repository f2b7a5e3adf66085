// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/Token.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <source_location>

namespace platform {

// Aborts, naming the calling function, unless the caller is on the main thread. The first line of every
// entry point that changes main-thread state. In all builds; a few nanoseconds.
void assertOnMainThread(std::source_location caller = std::source_location::current());
bool isOnMainThread();

// When observers of the moment before the loop sleeps run; lower first. Others may use numbers between.
namespace BeforeSleepPhase {
inline constexpr int state = 0;     // re-evaluates what changed
inline constexpr int layout = 100;  // sizes and places
inline constexpr int display = 200; // paints
} // namespace BeforeSleepPhase

// Runs the main thread's work in turns: first the work that is due, in order of its deadline and, where
// deadlines are equal, in the order it was given; then the observers of the moment before sleeping. Work
// given during a turn runs in the next one, so nothing can starve the observers.
//
// Who drives it: `run()`, or an outer event loop that calls `runPending()` when `nextDeadline()` has come
// and after each `setWakeUp` call, or a VirtualClock in tests.
//
// The main loop belongs to the thread that first asks for it and lives as long as the process.
class RunLoop {
public:
    using Work = std::move_only_function<void()>;
    // Says whether it did something.
    using Observer = std::function<bool()>;

    static RunLoop& main();

    RunLoop(const RunLoop&) = delete; // others hold its address
    RunLoop& operator=(const RunLoop&) = delete;

    // The time of everything below: the machine's, or that of the VirtualClock in place. Any thread. The
    // reference is good until a VirtualClock comes or goes.
    const Clock& clock() const;

    // Runs `work` in the next turn. Any thread. What `work` holds is released on the loop's thread.
    void perform(Work work);

    // Runs `work` in the first turn at or after `deadline`; a deadline that is past counts as now.
    // Any thread.
    void performAt(Instant deadline, Work work);
    void performAfter(Duration delay, Work work);

    // The same, until the token is cancelled or destroyed. Cancelling is for any thread; on another
    // thread than the loop's the work may be running already. A cancelled work is released at once.
    [[nodiscard]] Token schedule(Instant deadline, Work work);

    // Asks for a turn although no work is given: something became dirty that an observer will see to.
    // Many requests make one turn. Any thread.
    void requestTurn();

    // Calls `observer` in each turn after the due work. A phase is entered only when all lower ones have
    // nothing left to do: whenever an observer did something, the round starts again at the lowest
    // phase. Equal phases run in order of registration. A round that does not come to rest within
    // 100 times the number of observers is a fault: it aborts under a VirtualClock, otherwise it
    // continues in the next turn.
    // Registration, calls and cancelling: the loop's thread. An observer may cancel itself or others.
    [[nodiscard]] Token addBeforeSleepObserver(int phase, Observer observer);

    // One turn: runs what is due now and the observers; says whether any of them did something. May be
    // called from work (a modal loop), where it goes on with the work that is left, and from observers,
    // where it runs due work only. The loop's thread.
    bool runPending();

    // When the next turn is due; nothing while there is no work at all. Never in the past: due work
    // gives the present. Any thread.
    std::optional<Instant> nextDeadline() const;

    // Called on any thread, without a lock held, when the next deadline has come nearer. Must only wake
    // the outer event loop. Null removes it. Any thread.
    void setWakeUp(std::function<void()> wakeUp);

    // Takes turns, sleeping in between, until stop() is called. May be nested. The loop's thread.
    // Requires: no VirtualClock, for nothing would move its time.
    void run();
    // Ends the innermost run() after its present turn; if none runs, the next run() ends after its first
    // turn. Any thread.
    void stop();

private:
    friend class VirtualClock;
    friend class DelayedWork;
    friend bool isOnMainThread();
    struct State;

    RunLoop();
    ~RunLoop();

    bool isOnOwnThread() const;
    std::uint64_t add(Instant deadline, Work work, bool isCancellable);
    void cancel(std::uint64_t sequence);
    bool runDueWork();
    bool runObservers();
    // Sleeps until work is due, a turn is asked for, stop() was called or `isOver` (called with the lock
    // held) says so.
    void sleep(const std::function<bool()>& isOver);
    void wakeSleeper();

    // Work given before setVirtualClock() keeps its remaining delay on either change; work given between
    // the two is dropped by the second.
    void setVirtualClock(const Clock& clock);
    void removeVirtualClock();
    // Unlike main(), makes nobody the main thread.
    static bool isMainClockVirtual();

    std::unique_ptr<State> state_;
};

} // namespace platform
