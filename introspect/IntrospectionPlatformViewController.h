// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/UUID.h"
#include "platform/uikit/UIViewController.h"

#include <functional>
#include <memory>

namespace introspect {

// The invisible controller in front of a modified view, the probe: each event of its life is an occasion to look for
// the platform entity. Main thread only.
class IntrospectionPlatformViewController : public platform::UIViewController {
    struct Private { }; // made by `make` alone: a constructor could not record the object in the store

public:
    enum class Outcome { failed, succeeded };
    using Handler = std::function<Outcome()>;

    // Marks the new controller and records it as the probe of `id`.
    static std::shared_ptr<IntrospectionPlatformViewController> make(const platform::UUID& id,
                                                                     Handler handler);
    IntrospectionPlatformViewController(Private, const platform::UUID& id, Handler handler);

    const platform::UUID& id() const { return id_; }

    // Runs the handler if it is still there. It is cleared, for the life of the probe, when it succeeds. Events that
    // the handler itself brings about do not run it again.
    void runHandler();
    // Whether the handler is installed: no run has succeeded yet.
    bool hasHandler() const { return static_cast<bool>(handler_); }
    // Takes the place of a handler that has not succeeded yet; nothing happens after a success or during a run.
    void replaceHandler(Handler handler);

    void viewDidLoad() override;
    void didMove(UIViewController* toParent) override;
    void viewDidLayoutSubviews() override;
    void viewDidAppear(platform::Animated animated) override;
    // The parent's, so that the probe never changes the status bar.
    platform::UIStatusBarStyle preferredStatusBarStyle() const override;

private:
    // fixed after construction
    platform::UUID id_;
    // main thread only
    Handler handler_;
};

} // namespace introspect
