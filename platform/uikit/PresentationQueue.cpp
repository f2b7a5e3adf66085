// SPDX-License-Identifier: MIT
#include "platform/uikit/PresentationQueue.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/UIViewController.h"

#include <deque>
#include <memory>
#include <string_view>

namespace platform {

namespace {

using Actions = std::deque<std::function<void()>>;
constexpr std::string_view queueKey = "presentationQueue";

std::shared_ptr<Actions> queueOf(UIViewController& presenter)
{
    const auto* known = presenter.associatedObject<std::shared_ptr<Actions>>(queueKey);
    return known ? *known : nullptr;
}

} // namespace

void PresentationQueue::perform(UIViewController& controller, std::function<void()> action)
{
    assertOnMainThread();
    auto presenter = std::static_pointer_cast<UIViewController>(controller.shared_from_this());
    while (auto above = presenter->parent())
        presenter = above;
    auto queue = queueOf(*presenter);
    if (!presenter->presentedViewController() && (!queue || queue->empty()))
        return action();
    if (!queue) {
        queue = std::make_shared<Actions>();
        presenter->setAssociatedObject(std::string(queueKey), queue);
    }
    queue->push_back(std::move(action));
}

void PresentationQueue::run(UIViewController& presenter)
{
    auto keptAlive = presenter.shared_from_this();
    auto queue = queueOf(presenter);
    while (queue && !queue->empty() && !presenter.presentedViewController()) {
        auto action = std::move(queue->front());
        queue->pop_front();
        action();
    }
}

} // namespace platform
