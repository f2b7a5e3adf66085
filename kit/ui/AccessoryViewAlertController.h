// SPDX-License-Identifier: MIT
#pragma once

#include "platform/combine/AnyPublisher.h"
#include "platform/foundation/Date.h"
#include "platform/uikit/UIAlertController.h"

#include <memory>
#include <optional>
#include <string>

namespace zelk {

enum class AccessoryViewPosition { top, bottom };

// An alert with a view of its own above or below its text. An alert has no place for one, so line breaks in the title or
// the message make it, as many as the view is high, and the view stands in the middle of them at each layout. Title, message
// and view stay as they are made: setting either text stops the program. Of a text of many pages only the beginning is
// shown. Main thread only.
class AccessoryViewAlertController : public platform::UIAlertController {
public:
    struct Configuration {
        AccessoryViewPosition accessoryViewPosition = AccessoryViewPosition::bottom;
        platform::CGSize accessoryViewSize; // points
        std::string adjustedTitle;
        std::optional<std::string> adjustedMessage;
        platform::CGFloat accessoryViewYOffset = 0; // of its centre, from the edge that it stands at
        bool operator==(const Configuration&) const = default;
    };
    struct Options {
        std::string title;
        std::optional<std::string> message = {};
        std::shared_ptr<platform::UIView> accessoryView = {};
        AccessoryViewPosition accessoryViewPosition = AccessoryViewPosition::bottom;
        platform::UIAlertControllerStyle preferredStyle = platform::UIAlertControllerStyle::alert;
    };

    // The view's height is that of its bounds, now and for good; its width follows the alert's. One without a height takes no
    // room. Requires: a view.
    static std::shared_ptr<AccessoryViewAlertController> make(Options options);

    struct Texts {
        std::string title;
        std::optional<std::string> message = {};
        AccessoryViewPosition accessoryViewPosition = AccessoryViewPosition::bottom;
    };
    // With a wheel that turns.
    static std::shared_ptr<AccessoryViewAlertController> activityIndicator(Texts texts);
    // With a bar that is full when the deadline comes. Each deadline published moves the goal: the bar goes on from where it
    // is, and from the beginning when it was full. It is empty before the first. Deadlines may come on any thread.
    static std::shared_ptr<AccessoryViewAlertController>
    progress(Texts texts, const platform::AnyPublisher<platform::Date>& deadlines);

    const Configuration& configuration() const;
    const std::shared_ptr<platform::UIView>& accessoryView() const { return accessoryView_; }

    void setTitle(std::string title) override;
    void setMessage(std::optional<std::string> message) override;
    void viewDidLayoutSubviews() override;

    // Buttons below the view stand in a column: each is counted as a row.
    bool allowsActionsSideBySide() const override;

    AccessoryViewAlertController(Configuration configuration, const Options& options); // use `make`

private:
    // fixed when made
    std::optional<Configuration> config_;
    std::shared_ptr<platform::UIView> accessoryView_;
    bool isInInit_ = true;
};

} // namespace zelk
