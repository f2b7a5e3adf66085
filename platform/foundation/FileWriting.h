// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"

#include <string_view>

namespace platform {

struct FileWritingOptions {
    // Of a file that does not exist yet, less what the process's mask takes away.
    unsigned permissions = 0666;
};

// Makes `bytes` the contents of the file at `url`, in one step: they are written beside it, brought to the disk and
// renamed, so whoever reads meanwhile, and whoever reads after a crash or a loss of power, sees the old contents or
// the new, never a part. A file that exists keeps its permissions, and its group where the system allows; a symbolic
// link stays and the file it leads to is replaced. Directories on the way are not made. Anything but a regular file is
// refused. Any thread; of two writers at once, the later one wins whole.
//
// Errors: the file-write codes; fileNoSuchFile when the directory does not exist. The old contents then stand, except
// that a failure to bring the rename itself to the disk leaves the new contents, which a loss of power may undo.
[[nodiscard]] Result<void> writeFileAtomically(const URL& url, std::string_view bytes,
                                               FileWritingOptions options = {});

// Makes a file of `bytes` at `url`, where nothing is: fails with fileWriteFileExists otherwise. In one step, as file systems of
// disks can: then all of it is there or nothing, however the process ends. Elsewhere whoever looks meanwhile sees a part.
// Not brought to the disk. A slash at the end does not count. Any thread.
// Errors: the file-write codes; fileNoSuchFile when the directory does not exist.
[[nodiscard]] Result<void> writeNewFile(const URL& url, std::string_view bytes,
                                        FileWritingOptions options = {});

} // namespace platform
