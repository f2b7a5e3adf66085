// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSObject.h"
#include "platform/uikit/Forward.h"

#include <memory>

namespace platform {

// Stands between a controller that presents another over itself and the presented one. Kept by who presents. It
// moves no views: showing and dismissing are the presenter's part. Main thread only.
class UIPresentationController : public NSObject {
public:
    // The presented controller must not be null; the presenting one may be unknown yet.
    explicit UIPresentationController(std::shared_ptr<UIViewController> presented,
                                      std::weak_ptr<UIViewController> presenting = {});

    const std::shared_ptr<UIViewController>& presentedViewController() const { return presented_; }
    // Null once it is gone.
    std::shared_ptr<UIViewController> presentingViewController() const { return presenting_.lock(); }
    // What is shown of the presented controller: its view, loaded by this call.
    virtual std::shared_ptr<UIView> presentedView() const;

    // From here until `endPresentation`, or until this object goes, the presented controller and those inside it
    // answer UIViewController::presentationController() with this one.
    void beginPresentation();
    void endPresentation();

private:
    // fixed after construction
    std::shared_ptr<UIViewController> presented_;
    std::weak_ptr<UIViewController> presenting_;
};

} // namespace platform
