// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/PreferredColorSchemes.h"
#include "platform/swiftui/ProposedSize.h"
#include "platform/swiftui/ViewHost.h"
#include "platform/uikit/UIViewController.h"

#include <memory>

namespace platform {

// What hosting controllers of all root types share: the host, its view, and the surroundings handed to it.
class UIHostingControllerBase : public UIViewController {
public:
    ~UIHostingControllerBase() override;

    // The size that the root would take of `available`, in points.
    CGSize sizeThatFits(CGSize available);
    // How much work the tree has caused so far.
    const HostStatistics& statistics() { return host().statistics(); }
    // Brings what was changed on screen now instead of before the run loop sleeps: for who measures or takes pictures.
    void flush();

    void loadView() override;
    void viewDidLoad() override;
    void viewWillAppear(Animated animated) override;
    void viewDidDisappear(Animated animated) override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;

protected:
    UIHostingControllerBase();
    virtual std::unique_ptr<ViewNode> makeRootNode(const NodeContext& context) = 0;
    ViewHost& host() { return *host_; }

private:
    class HostingView;
    void writeEnvironment(const UITraitCollection& traits);
    void writeTint(const UIView& view);
    void applyColorScheme();

    std::shared_ptr<PreferredColorSchemes> colorSchemes_;
    std::weak_ptr<UIView> styled_; // what has been made light or dark for the content
    std::unique_ptr<ViewHost> host_;
};

} // namespace platform
