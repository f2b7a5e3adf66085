// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVError.h"
#include "platform/foundation/Error.h"

#include <string_view>

namespace platform {

// What was being done when the codec library failed: the same number means other things.
enum class MediaWork { open, read, decode, encode, write };

// The error of a negative return value of the codec library. Numbers of the operating system become the error that
// fits the work (a full disk AVError::diskFull, a missing file NSCocoaError::fileReadNoSuchFile), the others a code
// of AVFoundationErrorDomain; what the library says is the failure reason. `fileName` is a last path component.
Error mediaError(int code, MediaWork work, std::string_view fileName = {});

// Keeps the library's messages off the terminal: errors go to the log at debug level, the rest nowhere. Called by
// whoever opens something; the first call counts.
void silenceMediaLibrary();

} // namespace platform
