// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

class QDBusConnection;

namespace platform {

// Asks the portal on `bus`, which is connected, to open the URL, without waiting. `completion` comes later from the event
// loop, once: whether the portal has taken it; what becomes of it then is between the portal and the user.
void openThroughPortal(const QDBusConnection& bus, const std::string& url,
                       std::function<void(bool)> completion);

} // namespace platform
