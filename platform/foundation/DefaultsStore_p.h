// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/DefaultsFile_p.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace platform {

// The settings of one name in memory: what the file held when it was last looked at, and over it the changes that are
// not written yet. Shared by all objects of the process that name it. Any thread.
//
// Two locks: `fileMutex_` around work with the file, always taken first; `mutex_` around the state, never held during
// work with the file or a callback, so that readers never wait for the disk.
class DefaultsStore : public std::enable_shared_from_this<DefaultsStore> {
public:
    using ChangedKeys = std::set<std::string, std::less<>>;

    // The store of the folder `name` under the user's configuration folder of now.
    static std::shared_ptr<DefaultsStore> named(std::string_view name);

    explicit DefaultsStore(std::optional<URL> folder);
    // Writes what is left.
    ~DefaultsStore();
    DefaultsStore(const DefaultsStore&) = delete; // others hold its address
    DefaultsStore& operator=(const DefaultsStore&) = delete;

    const std::optional<URL>& folder() const { return file_.folder(); }

    std::optional<PropertyListValue> value(std::string_view key) const;
    PropertyListDictionary values() const;
    // Nothing removes. Asks for a flush.
    void set(std::string_view key, std::optional<PropertyListValue> value);

    // Writes the changes there are, if any, and takes over what others wrote. Blocks.
    Result<void> flush();
    // Takes over what others wrote, without writing. Blocks.
    void refresh();
    bool hasChanges() const;

    std::uint64_t addObserver(std::function<void(const ChangedKeys&)> onChange);
    void removeObserver(std::uint64_t number);

private:
    struct Change {
        std::optional<PropertyListValue> value;
        std::uint64_t version = 0; // tells a change from a later one of the same key
    };

    // What one flush writes.
    struct Batch {
        DefaultsChanges writable;
        std::map<std::string, std::uint64_t> versions; // of those
        DefaultsSnapshotRef known;
        std::optional<Error> refusal; // of a value that cannot be written
    };

    Batch collect();
    Result<void> conclude(const Batch& batch, Result<DefaultsSnapshotRef> present);
    void announce();
    void callObservers();
    // with the lock held
    const PropertyListValue* find(std::string_view key) const;
    void adopt(const Batch& batch, DefaultsSnapshotRef present);
    void noteChanged(std::string_view key);

    // guarded by `fileMutex_`
    std::mutex fileMutex_;
    DefaultsFile file_;

    // guarded by `mutex_`
    mutable std::mutex mutex_;
    DefaultsSnapshotRef snapshot_ = std::make_shared<DefaultsSnapshot>();
    std::map<std::string, Change, std::less<>> changes_;
    std::uint64_t nextVersion_ = 1;
    bool flushIsRequested_ = false; // since the changes were last collected
    bool faultIsLogged_ = false;
    std::map<std::uint64_t, std::shared_ptr<const std::function<void(const ChangedKeys&)>>> observers_;
    std::uint64_t nextObserver_ = 1;
    ChangedKeys changedKeys_; // that the observers do not know of yet
    bool callIsDue_ = false;
};

} // namespace platform
