// SPDX-License-Identifier: MIT
#include "platform/swiftui/NavigationView.h"

#include "platform/swiftui/ContentController.h"
#include "platform/swiftui/NavigationLink.h"
#include "platform/swiftui/ViewHost.h"
#include "platform/uikit/UINavigationController.h"
#include "platform/uikit/UIView.h"

#include <utility>

namespace platform {

namespace {

// A page of a navigation view: in front of the others while it slides, so it has a ground.
class PageController final : public ContentController {
public:
    using ContentController::ContentController;
    void viewDidLoad() override
    {
        ContentController::viewDidLoad();
        view()->setBackgroundColor(UIColor::systemBackground());
    }
    void setTitle(std::string title) override
    {
        ContentController::setTitle(std::move(title));
        if (auto navigation = navigationController())
            navigation->updateNavigationBar();
    }
};

} // namespace

NavigationNode::NavigationNode(const NodeContext& context, AnyView content)
    : ViewControllerNode(context)
    , surroundings_(std::make_shared<EnvironmentScope>(context.environment))
    , navigation_(std::make_shared<UINavigationController>())
{
    surroundings_->set<NavigationPathKey>(std::make_shared<NavigationPath>(navigation_));
    root_ = std::make_shared<PageController>(std::move(content), surroundings_);
    navigation_->setViewControllers({root_});
    auto isMirrored = environment<LayoutDirectionKey>() == LayoutDirection::rightToLeft;
    navigation_->view()->setSemanticContentAttribute(isMirrored
                                                         ? UISemanticContentAttribute::forceRightToLeft
                                                         : UISemanticContentAttribute::forceLeftToRight);
    adopt(navigation_, [] { });
}

NavigationNode::~NavigationNode()
{
    release();
    navigation_->setViewControllers({}); // pages hold on to their surroundings
}

void NavigationNode::setContent(AnyView content)
{
    root_->setContent(std::move(content));
}

void NavigationNode::refresh()
{
    forgetSources();
    auto isMirrored = environment<LayoutDirectionKey>() == LayoutDirection::rightToLeft;
    navigation_->view()->setSemanticContentAttribute(isMirrored
                                                         ? UISemanticContentAttribute::forceRightToLeft
                                                         : UISemanticContentAttribute::forceLeftToRight);
}

NavigationTitleModifier::Node::Node(const NodeContext& context, const NavigationTitleModifier& modifier)
    : ModifierNode(context)
{
    updateModifier(modifier);
}

void NavigationTitleModifier::Node::updateModifier(const NavigationTitleModifier& modifier)
{
    host().controller().setTitle(modifier.title);
}

namespace {

// A link in a row of a list looks as the row does.
NodeContext inRow(const NodeContext& context)
{
    auto row = context.environment->value<ListRowKey>(nullptr);
    if (!row)
        return context;
    row->leadsOn = true;
    auto inner = context;
    inner.environment = std::make_shared<EnvironmentScope>(context.environment);
    inner.environment->set<ForegroundColorKey>(
        context.environment->value<ForegroundColorKey>(nullptr).value_or(UIColor::label()));
    return inner;
}

} // namespace

NavigationLinkNode::NavigationLinkNode(const NodeContext& context, std::function<AnyView()> destination)
    : ButtonNode(inRow(context), [this] { open(); })
    , path_(context.environment->value<NavigationPathKey>(nullptr))
    , destination_(std::move(destination))
{
    platformView()->accessibility().role = AccessibilityRole::link;
}

void NavigationLinkNode::setDestination(std::function<AnyView()> destination)
{
    destination_ = std::move(destination);
    if (auto page = page_.lock())
        page->setContent(destination_());
}

void NavigationLinkNode::open()
{
    auto navigation = path_ ? path_->controller() : nullptr;
    // Once, however often it is pressed.
    if (!navigation || (page_.lock() && page_.lock()->parent() == navigation))
        return;
    auto page = std::make_shared<PageController>(destination_(), context().environment);
    page_ = page;
    navigation->pushViewController(page, Animated::yes);
}

} // namespace platform
