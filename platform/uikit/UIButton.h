// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIImage.h"
#include "platform/uikit/UIControl.h"

#include <memory>
#include <string>

namespace platform {

class UIImageView;
class UILabel;

enum class UIButtonStyle {
    plain,    // the tint colour on nothing
    bordered, // the tint colour on a grey ground
    filled,   // white on the tint colour
};

// A button with a title, a picture before it (where reading begins), or both. Space and Return press it while it has
// the keyboard. Main thread only.
class UIButton : public UIControl {
public:
    explicit UIButton(UIButtonStyle style = UIButtonStyle::plain);

    const std::string& title() const;
    void setTitle(std::string title);
    const UIImage& image() const;
    void setImage(UIImage image);
    UIButtonStyle style() const { return style_; }
    void setStyle(UIButtonStyle style);
    void setFont(UIFont font); // default: body, in the text size of the surroundings
    // Around title and picture; the default depends on the style.
    UIEdgeInsets contentInsets() const { return contentInsets_; }
    void setContentInsets(UIEdgeInsets insets);
    const std::shared_ptr<UILabel>& titleLabel() const { return label_; }
    const std::shared_ptr<UIImageView>& imageView() const { return imageView_; }

    void draw(CGContext& context, CGRect dirty) override;
    void layoutSubviews() override;
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(CGSize available) const override;
    CGFloat firstBaselineOffset() const override;
    CGFloat lastBaselineOffset() const override;
    void didMoveToSuperview() override;
    void tintColorDidChange() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    std::optional<Cursor> cursorAt(CGPoint point) const override;
    AccessibilityProperties accessibilityNow() const override;

protected:
    void controlStateChanged() override;

private:
    void contentChanged();
    void updateColors();
    CGSize contentSize() const;

    UIButtonStyle style_;
    UIEdgeInsets contentInsets_;
    bool hasOwnInsets_ = false;
    std::shared_ptr<UILabel> label_;
    std::shared_ptr<UIImageView> imageView_;
};

} // namespace platform
