// SPDX-License-Identifier: MIT
#pragma once

#include "kit/ui/AccessoryViewAlertController.h"

namespace zelk {

// Makes room for an accessory in the texts of an alert: as many line breaks as it takes for the text, set 238 points wide in
// the text size of the window that has the keyboard, to grow by the accessory's height. An accessory whose height is no number takes no room; one
// higher than any screen takes a screen's. Main thread only.
AccessoryViewAlertController::Configuration
accessoryConfiguration(const AccessoryViewAlertController::Options& options);

} // namespace zelk
