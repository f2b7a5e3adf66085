// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/NSAttributedStringDocuments.h"

namespace zelk {

// Reads a document file of the type given as a styled text. Errors, threads and limits: those of
// platform::readAttributedString.
[[nodiscard]] platform::Result<platform::NSAttributedString>
attributedStringFromContentsOf(const platform::URL& url, platform::NSDocumentType documentType);

} // namespace zelk
