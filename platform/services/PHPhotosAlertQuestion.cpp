// SPDX-License-Identifier: MIT
#include "platform/services/PHPhotosQuestion.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/ProcessInfo.h"
#include "platform/services/PHPhotosText_p.h"
#include "platform/uikit/PresentationQueue.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/UIWindowScene.h"

#include <memory>
#include <utility>

namespace platform {

namespace {

using Status = PHAuthorizationStatus;

// Gives one answer, also when the question went without one.
class OneAnswer {
public:
    explicit OneAnswer(PHPhotosQuestion::Answer answer)
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
    PHPhotosQuestion::Answer answer_;
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

std::shared_ptr<UIAlertController> alert(PHAccessLevel level, const std::shared_ptr<OneAnswer>& answer)
{
    auto isAdding = level == PHAccessLevel::addOnly;
    const auto& bundle = *Bundle::main();
    auto name = bundle.stringForInfoDictionaryKey("CFBundleDisplayName");
    auto program = name ? *name : ProcessInfo::processInfo().processName();
    auto reason = bundle.stringForInfoDictionaryKey(isAdding ? "NSPhotoLibraryAddUsageDescription"
                                                             : "NSPhotoLibraryUsageDescription");
    auto question = isAdding ? PHPhotosText::addQuestion : PHPhotosText::accessQuestion;
    auto alert = std::make_shared<UIAlertController>(photosText(question, program), reason,
                                                     UIAlertControllerStyle::alert);
    auto add = [&](PHPhotosText text, Status status, UIAlertActionStyle style) {
        alert->addAction(std::make_shared<UIAlertAction>(
            photosText(text), style, [answer, status](UIAlertAction&) { answer->give(status); }));
    };
    if (!isAdding)
        add(PHPhotosText::limit, Status::limited, UIAlertActionStyle::default_);
    add(PHPhotosText::allow, Status::authorized, UIAlertActionStyle::default_);
    add(PHPhotosText::refuse, Status::denied, UIAlertActionStyle::cancel);
    return alert;
}

} // namespace

void PHPhotosAlertQuestion::ask(PHAccessLevel level, Answer answer)
{
    assertOnMainThread();
    auto single = std::make_shared<OneAnswer>(std::move(answer));
    auto controller = controllerToAskFrom();
    if (!controller)
        return;
    PresentationQueue::perform(*controller,
                               [weak = std::weak_ptr<UIViewController>(controller), level, single] {
                                   if (auto presenter = weak.lock())
                                       presenter->present(alert(level, single), Animated::yes);
                               });
}

} // namespace platform
