// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectionAnchorPlatformViewController.h"
#include "introspect/IntrospectionPlatformViewController.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/UIViewController.h"

#include <memory>

namespace introspect {

// A controller with an anchor and a probe, set up by hand as a hosting controller would: what a test adds between
// `addAnchor` and `addProbe` stands between the two.
struct MarkedStage {
    platform::UUID id;
    std::shared_ptr<platform::UIViewController> host = std::make_shared<platform::UIViewController>();
    std::shared_ptr<IntrospectionAnchorPlatformViewController> anchor =
        IntrospectionAnchorPlatformViewController::make(id);
    std::shared_ptr<IntrospectionPlatformViewController> probe;

    explicit MarkedStage(IntrospectionPlatformViewController::Handler handler = {})
        : probe(IntrospectionPlatformViewController::make(id, std::move(handler)))
    {
    }

    void add(const std::shared_ptr<platform::UIViewController>& controller)
    {
        host->addChild(controller);
        host->view()->addSubview(controller->view());
        controller->didMove(host.get());
    }
    void add(const std::shared_ptr<platform::UIView>& content) { host->view()->addSubview(content); }
    template <class View>
    std::shared_ptr<View> addNew()
    {
        auto entity = std::make_shared<View>();
        add(entity);
        return entity;
    }
    void addAnchor() { add(anchor); }
    void addProbe() { add(probe); }
};

} // namespace introspect
