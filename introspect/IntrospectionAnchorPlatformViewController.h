// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/UUID.h"
#include "platform/uikit/UIViewController.h"

#include <memory>

namespace introspect {

// The invisible controller behind a modified view: where the search for its platform entity begins.
// Main thread only.
class IntrospectionAnchorPlatformViewController : public platform::UIViewController {
    struct Private { }; // made by `make` alone: a constructor could not record the object in the store

public:
    // Marks the new controller and records it as the anchor of `id`.
    static std::shared_ptr<IntrospectionAnchorPlatformViewController> make(const platform::UUID& id);
    explicit IntrospectionAnchorPlatformViewController(Private) { }

    void viewDidLoad() override;
};

} // namespace introspect
