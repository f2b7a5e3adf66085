// SPDX-License-Identifier: MIT
#include "platform/foundation/DefaultsStore_p.h"

#include "platform/foundation/DefaultsService_p.h"
#include "platform/foundation/FileReading_p.h"
#include "platform/foundation/Logger.h"
#include "platform/foundation/MainThreadWork.h"
#include "platform/foundation/PropertyListWriter.h"

#include <cstdlib>
#include <utility>

namespace platform {

namespace {

// As the desktop has it: a path that is not absolute does not count. Nothing when there is no home either.
std::optional<URL> configurationFolder()
{
    auto absolute = [](const char* name) -> const char* {
        const char* path = std::getenv(name);
        return path && path[0] == '/' ? path : nullptr;
    };
    if (auto* path = absolute("XDG_CONFIG_HOME"))
        return URL::fileURL(path);
    if (auto* path = absolute("HOME"))
        return URL::fileURL(path).appendingPathComponent(".config");
    return std::nullopt;
}

} // namespace

std::shared_ptr<DefaultsStore> DefaultsStore::named(std::string_view name)
{
    using Key = std::pair<std::string, std::optional<URL>>;
    auto folder = configurationFolder();
    if (folder)
        folder = folder->appendingPathComponent(name);
    // Never destroyed: settings may be used until the process ends.
    static auto& mutex = *new std::mutex;
    static auto& stores = *new std::map<Key, std::weak_ptr<DefaultsStore>>;
    std::lock_guard lock(mutex);
    auto& known = stores[{std::string(name), folder}];
    auto store = known.lock();
    if (!store) {
        store = std::make_shared<DefaultsStore>(std::move(folder));
        known = store;
        // Watched before it is read, so that no change falls in between.
        DefaultsService::shared().add(store);
        store->refresh();
    }
    return store;
}

DefaultsStore::DefaultsStore(std::optional<URL> folder)
    : file_(std::move(folder))
{
}

DefaultsStore::~DefaultsStore()
{
    if (hasChanges())
        static_cast<void>(flush()); // a failure is in the log: there is nobody left to tell
    DefaultsService::shared().remove(*this);
}

const PropertyListValue* DefaultsStore::find(std::string_view key) const
{
    if (auto change = changes_.find(key); change != changes_.end())
        return change->second.value ? &*change->second.value : nullptr;
    auto found = snapshot_->values.find(key);
    return found == snapshot_->values.end() ? nullptr : &found->second;
}

std::optional<PropertyListValue> DefaultsStore::value(std::string_view key) const
{
    std::lock_guard lock(mutex_);
    auto* found = find(key);
    return found ? std::optional(*found) : std::nullopt;
}

PropertyListDictionary DefaultsStore::values() const
{
    std::lock_guard lock(mutex_);
    auto values = snapshot_->values;
    for (auto& [key, change] : changes_) {
        if (change.value)
            values.insert_or_assign(key, *change.value);
        else
            values.erase(key);
    }
    return values;
}

bool DefaultsStore::hasChanges() const
{
    std::lock_guard lock(mutex_);
    return !changes_.empty();
}

void DefaultsStore::set(std::string_view key, std::optional<PropertyListValue> value)
{
    bool isFirst;
    {
        std::lock_guard lock(mutex_);
        auto* present = find(key);
        if (present ? !value || *value != *present : value.has_value())
            noteChanged(key);
        // Also when nothing changes: another process may have written what is not seen here yet.
        changes_.insert_or_assign(std::string(key), Change{std::move(value), nextVersion_++});
        isFirst = !std::exchange(flushIsRequested_, true);
    }
    if (isFirst)
        DefaultsService::shared().requestFlush(*this);
    announce();
}

Result<void> DefaultsStore::flush()
{
    Result<void> outcome;
    {
        std::lock_guard lock(fileMutex_);
        auto batch = collect();
        outcome = conclude(batch,
                           batch.writable.empty() ? file_.read(batch.known)
                                                  : file_.merge(batch.writable, batch.known));
    }
    announce();
    return outcome;
}

void DefaultsStore::refresh()
{
    {
        std::lock_guard lock(fileMutex_);
        Batch nothing;
        {
            std::lock_guard stateLock(mutex_);
            nothing.known = snapshot_;
        }
        static_cast<void>(conclude(nothing, file_.read(nothing.known))); // a failure is in the log
    }
    announce();
}

// One value that cannot be written must not keep the others from the disk.
DefaultsStore::Batch DefaultsStore::collect()
{
    Batch batch;
    std::map<std::string, Change, std::less<>> changes;
    {
        std::lock_guard lock(mutex_);
        flushIsRequested_ = false;
        changes = changes_;
        batch.known = snapshot_;
    }
    for (auto& [key, change] : changes) {
        PropertyListDictionary alone;
        if (change.value)
            alone.emplace(key, *change.value);
        auto xml = propertyListXML(PropertyListValue(std::move(alone)), defaultsLimits);
        if (!xml) {
            batch.refusal = xml.error();
            continue;
        }
        batch.versions.emplace(key, change.version);
        batch.writable.emplace(key, std::move(change.value));
    }
    return batch;
}

Result<void> DefaultsStore::conclude(const Batch& batch, Result<DefaultsSnapshotRef> present)
{
    Result<void> outcome;
    if (!present)
        outcome = std::unexpected(present.error());
    else if (batch.refusal)
        outcome = std::unexpected(*batch.refusal);
    bool isNewFault;
    {
        std::lock_guard lock(mutex_);
        if (present)
            adopt(batch, std::move(*present));
        isNewFault = !outcome && !faultIsLogged_;
        if (!outcome)
            faultIsLogged_ = true;
        else if (changes_.empty()) // merely reading well does not mean that writing works again
            faultIsLogged_ = false;
    }
    if (isNewFault) {
        auto whose = file_.folder() ? "the settings of " + shownName(*file_.folder()) + ": " : std::string();
        Logger("org.zelk.platform", "defaults").error(whose + outcome.error().localizedDescription());
    }
    return outcome;
}

// Called with the lock held.
void DefaultsStore::adopt(const Batch& batch, DefaultsSnapshotRef present)
{
    auto previous = std::exchange(snapshot_, std::move(present));
    if (previous != snapshot_ && !observers_.empty()) {
        auto noteDifference = [&](const std::string& key) {
            auto before = previous->values.find(key), after = snapshot_->values.find(key);
            bool isSame = before == previous->values.end() || after == snapshot_->values.end()
                ? before == previous->values.end() && after == snapshot_->values.end()
                : before->second == after->second;
            // What this process set itself is seen before and after, whatever the file holds.
            if (!isSame && !changes_.contains(key))
                noteChanged(key);
        };
        for (auto& [key, value] : previous->values)
            noteDifference(key);
        for (auto& [key, value] : snapshot_->values)
            noteDifference(key);
    }
    for (auto& [key, version] : batch.versions) {
        auto change = changes_.find(key);
        if (change != changes_.end() && change->second.version == version)
            changes_.erase(change);
    }
}

std::uint64_t DefaultsStore::addObserver(std::function<void(const ChangedKeys&)> onChange)
{
    std::lock_guard lock(mutex_);
    auto number = nextObserver_++;
    observers_.emplace(number,
                       std::make_shared<const std::function<void(const ChangedKeys&)>>(std::move(onChange)));
    return number;
}

void DefaultsStore::removeObserver(std::uint64_t number)
{
    decltype(observers_)::node_type removed; // released when the lock is: what it holds may come back here
    std::lock_guard lock(mutex_);
    removed = observers_.extract(number);
    if (observers_.empty())
        changedKeys_.clear();
}

// Called with the lock held.
void DefaultsStore::noteChanged(std::string_view key)
{
    if (!observers_.empty())
        changedKeys_.emplace(key);
}

void DefaultsStore::announce()
{
    {
        std::lock_guard lock(mutex_);
        if (changedKeys_.empty() || std::exchange(callIsDue_, true))
            return;
    }
    MainThreadWork work = [weakly = weak_from_this()] {
        if (auto store = weakly.lock())
            store->callObservers();
    };
    if (performOnMainThread(work))
        return;
    DefaultsService::shared().perform([weakly = weak_from_this()] {
        if (auto store = weakly.lock())
            store->callObservers();
    });
}

void DefaultsStore::callObservers()
{
    ChangedKeys keys;
    decltype(observers_) observers;
    {
        std::lock_guard lock(mutex_);
        callIsDue_ = false;
        keys = std::exchange(changedKeys_, {});
        observers = observers_;
    }
    for (auto& [number, onChange] : observers) {
        {
            std::lock_guard lock(mutex_);
            if (keys.empty() || !observers_.contains(number))
                continue; // another one ended it meanwhile
        }
        (*onChange)(keys);
    }
}

} // namespace platform
