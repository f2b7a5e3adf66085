// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/URL.h"

#include <functional>

namespace platform {

// What the application asks to open URLs: the desktop, or what a test puts in its place
// (UIApplication::setURLOpener). Main thread only.
class URLOpener {
public:
    virtual ~URLOpener() = default;
    virtual bool canOpen(const URL& url) const = 0;
    // `completion` comes exactly once, later, and may be empty.
    virtual void open(const URL& url, std::function<void(bool)> completion) = 0;
};

} // namespace platform
