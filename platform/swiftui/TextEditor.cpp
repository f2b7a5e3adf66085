// SPDX-License-Identifier: MIT
#include "platform/swiftui/TextEditor.h"

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/uikit/UITextView.h"

namespace platform {

class TextEditor::Node::Delegate : public UITextViewDelegate {
public:
    explicit Delegate(Node& node)
        : node_(node)
    {
    }
    void textViewDidChange(UITextView& textView) override
    {
        if (!node_.text_.isWritable())
            return; // the text would be put together, a gigabyte perhaps, for nobody
        node_.written_ = textView.text();
        node_.text_.set(node_.written_);
    }

private:
    Node& node_; // owns this
};

TextEditor::Node::Node(const NodeContext& context, const TextEditor& view)
    : PlatformViewNode(context)
    , textView_(std::make_shared<UITextView>())
    , delegate_(std::make_shared<Delegate>(*this))
    , text_(view.text)
    , written_(view.text.get())
{
    readSources(); // the font before the text, which is measured with it
    textView_->setText(written_);
    textView_->setBackgroundColor(UIColor::systemBackground());
    textView_->setDelegate(delegate_);
    setPlatformView(textView_);
}

void TextEditor::Node::update(const TextEditor& view)
{
    if (view.text == text_)
        return;
    text_ = view.text;
    refresh();
}

void TextEditor::Node::refresh()
{
    forgetSources();
    readSources();
    auto text = text_.get();
    if (text != written_) {
        written_ = text;
        textView_->setText(text);
    }
}

void TextEditor::Node::readSources()
{
    text_.registerReader(*this);
    auto font = environment<FontKey>().value_or(Font::body());
    textView_->setFont(font.resolved(environment<SizeCategoryKey>(), environment<TextScaleKey>()));
    textView_->setTextColor(environment<ForegroundColorKey>());
    textView_->setUserInteractionEnabled(environment<IsEnabledKey>());
    // Whoever finds the text view and tints it keeps that until the surroundings have another tint.
    if (auto tint = environment<TintKey>(); tint != tint_) {
        tint_ = tint;
        textView_->setTintColor(tint);
    }
}

CGSize TextEditor::Node::measure(const ProposedSize& proposal)
{
    return proposal.replacingUnspecified();
}

} // namespace platform
