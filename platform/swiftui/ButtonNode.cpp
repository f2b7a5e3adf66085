// SPDX-License-Identifier: MIT
#include "platform/swiftui/ButtonNode.h"

#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/keyboardShortcut.h"
#include "platform/uikit/ControlLook.h"
#include "platform/uikit/UIControl.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat pressedAlpha = 0.4;
constexpr CGFloat cornerRadiusOfGround = 8, cornerRadiusOfLabel = 4;
constexpr UIEdgeInsets insetsOfGround{6, 12, 6, 12};
constexpr double pressedShade = 0.16, hoverShade = 0.06; // of the label colour, or of black, over the ground

bool hasGround(ButtonStyle style)
{
    return style == ButtonStyle::bordered || style == ButtonStyle::borderedProminent;
}

// What is written in the label, in the order of the views.
void appendTexts(const UIView& view, std::string& text)
{
    for (auto& subview : view.subviews()) {
        auto properties = subview->accessibilityNow();
        if (properties.isHidden)
            continue;
        if (!properties.label.empty()) {
            if (!text.empty())
                text += ' ';
            text += properties.label;
        }
        appendTexts(*subview, text);
    }
}

} // namespace

// The control: the label is no target of its own, and dims while it is pressed; a ground darkens.
class ButtonNode::Control final : public UIControl {
public:
    std::function<void()> action;
    std::optional<KeyboardShortcut> shortcut;
    std::optional<bool> toggledState;
    std::shared_ptr<FocusRing> ring;

    ButtonStyle style() const { return style_; }
    void setStyle(ButtonStyle style)
    {
        style_ = style;
        showState();
    }
    std::shared_ptr<UIView> hitTest(CGPoint point) override
    {
        auto hit = UIControl::hitTest(point);
        return hit ? std::static_pointer_cast<UIView>(weak_from_this().lock()) : nullptr;
    }
    bool performKeyEquivalent(const UIPress& press) override
    {
        return shortcut && shortcut->matches(press) && performPrimaryAction();
    }
    void pointerEntered() override { setHovered(true); }
    void pointerExited() override { setHovered(false); }
    AccessibilityProperties accessibilityNow() const override
    {
        auto properties = UIControl::accessibilityNow();
        if (properties.role == AccessibilityRole::none)
            properties.role = toggledState ? AccessibilityRole::toggle : AccessibilityRole::button;
        properties.isSelected |= toggledState.value_or(false);
        if (properties.label.empty())
            appendTexts(*this, properties.label);
        return properties;
    }
    void draw(CGContext& context, CGRect) override
    {
        if (!hasGround(style_))
            return;
        bool isTinted = style_ == ButtonStyle::borderedProminent && isEnabled();
        auto shape = UIBezierPath::roundedRect(bounds(), cornerRadius());
        context.fill(shape, isTinted ? tintColor() : UIColor::secondarySystemFill());
        auto shade = isHighlighted() ? pressedShade : isHovered_ && isEnabled() ? hoverShade : 0;
        if (shade > 0)
            context.fill(shape, (isTinted ? UIColor::black() : UIColor::label()).withAlphaComponent(shade));
        if (isHighContrast(*this))
            context.stroke(UIBezierPath::roundedRect(bounds().insetBy(0.5, 0.5), cornerRadius()),
                           UIColor::label());
    }
    void layoutSubviews() override
    {
        UIControl::layoutSubviews();
        ring->showAround(bounds(), cornerRadius());
    }
    void tintColorDidChange() override
    {
        UIControl::tintColorDidChange();
        setNeedsDisplay();
    }

protected:
    void controlStateChanged() override
    {
        UIControl::controlStateChanged();
        showState();
    }

private:
    CGFloat cornerRadius() const
    {
        return hasGround(style_) ? std::min(cornerRadiusOfGround, bounds().height() / 2)
                                 : cornerRadiusOfLabel;
    }
    void showState()
    {
        setAlpha(isHighlighted() && !hasGround(style_) ? pressedAlpha : 1);
        ring->setHidden(!isFirstResponder());
        setNeedsDisplay();
    }
    void setHovered(bool isHovered)
    {
        isHovered_ = isHovered;
        setNeedsDisplay();
    }

