// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/swiftui/ContentController.h"
#include "platform/uikit/Forward.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace platform {

enum class PresentationKind { sheet, fullScreenCover, popover };

// Whether the user may end the presentation that the content stands in; each place that forbids it counts.
struct DismissalGuard {
    int forbidding = 0;
};
struct DismissalGuardKey {
    using Value = std::shared_ptr<DismissalGuard>;
    static Value defaultValue() { return nullptr; }
};

// Where a popover points: a rectangle of a view.
struct PopoverAnchor {
    std::weak_ptr<UIView> view;
    CGRect rect;
};

// Keeps declarative content presented for as long as it is wanted at a place of the tree: through the hosting controller
// when nothing else is presented there, replaced when something else is wanted, gone when nothing is. Everything happens in
// later turns of the run loop. Main thread only.
class ModalPresenter : public std::enable_shared_from_this<ModalPresenter> {
public:
    // `host` may go before this.
    ModalPresenter(const std::shared_ptr<UIViewController>& host, PresentationKind kind);

    struct Wish {
        std::uint64_t identity = 0; // differs for each that is to be presented anew
        std::function<AnyView()> make;
        std::shared_ptr<EnvironmentScope> surroundings;
        std::function<void()> onClosed;  // the user ended it; the wish is forgotten before the call
        std::function<void()> onDismiss; // it has gone, however that came; after onClosed
    };
    // From now on. One with the identity of what is shown changes its content.
    void want(Wish wish);
    void wantNothing();
    void setAnchor(PopoverAnchor anchor);

private:
    class Controller;
    template <class Presentation>
    class Notifying;

    void followLater();
    void follow();
    void present();
    void didGo(std::uint64_t identity);

    // fixed after construction
    const std::weak_ptr<UIViewController> host_;
    const PresentationKind kind_;
    // main thread only
    std::optional<Wish> wish_;
    PopoverAnchor anchor_;
    std::weak_ptr<Controller> shown_;
    std::uint64_t shownIdentity_ = 0;
    std::function<void()> onDismiss_; // of what is shown
    bool isWaiting_ = false;          // for its turn
    bool isClosing_ = false;          // nobody wants what is shown
    bool isFollowing_ = false;
};

} // namespace platform
