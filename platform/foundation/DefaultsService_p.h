// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/DefaultsStore_p.h"
#include "platform/foundation/FileWatcher_p.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include <sys/types.h>

namespace platform {

// The thread behind all settings of the process: it writes what was set, looks again at files that others changed, and
// sleeps otherwise. Started with the first store; when the process exits it ends, what is left is written, and from
// then on every change is written at once, as it is where the system gives no thread. Any thread.
class DefaultsService {
public:
    static DefaultsService& shared();

    DefaultsService(const DefaultsService&) = delete; // the thread holds its address
    DefaultsService& operator=(const DefaultsService&) = delete;

    void add(const std::shared_ptr<DefaultsStore>& store);
    // Called by the store's end.
    void remove(const DefaultsStore& store);

    // The store's changes are to be written: at once, or a rest after the last time.
    void requestFlush(DefaultsStore& store);
    // Runs `work` on the thread; drops it once the process exits.
    void perform(std::function<void()> work);

private:
    // The real time: files of other processes keep no other, and the clock that tests move stands above this layer.
    using Clock = std::chrono::steady_clock;

    struct Member {
        std::weak_ptr<DefaultsStore> store;
        std::optional<FileWatcher::Identifier> file; // none without a home
        std::optional<Clock::time_point> flushAt;
        Clock::time_point restsUntil;
    };

    DefaultsService();
    void run();
    void wake() const;
    void sleep();
    void refreshChanged();
    void flushDue();
    void runWork();
    void finish();

    // fixed after construction
    const pid_t process_;
    const int wakeUp_;
    FileWatcher watcher_;
    std::thread thread_;
    // guarded by `mutex_`, which is never held while a store is called
    std::mutex mutex_;
    std::map<const DefaultsStore*, Member> members_;
    std::vector<std::function<void()>> work_;
    bool isFinished_ = false; // there is no thread any more, or none was to be had
};

} // namespace platform
