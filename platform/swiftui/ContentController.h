// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/AnyView.h"
#include "platform/swiftui/EnvironmentScope.h"
#include "platform/swiftui/UIHostingControllerBase.h"

#include <functional>
#include <memory>

namespace platform {

// Ends the presentation that a view stands in, or goes back from the page that it is. Does nothing elsewhere. A value;
// copies speak of the same place. Main thread only.
class DismissAction {
public:
    DismissAction() = default;
    explicit DismissAction(std::weak_ptr<UIViewController> controller)
        : controller_(std::move(controller))
    {
    }
    void operator()() const;
    friend bool operator==(const DismissAction& a, const DismissAction& b)
    {
        return !a.controller_.owner_before(b.controller_) && !b.controller_.owner_before(a.controller_);
    }

private:
    std::weak_ptr<UIViewController> controller_;
};

// `Environment<DismissKey> dismiss` ... `(*dismiss)()`
struct DismissKey {
    using Value = DismissAction;
    static Value defaultValue() { return {}; }
};

// Shows content that belongs to a place in another host's tree: what a sheet holds, a page that was pushed, a tab. It has
// the environment of that place and follows it, as it follows state that is kept there. Main thread only.
class ContentController : public UIHostingControllerBase {
public:
    // `surroundings`: the environment of the place; null for none.
    ContentController(AnyView content, std::shared_ptr<EnvironmentScope> surroundings);
    ~ContentController() override;

    // A new description of the same place: state stays.
    void setContent(AnyView content);
    // Written before the view is loaded; what the content sees besides what its surroundings say.
    EnvironmentScope& contentEnvironment() { return *scope_; }

    void viewDidLoad() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;

protected:
    std::unique_ptr<ViewNode> makeRootNode(const NodeContext& context) override;

private:
    void writeTraits();

    AnyView content_;
    std::shared_ptr<EnvironmentScope> scope_;
};

} // namespace platform