    ButtonStyle style_ = ButtonStyle::borderless;
    bool isHovered_ = false;
};

ButtonNode::ButtonNode(const NodeContext& context, std::function<void()> action)
    : ContentViewNode(context)
    , control_(std::make_shared<Control>())
    , ring_(std::make_shared<FocusRing>())
    , labelEnvironment_(std::make_shared<EnvironmentScope>(context.environment))
{
    control_->ring = ring_;
    control_->action = std::move(action);
    control_->addAction(
        [](UIControl& control) {
            // It may replace itself, or the whole view.
            if (auto run = static_cast<Control&>(control).action)
                run();
        },
        {UIControlEvents::primaryActionTriggered});
    readEnvironment();
    setPlatformView(control_);
}

ButtonNode::~ButtonNode()
{
    control_->action = nullptr; // somebody may keep the view
    control_->shortcut.reset();
}

UIView& ButtonNode::containerView() const
{
    return *control_;
}

void ButtonNode::appendContents(std::vector<std::shared_ptr<UIView>>& views) const
{
    ContentViewNode::appendContents(views);
    views.push_back(ring_);
}

NodeContext ButtonNode::contentContext()
{
    auto inner = ContentViewNode::contentContext();
    inner.environment = labelEnvironment_;
    return inner;
}

void ButtonNode::setAction(std::function<void()> action)
{
    control_->action = std::move(action);
}

void ButtonNode::refresh()
{
    forgetSources();
    readEnvironment();
}

void ButtonNode::readEnvironment()
{
    auto isEnabled = environment<IsEnabledKey>();
    auto tint = environment<TintKey>();
    auto style = environment<ButtonStyleKey>();
    control_->setEnabled(isEnabled);
    control_->setTintColor(tint);
    control_->setStyle(style == ButtonStyle::automatic ? ButtonStyle::borderless : style);
    control_->shortcut = environment<KeyboardShortcutKey>();
    control_->toggledState = environment<ToggledStateKey>();

    auto color = environment<ForegroundColorKey>();
    if (style == ButtonStyle::borderedProminent)
        color = legibleColor(tint.value_or(UIColor::systemBlue()));
    else if (style != ButtonStyle::plain && !color)
        color = tint.value_or(UIColor::systemBlue());
    labelEnvironment_->set<ForegroundColorKey>(isEnabled ? color : UIColor::tertiaryLabel());

    auto insets = hasGround(style) ? insetsOfGround : UIEdgeInsets{};
    if (std::exchange(insets_, insets) != insets)
        invalidateLayout();
}

ProposedSize ButtonNode::offerToLabel(const ProposedSize& proposal) const
{
    auto less = [](std::optional<CGFloat> length, CGFloat by) {
        return length ? std::optional(usableLength(*length - by)) : std::nullopt;
    };
    return {less(proposal.width, insets_.left + insets_.right),
            less(proposal.height, insets_.top + insets_.bottom)};
}

CGSize ButtonNode::measure(const ProposedSize& proposal)
{
    auto size = content().sizeThatFits(offerToLabel(proposal));
    return {size.width + insets_.left + insets_.right, size.height + insets_.top + insets_.bottom};
}

void ButtonNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    ContentViewNode::arrange(rect, proposal);
    auto label =
        CGRect::make(insets_.left, insets_.top, usableLength(rect.width() - insets_.left - insets_.right),
                     usableLength(rect.height() - insets_.top - insets_.bottom));
    content().place(label, offerToLabel(proposal));
}

CGFloat ButtonNode::guide(VerticalAlignment alignment, CGSize size)
{
    if (alignment < VerticalAlignment::firstTextBaseline)
        return ContentViewNode::guide(alignment, size);
    CGSize label{usableLength(size.width - insets_.left - insets_.right),
                 usableLength(size.height - insets_.top - insets_.bottom)};
    return insets_.top + content().guide(alignment, label);
}

} // namespace platform
