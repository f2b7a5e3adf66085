// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"

#include <string>
#include <string_view>
#include <vector>

namespace platform {

class Bundle;

// The extension point of file previews, as a manifest names it under NSExtensionPointIdentifier.
inline constexpr std::string_view QLPreviewExtensionPoint = "org.zelk.quicklook.preview";

// What an extension's information dictionary says of it, checked.
struct ExtensionManifest {
    std::string identifier; // CFBundleIdentifier
    std::string name;       // CFBundleName, or the identifier
    std::string version;    // CFBundleShortVersionString
    std::string extensionPoint;
    std::string principalClass;
    std::vector<std::string> supportedContentTypes; // MIME types

    // Errors: NSCocoaErrorDomain propertyListReadCorrupt, when a key is missing or is of the wrong type, or
    // the extension point is not the preview's; the reason names the key.
    [[nodiscard]] static Result<ExtensionManifest> read(const Bundle& bundle);
};

} // namespace platform
