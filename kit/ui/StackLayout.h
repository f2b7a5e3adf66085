// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Alignment.h"

#include <optional>
#include <variant>

namespace zelk {

// Which way a LayoutStack runs, with the alignment of its children across that way; none is the centre.
class StackLayout {
public:
    static StackLayout vertical(std::optional<platform::HorizontalAlignment> alignment = {})
    {
        return StackLayout(Value(std::in_place_index<0>, alignment));
    }
    static StackLayout horizontal(std::optional<platform::VerticalAlignment> alignment = {})
    {
        return StackLayout(Value(std::in_place_index<1>, alignment));
    }

    bool isHorizontal() const { return value_.index() == 1; }
    // Of a column, or of a row. None for the other one.
    std::optional<platform::HorizontalAlignment> horizontalAlignment() const
    {
        return isHorizontal() ? std::nullopt : std::get<0>(value_);
    }
    std::optional<platform::VerticalAlignment> verticalAlignment() const
    {
        return isHorizontal() ? std::get<1>(value_) : std::nullopt;
    }

    bool operator==(const StackLayout&) const = default;

private:
    using Value = std::variant<std::optional<platform::HorizontalAlignment>,
                               std::optional<platform::VerticalAlignment>>;
    explicit StackLayout(Value value)
        : value_(value)
    {
    }
    Value value_;
};

} // namespace zelk
