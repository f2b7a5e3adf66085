// SPDX-License-Identifier: MIT
// Each class of error and the alert that the user gets for it: error-alerts. Two kinds of alerts hang on the same view.
#include "kit/foundation/alert.h"
#include "kit/foundation/errorClassification.h"
#include "platform/avfoundation/AVError.h"
#include "platform/graphics/GraphicsRuntime.h"
#include "platform/services/PHPhotosError.h"
#include "platform/swiftui/swiftui.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIWindow.h"

#include <cstdio>
#include <optional>
#include <string>

namespace {

using namespace platform;

constexpr CGSize windowSize{420, 480};

// A question of the program's own, on the same view as the errors.
struct DeleteQuestion {
    std::string project;
    Binding<std::string> outcome;

    std::string id() const { return project; }
    Alert alert() const
    {
        return Alert(
            Text{"Delete “" + project + "”?"},
            Text{"The project and its clips are deleted. This can’t be undone."},
            Alert::Button::destructive(Text{"Delete"}, [outcome = outcome] { outcome.set("Deleted."); }),
            Alert::Button::cancel([outcome = outcome] { outcome.set("Kept."); }));
    }
};

struct ErrorAlerts {
    State<std::optional<Error>> error;
    State<std::optional<DeleteQuestion>> question;
    State<std::string> outcome = std::string("Nothing has gone wrong yet.");

    auto dynamicProperties() { return std::tie(error, question, outcome); }

    auto raiseButton(const std::string& title, Error raised) const
    {
        auto error_ = error.binding();
        auto outcome_ = outcome.binding();
        return Button{title, [error_, outcome_, raised] {
                          if (zelk::isUserCancelled(raised))
                              return outcome_.set("Cancelled: nobody is told.");
                          outcome_.set("Told: " + raised.localizedDescription());
                          error_.set(raised);
                      }};
    }

    auto body() const
    {
        NSError::UserInfo advice{
            {std::string(NSLocalizedDescriptionKey), "The Server Did Not Answer"},
            {std::string(NSLocalizedRecoverySuggestionErrorKey), "Try again in a minute."}};
        auto question_ = question.binding();
        auto outcome_ = outcome.binding();
        return VStack{{.spacing = 12},
                      Text{"Errors and their alerts"} | font(Font::title2()),
                      raiseButton("Photo access refused", nsError(PHPhotosError::accessUserDenied)),
                      raiseButton("Disk full", nsError(AVError::diskFull)),
                      raiseButton("Offline", NSError(NSURLError::notConnectedToInternet)),
                      raiseButton("With a suggestion", NSError("Example", 1, advice)),
                      raiseButton("Anything else", nsError(AVError::fileFormatNotRecognized)),
                      raiseButton("Cancelled by the user", zelk::userCancelled()),
                      Button{"Delete project…",
                             [question_, outcome_] { question_.set(DeleteQuestion{"Summer", outcome_}); }},
                      Text{*outcome} | foregroundColor(UIColor::secondaryLabel())}
        | padding(20) | zelk::alert(error.binding()) | zelk::alert(question.binding());
    }
};

} // namespace

int main(int argumentCount, char**)
{
    if (argumentCount != 1) {
        std::fprintf(stderr, "usage: error-alerts\n");
        return 2;
    }
    if (!displayIsAvailable()) {
        std::fprintf(stderr, "error-alerts: there is no display\n");
        return 1;
    }
    auto& application = UIApplication::shared();
    application.setIdentifier("org.zelk.ErrorAlerts");
    application.start();
    auto window = std::make_shared<UIWindow>(CGRect{{}, windowSize});
    window->setTitle("Errors and their alerts");
    window->setRootViewController(std::make_shared<UIHostingController<ErrorAlerts>>(ErrorAlerts{}));
    window->makeKeyAndVisible();
    return application.run();
}
