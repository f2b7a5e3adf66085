// SPDX-License-Identifier: MIT
#include "platform/uikit/UITextField.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"
#include "platform/graphics/CGContext.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UITextView.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat cornerRadiusOfField = 7;
constexpr CGFloat sideInset = 7, verticalInset = 5;
constexpr CGFloat focusRingWidth = 2;

String withoutLineEnds(const String& text)
{
    if (text.utf8().find_first_of("\r\n") == std::string_view::npos)
        return text;
    auto bytes = text.toStdString();
    std::ranges::replace_if(bytes, [](char each) { return each == '\n' || each == '\r'; }, ' ');
    return String(bytes);
}

constexpr std::string_view dot = "\u2022"; // for a character of a secret

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xc0) == 0x80;
}

// Of well-formed UTF-8.
std::size_t characterCount(std::string_view text)
{
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char byte) { return !isContinuation(byte); }));
}

std::size_t offsetOf(std::string_view text, std::size_t character)
{
    std::size_t offset = 0;
    for (; offset < text.size(); ++offset) {
        if (!isContinuation(text[offset]) && character-- == 0)
            break;
    }
    return offset;
}

std::string dotsFor(std::string_view text)
{
    std::string dots;
    for (auto count = characterCount(text); count > 0; --count)
        dots.append(dot);
    return dots;
}

bool isUndo(const UIPress& press)
{
    auto isCommand =
        (press.modifiers.rawValue & (UIKeyModifierFlags::control | UIKeyModifierFlags::command)) != 0;
    return isCommand
        && (press.charactersIgnoringModifiers == "z" || press.charactersIgnoringModifiers == "y");
}

} // namespace

// The text view inside, in which one line scrolls sideways. Of a secret it holds only dots.
class UITextField::Editor : public UITextView {
public:
    explicit Editor(UITextField& field)
        : field_(field)
    {
        setBackgroundColor(std::nullopt);
        setTextContainerInset({});
        setLineFragmentPadding(0);
        setLineBreak(LineBreak::none);
        setShowsHorizontalScrollIndicator(false);
        setShowsVerticalScrollIndicator(false);
    }
    bool isSecure = false;
    std::string secret; // what the dots stand for

    void show(std::string_view text)
    {
        secret = isSecure ? std::string(text) : std::string();
        setText(String(isSecure ? std::string_view(dotsFor(text)) : text));
    }
    // The text has changed: the same for the secret.
    void followChange()
    {
        if (!isSecure)
            return;
        auto inserted = characterCount(input_);
        auto now = buffer().end().value / std::ssize(dot);
        auto before = static_cast<std::int64_t>(characterCount(secret));
        auto removed = before + static_cast<std::int64_t>(inserted) - now;
        auto caret = selectedRange().end.value / std::ssize(dot);
        auto start = caret - static_cast<std::int64_t>(inserted);
        precondition(start >= 0 && removed >= 0 && start + removed <= before,
                     "a secret lost step with its dots");
        auto from = offsetOf(secret, static_cast<std::size_t>(start));
        auto to = offsetOf(secret, static_cast<std::size_t>(start + removed));
        secret.replace(from, to - from, std::exchange(input_, {}));
    }
    void setMarkedText(std::string_view text) override
    {
        if (!isSecure)
            UITextView::setMarkedText(text);
    }
    bool pressesBegan(const UIPress& press) override
    {
        if (isSecure && isUndo(press))
            return true; // the dots alone would come back
        auto keys = press.modifiers.rawValue & ~UIKeyModifierFlags::keypad;
        if (press.key == UIKeyCode::returnKey && keys != 0)
            return UIView::pressesBegan(press);
        if (press.key == UIKeyCode::returnKey) {
            field_.returnPressed();
            return true;
        }
        // They mean something to who shows the field.
        if (press.key == UIKeyCode::tab || press.key == UIKeyCode::up || press.key == UIKeyCode::down)
            return UIView::pressesBegan(press);
        return UITextView::pressesBegan(press);
    }
    AccessibilityProperties accessibilityNow() const override
    {
        auto properties = UITextView::accessibilityNow();
        properties.role = AccessibilityRole::textField;
        properties.isMultiLine = false;
        auto& own = field_.accessibility();
        properties.label = own.label.empty() ? field_.placeholder() : own.label;
        properties.identifier = own.identifier;
        return properties;
    }

protected:
    String textForInput(const String& text) const override
    {
        auto line = withoutLineEnds(text);
        if (!isSecure)
            return line;
        input_ = line.toStdString();
        return String(dotsFor(input_));
    }

private:
    mutable std::string input_; // that is being put in, until the change is told
    UITextField& field_;        // the owner
};

class UITextField::EditorDelegate : public UITextViewDelegate {
public:
    explicit EditorDelegate(UITextField& field)
        : field_(field)
    {
    }
    void textViewDidBeginEditing(UITextView&) override { field_.editingChanged(true); }
    void textViewDidEndEditing(UITextView&) override { field_.editingChanged(false); }
    void textViewDidChange(UITextView&) override { field_.editorChanged(); }

private:
    UITextField& field_; // the owner
};

UITextField::UITextField()
{
    setUp();
}

UITextField::UITextField(CGRect frame)
    : UIControl(frame)
{
    setUp();
}

UITextField::~UITextField() = default;

void UITextField::setUp()
{
    assertOnMainThread();
    editorDelegate_ = std::make_shared<EditorDelegate>(*this);
    editor_ = std::make_shared<Editor>(*this);
    editor_->setDelegate(editorDelegate_);
    placeholder_ = std::make_shared<UILabel>();
    placeholder_->setTextColor(UIColor::placeholderText());
    placeholder_->setUserInteractionEnabled(false);
    placeholder_->accessibility().isHidden = true;
    addSubview(editor_);
    addSubview(placeholder_);
}

