// SPDX-License-Identifier: MIT
#include "platform/foundation/DefaultsService_p.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <system_error>
#include <utility>

#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace platform {

namespace {

using namespace std::chrono_literals;

// Between two writes of one file. A slider that is dragged sets sixty values a second; nobody waits for each.
constexpr auto rest = 100ms;

} // namespace

// Never destroyed: settings may be used until the process ends.
DefaultsService& DefaultsService::shared()
{
    static auto& service = [] -> DefaultsService& {
        auto& made = *new DefaultsService;
        std::atexit([] { shared().finish(); });
        return made;
    }();
    return service;
}

DefaultsService::DefaultsService()
    : process_(::getpid())
    , wakeUp_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
{
    // Signals are for the program's own threads.
    sigset_t all, previous;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &previous);
    // A process that is at its limits, or locked in, may get no thread: every change is written at once then.
    try {
        if (wakeUp_ >= 0)
            thread_ = std::thread([this] { run(); });
    } catch (const std::system_error&) {
    }
    if (!thread_.joinable())
        isFinished_ = true;
    pthread_sigmask(SIG_SETMASK, &previous, nullptr);
}

void DefaultsService::add(const std::shared_ptr<DefaultsStore>& store)
{
    std::optional<FileWatcher::Identifier> file;
    if (store->folder())
        file = watcher_.add(store->folder()->path(), std::string(DefaultsFile::fileName));
    std::lock_guard lock(mutex_);
    members_[store.get()] = {.store = store, .file = file, .flushAt = std::nullopt, .restsUntil = {}};
}

void DefaultsService::remove(const DefaultsStore& store)
{
    std::lock_guard lock(mutex_);
    auto found = members_.find(&store);
    if (found == members_.end())
        return;
    if (found->second.file)
        watcher_.remove(*found->second.file);
    members_.erase(found);
}

void DefaultsService::requestFlush(DefaultsStore& store)
{
    {
        std::lock_guard lock(mutex_);
        if (!isFinished_) {
            auto& flushAt = members_.at(&store).flushAt;
            if (!std::exchange(flushAt, flushAt.value_or(members_.at(&store).restsUntil)))
                wake();
            return;
        }
    }
    static_cast<void>(store.flush()); // a failure is in the log
}

void DefaultsService::perform(std::function<void()> work)
{
    std::lock_guard lock(mutex_);
    if (isFinished_)
        return;
    work_.push_back(std::move(work));
    wake();
}

void DefaultsService::wake() const
{
    std::uint64_t one = 1;
    // It fails only when the count is full, and then the thread wakes anyway.
    [[maybe_unused]] auto written = ::write(wakeUp_, &one, sizeof one);
}

void DefaultsService::run()
{
    pthread_setname_np(pthread_self(), "settings");
    while (true) {
        sleep();
        {
            std::lock_guard lock(mutex_);
            if (isFinished_)
                return;
        }
        refreshChanged();
        flushDue();
        runWork();
    }
}

void DefaultsService::sleep()
{
    auto next = Clock::time_point::max();
    {
        std::lock_guard lock(mutex_);
        if (!work_.empty() || isFinished_)
            return;
        for (auto& [address, member] : members_)
            next = std::min(next, member.flushAt.value_or(next));
    }
    int timeout = -1;
    if (next != Clock::time_point::max())
        timeout = static_cast<int>(
            std::max(0ms, std::chrono::ceil<std::chrono::milliseconds>(next - Clock::now())).count());
    pollfd sources[] = {{wakeUp_, POLLIN, 0}, {watcher_.descriptor(), POLLIN, 0}};
    ::poll(sources, std::size(sources), timeout);
    std::uint64_t count;
    [[maybe_unused]] auto read = ::read(wakeUp_, &count, sizeof count); // empty when something else woke us
}

void DefaultsService::refreshChanged()
{
    auto changed = watcher_.takeChanges();
    if (changed.empty())
        return;
    std::vector<std::shared_ptr<DefaultsStore>> stores;
    {
        std::lock_guard lock(mutex_);
        for (auto& [address, member] : members_) {
            if (member.file && std::ranges::find(changed, *member.file) != changed.end())
                stores.push_back(member.store.lock());
        }
    }
    for (auto& store : stores) {
        if (store)
            store->refresh();
    }
}

void DefaultsService::flushDue()
{
    std::vector<std::shared_ptr<DefaultsStore>> stores;
    {
        std::lock_guard lock(mutex_);
        auto now = Clock::now();
        for (auto& [address, member] : members_) {
            if (member.flushAt.value_or(Clock::time_point::max()) > now)
                continue;
            member.flushAt.reset();
            stores.push_back(member.store.lock());
        }
    }
    for (auto& store : stores) {
        if (!store)
            continue;                      // it is writing its changes as it ends
        static_cast<void>(store->flush()); // a failure is in the log
        std::lock_guard lock(mutex_);
        auto& member = members_.at(store.get());
        member.restsUntil = Clock::now() + rest;
        if (member.flushAt)
            member.flushAt = member.restsUntil;
    }
}

void DefaultsService::runWork()
{
    std::vector<std::function<void()>> work;
    {
        std::lock_guard lock(mutex_);
        work = std::exchange(work_, {});
    }
    for (auto& piece : work)
        piece();
}

// The process exits. A child that was forked has the handlers but not the thread, and the settings are not its own.
void DefaultsService::finish()
{
    if (::getpid() != process_)
        return;
    {
        std::lock_guard lock(mutex_);
        isFinished_ = true;
        wake();
    }
    // Code that the thread runs may have called exit.
    if (thread_.get_id() == std::this_thread::get_id())
        thread_.detach();
    else if (thread_.joinable())
        thread_.join();
    std::vector<std::shared_ptr<DefaultsStore>> stores;
    {
        std::lock_guard lock(mutex_);
        for (auto& [address, member] : members_)
            stores.push_back(member.store.lock());
    }
    for (auto& store : stores) {
        if (store && store->hasChanges())
            static_cast<void>(store->flush()); // a failure is in the log
    }
}

} // namespace platform
