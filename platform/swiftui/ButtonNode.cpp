// SPDX-License-Identifier: MIT
#include "platform/swiftui/ButtonNode.h"

#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/swiftui/EnvironmentValues.h"
#include "platform/uikit/UIControl.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat pressedAlpha = 0.4;
constexpr CGFloat focusRingWidth = 2;
constexpr CGFloat focusRingRadius = 4;

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

// The control: the label is no target of its own, and dims while it is pressed.
class ButtonNode::Control final : public UIControl {
public:
    std::function<void()> action;

    std::shared_ptr<UIView> hitTest(CGPoint point) override
    {
        auto hit = UIControl::hitTest(point);
        return hit ? std::static_pointer_cast<UIView>(weak_from_this().lock()) : nullptr;
    }
    AccessibilityProperties accessibilityNow() const override
    {
        auto properties = UIControl::accessibilityNow();
        if (properties.role == AccessibilityRole::none)
            properties.role = AccessibilityRole::button;
        if (properties.label.empty())
            appendTexts(*this, properties.label);
        return properties;
    }
    void draw(CGContext& context, CGRect) override
    {
        if (!isFirstResponder())
            return;
        auto ring = bounds().insetBy(focusRingWidth / 2, focusRingWidth / 2);
        if (!ring.isNull())
            context.stroke(UIBezierPath::roundedRect(ring, focusRingRadius), tintColor(),
                           {.lineWidth = focusRingWidth});
    }

protected:
    void controlStateChanged() override
    {
        UIControl::controlStateChanged();
        setAlpha(isHighlighted() ? pressedAlpha : 1);
    }
};

ButtonNode::ButtonNode(const NodeContext& context, std::function<void()> action)
    : ContentViewNode(context)
    , control_(std::make_shared<Control>())
    , labelEnvironment_(std::make_shared<EnvironmentScope>(context.environment))
{
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
}

UIView& ButtonNode::containerView() const
{
    return *control_;
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
    control_->setEnabled(isEnabled);
    control_->setTintColor(tint);
    auto color = environment<ForegroundColorKey>().value_or(tint.value_or(UIColor::systemBlue()));
    labelEnvironment_->set<ForegroundColorKey>(isEnabled ? color : UIColor::tertiaryLabel());
}

CGSize ButtonNode::measure(const ProposedSize& proposal)
{
    return content().sizeThatFits(proposal);
}

void ButtonNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    ContentViewNode::arrange(rect, proposal);
    content().place({{}, rect.size}, proposal);
}

CGFloat ButtonNode::guide(VerticalAlignment alignment, CGSize size)
{
    return content().guide(alignment, size);
}

} // namespace platform
