// SPDX-License-Identifier: MIT
#include "kit/sharing/FeedbackSheetItem.h"

#include "kit/foundation/zelkKitLocalized.h"

namespace zelk {

std::string FeedbackSheetItem::title() const
{
    struct Titles {
        std::string operator()(const IMessage&) const
        {
            return zelkKitLocalized("FEEDBACK_ACTION_SHEET_IMESSAGE_BUTTON_TITLE");
        }
        std::string operator()(const Email&) const
        {
            return zelkKitLocalized("FEEDBACK_ACTION_SHEET_EMAIL_BUTTON_TITLE");
        }
        std::string operator()(const WhatsApp&) const
        {
            return zelkKitLocalized("FEEDBACK_ACTION_SHEET_WHATSAPP_BUTTON_TITLE");
        }
        std::string operator()(const Custom& custom) const { return custom.title; }
    };
    return std::visit(Titles{}, kind_);
}

} // namespace zelk
