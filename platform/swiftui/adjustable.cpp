// SPDX-License-Identifier: MIT
#include "platform/swiftui/adjustable.h"

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/NumericKeys.h"

#include <algorithm>
#include <cmath>

namespace platform {

class AdjustableModifier::Node::Group : public FocusGroup {
public:
    bool isRightToLeft = false;

    void setOptions(const AdjustableOptions& options)
    {
        auto before = accessibilityNow();
        options_ = options;
        options_.in = options.in.proper();
        options_.value = options_.in.clamped(options.value);
        auto after = accessibilityNow();
        if (after.range != before.range || after.value != before.value)
            notifyAccessibility(*this, AccessibilityEvent::valueChanged);
    }
    bool pressesBegan(const UIPress& press) override
    {
        NumericKeys keys{.range = options_.in,
                         .arrowStep = step(),
                         .pageStep = 4 * step(),
                         .isRightToLeft = isRightToLeft};
        auto wish = isFirstResponder() ? keys.valueAfter(press, options_.value) : std::nullopt;
        if (!wish)
            return FocusGroup::pressesBegan(press);
        change(*wish);
        return true;
    }
    AccessibilityProperties accessibilityNow() const override
    {
        auto properties = FocusGroup::accessibilityNow();
        properties.role = AccessibilityRole::slider;
        properties.isEnabled = isFocusable;
        if (properties.label.empty())
            properties.label = options_.label;
        if (properties.value.empty())
            properties.value = options_.spokenValue;
        properties.range = AccessibilityRange{options_.in.lower, options_.in.upper, options_.value, step()};
        return properties;
    }
    bool accessibilitySetValue(double value) override { return isFocusable && change(value); }
    bool accessibilityAdjust(int steps) override
    {
        return isFocusable && change(options_.value + steps * step());
    }

private:
    double step() const
    {
        return options_.step > 0 && std::isfinite(options_.step) ? options_.step
                                                                 : options_.in.halfSpan() / 10;
    }
    bool change(double value)
    {
        auto tell = options_.onChange; // it may remove this
        auto wish = options_.in.clamped(value);
        if (tell && wish != options_.value)
            tell(wish);
        return true;
    }

    AdjustableOptions options_;
};

AdjustableModifier::Node::Node(const NodeContext& context, const AdjustableModifier& modifier)
    : Node(context, modifier, std::make_shared<Group>())
{
}

AdjustableModifier::Node::Node(const NodeContext& context, const AdjustableModifier& modifier,
                               std::shared_ptr<Group> group)
    : FocusGroupNode(context, group)
    , adjusted_(std::move(group))
{
    adjusted_->setOptions(modifier.options);
    refresh();
}

void AdjustableModifier::Node::updateModifier(const AdjustableModifier& modifier)
{
    adjusted_->setOptions(modifier.options);
}

void AdjustableModifier::Node::refresh()
{
    forgetSources();
    adjusted_->isFocusable = environment<IsEnabledKey>();
    adjusted_->isRightToLeft = environment<LayoutDirectionKey>() == LayoutDirection::rightToLeft;
    if (!adjusted_->isFocusable && adjusted_->isFirstResponder())
        adjusted_->resignFirstResponder();
}

} // namespace platform
