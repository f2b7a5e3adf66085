// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Error.h"
#include "platform/swiftui/Alert.h"

namespace zelk {

// The alert for an error, in the user's language: what to do where the photo library refused access (with a button that
// opens the settings), where the disk is full and where there is no network; else the error's own recovery suggestion,
// an empty one included; else its description. There is one for every error: who need not tell the user of a
// cancellation asks isUserCancelled() and isURLCancelled() first. Main thread only.
platform::Alert standardAlert(const platform::Error& error);

} // namespace zelk
