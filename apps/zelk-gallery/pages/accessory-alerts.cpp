// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "apps/zelk-gallery/frame/AlertHost.h"
#include "kit/ui/AccessoryViewAlertController.h"
#include "platform/combine/CurrentValueSubject.h"
#include "platform/dispatch/currentDate.h"
#include "platform/swiftui/swiftui.h"
#include "platform/uikit/UIAlertAction.h"

namespace gallery {

using namespace platform;
using zelk::AccessoryViewAlertController;
using zelk::AccessoryViewPosition;

namespace {

// A button that shows an alert.
struct AlertButton {
    std::string title;
    std::function<std::shared_ptr<UIViewController>()> make;
    bool poses = false;
    State<bool> isWanted = false;
    Environment<IsPosedKey> isPosed;

    auto dynamicProperties() { return std::tie(isWanted, isPosed); }
    auto body() const
    {
        auto wanted = isWanted.binding();
        return Button{title, [wanted] { wanted.set(true); }}
        | background(AlertHost{wanted, make} | frame({.width = 0, .height = 0}))
            | onAppear([wanted, shows = poses && *isPosed] {
                   if (shows)
                       wanted.set(true);
               });
    }
};

// [A wheel]
auto wheel()
{
    return AlertButton{"Wait", [] {
                           auto alert = AccessoryViewAlertController::activityIndicator(
                               {.title = "Exporting",
                                .message = "This takes a moment.",
                                .accessoryViewPosition = AccessoryViewPosition::bottom});
                           alert->addAction(std::make_shared<UIAlertAction>(
                               "Cancel", UIAlertActionStyle::cancel));
                           return alert;
                       }};
}
// [/]

// [A bar that is full at a deadline]
auto bar()
{
    return AlertButton{"Export for five seconds",
                       [] {
                           auto deadline = std::make_shared<CurrentValueSubject<Date>>(
                               Date{currentDate().timeIntervalSince1970 + 5});
                           auto alert = AccessoryViewAlertController::progress(
                               {.title = "Exporting", .message = "Five seconds in all."},
                               deadline->eraseToAnyPublisher());
                           alert->addAction(std::make_shared<UIAlertAction>(
                               "Cancel", UIAlertActionStyle::cancel));
                           return alert;
                       },
                       true};
}
// [/]

} // namespace

Page accessoryAlertsPage()
{
    return {
        .name = "accessory-alerts",
        .title = "Alerts with a view",
        .group = "Presentation",
        .symbol = "hourglass",
        .summary =
            "An alert that makes room for a view of its own, above or below its text.",
        .exhibits = [] {
            return std::vector<Exhibit>{
                {"A wheel", "", AnyView(wheel())},
                {"A bar that is full at a deadline", "", AnyView(bar())}};
        }};
}

} // namespace gallery
