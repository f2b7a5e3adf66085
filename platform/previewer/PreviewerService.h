// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

// The whole of the previewer that file managers call on the session bus: `previewProgram` shows subtitles, a process for
// each; other files go to whatever previewer is installed otherwise. Runs until the session ends, a signal ends it or
// another previewer takes its name; gives the exit status. `ownProgram` is this program's path.
int runPreviewerService(const std::string& ownProgram, const std::string& previewProgram);

} // namespace platform
