// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ContentViewNode.h"
#include "platform/swiftui/controlStyles.h"

#include <functional>
#include <memory>

namespace platform {

class FocusRing;

// The node of buttons, without the types of their labels: a control that the label stands in, in the button style of the
// surroundings.
class ButtonNode : public ContentViewNode {
public:
    ButtonNode(const NodeContext& context, std::function<void()> action);
    ~ButtonNode() override;
    void refresh() override;
    UIView& containerView() const override;
    void appendContents(std::vector<std::shared_ptr<UIView>>& views) const override;
    bool isRigid(Axis axis) const override { return content().isRigid(axis); }
    double layoutPriority() const override { return content().layoutPriority(); }
    CGFloat guide(VerticalAlignment alignment, CGSize size) override;

protected:
    NodeContext contentContext() override;
    void setAction(std::function<void()> action);
    CGSize measure(const ProposedSize& proposal) override;
    void arrange(CGRect rect, const ProposedSize& proposal) override;

private:
    class Control;
    void readEnvironment();
    ProposedSize offerToLabel(const ProposedSize& proposal) const;

    std::shared_ptr<Control> control_;
    std::shared_ptr<FocusRing> ring_;
    std::shared_ptr<EnvironmentScope> labelEnvironment_;
    UIEdgeInsets insets_; // around the label
};

} // namespace platform
