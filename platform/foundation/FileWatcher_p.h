// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// Tells that files may have been replaced, written or removed, whether or not they and their folders exist yet. Sees
// what happens in a file's own folder; does not follow a file that is a symbolic link. Any thread.
//
// While the folder is missing, the nearest one above it that exists is watched for the name that leads on. Where the
// system has no watches left to give, nothing is told.
class FileWatcher {
public:
    using Identifier = std::uint64_t;

    FileWatcher();
    ~FileWatcher();
    FileWatcher(const FileWatcher&) = delete; // it owns a descriptor
    FileWatcher& operator=(const FileWatcher&) = delete;

    // Can be read when there is something to take; -1 when the system gave none.
    int descriptor() const { return descriptor_; }

    // What happens to `name` in `folder`, an absolute path, from now on.
    Identifier add(std::string folder, std::string name);
    void remove(Identifier identifier);

    // The files that may have changed. Never blocks.
    std::vector<Identifier> takeChanges();

private:
    struct File {
        std::string folder, name;
        int watch = -1;
        std::string awaited; // the name that leads on, while the folder is missing
    };

    static constexpr int none = -1;

    void arm(File& file);
    void disarm(File& file);
    bool mayConcern(const File& file, std::uint32_t what, std::string_view name) const;

    // fixed after construction
    int descriptor_;
    // guarded by `mutex_`
    std::mutex mutex_;
    std::map<Identifier, File> files_;
    Identifier nextIdentifier_ = 1;
};

} // namespace platform
