// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSError.h"
#include "platform/foundation/URL.h"
#include "platform/quicklook/ExtensionManifest.h"
#include "platform/quicklook/PreviewArguments.h"

#include <string>
#include <string_view>

namespace platform {

class PreviewBroker;

// Makes the extension's controller, lets it prepare the preview of `file`, and shows it in a window until that is
// closed, or paints it into a picture. Gives the exit status. Main thread; once in a process. `broker`: one that was
// started earlier, for this file; it outlives the call.
int runPreview(std::string_view program, const ExtensionManifest& manifest, const PreviewArguments& arguments,
               const URL& file, PreviewBroker* broker = nullptr);

// One line without its end: the program, the file's last path component, and why.
std::string previewFailureLine(std::string_view program, std::string_view file, const NSError& error);

} // namespace platform
