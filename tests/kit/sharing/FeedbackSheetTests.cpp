// SPDX-License-Identifier: MIT
#include "kit/sharing/feedbackSheet.h"

#include "kit/foundation/zelkKitLocalized.h"
#include "kit/sharing/feedbackURLs.h"
#include "platform/foundation/Logger.h"
#include "platform/swiftui/UIHostingController.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIApplication.h"
#include "tests/support/MediaFixtures.h"
#include "tests/support/RecordingURLOpener.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using tests::RecordingURLOpener;
using zelk::FeedbackSheetItem;
using Strings = std::vector<std::string>;

// What a parser that is not ours finds in a URL: scheme, path, then names and values of the query.
Strings readByPython(const std::string& url)
{
    tests::TemporaryDirectory folder;
    auto script = folder.file("read.py",
                              "import sys, urllib.parse as u\n"
                              "p = u.urlsplit(open(sys.argv[1], encoding='ascii', newline='').read())\n"
                              "q = u.parse_qsl(p.query, keep_blank_values=True, strict_parsing=True)\n"
                              "found = [p.scheme, u.unquote(p.path)] + [x for pair in q for x in pair]\n"
                              "sys.stdout.buffer.write('\\0'.join(found).encode())\n");
    auto found = tests::outputOf("python3 " + script + " " + folder.file("url", url));
    Strings parts{""};
    for (char c : found) {
        if (c == '\0')
            parts.emplace_back();
        else
            parts.back() += c;
    }
    return parts;
}

TEST(FeedbackMail, arrives_as_it_was_meant_in_any_mail_program)
{
    const zelk::FeedbackFacts facts{
        .displayName = "Cut & Paste", .version = "1.4.2 (837)", .device = "iPad?"};
    const std::string end = "\n\nApp Version: 1.4.2 (837)\nDevice: iPad?";
    struct Case {
        const char* name;
        std::string address;
        std::optional<std::string> extraInfo;
        std::string displayName = "Cut & Paste";
    };
    const Case cases[] = {
        {"plain", "makers@example.org", "Hello"},
        {"nothing to add", "makers@example.org", std::nullopt},
        {"an empty text", "makers@example.org", ""},
        {"all that means something in a URL", "a+b&c=d@example.org", "1+1=2 & 50% #1? a;b 'c' \"d\" /e:f@g"},
        {"line breaks", "a@b.c", "one\ntwo\r\nthree\ttab"},
        {"an address with line breaks and more", "a&b\nBcc: <all@example.org>?cc=x#y%41", "x"},
        {"any script", "קשר@example.org", "שלום ☀️ 你好"},
        {"a long subject", "a@b.c", "x", std::string(10'000, '&')},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        auto named = facts;
        named.displayName = test.displayName;
        auto url = zelk::feedbackMailURL({test.address, test.extraInfo}, named);
        ASSERT_TRUE(url);
        EXPECT_EQ(readByPython(url->absoluteString()),
                  (Strings{"mailto", test.address, "subject", test.displayName + " Feedback", "body",
                           test.extraInfo.value_or("") + end}));
    }
    EXPECT_EQ(zelk::feedbackMailURL({"a@b.c", {}}, {"App", "1", "pc"})->absoluteString(),
              "mailto:a@b.c?subject=App%20Feedback&body=%0A%0AApp%20Version:%201%0ADevice:%20pc");
    EXPECT_EQ(zelk::feedbackMailURL({"//host/path", {}}, facts), std::nullopt);
}

TEST(FeedbackAddresses, become_the_urls_of_their_programs)
{
    using zelk::WhatsAppPlace;
    struct Case {
        std::string address, message, app; // empty: no URL
    };
    const Case cases[] = {
        {"+44 (0)20 7946-0000", "sms:+442079460000", "whatsapp://send?phone=442079460000"},
        {"  +1.555.0100 ", "sms:+15550100", "whatsapp://send?phone=15550100"},
        {"0049 30 123456", "sms:004930123456", "whatsapp://send?phone=4930123456"},
        {"12345", "sms:12345", "whatsapp://send?phone=12345"},
        {"me&you@example.org", "imessage:me&you@example.org", ""},
        {"a b?c\n@x", "imessage:a%20b%3Fc%0A@x", ""},
        {"+", "imessage:+", ""},
        {"", "", ""},
    };
    auto text = [](const std::optional<URL>& url) { return url ? url->absoluteString() : ""; };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.address);
        EXPECT_EQ(text(zelk::feedbackMessageURL(test.address)), test.message);
        EXPECT_EQ(text(zelk::feedbackWhatsAppURL(test.address, WhatsAppPlace::app)), test.app);
    }
    EXPECT_EQ(text(zelk::feedbackWhatsAppURL("+1 555 0100", WhatsAppPlace::web)), "https://wa.me/15550100");
}

struct Shown {
    std::shared_ptr<RecordingURLOpener> opener;
    std::shared_ptr<StateCell<bool>> isPresented = std::make_shared<StateCell<bool>>(false);
    std::string done;
    harness::ViewHarness stage{{400, 600}};
    std::shared_ptr<UIViewController> host;

    explicit Shown(std::set<std::string> schemes)
        : opener(std::make_shared<RecordingURLOpener>(std::move(schemes)))
    {
        UIApplication::shared().setURLOpener(opener);
        auto view =
            Color{UIColor::white()}
            | zelk::feedbackSheet(
                Binding(isPresented), "Tell us",
                {FeedbackSheetItem::custom("First", [this] { done += "first"; }),
                 FeedbackSheetItem::whatsapp("+1 555 0100"), FeedbackSheetItem::email("makers@example.org"),
                 FeedbackSheetItem::iMessage("makers@example.org"), FeedbackSheetItem::whatsapp("nobody"),
                 FeedbackSheetItem::custom("Last", {})});
        host = std::make_shared<UIHostingController<decltype(view)>>(view);
        stage.show(host);
    }
    ~Shown() { UIApplication::shared().setURLOpener(nullptr); }

