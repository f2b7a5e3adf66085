// SPDX-License-Identifier: MIT
#include "introspect/IntrospectionPlatformViewController.h"

#include "introspect/IntrospectionMarkers.h"
#include "introspect/IntrospectionStore.h"
#include "platform/uikit/UIView.h"

#include <string>
#include <utility>

namespace introspect {

std::shared_ptr<IntrospectionPlatformViewController>
IntrospectionPlatformViewController::make(const platform::UUID& id, Handler handler)
{
    auto probe = std::make_shared<IntrospectionPlatformViewController>(Private{}, id, std::move(handler));
    markAsIntrospectionPlatformEntity(*probe);
    IntrospectionStore::shared().setController(id, probe);
    return probe;
}

IntrospectionPlatformViewController::IntrospectionPlatformViewController(Private, const platform::UUID& id,
                                                                         Handler handler)
    : id_(id)
    , handler_(std::move(handler))
{
}

void IntrospectionPlatformViewController::runHandler()
{
    if (!handler_)
        return;
    // Out of its place while it runs: a customisation that lays out would otherwise call it again without end.
    auto running = std::exchange(handler_, nullptr);
    if (running() == Outcome::failed)
        handler_ = std::move(running);
}

void IntrospectionPlatformViewController::replaceHandler(Handler handler)
{
    if (handler_)
        handler_ = std::move(handler);
}

void IntrospectionPlatformViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    const auto& ownView = view();
    const std::weak_ptr self = sharedFrom(this);
    ownView->setAssociatedObject(std::string(introspectionControllerKey), self);
    markAsIntrospectionPlatformEntity(*ownView);
    runHandler();
}

void IntrospectionPlatformViewController::didMove(UIViewController* toParent)
{
    UIViewController::didMove(toParent);
    runHandler();
}

void IntrospectionPlatformViewController::viewDidLayoutSubviews()
{
    UIViewController::viewDidLayoutSubviews();
    runHandler();
}

void IntrospectionPlatformViewController::viewDidAppear(platform::Animated animated)
{
    UIViewController::viewDidAppear(animated);
    runHandler();
}

platform::UIStatusBarStyle IntrospectionPlatformViewController::preferredStatusBarStyle() const
{
    const auto above = parent();
    return above ? above->preferredStatusBarStyle() : UIViewController::preferredStatusBarStyle();
}

} // namespace introspect
