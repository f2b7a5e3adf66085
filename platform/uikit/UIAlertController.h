// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIAlertAction.h"
#include "platform/uikit/UIViewController.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

class AlertView;

enum class UIAlertControllerStyle {
    actionSheet, // choices, from the lower edge of the window
    alert,       // a card in its middle
};

// Tells the user something, or asks, in front of the window that it is presented in, and goes when one of its actions is
// chosen. Return chooses the preferred action, Escape the one that cancels, Tab and the arrows move between the
// buttons, Space presses one. The view is the card itself: others may add views to it, whose room they make by
// lines in the title or the message. Of texts of many pages only the beginning is shown. Main thread only.
class UIAlertController : public UIViewController {
public:
    explicit UIAlertController(std::optional<std::string> title, std::optional<std::string> message = {},
                               UIAlertControllerStyle preferredStyle = UIAlertControllerStyle::actionSheet);
    ~UIAlertController() override;

    virtual const std::optional<std::string>& message() const { return message_; }
    virtual void setMessage(std::optional<std::string> message);
    void setTitle(std::string title) override;
    UIAlertControllerStyle preferredStyle() const { return preferredStyle_; }

    const std::vector<std::shared_ptr<UIAlertAction>>& actions() const { return actions_; }
    // Shown in the order of addition, but for the one that cancels: it stands where reading begins in a row of two, and
    // last in a column. Requires: it is the only one that cancels, and in no other alert.
    void addAction(std::shared_ptr<UIAlertAction> action);
    std::shared_ptr<UIAlertAction> preferredAction() const { return preferredAction_; }
    // Requires: one of the actions, or null.
    void setPreferredAction(std::shared_ptr<UIAlertAction> action);

    // What Return chooses: the preferred action; without one, the first of the default style that is enabled, or the one
    // that cancels. Never a destructive one that is not preferred. Null when there is none.
    std::shared_ptr<UIAlertAction> actionOfReturn() const;
    // What Escape chooses, and in an action sheet a press beside it: the one that cancels; an only action of an alert.
    std::shared_ptr<UIAlertAction> actionOfEscape() const;
    // What pressing its button does: the alert goes, and then the action's handler is called. Nothing when it is
    // disabled or another one has been chosen.
    void choose(const std::shared_ptr<UIAlertAction>& action);

    void loadView() override;
    void viewWillAppear(Animated animated) override;
    void viewDidAppear(Animated animated) override;

    // Whether an alert's only two buttons stand in a row where both are short.
    virtual bool allowsActionsSideBySide() const { return true; }

protected:
    std::shared_ptr<UIPresentationController>
    makePresentationController(const std::shared_ptr<UIViewController>& presenting) override;

private:
    void contentChanged();

    // fixed after construction
    const UIAlertControllerStyle preferredStyle_;
    // main thread only
    std::optional<std::string> message_;
    std::vector<std::shared_ptr<UIAlertAction>> actions_;
    std::shared_ptr<UIAlertAction> preferredAction_;
    std::shared_ptr<AlertView> card_; // null before the view is loaded
    bool hasChosen_ = false;
};

} // namespace platform
