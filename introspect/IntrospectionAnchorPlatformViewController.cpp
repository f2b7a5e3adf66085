// SPDX-License-Identifier: MIT
#include "introspect/IntrospectionAnchorPlatformViewController.h"

#include "introspect/IntrospectionMarkers.h"
#include "introspect/IntrospectionStore.h"
#include "platform/uikit/UIView.h"

namespace introspect {

std::shared_ptr<IntrospectionAnchorPlatformViewController>
IntrospectionAnchorPlatformViewController::make(const platform::UUID& id)
{
    auto anchor = std::make_shared<IntrospectionAnchorPlatformViewController>(Private{});
    markAsIntrospectionPlatformEntity(*anchor);
    IntrospectionStore::shared().setAnchor(id, anchor);
    return anchor;
}

void IntrospectionAnchorPlatformViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    markAsIntrospectionPlatformEntity(*view());
}

} // namespace introspect
