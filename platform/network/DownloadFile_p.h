// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/URL.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace platform {

// A file that grows while it is loaded, in a directory that is this user's only. Removed when it is let go of, unless it is
// kept. One thread at a time.
class DownloadFile {
public:
    // In memory while it is small, so that the thread that loads many small ones need not wait for a disk; then among the
    // user's caches (else in the temporary directory).
    DownloadFile() = default;
    // The file at `path`, as it is; made when there is none.
    [[nodiscard]] static Result<std::unique_ptr<DownloadFile>> open(std::string path);

    ~DownloadFile();
    DownloadFile(const DownloadFile&) = delete; // the file is removed once
    DownloadFile& operator=(const DownloadFile&) = delete;

    // Of one that is written out.
    const std::string& path() const { return path_; }
    URL url() const { return URL::fileURL(path_); }
    std::int64_t size() const { return size_; }

    // Errors: POSIX ENOSPC when there is no space; NSURLErrorCannotCreateFile, NSURLErrorCannotWriteToFile.
    [[nodiscard]] Result<void> append(std::string_view bytes);
    // Makes the file, if it is in memory only, and stays so where that fails. Errors as above.
    [[nodiscard]] Result<void> writeOut();
    // Where nothing is: from memory, or by a move from where it is. Then it is let go of. Errors: the file-write codes,
    // fileNoSuchFile.
    [[nodiscard]] Result<void> giveTo(const URL& destination);
    // To a smaller size.
    [[nodiscard]] Result<void> truncate(std::int64_t size);
    // Whether it stays when this goes.
    void setKept(bool isKept) { isKept_ = isKept; }
    // Under a name that says whether it is kept; false when it could not be moved. Requires: it is written out.
    [[nodiscard]] bool moveTo(const std::string& path);

private:
    Result<void> attach(std::string path);
    Result<void> write(std::string_view bytes);

    int descriptor_ = -1; // negative while it is in memory only
    std::string path_;
    std::string held_; // what is not in the file yet
    std::int64_t size_ = 0;
    bool isKept_ = false;
};

// Where downloads are while they grow; made, with a "/" at the end. Empty when there is no such place.
std::string downloadDirectory();

// Removes what nobody will come back to in a directory of downloads and the sessions' in it: what crashed programs have
// left at once, what is kept for going on with when it has not been touched for a week. Files of living programs are
// locked, and stay.
void removeAbandonedDownloads(const std::string& directory);

} // namespace platform
