// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ContentViewNode.h"

#include <functional>
#include <memory>

namespace platform {

// The node of buttons, without the types of their labels: a control that the label stands in.
class ButtonNode : public ContentViewNode {
public:
    ButtonNode(const NodeContext& context, std::function<void()> action);
    ~ButtonNode() override;
    void refresh() override;
    UIView& containerView() const override;
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

    std::shared_ptr<Control> control_;
    std::shared_ptr<EnvironmentScope> labelEnvironment_;
};

} // namespace platform
