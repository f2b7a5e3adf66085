// SPDX-License-Identifier: MIT
#include "platform/swiftui/TextField.h"

#include "platform/swiftui/controlStyles.h"
#include "platform/uikit/UITextField.h"

namespace platform {

class TextFieldNode::Delegate : public UITextFieldDelegate {
public:
    explicit Delegate(TextFieldNode& node)
        : node_(node)
    {
    }
    void textFieldDidBeginEditing(UITextField&) override { tell(true); }
    void textFieldDidEndEditing(UITextField&) override { tell(false); }

private:
    void tell(bool isEditing)
    {
        if (auto action = node_.record_.options.onEditingChanged)
            action(isEditing);
    }
    TextFieldNode& node_; // owns this
};

TextFieldNode::TextFieldNode(const NodeContext& context, const TextField& view, TextEntry entry)
    : ControlNode(context)
    , record_(view)
    , field_(std::make_shared<UITextField>())
    , delegate_(std::make_shared<Delegate>(*this))
{
    field_->setSecureTextEntry(entry == TextEntry::secure);
    field_->setDelegate(delegate_);
    field_->addAction([this](UIControl&) { userChanged(); }, {UIControlEvents::valueChanged});
    field_->addAction(
        [this](UIControl&) {
            if (auto action = record_.options.onSubmit) // it may replace itself, or the whole view
                action();
        },
        {UIControlEvents::primaryActionTriggered});
    readSources();
    setPlatformView(field_);
}

TextFieldNode::~TextFieldNode()
{
    field_->removeAllActions(); // somebody may keep the view
    field_->setDelegate({});
}

void TextFieldNode::update(const TextField& view)
{
    record_ = view;
    refresh();
}

void TextFieldNode::readSources()
{
    readSurroundings(*field_);
    field_->setPlaceholder(record_.placeholder);
    field_->setBorderStyle(environment<TextFieldStyleKey>() == TextFieldStyle::plain
                               ? UITextBorderStyle::none
                               : UITextBorderStyle::roundedRect);
    auto category = environment<SizeCategoryKey>();
    auto scale = environment<TextScaleKey>();
    field_->setFont(environment<FontKey>().value_or(Font::body()).resolved(category, scale));
    field_->setTextColor(environment<ForegroundColorKey>());
    record_.text.registerReader(*this);
    if (auto text = record_.text.get(); text != field_->text())
        field_->setText(text);
}

void TextFieldNode::userChanged()
{
    auto field = field_;
    auto binding = record_.text; // writing it may remove this
    binding.set(field->text());
    if (auto text = binding.get(); text != field->text())
        field->setText(text);
}

CGSize TextFieldNode::measure(const ProposedSize& proposal)
{
    return wide(proposal, 160, 20, field_->intrinsicContentSize().height);
}

CGFloat TextFieldNode::guide(VerticalAlignment alignment, CGSize size)
{
    if (alignment < VerticalAlignment::firstTextBaseline)
        return ControlNode::guide(alignment, size);
    return field_->firstBaselineOffset();
}

} // namespace platform
