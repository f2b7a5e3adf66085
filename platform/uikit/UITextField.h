// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIControl.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

class UILabel;
class UITextField;
class UITextView;

// Told of what happens in a text field. Main thread only.
class UITextFieldDelegate {
public:
    virtual ~UITextFieldDelegate() = default;
    virtual void textFieldDidBeginEditing(UITextField&) { }
    virtual void textFieldDidEndEditing(UITextField&) { }
    // Return was pressed. False keeps the field from sending primaryActionTriggered.
    virtual bool textFieldShouldReturn(UITextField&) { return true; }
};

enum class UITextBorderStyle { none, roundedRect };

// A field for one line of text: caret, selection, clipboard, undo, input methods and assistive technology are those of
// the text view that it holds. Line ends that are put in become spaces. Sends valueChanged for each change that the user
// makes, and primaryActionTriggered when Return is pressed. Main thread only.
class UITextField : public UIControl {
public:
    UITextField();
    explicit UITextField(CGRect frame);
    ~UITextField() override;

    std::string text() const;
    // Tells nobody. The caret goes to the end.
    void setText(std::string_view text); // well-formed UTF-8
    const std::string& placeholder() const;
    void
    setPlaceholder(std::string text); // shown while the field is empty, and its name when it has no label
    void setFont(const UIFont& font); // default: body, in the text size of the surroundings
    void setTextColor(std::optional<UIColor> color);               // null: label
    UITextBorderStyle borderStyle() const { return borderStyle_; } // default roundedRect
    void setBorderStyle(UITextBorderStyle style);
    // Dots stand for the text, which leaves the field by text() alone: what is copied, spoken or undone is none of it, and
    // nothing is composed in it. Empties the field when it changes. Default no.
    bool isSecureTextEntry() const;
    void setSecureTextEntry(bool isSecure);
    // Room on both sides of the text for what stands there, besides the border's own.
    void setContentPadding(CGFloat padding);
    bool isEditing() const;
    void selectAll();
    void setDelegate(std::weak_ptr<UITextFieldDelegate> delegate) { delegate_ = std::move(delegate); }

    void draw(CGContext& context, CGRect dirty) override;
    void layoutSubviews() override;
    CGSize intrinsicContentSize() const override;
    CGFloat firstBaselineOffset() const override;
    bool canBecomeFirstResponder() const override { return false; } // what it holds can
    bool becomeFirstResponder() override;
    bool resignFirstResponder() override;
    void didMoveToSuperview() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    AccessibilityProperties accessibilityNow() const override;

    bool accessibilityActivate() override { return becomeFirstResponder(); }

protected:
    void controlStateChanged() override;
    bool beginTracking(UITouch& touch) override; // beside the text

private:
    class Editor;
    class EditorDelegate;
    void setUp();
    void followFont();
    void editorChanged();
    void editingChanged(bool isEditing);
    void returnPressed();

    std::shared_ptr<Editor> editor_;
    std::shared_ptr<EditorDelegate> editorDelegate_;
    std::shared_ptr<UILabel> placeholder_;
    std::weak_ptr<UITextFieldDelegate> delegate_;
    std::optional<UIColor> textColor_;
    UITextBorderStyle borderStyle_ = UITextBorderStyle::roundedRect;
    CGFloat contentPadding_ = 0;
    bool hasOwnFont_ = false;
};

} // namespace platform
