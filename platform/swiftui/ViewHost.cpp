// SPDX-License-Identifier: MIT
#include "platform/swiftui/ViewHost.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Logger.h"
#include "platform/foundation/Precondition.h"
#include "platform/swiftui/AppearanceNode.h"
#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/TransactionHosts.h"
#include "platform/swiftui/TransitionNode.h"
#include "platform/swiftui/ViewNode.h"
#include "platform/uikit/UIView.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// Changes that cause changes come to rest after a few rounds; what does not is a fault of the program.
constexpr int mostRounds = 100;

const Logger& logger()
{
    static const Logger logger("org.zelk.platform", "swiftui");
    return logger;
}

} // namespace

ViewHost::ViewHost(UIViewController& controller)
    : ViewContainer(*this)
    , controller_(controller)
{
    observer_ = RunLoop::main().addBeforeSleepObserver(BeforeSleepPhase::state, [this] { return flush(); });
    addTransactionHost(*this);
}

ViewHost::~ViewHost()
{
    removeTransactionHost(*this);
    isFlushing_ = true; // what nodes ask for on their way out is not done any more
    leaving_.clear();
    root_.reset();
    letGoOfHost();
    for (auto& action : std::exchange(afterFlush_, {}))
        action();
}

void ViewHost::mount(const std::function<std::unique_ptr<ViewNode>(const NodeContext&)>& makeRoot)
{
    assertOnMainThread();
    root_ = makeRoot(NodeContext{*this, nullptr, environment_, this});
    contentsDidChange();
    flush();
}

// --- Flush -----------------------------------------------------------------------------------------

bool ViewHost::IsBefore::operator()(const ViewNode* a, const ViewNode* b) const
{
    return std::pair(a->depth(), a->number()) < std::pair(b->depth(), b->number());
}

void ViewHost::requestFlush()
{
    if (!isFlushing_)
        RunLoop::main().requestTurn();
}

void ViewHost::addDirty(ViewNode& node)
{
    if (evaluating_ > 0)
        logger().error("state was changed while a body was evaluated; it is shown in the next update");
    auto& transaction = Transaction::current();
    if (!transaction.isEmpty())
        pending_ = transaction;
    dirty_.insert(&node);
    requestFlush();
}

void ViewHost::addDirty(ViewContainer& container)
{
    dirtyContainers_.push_back(&container);
    requestFlush();
}

void ViewHost::forget(ViewContainer& container)
{
    // What is on its way out in that view goes with it.
    auto gone = std::stable_partition(leaving_.begin(), leaving_.end(),
                                      [&](auto& node) { return &node->container() != &container; });
    std::vector<std::shared_ptr<ViewNode>> released(std::make_move_iterator(gone),
                                                    std::make_move_iterator(leaving_.end()));
    leaving_.erase(gone, leaving_.end());
    released.clear();
    std::erase(dirtyContainers_, &container);
}

void ViewHost::prepareForChange()
{
    // What was changed without an animation stands on screen before what is animated begins to move.
    if (dirty_.empty() || pending_ == Transaction::current() || evaluating_ > 0)
        return;
    if (flush())
        UIView::performWithoutAnimation([this] { layoutNow(); });
}

bool ViewHost::flush()
{
    if (isFlushing_ || isLayingOut_ || !hasWork())
        return false;                           // what layout changed comes in the next turn
    auto kept = controller_.shared_from_this(); // an action may let go of the last owner
    isFlushing_ = true;
    active_ = std::exchange(pending_, {});
    if (active_.isEmpty()) {
        bringUpToDate();
    } else {
        perform(active_, [this] {
            bringUpToDate();
            layoutNow();
        });
        active_ = {};
    }
    isFlushing_ = false;
    if (needsFullLayout_ || !layoutDirty_.empty() || !appearing_.empty()) {
        if (auto view = controller_.viewIfLoaded())
            view->setNeedsLayout();
    }
    for (auto& action : std::exchange(afterFlush_, {}))
        action();
    return true;
}

