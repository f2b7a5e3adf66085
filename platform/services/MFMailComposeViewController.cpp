// SPDX-License-Identifier: MIT
#include "platform/services/MFMailComposeViewController.h"

#include "platform/foundation/URL.h"
#include "platform/uikit/UIApplication.h"

namespace platform {

bool MFMailComposeViewController::canSendMail()
{
    auto url = URL::parse("mailto:");
    return url && UIApplication::shared().canOpenURL(*url);
}

} // namespace platform
