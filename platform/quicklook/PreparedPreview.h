// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSError.h"
#include "platform/foundation/Result.h"
#include "platform/foundation/TextReadingScope.h"
#include "platform/foundation/URL.h"
#include "platform/quicklook/ExtensionManifest.h"
#include "platform/uikit/UIViewController.h"

#include <memory>
#include <optional>

namespace platform {

// What the extension made of the file: its controller, or why there is none to show.
struct PreparedPreview {
    std::shared_ptr<UIViewController> controller;
    std::optional<NSError> error;
    // What reading the file as text taught, when that is what the extension did.
    std::optional<TextReadingScope::Report> reading;
};

// Makes the extension's controller and lets it prepare the preview of `file`; with an encoding, the file is read in that.
// Errors: propertyListReadCorrupt when the manifest names no controller that is a preview's.
[[nodiscard]] Result<PreparedPreview> preparePreview(const ExtensionManifest& manifest, const URL& file,
                                                     std::optional<TextEncoding> encoding = {});

} // namespace platform