void ViewHost::bringUpToDate()
{
    for (int round = 0; hasWork() && round < mostRounds; ++round) {
        while (!dirty_.empty()) {
            auto* node = *dirty_.begin();
            dirty_.erase(dirty_.begin());
            node->isDirty_ = false;
            ++statistics_.updates;
            performInTransaction(*node, [node] { node->refresh(); });
        }
        syncContainers();
        for (auto& action : std::exchange(afterSync_, {}))
            action();
        if (dirty_.empty() && dirtyContainers_.empty() && afterSync_.empty())
            return;
    }
    if (hasWork())
        logger().error("changes of state keep causing changes; the rest waits for the next turn");
}

void ViewHost::syncContainers()
{
    if (!controller_.isViewLoaded())
        return;
    while (!dirtyContainers_.empty()) {
        auto* container = dirtyContainers_.front();
        dirtyContainers_.erase(dirtyContainers_.begin());
        container->syncSubviews();
    }
}

void ViewHost::performAfterFlush(std::function<void()> action)
{
    afterFlush_.push_back(std::move(action));
    requestFlush();
}

// --- Layout ----------------------------------------------------------------------------------------

void ViewHost::addLayoutDirty(ViewNode& node)
{
    layoutDirty_.insert(&node);
    if (isFlushing_ || isLayingOut_)
        return;
    if (auto view = controller_.viewIfLoaded())
        view->setNeedsLayout();
}

void ViewHost::settleBelow(int depth)
{
    while (!layoutDirty_.empty() && (*layoutDirty_.rbegin())->depth() > depth) {
        auto* node = *layoutDirty_.rbegin();
        layoutDirty_.erase(std::prev(layoutDirty_.end()));
        if (!node->isLayoutDirty_)
            continue; // it was placed meanwhile
        placeAbsorbed(*node);
    }
}

void ViewHost::placeAbsorbed(ViewNode& node)
{
    bool absorbed = false;
    performInTransaction(node, [&] { absorbed = node.absorbLayoutChange(); });
    if (absorbed)
        return;
    node.isLayoutDirty_ = false;
    node.needsPlacing_ = true;
    if (auto* parent = node.parent())
        parent->invalidateLayout();
    else
        needsFullLayout_ = true;
}

void ViewHost::layout(CGRect bounds, UIEdgeInsets safeArea)
{
    assertOnMainThread();
    if (bounds != bounds_ || safeArea != safeArea_)
        needsFullLayout_ = true;
    bounds_ = bounds;
    safeArea_ = safeArea;
    layoutNow();
    runAppearances();
}

void ViewHost::layoutNow()
{
    if (isLayingOut_ || !root_ || !controller_.isViewLoaded())
        return;
    isLayingOut_ = true;
    int round = 0;
    for (; round < mostRounds; ++round) {
        settleBelow(-1);
        if (std::exchange(needsFullLayout_, false)) {
            auto area = root_->ignoresSafeArea() ? bounds_ : bounds_.inset(safeArea_);
            if (area.isNull())
                area = CGRect{bounds_.origin, {}};
            auto proposal = ProposedSize::of(area.size);
            auto size = root_->sizeThatFits(proposal);
            // A root that is smaller or larger than the host stands in its middle, as on the platform.
            root_->place(CGRect::make(area.midX() - size.width / 2, area.midY() - size.height / 2, size.width,
                                      size.height),
                         proposal);
        }
        syncContainers();
        for (auto& action : std::exchange(afterSync_, {}))
            action();
        if (!needsFullLayout_ && layoutDirty_.empty())
            break;
    }
    if (round == mostRounds)
        logger().error("layout keeps changing what it lays out; the rest waits for the next turn");
    isLayingOut_ = false;
    changesOnce_.clear();
}

CGSize ViewHost::sizeThatFits(const ProposedSize& proposal)
{
    flush();
    settleBelow(-1);
    return root_ ? root_->sizeThatFits(proposal) : CGSize{};
}

// --- Coming and going --------------------------------------------------------------------------------

