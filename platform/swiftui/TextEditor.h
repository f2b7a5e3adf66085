// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/String.h"
#include "platform/graphics/UIColor.h"
#include "platform/swiftui/Binding.h"
#include "platform/swiftui/PlatformViewNode.h"

#include <memory>
#include <optional>

namespace platform {

class UITextView;

// A scrolling, editable text of any size, which takes all the space it is offered. What the user types is written to
// the binding; a binding that refuses it keeps its value, whatever the view shows. Set in the environment's font, by
// default the body font. The same storage is never compared or copied.
struct TextEditor {
    Binding<String> text;

    class Node;
    bool operator==(const TextEditor&) const = default;
};

class TextEditor::Node : public PlatformViewNode {
public:
    Node(const NodeContext& context, const TextEditor& view);
    void update(const TextEditor& view);
    void refresh() override;

protected:
    CGSize measure(const ProposedSize& proposal) override;

private:
    class Delegate;
    void readSources();

    std::shared_ptr<UITextView> textView_;
    std::shared_ptr<Delegate> delegate_; // the text view, which may outlive this, forgets it then
    Binding<String> text_;
    String written_;              // what the text view was last given, or gave
    std::optional<UIColor> tint_; // of the surroundings
};

} // namespace platform