    std::shared_ptr<UIAlertController> present()
    {
        isPresented->set(true);
        settle();
        return front();
    }
    std::shared_ptr<UIAlertController> front() const
    {
        return std::dynamic_pointer_cast<UIAlertController>(host->presentedViewController());
    }
    void choose(const std::string& title)
    {
        present();
        stage.tap(title);
        settle();
    }
    void settle()
    {
        for (int i = 0; i < 3; ++i)
            stage.advance(1s);
    }
};

std::string kitText(const char* key)
{
    auto text = zelk::zelkKitLocalized(key);
    EXPECT_NE(text, key) << "the kit's texts are there";
    return text;
}

TEST(FeedbackSheet, offers_its_items_in_their_order_and_a_way_back)
{
    const auto whatsapp = kitText("FEEDBACK_ACTION_SHEET_WHATSAPP_BUTTON_TITLE"),
               email = kitText("FEEDBACK_ACTION_SHEET_EMAIL_BUTTON_TITLE"),
               message = kitText("FEEDBACK_ACTION_SHEET_IMESSAGE_BUTTON_TITLE");
    Shown shown({"mailto"});
    auto sheet = shown.present();
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->preferredStyle(), UIAlertControllerStyle::actionSheet);
    EXPECT_EQ(sheet->title(), "Tell us");
    Strings titles;
    for (const auto& action : sheet->actions())
        titles.push_back(action->title());
    ASSERT_EQ(titles.size(), 7u);
    EXPECT_EQ(sheet->actions().back()->style(), UIAlertActionStyle::cancel);
    titles.pop_back();
    EXPECT_EQ(titles, (Strings{"First", whatsapp, email, message, whatsapp, "Last"}));
    shown.stage.press(UIKeyCode::escape);
    shown.settle();
    EXPECT_FALSE(shown.front());
    EXPECT_FALSE(shown.isPresented->value());
    EXPECT_TRUE(shown.opener->opened.empty());

    shown.present();
    shown.isPresented->set(false); // as the program may
    shown.settle();
    EXPECT_FALSE(shown.front());
}

TEST(FeedbackSheet, opens_what_was_chosen_once_and_goes)
{
    const auto whatsapp = kitText("FEEDBACK_ACTION_SHEET_WHATSAPP_BUTTON_TITLE"),
               email = kitText("FEEDBACK_ACTION_SHEET_EMAIL_BUTTON_TITLE"),
               message = kitText("FEEDBACK_ACTION_SHEET_IMESSAGE_BUTTON_TITLE");
    Shown shown({"mailto"});
    for (const auto& title : {std::string("First"), email, message, whatsapp, std::string("Last")}) {
        shown.choose(title);
        EXPECT_FALSE(shown.front()) << title;
        EXPECT_FALSE(shown.isPresented->value()) << title;
    }
    shown.opener->schemes.insert("whatsapp");
    shown.choose(whatsapp);
    EXPECT_EQ(shown.done, "first");
    auto mail = zelk::feedbackMailURL({"makers@example.org", {}}, zelk::FeedbackFacts::current());
    ASSERT_TRUE(mail);
    EXPECT_EQ(shown.opener->opened,
              (Strings{mail->absoluteString(), "imessage:makers@example.org", "https://wa.me/15550100",
                       "whatsapp://send?phone=15550100"}));
}

TEST(FeedbackSheet, says_that_nothing_here_writes_mail)
{
    Shown shown({});
    shown.choose(kitText("FEEDBACK_ACTION_SHEET_EMAIL_BUTTON_TITLE"));
    auto alert = shown.front();
    ASSERT_TRUE(alert);
    EXPECT_EQ(alert->preferredStyle(), UIAlertControllerStyle::alert);
    EXPECT_EQ(alert->title(), kitText("FEEDBACK_EMAIL_NO_ACCOUNT_CONFIGURED_ALERT_TITLE"));
    EXPECT_EQ(alert->message(), kitText("FEEDBACK_EMAIL_NO_ACCOUNT_CONFIGURED_ALERT_MESSAGE"));
    EXPECT_TRUE(shown.opener->opened.empty());
    shown.stage.press(UIKeyCode::returnKey);
    shown.settle();
    EXPECT_FALSE(shown.front());
    shown.choose(kitText("FEEDBACK_ACTION_SHEET_EMAIL_BUTTON_TITLE"));
    EXPECT_TRUE(shown.front()) << "the next time too";
}

TEST(FeedbackSheet, logs_an_address_that_makes_no_url)
{
    auto opener = std::make_shared<RecordingURLOpener>(std::set<std::string>{"mailto"});
    UIApplication::shared().setURLOpener(opener);
    Strings lines;
    LogCapture capture([&](const LogRecord& record) { lines.emplace_back(record.message); });
    EXPECT_TRUE(zelk::performFeedback(FeedbackSheetItem::email("//x")));
    EXPECT_TRUE(zelk::performFeedback(FeedbackSheetItem::whatsapp("none")));
    UIApplication::shared().setURLOpener(nullptr);
    EXPECT_EQ(lines, (Strings{"Failed to create mailto URL", "Failed to create WhatsApp URL"}));
    EXPECT_TRUE(opener->opened.empty());
}

} // namespace
