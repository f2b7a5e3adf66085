// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Text.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace platform {

// What an alert says and offers, as a value; the modifiers of alert.h show it. One button, or two.
struct Alert {
    class Button {
    public:
        enum class Kind { default_, cancel, destructive };

        // The action, which may be empty, is called once the alert has gone.
        static Button default_(Text label, std::function<void()> action = {})
        {
            return {Kind::default_, std::move(label.text), std::move(action)};
        }
        static Button destructive(Text label, std::function<void()> action = {})
        {
            return {Kind::destructive, std::move(label.text), std::move(action)};
        }
        static Button cancel(Text label, std::function<void()> action = {})
        {
            return {Kind::cancel, std::move(label.text), std::move(action)};
        }
        // With the system's own label, in the user's language.
        static Button cancel(std::function<void()> action = {});

        Kind kind() const { return kind_; }
        const std::string& label() const { return label_; }
        const std::function<void()>& action() const { return action_; }

    private:
        Button(Kind kind, std::string label, std::function<void()> action)
            : kind_(kind)
            , label_(std::move(label))
            , action_(std::move(action))
        {
        }

        Kind kind_;
        std::string label_;
        std::function<void()> action_;
    };

    // Without a button it has one that says the system's "OK".
    explicit Alert(Text title, std::optional<Text> message = {}, std::optional<Button> dismissButton = {});
    Alert(Text title, std::optional<Text> message, Button primaryButton, Button secondaryButton);

    std::string title;
    std::optional<std::string> message;
    Button primaryButton;
    std::optional<Button> secondaryButton;
};

} // namespace platform
