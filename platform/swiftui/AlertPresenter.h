// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/AlertContent.h"
#include "platform/uikit/Forward.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace platform {

// Keeps an alert, or an action sheet, on screen for as long as one is wanted at a place of the declarative tree: presents it through the
// hosting controller when nothing else is presented there, replaces it when another is wanted, lets it go when none is.
// Everything happens in later turns of the run loop. Main thread only.
class AlertPresenter : public std::enable_shared_from_this<AlertPresenter> {
public:
    // `controller` may go before this.
    explicit AlertPresenter(const std::shared_ptr<UIViewController>& controller);

    // The alert that is wanted from now on, made when its turn comes. `identity` differs for each that is to be shown
    // anew. `clear` is called when the alert has gone other than by `wantNothing` while it is still the one wanted.
    void want(std::uint64_t identity, std::function<AlertContent()> make, std::function<void()> clear);
    void wantNothing();

private:
    struct Wish {
        std::uint64_t identity = 0;
        std::function<AlertContent()> make;
        std::function<void()> clear;
    };
    class Controller;

    void followLater();
    void follow();
    void present();
    void alertDidGo(std::uint64_t identity);

    const std::weak_ptr<UIViewController> host_;
    std::optional<Wish> wish_;
    std::weak_ptr<Controller> shown_;
    std::uint64_t shownIdentity_ = 0;
    bool isWaiting_ = false; // for its turn
    bool isClosing_ = false; // nobody wants what is shown
    bool isFollowing_ = false;
};

} // namespace platform
