// SPDX-License-Identifier: MIT
#include "platform/swiftui/NavigationView.h"

#include "platform/swiftui/ContentController.h"
#include "platform/swiftui/NavigationLink.h"
#include "platform/swiftui/ViewHost.h"
#include "platform/uikit/UINavigationController.h"
#include "platform/uikit/UISplitViewController.h"
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

void NavigationPath::show(const std::shared_ptr<UIViewController>& page, UIViewController& from)
{
    auto navigation = navigation_.lock();
    auto detail = detail_.lock();
    if (detail && detail->parent() && from.navigationController() != detail)
        detail->setViewControllers({page});
    else if (detail && detail->parent())
        detail->pushViewController(page, Animated::yes);
    else if (navigation)
        navigation->pushViewController(page, Animated::yes);
}

NavigationNode::NavigationNode(const NodeContext& context, AnyView content, std::optional<AnyView> beside)
    : ViewControllerNode(context)
    , surroundings_(std::make_shared<EnvironmentScope>(context.environment))
    , navigation_(std::make_shared<UINavigationController>())
{
    path_ = std::make_shared<NavigationPath>(navigation_);
    surroundings_->set<NavigationPathKey>(path_);
    root_ = std::make_shared<PageController>(std::move(content), surroundings_);
    navigation_->setViewControllers({root_});
    if (beside && environment<NavigationViewStyleKey>() != NavigationViewStyle::stack) {
        nothingChosen_ = std::make_shared<PageController>(*std::move(beside), surroundings_);
        detail_ = std::make_shared<UINavigationController>();
        path_->detail_ = detail_;
        split_ = std::make_shared<UISplitViewController>();
        split_->setViewController(navigation_, UISplitViewController::Column::primary);
        split_->onCollapseChange = [this] { followWidth(); };
    }
    setDirection();
    if (split_)
        adopt(split_, [] { });
    else
        adopt(navigation_, [] { });
}

NavigationNode::~NavigationNode()
{
    if (split_)
        split_->onCollapseChange = nullptr; // somebody may keep it
    release();
    navigation_->setViewControllers({}); // pages hold on to their surroundings
    if (detail_)
        detail_->setViewControllers({});
}

// The pages beside the content are those above it where there is room for one column only.
void NavigationNode::followWidth()
{
    auto take = [](UINavigationController& from, std::size_t first) {
        std::vector pages(from.viewControllers().begin() + static_cast<std::ptrdiff_t>(first),
                          from.viewControllers().end());
        auto rest = from.viewControllers();
        rest.resize(first);
        from.setViewControllers(std::move(rest));
        return pages;
    };
    constexpr auto secondary = UISplitViewController::Column::secondary;
    if (split_->isCollapsed()) {
        auto pages = take(*detail_, 0);
        std::erase(pages, nothingChosen_);
        split_->setViewController(nullptr, secondary);
        pages.insert(pages.begin(), navigation_->viewControllers().begin(),
                     navigation_->viewControllers().end());
        navigation_->setViewControllers(std::move(pages));
        return;
    }
    auto pages = take(*navigation_, std::min<std::size_t>(1, navigation_->viewControllers().size()));
    if (pages.empty())
        pages.push_back(nothingChosen_);
    detail_->setViewControllers(std::move(pages));
    split_->setViewController(detail_, secondary);
}

void NavigationNode::setContent(AnyView content)
{
    root_->setContent(std::move(content));
}

void NavigationNode::setBeside(AnyView beside)
{
    if (nothingChosen_)
        nothingChosen_->setContent(std::move(beside));
}

void NavigationNode::setDirection()
{
    auto attribute = environment<LayoutDirectionKey>() == LayoutDirection::rightToLeft
        ? UISemanticContentAttribute::forceRightToLeft
        : UISemanticContentAttribute::forceLeftToRight;
    navigation_->view()->setSemanticContentAttribute(attribute);
    if (!split_)
        return;
    detail_->view()->setSemanticContentAttribute(attribute);
    split_->view()->setSemanticContentAttribute(attribute);
}

void NavigationNode::refresh()
{
    forgetSources();
    setDirection();
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
    // Once, however often it is pressed.
    if (!path_ || (page_.lock() && page_.lock()->parent()))
        return;
    auto page = std::make_shared<PageController>(destination_(), context().environment);
    page_ = page;
    path_->show(page, host().controller());
}

} // namespace platform
