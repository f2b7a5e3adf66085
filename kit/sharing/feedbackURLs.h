// SPDX-License-Identifier: MIT
#pragma once

#include "kit/sharing/FeedbackSheetItem.h"
#include "platform/foundation/URL.h"

#include <optional>
#include <string>
#include <string_view>

namespace zelk {

// What the first lines of a message about a program say of it.
struct FeedbackFacts {
    std::string displayName;
    std::string version;
    std::string device;

    // Of this program, with its build number where it has one, on this device. Main thread only.
    static FeedbackFacts current();
};

// Where messages are written, with what is known filled in. Nothing when the address cannot be part of a URL, or a number
// has no digit. Any thread.

// "mailto:", with subject and body.
std::optional<platform::URL> feedbackMailURL(const FeedbackSheetItem::Email& email,
                                             const FeedbackFacts& facts);
// "sms:" with the number, or "imessage:" with the mail address.
std::optional<platform::URL> feedbackMessageURL(std::string_view address);
// The conversation in the app, or else, for those who have none, the page that leads there.
enum class WhatsAppPlace { app, web };
std::optional<platform::URL> feedbackWhatsAppURL(std::string_view number, WhatsAppPlace place);

} // namespace zelk
