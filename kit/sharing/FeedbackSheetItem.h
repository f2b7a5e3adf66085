// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace zelk {

// One way of sending feedback. A value.
class FeedbackSheetItem {
public:
    struct IMessage {
        std::string address; // a telephone number, or a mail address
    };
    struct Email {
        std::string address;
        std::optional<std::string> extraInfo; // what the message begins with
    };
    struct WhatsApp {
        std::string number; // with the country's code, written in any way
    };
    struct Custom {
        std::string title;
        std::function<void()> action;
    };
    using Kind = std::variant<IMessage, Email, WhatsApp, Custom>;

    static FeedbackSheetItem iMessage(std::string address) { return {IMessage{std::move(address)}}; }
    static FeedbackSheetItem email(std::string address, std::optional<std::string> extraInfo = {})
    {
        return {Email{std::move(address), std::move(extraInfo)}};
    }
    static FeedbackSheetItem whatsapp(std::string number) { return {WhatsApp{std::move(number)}}; }
    static FeedbackSheetItem custom(std::string title, std::function<void()> action)
    {
        return {Custom{std::move(title), std::move(action)}};
    }

    const Kind& kind() const { return kind_; }
    // What its button says, in the user's language.
    std::string title() const;

private:
    FeedbackSheetItem(Kind kind)
        : kind_(std::move(kind))
    {
    }

    Kind kind_;
};

} // namespace zelk