void ViewHost::setAppeared(bool appeared)
{
    if (std::exchange(hasAppeared_, appeared) == appeared)
        return;
    // An action may mount and unmount nodes; those that come now are told by themselves.
    for (auto* node : std::vector(appearanceNodes_)) {
        if (std::ranges::find(appearanceNodes_, node) == appearanceNodes_.end())
            continue;
        if (!appeared)
            node->hostDidDisappear();
        else if (std::ranges::find(appearing_, static_cast<ViewNode*>(node),
                                   &decltype(appearing_)::value_type::first)
                 == appearing_.end())
            node->hostWillAppear();
    }
    if (appeared && !appearing_.empty()) {
        if (auto view = controller_.viewIfLoaded())
            view->setNeedsLayout();
    }
}

void ViewHost::performAfterAppearing(ViewNode& node, std::function<void()> action)
{
    appearing_.emplace_back(&node, std::move(action));
}

void ViewHost::runAppearances()
{
    if (!hasAppeared_)
        return;
    // One by one: an action may unmount nodes whose own is still to come.
    while (!appearing_.empty()) {
        auto action = std::move(appearing_.front().second);
        appearing_.erase(appearing_.begin());
        action();
    }
}

void ViewHost::nodeUnmounted(ViewNode& node)
{
    ++statistics_.unmounted;
    forget(node);
}

void ViewHost::forget(ViewNode& node)
{
    if (node.isDirty_)
        dirty_.erase(&node);
    layoutDirty_.erase(&node);
    std::erase_if(appearing_, [&](auto& each) { return each.first == &node; });
    transactionChanges_.erase(&node);
    changesOnce_.erase(&node);
}

void ViewHost::retire(std::unique_ptr<ViewNode> node)
{
    auto* transition = static_cast<TransitionNode*>(node->transitionNode());
    auto* animation = UIView::currentAnimation();
    if (!transition || !animation || !hasAppeared_)
        return;
    std::shared_ptr<ViewNode> leaving = std::move(node);
    leaving->detach();
    leaving_.push_back(leaving);
    std::weak_ptr<UIViewController> controller =
        std::static_pointer_cast<UIViewController>(controller_.shared_from_this());
    transition->leave(*animation, [this, controller, weak = std::weak_ptr<ViewNode>(leaving)] {
        auto alive = controller.lock(); // the host lives as long as its controller
        if (alive)
            std::erase(leaving_, weak.lock());
    });
}

// --- Transactions ----------------------------------------------------------------------------------

void ViewHost::changeTransactionOnce(ViewNode& node, TransactionChange change)
{
    changesOnce_.insert_or_assign(&node, std::move(change));
}

void ViewHost::setTransactionChange(ViewNode& node, TransactionChange change)
{
    if (change)
        transactionChanges_.insert_or_assign(&node, std::move(change));
    else
        transactionChanges_.erase(&node);
}

void ViewHost::performInTransaction(const ViewNode& node, const std::function<void()>& action)
{
    std::vector<const TransactionChange*> changes;
    if (!transactionChanges_.empty() || !changesOnce_.empty()) {
        for (auto* each = &node; each; each = each->parent()) {
            for (auto* map : {&changesOnce_, &transactionChanges_}) {
                if (auto found = map->find(each); found != map->end())
                    changes.push_back(&found->second);
            }
        }
    }
    auto transaction = active_;
    for (auto change = changes.rbegin(); change != changes.rend(); ++change)
        (**change)(transaction);
    if (transaction == active_ && changes.empty())
        action();
    else
        perform(transaction, action);
}

void ViewHost::perform(const Transaction& transaction, const std::function<void()>& action)
{
    bool animates = transaction.animation && !transaction.disablesAnimations;
    if (animates && !environment_->value<ReduceMotionKey>(nullptr))
        UIView::animate(transaction.animation->timing(), action);
    else
        UIView::performWithoutAnimation(action);
}

UIView& ViewHost::containerView() const
{
    return *controller_.view();
}

void ViewHost::appendContents(std::vector<std::shared_ptr<UIView>>& views) const
{
    if (root_)
        root_->appendPlatformViews(views);
}

} // namespace platform
