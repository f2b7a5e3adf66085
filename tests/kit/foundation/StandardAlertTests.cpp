// SPDX-License-Identifier: MIT
#include "kit/foundation/standardAlert.h"

#include "kit/foundation/CommonLocalizations.h"
#include "kit/foundation/alert.h"
#include "kit/foundation/zelkKitLocalized.h"
#include "platform/avfoundation/AVError.h"
#include "platform/foundation/ProcessInfo.h"
#include "platform/services/PHPhotosError.h"
#include "platform/swiftui/State.h"
#include "platform/swiftui/UIHostingController.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIApplication.h"
#include "tests/support/RecordingURLOpener.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using Term = zelk::CommonLocalizations;
using Kind = Alert::Button::Kind;

NSError withSuggestion(std::string_view domain, long code, std::string suggestion)
{
    return NSError(domain, code,
                   {{std::string(NSLocalizedDescriptionKey), "what"},
                    {std::string(NSLocalizedRecoverySuggestionErrorKey), std::move(suggestion)}});
}

TEST(StandardAlert, is_the_one_of_the_first_rule_that_holds)
{
    const auto failed = value(Term::anErrorOccurred);
    const auto full = zelk::zelkKitLocalized("EXPORT_FAILURE_DISK_IS_FULL_MESSAGE");
    const auto offline = zelk::zelkKitLocalized("URL_ERROR_NOT_CONNECTED_TO_INTERNET");
    ASSERT_NE(full, "EXPORT_FAILURE_DISK_IS_FULL_MESSAGE") << "the kit's texts are there";
    struct Case {
        const char* name;
        Error error;
        std::string title, message;
    };
    const Case cases[] = {
        {"full disk", AVError::diskFull, failed, full},
        {"full disk, with a suggestion", withSuggestion("NSPOSIXErrorDomain", 28, "buy one"), failed, full},
        {"offline", NSError(NSURLError::notConnectedToInternet), failed, offline},
        {"a suggestion", withSuggestion("Some", 1, "do this"), "what", "do this"},
        {"an empty suggestion", withSuggestion("Some", 1, ""), "what", ""},
        {"anything else", NSError("Some", 1, {{std::string(NSLocalizedDescriptionKey), "what"}}), failed,
         "what"},
        {"nothing said", NSError("Some", 7), failed, NSError("Some", 7).localizedDescription()},
        {"cancelled", NSError(NSCocoaError::userCancelled), failed,
         NSError(NSCocoaError::userCancelled).localizedDescription()},
        {"refused, as it was before the library had a domain", NSError("NSCocoaErrorDomain", 2047), failed,
         NSError("NSCocoaErrorDomain", 2047).localizedDescription()},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        auto alert = zelk::standardAlert(test.error);
        EXPECT_EQ(alert.title, test.title);
        EXPECT_EQ(alert.message, test.message);
        EXPECT_EQ(alert.primaryButton.label(), value(Term::dismiss));
        EXPECT_EQ(alert.primaryButton.kind(), Kind::default_);
        EXPECT_FALSE(alert.primaryButton.action());
        EXPECT_FALSE(alert.secondaryButton);
    }
}

TEST(StandardAlert, offers_the_settings_where_the_photo_library_refused)
{
    auto opener = std::make_shared<tests::RecordingURLOpener>(std::set<std::string>{"app-settings"});
    UIApplication::shared().setURLOpener(opener);
    auto check = [](const Alert& alert) {
        EXPECT_EQ(alert.title, zelk::zelkKitLocalized("EXPORT_FAILURE_PHOTOS_UNAUTHORIZED_ALERT_TITLE"));
        EXPECT_EQ(alert.message, zelk::zelkKitLocalized("EXPORT_FAILURE_PHOTOS_UNAUTHORIZED_ALERT_MESSAGE"));
        EXPECT_EQ(alert.primaryButton.label(), value(Term::openSettings));
        EXPECT_EQ(alert.primaryButton.kind(), Kind::default_);
        ASSERT_TRUE(alert.secondaryButton);
        EXPECT_EQ(alert.secondaryButton->kind(), Kind::cancel);
        EXPECT_FALSE(alert.secondaryButton->action());
        alert.primaryButton.action()();
    };
    check(zelk::standardAlert(PHPhotosError::accessRestricted));
    EXPECT_EQ(opener->opened, std::vector{std::string(UIApplication::openSettingsURLString)});
    SystemVersionOverride before({14});
    check(zelk::standardAlert(NSError("NSCocoaErrorDomain", 2047)));
    UIApplication::shared().setURLOpener(nullptr);
}

struct Question {
    std::string text;
    std::string id() const { return text; }
    Alert alert() const { return Alert(Text{text}); }
    bool operator==(const Question&) const = default;
};

TEST(AlertModifiers, show_several_alerts_of_one_view_and_clear_their_bindings)
{
    using ErrorCell = StateCell<std::optional<Error>>;
    auto first = std::make_shared<ErrorCell>(std::nullopt),
         second = std::make_shared<ErrorCell>(std::nullopt);
    auto question = std::make_shared<StateCell<std::optional<Question>>>(std::nullopt);
    harness::ViewHarness harness({400, 400});
    auto view = Color{UIColor::white()} | zelk::alert(Binding(first)) | zelk::alert(Binding(question))
        | zelk::alert(Binding(second));
    auto host = std::make_shared<UIHostingController<decltype(view)>>(view);
    harness.show(host);
    auto settle = [&] {
        for (int i = 0; i < 3; ++i) {
            harness.settle();
            harness.advance(1s);
        }
    };
    auto shown = [&] {
        auto alert = std::dynamic_pointer_cast<UIAlertController>(host->presentedViewController());
        return alert ? alert->title() + "|" + alert->message().value_or("") : "";
    };
    NSError::UserInfo what{{std::string(NSLocalizedDescriptionKey), "what"}};
    const auto told = value(Term::anErrorOccurred) + "|what";

    first->set(NSError("One", 1, what));
    settle();
    EXPECT_EQ(shown(), told);
    auto controller = host->presentedViewController();
    first->set(NSError("Two", 2, what));
    settle();
    EXPECT_EQ(host->presentedViewController(), controller) << "errors that read the same are one";
    question->set(Question{"Really?"});
    settle();
    second->set(NSError("Three", 3));
    settle();
    for (const auto& next :
         {std::string("Really?|"),
          value(Term::anErrorOccurred) + "|" + NSError("Three", 3).localizedDescription(), std::string()}) {
        harness.press(UIKeyCode::escape);
        settle();
        EXPECT_EQ(shown(), next);
    }
    EXPECT_FALSE(first->value() || second->value() || question->value());
}

} // namespace
