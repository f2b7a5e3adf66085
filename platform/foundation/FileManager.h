// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/PropertyList.h"
#include "platform/foundation/Result.h"
#include "platform/foundation/URL.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// Keys of attributesOfFileSystem. All values are numbers.
inline constexpr std::string_view NSFileSystemSize = "NSFileSystemSize"; // bytes
inline constexpr std::string_view NSFileSystemFreeSize =
    "NSFileSystemFreeSize"; // bytes, that this user may fill
inline constexpr std::string_view NSFileSystemNodes = "NSFileSystemNodes";
inline constexpr std::string_view NSFileSystemFreeNodes = "NSFileSystemFreeNodes";

enum class SearchPathDirectory {
    document,
    download,
    desktop,
    movies,
    music,
    pictures,
    caches,
    applicationSupport,
};
enum class SearchPathDomain { user };

// Whether directories that are missing on the way to one are made too.
enum class IntermediateDirectories { required, created };

// Goes through everything below a directory, a directory before what is in it, each level in the order of its names'
// bytes, without following symbolic links. A directory is read when its turn comes: one that was removed meanwhile, or
// must not be read, counts as empty.
class DirectoryEnumerator {
public:
    explicit DirectoryEnumerator(std::string directory);

    // The next path, relative to the directory; nothing at the end.
    std::optional<std::string> next();

private:
    struct Level {
        std::string prefix;
        std::vector<std::string> names; // last first
    };
    void enter(const std::string& relativePath);

    std::string directory_;
    std::vector<Level> levels_;
    std::optional<std::string> previous_; // may be a directory
};

// The files of this user. Errors have the NSCocoaErrorDomain: the file-write codes, or fileNoSuchFile, and name files by
// their last path components only. Any thread.
class FileManager {
public:
    using Environment = std::function<std::optional<std::string>(const std::string& name)>;

    // That of the process's environment.
    static FileManager& defaultManager();
    explicit FileManager(Environment environment);

    // A directory for this program's and this user's passing files, which nobody else can read or write: made at first use
    // below TMPDIR (below /tmp where that is unset), under the name of the program, and the same at each start, unless
    // another user has taken that name. What is in it may be gone at the next start.
    URL temporaryDirectory() const;
    // This user's home: HOME, else what the user database says; nothing when neither knows one.
    std::optional<URL> homeDirectoryForCurrentUser() const;
    // Where the desktop keeps such things (the user's user-dirs.dirs, the XDG base directories), the likeliest first. They
    // need not exist. Empty when this user has no home.
    std::vector<URL> urls(SearchPathDirectory directory, SearchPathDomain domain) const;

    // Follows symbolic links: one that leads nowhere does not exist.
    bool fileExists(std::string_view path) const;
    // Null when there is no directory at `path` that may be read.
    std::unique_ptr<DirectoryEnumerator> enumerator(std::string_view path) const;

    // A directory that exists is an error only without intermediate ones.
    [[nodiscard]] Result<void> createDirectory(const URL& directory,
                                               IntermediateDirectories intermediate) const;
    // A directory goes with all that is in it; a symbolic link goes and what it leads to stays.
    [[nodiscard]] Result<void> removeItem(const URL& item) const;
    // Both fail with fileWriteFileExists when there is something at the destination already. A directory is copied with all
    // that is in it, symbolic links as links; a copy that fails leaves nothing. To another volume a move is a copy and a
    // removal.
    [[nodiscard]] Result<void> moveItem(const URL& from, const URL& to) const;
    [[nodiscard]] Result<void> copyItem(const URL& from, const URL& to) const;
    // Puts the file `replacement` in the place of the file `original` in one step, with that one's permissions. Where it fails,
    // both are there. From another volume it is copied beside the original, and brought to the disk, first.
    [[nodiscard]] Result<void> replaceItem(const URL& original, const URL& replacement) const;

    // Of the file system that holds `path`. Errors: the file-read codes.
    [[nodiscard]] Result<PropertyListDictionary> attributesOfFileSystem(std::string_view path) const;

private:
    std::optional<std::string> directoryFromEnvironment(const std::string& name) const;

    // fixed after construction
    Environment environment_;
    mutable std::mutex mutex_;
    mutable std::optional<URL> temporaryDirectory_; // guarded by mutex_
};

} // namespace platform
