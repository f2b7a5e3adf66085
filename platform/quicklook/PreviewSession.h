// SPDX-License-Identifier: MIT
#pragma once

#include "platform/quicklook/ExtensionManifest.h"
#include "platform/quicklook/PreviewArguments.h"

#include <optional>
#include <span>
#include <string_view>

namespace platform {

// The descriptor that `--preview-socket NUMBER`, as the only arguments, names: the previewer service started this process.
std::optional<int> previewSocketIn(std::span<const std::string_view> arguments);

// Gets everything ready for a preview, then waits for the service to say of which file; shows that one as any other, and
// tells the service what becomes of the window. Gives the exit status; `shown` too when the service goes or wants nothing.
int runPreviewSession(std::string_view program, const ExtensionManifest& manifest, int socket);

} // namespace platform
