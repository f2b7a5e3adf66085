// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/focusable.h"
#include "platform/uikit/ValueRange.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace platform {

struct AdjustableOptions {
    double value = 0;
    ValueRange in{};
    double step = 0; // of an arrow key or of assistive technology; 0: a twentieth of the range
    std::string label;
    std::string spokenValue;                      // instead of the number
    std::function<void(double value)> onChange{}; // the user's wish, inside of the range
};

// The content is a slider to the keyboard and to assistive technology, whatever it is made of: arrow keys, Page Up and Down,
// Home and End change the value, and so does the accessibility bus. The pointer is left to gestures.
struct AdjustableModifier {
    AdjustableOptions options;
    class Node;
};

class AdjustableModifier::Node : public FocusGroupNode {
public:
    Node(const NodeContext& context, const AdjustableModifier& modifier);
    void refresh() override;

protected:
    void updateModifier(const AdjustableModifier& modifier);

private:
    class Group;
    Node(const NodeContext& context, const AdjustableModifier& modifier, std::shared_ptr<Group> group);
    std::shared_ptr<Group> adjusted_;
};

inline auto adjustable(AdjustableOptions options)
{
    return AdjustableModifier{std::move(options)};
}

} // namespace platform
