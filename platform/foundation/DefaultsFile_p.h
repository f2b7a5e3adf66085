// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/PropertyList.h"
#include "platform/foundation/URL.h"

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace platform {

// What a settings file may hold. The writer keeps to the same limits, so no file of ours is ever refused.
inline constexpr PropertyListLimits defaultsLimits{.bytes = 16 << 20, .depth = 64, .values = 1'000'000};

// What a settings file held at one moment. The bytes are kept because nothing else tells surely that a file is the
// same: a number of an inode comes back, and the time of change may stand still for milliseconds.
struct DefaultsSnapshot {
    std::string bytes; // empty: there was no file
    PropertyListDictionary values;
};
using DefaultsSnapshotRef = std::shared_ptr<const DefaultsSnapshot>;

// Values by key; nothing removes the key.
using DefaultsChanges = std::map<std::string, std::optional<PropertyListValue>, std::less<>>;

// The settings file of one application, FOLDER/defaults.plist, with its lock and what was set aside beside it. Not for
// two threads at once.
class DefaultsFile {
public:
    static constexpr std::string_view fileName = "defaults.plist";
    static constexpr std::string_view lockName = "defaults.lock";

    // `folder` is nothing when the user has no home: then there is nothing to read, and writing fails.
    explicit DefaultsFile(std::optional<URL> folder);

    const std::optional<URL>& folder() const { return folder_; }

    // What the file holds now; `known` itself if that is the same. A missing file is empty. A damaged one is renamed
    // to defaults.damaged-N.plist, which the log tells, and then empty.
    // Errors: the file-read codes for what is not a regular file or cannot be read; it is not touched.
    [[nodiscard]] Result<DefaultsSnapshotRef> read(const DefaultsSnapshotRef& known);

    // Applies `changes` to what the file holds now, holding the lock, and gives the outcome. Nothing is written when
    // that changes nothing. Errors: also the file-write codes, propertyListWriteInvalid; the file is as it was.
    [[nodiscard]] Result<DefaultsSnapshotRef> merge(const DefaultsChanges& changes,
                                                    const DefaultsSnapshotRef& known);

private:
    Result<DefaultsSnapshotRef> readLocked(const DefaultsSnapshotRef& known);
    // Null when it is damaged.
    Result<DefaultsSnapshotRef> look(const DefaultsSnapshotRef& known) const;
    Result<void> setAside() const;
    void removeDrafts();

    // fixed after construction
    const std::optional<URL> folder_;
    // the caller's thread
    bool draftsAreRemoved_ = false;
};

} // namespace platform