std::string UITextField::text() const
{
    return editor_->isSecure ? editor_->secret : editor_->text().toStdString();
}

void UITextField::setText(std::string_view text)
{
    editor_->show(withoutLineEnds(String(text)).utf8());
    editor_->setSelectedRange({editor_->buffer().end(), editor_->buffer().end()});
    placeholder_->setHidden(!editor_->buffer().isEmpty());
}

const std::string& UITextField::placeholder() const
{
    return placeholder_->text();
}

void UITextField::setPlaceholder(std::string text)
{
    placeholder_->setText(std::move(text));
}

void UITextField::setFont(const UIFont& font)
{
    hasOwnFont_ = true;
    editor_->setFont(font);
    placeholder_->setFont(font);
    setNeedsLayout();
    invalidateIntrinsicContentSize();
}

void UITextField::setTextColor(std::optional<UIColor> color)
{
    textColor_ = std::move(color);
    controlStateChanged();
}

void UITextField::setBorderStyle(UITextBorderStyle style)
{
    if (std::exchange(borderStyle_, style) == style)
        return;
    setNeedsLayout();
    setNeedsDisplay();
    invalidateIntrinsicContentSize();
}

void UITextField::setContentPadding(CGFloat padding)
{
    contentPadding_ = padding;
    setNeedsLayout();
}

bool UITextField::isSecureTextEntry() const
{
    return editor_->isSecure;
}

void UITextField::setSecureTextEntry(bool isSecure)
{
    assertOnMainThread();
    if (editor_->isSecure == isSecure)
        return;
    editor_->isSecure = isSecure;
    setText({});
}

void UITextField::followFont()
{
    if (hasOwnFont_)
        return;
    placeholder_->setPreferredFont(FontTextStyle::body);
    editor_->setFont(placeholder_->font());
    setNeedsLayout();
    invalidateIntrinsicContentSize();
}

bool UITextField::isEditing() const
{
    return editor_->isFirstResponder();
}

void UITextField::selectAll()
{
    editor_->selectAll();
}

// --- What happens in it --------------------------------------------------------------------------

void UITextField::editorChanged()
{
    editor_->followChange();
    placeholder_->setHidden(!editor_->buffer().isEmpty());
    sendActions({UIControlEvents::valueChanged});
}

void UITextField::editingChanged(bool isEditing)
{
    setNeedsDisplay();
    auto delegate = delegate_.lock();
    if (!delegate)
        return;
    if (isEditing)
        delegate->textFieldDidBeginEditing(*this);
    else
        delegate->textFieldDidEndEditing(*this);
}

void UITextField::returnPressed()
{
    auto keepAlive = sharedFrom(this);
    auto delegate = delegate_.lock();
    if (!delegate || delegate->textFieldShouldReturn(*this))
        sendActions({UIControlEvents::primaryActionTriggered});
}

bool UITextField::becomeFirstResponder()
{
    return editor_->becomeFirstResponder();
}

bool UITextField::resignFirstResponder()
{
    return editor_->resignFirstResponder();
}

// A click on the border is for the text; it is no press of Return.
bool UITextField::beginTracking(UITouch&)
{
    becomeFirstResponder();
    return false;
}

void UITextField::controlStateChanged()
{
    editor_->setEditable(isEnabled());
    editor_->setSelectable(isEnabled());
    editor_->setTextColor(isEnabled() ? textColor_.value_or(UIColor::label()) : UIColor::tertiaryLabel());
    setNeedsDisplay();
}

// --- Look ----------------------------------------------------------------------------------------

void UITextField::draw(CGContext& context, CGRect)
{
    if (borderStyle_ == UITextBorderStyle::none)
        return;
    auto area = bounds();
    auto radius = std::min(cornerRadiusOfField, area.height() / 2);
    context.fill(UIBezierPath::roundedRect(area, radius), UIColor::tertiarySystemFill());
    bool isHighContrast = traitCollection().accessibilityContrast == UIAccessibilityContrast::high;
    if (!isEditing() && !isHighContrast)
        return;
    auto width = isEditing() ? focusRingWidth : 1;
    auto ring = area.insetBy(width / 2, width / 2);
    if (!ring.isNull())
        context.stroke(UIBezierPath::roundedRect(ring, radius), isEditing() ? tintColor() : UIColor::label(),
                       {.lineWidth = width});
}

void UITextField::layoutSubviews()
{
    UIControl::layoutSubviews();
    auto area = bounds();
    auto height = std::min(area.height(), std::ceil(editor_->font().lineHeight()));
    auto side = contentPadding_ + (borderStyle_ == UITextBorderStyle::none ? 0 : sideInset);
    auto line = CGRect::make(side, std::round((area.height() - height) / 2),
                             std::max(area.width() - 2 * side, 0.0), height);
    editor_->setFrame(line);
    placeholder_->setFrame(line);
}

CGSize UITextField::intrinsicContentSize() const
{
    return {noIntrinsicMetric, std::ceil(editor_->font().lineHeight()) + 2 * verticalInset};
}

CGFloat UITextField::firstBaselineOffset() const
{
    return verticalInset + placeholder_->font().ascender();
}

void UITextField::didMoveToSuperview()
{
    UIControl::didMoveToSuperview();
    followFont();
}

void UITextField::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIControl::traitCollectionDidChange(previous);
    followFont();
}

AccessibilityProperties UITextField::accessibilityNow() const
{
    return {}; // what it holds stands for it
}

} // namespace platform
