// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/DispatchWorkItem.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

namespace platform {

// Runs work one piece at a time, in the order given. The main queue's work runs on RunLoop::main(); that
// of every other queue on a few threads that all queues share (so work must not block for long), never
// two pieces of one queue at once and always seeing what the piece before wrote.
//
// A queue may be let go with work outstanding: the work still runs. A queue that is let go while suspended
// can never be resumed: its work is released without running.
// All of it is for any thread.
class DispatchQueue : public std::enable_shared_from_this<DispatchQueue> {
public:
    using Work = std::move_only_function<void()>;
    enum class Initially { active, suspended };

    static const std::shared_ptr<DispatchQueue>& main();
    // `label` names the queue to people: the reverse-DNS prefix of the program and a purpose.
    static std::shared_ptr<DispatchQueue> make(std::string label, Initially state = Initially::active);

    DispatchQueue(const DispatchQueue&) = delete; // its identity is what orders the work
    DispatchQueue& operator=(const DispatchQueue&) = delete;
    ~DispatchQueue();

    const std::string& label() const;
    // Whether the caller is part of this queue's work, directly or inside a sync to another queue.
    bool isCurrent() const;

    void async(Work work);
    void async(std::shared_ptr<DispatchWorkItem> item);

    // Appends the work once the delay is over, by the clock of RunLoop::main(). The queue is kept alive
    // until then. A deadline that is past counts as now.
    void asyncAfter(Duration delay, Work work);
    void asyncAfter(Instant deadline, Work work);
    void asyncAfter(Duration delay, std::shared_ptr<DispatchWorkItem> item);

    // Runs `work` after all that was given before, and returns what it returns. On the main queue it runs
    // on the main thread, which must be taking turns; on others on the calling thread.
    // Requires: the caller is not on this queue already, for that would wait for itself for ever.
    template <class Callable>
    std::invoke_result_t<Callable&> sync(Callable&& work)
    {
        using Value = std::invoke_result_t<Callable&>;
        if constexpr (std::is_void_v<Value>) {
            runAndWait([&] { work(); });
        } else {
            std::optional<Value> value;
            runAndWait([&] { value.emplace(work()); });
            return std::move(*value);
        }
    }

    // Stops the queue after the piece that runs at present; each suspend() takes one resume().
    // Requires: not the main queue; no more resumes than suspends.
    void suspend();
    void resume();

private:
    struct State;

    explicit DispatchQueue(std::shared_ptr<State> state);
    void runAndWait(Work work);

    // null for the main queue; fixed after construction
    std::shared_ptr<State> state_;
};

} // namespace platform
