// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// The desktop's mail programs write mail in windows of their own; here is only whether there is one. Main thread only.
class MFMailComposeViewController {
public:
    MFMailComposeViewController() = delete;

    // Whether something on this desktop opens mailto URLs.
    static bool canSendMail();
};

} // namespace platform
