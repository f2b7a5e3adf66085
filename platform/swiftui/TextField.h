// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Binding.h"
#include "platform/swiftui/ControlNode.h"

#include <functional>
#include <memory>
#include <string>

namespace platform {

class UITextField;

struct TextFieldOptions {
    std::function<void()> onSubmit{}; // Return was pressed
    std::function<void(bool isEditing)> onEditingChanged{};
};

// A field for one line of text, as wide as there is room; the placeholder is its name, too. Shows what the binding says: a
// binding that refuses or corrects what is typed has its way at once.
struct TextField {
    std::string placeholder;
    Binding<std::string> text;
    TextFieldOptions options{};

    class Node;
};

// The same for a secret: dots stand for what is typed, and it cannot be copied.
struct SecureField {
    std::string placeholder;
    Binding<std::string> text;
    TextFieldOptions options{};

    class Node;
};

enum class TextEntry { open, secure };

// Of both.
class TextFieldNode : public ControlNode {
public:
    TextFieldNode(const NodeContext& context, const TextField& view, TextEntry entry);
    ~TextFieldNode() override;
    void update(const TextField& view);
    bool isRigid(Axis axis) const override { return axis == Axis::vertical; }
    CGFloat guide(VerticalAlignment alignment, CGSize size) override;

protected:
    CGSize measure(const ProposedSize& proposal) override;
    void readSources() override;

private:
    class Delegate;
    void userChanged();

    TextField record_;
    std::shared_ptr<UITextField> field_;
    std::shared_ptr<Delegate> delegate_;
};

class TextField::Node final : public TextFieldNode {
public:
    Node(const NodeContext& context, const TextField& view)
        : TextFieldNode(context, view, TextEntry::open)
    {
    }
};

class SecureField::Node final : public TextFieldNode {
public:
    Node(const NodeContext& context, const SecureField& view)
        : TextFieldNode(context, {view.placeholder, view.text, view.options}, TextEntry::secure)
    {
    }
    void update(const SecureField& view)
    {
        TextFieldNode::update({view.placeholder, view.text, view.options});
    }
};

} // namespace platform
