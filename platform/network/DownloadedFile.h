// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/URL.h"

namespace platform {

// A file that was loaded, while its delegate is told of it: what it does not move away is gone afterwards. For that call
// and its thread only.
class DownloadedFile {
public:
    virtual ~DownloadedFile();

    // Where it is now. A small one has been in memory, and is made in a place for passing files only when this is called.
    // Errors: POSIX ENOSPC when there is no space; NSURLErrorCannotCreateFile, NSURLErrorCannotWriteToFile; the task then
    // ends with it.
    [[nodiscard]] virtual Result<URL> location() = 0;
    // To a place where nothing is yet; a small one that was in memory is made there, as writeNewFile() does. It has the
    // permissions of a new file. Errors: the file-write codes, fileNoSuchFile; the file is then where it was.
    [[nodiscard]] virtual Result<void> moveTo(const URL& destination) = 0;
};

} // namespace platform
