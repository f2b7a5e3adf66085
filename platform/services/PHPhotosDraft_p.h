// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/URL.h"

#include <expected>
#include <string>

namespace platform {

// A file in the making inside a folder of the library: without a name where the file system knows such files, which are
// gone with the process, else under a hidden one. Gone with this object unless it was placed and kept. Errors are error
// numbers.
class PHPhotosDraft {
public:
    static std::expected<PHPhotosDraft, int> make(const std::string& folder);
    PHPhotosDraft(PHPhotosDraft&& other) noexcept;
    PHPhotosDraft& operator=(PHPhotosDraft&&) = delete; // nothing needs it
    ~PHPhotosDraft();

    // Takes all bytes of `source`, a descriptor, shares them with it where the file system can, and its date.
    // Whether it was reading that failed stands in `wasReading`.
    struct CopyFault {
        int error = 0;
        bool wasReading = false;
    };
    std::expected<void, CopyFault> copyFrom(int source);
    // Brings it to the disk.
    std::expected<void, int> finish();
    // Where it can be read under a name while this lives.
    std::string readablePath() const;

    // Gives it a name in its folder; EEXIST when that is taken. It is taken back unless it is kept.
    std::expected<void, int> place(const std::string& name);
    void keep();

private:
    PHPhotosDraft(std::string folder, int descriptor, std::string hiddenPath);

    std::string folder_;
    int descriptor_;
    std::string hiddenPath_; // empty: it has no name
    std::string placedPath_; // empty: not yet placed
    bool isKept_ = false;
};

// Brings the names in the folder to the disk.
void synchronizeFolder(const std::string& folder);

} // namespace platform
