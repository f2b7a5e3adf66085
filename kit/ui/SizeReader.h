// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ModifiedContent.h"

#include <functional>
#include <memory>
#include <optional>

namespace zelk {

// Tells how large the content was laid out, in points: after the first layout and after each that changed it, before the
// result is on screen. What the action changes is shown in the same frame. A size is told once, so an action that changes
// the content's size comes to rest when the size does.
struct SizeReader {
    std::function<void(platform::CGSize)> onChange;
    class Node;
};

class SizeReader::Node : public platform::ModifierNode {
public:
    Node(const platform::NodeContext& context, const SizeReader& reader)
        : ModifierNode(context)
        , reader_(std::make_shared<SizeReader>(reader))
    {
    }

protected:
    void updateModifier(const SizeReader& reader) { *reader_ = reader; }
    void arrange(platform::CGRect rect, const platform::ProposedSize& proposal) override;

private:
    const std::shared_ptr<SizeReader> reader_; // whose end is that of this place
    std::optional<platform::CGSize> told_;
};

} // namespace zelk
