// SPDX-License-Identifier: MIT
#include "platform/services/permissionAlert_p.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/ProcessInfo.h"
#include "platform/uikit/PresentationQueue.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/UIWindowScene.h"

#include <memory>
#include <utility>

namespace platform {

namespace {

using Status = UserPermissionStatus;

// Gives one answer, also when the question went without one.
class OneAnswer {
public:
    explicit OneAnswer(UserPermission::Answer answer)
        : answer_(std::move(answer))
    {
    }
    ~OneAnswer() { give(Status::notDetermined); }
    OneAnswer(const OneAnswer&) = delete; // there is one
    OneAnswer& operator=(const OneAnswer&) = delete;

    void give(Status status)
    {
        if (auto answer = std::exchange(answer_, nullptr))
            answer(status);
    }

private:
    UserPermission::Answer answer_;
};

std::shared_ptr<UIWindow> keyWindow()
{
    for (const auto& scene : UIApplication::shared().connectedScenes()) {
        auto windowScene = std::dynamic_pointer_cast<UIWindowScene>(scene);
        if (!windowScene)
            continue;
        for (const auto& window : windowScene->windows()) {
            if (window->isKeyWindow())
                return window;
        }
    }
    return nullptr;
}

// In front of all that stands there but alerts, which go first.
std::shared_ptr<UIViewController> controllerToAskFrom()
{
    auto window = keyWindow();
    auto top = window ? window->rootViewController() : nullptr;
    while (auto presented = top ? top->presentedViewController() : nullptr) {
        if (std::dynamic_pointer_cast<UIAlertController>(presented))
            break;
        top = std::move(presented);
    }
    return top;
}

} // namespace

std::string programName()
{
    auto name = Bundle::main()->stringForInfoDictionaryKey("CFBundleDisplayName");
    return name ? *name : ProcessInfo::processInfo().processName();
}

void askInAlert(const std::string& question, const std::optional<std::string>& reason,
                const std::vector<PermissionChoice>& choices, UserPermission::Answer answer)
{
    assertOnMainThread();
    auto single = std::make_shared<OneAnswer>(std::move(answer));
    auto controller = controllerToAskFrom();
    if (!controller)
        return;
    auto alert = std::make_shared<UIAlertController>(question, reason, UIAlertControllerStyle::alert);
    for (const auto& choice : choices)
        alert->addAction(std::make_shared<UIAlertAction>(
            choice.title,
            &choice == &choices.back() ? UIAlertActionStyle::cancel : UIAlertActionStyle::default_,
            [single, status = choice.status](UIAlertAction&) { single->give(status); }));
    PresentationQueue::perform(
        *controller, [weak = std::weak_ptr<UIViewController>(controller), alert = std::move(alert)] {
            if (auto presenter = weak.lock())
                presenter->present(alert, Animated::yes);
        });
}

} // namespace platform
