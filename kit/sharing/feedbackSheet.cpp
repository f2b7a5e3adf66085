// SPDX-License-Identifier: MIT
#include "kit/sharing/feedbackSheet.h"

#include "kit/foundation/CommonLocalizations.h"
#include "kit/foundation/kitLogger.h"
#include "kit/foundation/zelkKitLocalized.h"
#include "kit/sharing/feedbackURLs.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/services/MFMailComposeViewController.h"
#include "platform/uikit/UIApplication.h"

#include <optional>
#include <string_view>
#include <variant>

namespace zelk {

using namespace platform;

namespace {

void open(const std::optional<URL>& url, std::string_view kind)
{
    if (url)
        return UIApplication::shared().open(*url);
    std::string message = "Failed to create ";
    kitLogger().error(message.append(kind).append(" URL"));
}

struct Performer {
    bool operator()(const FeedbackSheetItem::Email& email) const
    {
        if (!MFMailComposeViewController::canSendMail())
            return false;
        open(feedbackMailURL(email, FeedbackFacts::current()), "mailto");
        return true;
    }
    bool operator()(const FeedbackSheetItem::IMessage& message) const
    {
        open(feedbackMessageURL(message.address), "iMessage");
        return true;
    }
    bool operator()(const FeedbackSheetItem::WhatsApp& whatsapp) const
    {
        auto app = feedbackWhatsAppURL(whatsapp.number, WhatsAppPlace::app);
        auto hasApp = app && UIApplication::shared().canOpenURL(*app);
        open(hasApp ? app : feedbackWhatsAppURL(whatsapp.number, WhatsAppPlace::web), "WhatsApp");
        return true;
    }
    bool operator()(const FeedbackSheetItem::Custom& custom) const
    {
        if (custom.action)
            custom.action();
        return true;
    }
};

} // namespace

bool performFeedback(const FeedbackSheetItem& item)
{
    assertOnMainThread();
    return std::visit(Performer{}, item.kind());
}

ActionSheet detail::feedbackActionSheet(const std::string& title, const std::vector<FeedbackSheetItem>& items,
                                        const Binding<bool>& lacksMailAccount)
{
    std::vector<ActionSheet::Button> buttons;
    for (const auto& item : items) {
        buttons.push_back(ActionSheet::Button::default_(Text{item.title()}, [item, lacksMailAccount] {
            if (!performFeedback(item))
                lacksMailAccount.set(true);
        }));
    }
    buttons.push_back(ActionSheet::Button::cancel());
    return ActionSheet(Text{title}, {}, std::move(buttons));
}

Alert detail::noMailAccountAlert()
{
    return Alert(Text{zelkKitLocalized("FEEDBACK_EMAIL_NO_ACCOUNT_CONFIGURED_ALERT_TITLE")},
                 Text{zelkKitLocalized("FEEDBACK_EMAIL_NO_ACCOUNT_CONFIGURED_ALERT_MESSAGE")});
}

} // namespace zelk
