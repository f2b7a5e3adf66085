// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Token.h"
#include "platform/graphics/Geometry.h"
#include "platform/swiftui/EnvironmentScope.h"
#include "platform/swiftui/Forward.h"
#include "platform/swiftui/Transaction.h"
#include "platform/swiftui/ViewContainer.h"
#include "platform/uikit/UIViewController.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

namespace platform {

// How much work a host has done since it was made; tests and tools take differences.
struct HostStatistics {
    std::int64_t bodies = 0;       // evaluated
    std::int64_t updates = 0;      // nodes that were told of a changed description or value
    std::int64_t measurements = 0; // sizes computed, not remembered
    std::int64_t placements = 0;   // nodes that were given a place anew
    std::int64_t mounted = 0;
    std::int64_t unmounted = 0;
};

// Brings one declarative tree on screen: keeps what is dirty, brings it up to date once a turn of the run loop (bodies in
// tree order, then the order of subviews, then representables, then layout), and knows the controller that hosts it.
// Owned by its hosting controller. Main thread only.
class ViewHost : public ViewContainer {
public:
    // `controller` outlives this.
    explicit ViewHost(UIViewController& controller);
    ~ViewHost() override;

    UIViewController& controller() const { return controller_; }
    EnvironmentScope& environment() { return *environment_; }
    const HostStatistics& statistics() const { return statistics_; }

    // Makes the root node and everything below; the platform views stand in the controller's view afterwards.
    void mount(const std::function<std::unique_ptr<ViewNode>(const NodeContext&)>& makeRoot);
    ViewNode* root() const { return root_.get(); }

    // Brings everything up to date but layout, which is flagged; with an animated transaction layout too. True when there
    // was anything to do. Nothing happens inside of
    // another flush or of a layout.
    bool flush();
    // Places what changed, or everything when `bounds` or the safe area did; then tells who appeared.
    void layout(CGRect bounds, UIEdgeInsets safeArea);
    CGSize sizeThatFits(const ProposedSize& proposal);
    // The window shows the host's view, or no longer does.
    void setAppeared(bool appeared);
    bool hasAppeared() const { return hasAppeared_; }

    // --- For nodes ----------------------------------------------------------------------------------
    void addDirty(ViewNode& node);
    void addDirty(ViewContainer& container);
    void forget(ViewContainer& container);
    void forget(ViewNode& node); // which needs no update, layout or word of appearing any more
    void addLayoutDirty(ViewNode& node);
    void prepareForChange();
    // Runs once the subviews are in order, in the order of the calls.
    void performAfterSync(std::function<void()> action) { afterSync_.push_back(std::move(action)); }
    // Runs after the next layout of a host that is on screen.
    void performAfterAppearing(ViewNode& node, std::function<void()> action);
    void addAppearanceNode(AppearanceNode& node) { appearanceNodes_.push_back(&node); }
    void removeAppearanceNode(AppearanceNode& node) { std::erase(appearanceNodes_, &node); }
    // Runs at the end of the present flush.
    void performAfterFlush(std::function<void()> action);
    // Brings sizes up to date of nodes that lie deeper than `depth`: for views that describe their content during layout.
    void settleBelow(int depth);
    // Takes a node that left the tree and lets it go: at once, or when its transition is over.
    void retire(std::unique_ptr<ViewNode> node);
    // Changes of the transaction for `node` and what is below, the outermost first. One that is set for the present update
    // is forgotten after the next layout; the other holds until it is replaced by null.
    using TransactionChange = std::function<void(Transaction&)>;
    void changeTransactionOnce(ViewNode& node, TransactionChange change);
    void setTransactionChange(ViewNode& node, TransactionChange change);
    // Runs `action` with the present update's transaction as it holds at `node`.
    void performInTransaction(const ViewNode& node, const std::function<void()>& action);
    // That of the present update; empty outside of one.
    const Transaction& transaction() const { return active_; }
    bool isEvaluating() const { return evaluating_ > 0; }

    void nodeMounted() { ++statistics_.mounted; }
    void nodeUnmounted(ViewNode& node);
    void nodeMeasured() { ++statistics_.measurements; }
    void nodePlaced() { ++statistics_.placements; }
    // Around each evaluation of a body.
    struct Evaluation {
        explicit Evaluation(ViewHost& host)
            : host_(host)
        {
            ++host_.statistics_.bodies;
            ++host_.evaluating_;
        }
        ~Evaluation() { --host_.evaluating_; }
        Evaluation(const Evaluation&) = delete;
        Evaluation& operator=(const Evaluation&) = delete;

    private:
        ViewHost& host_;
    };

    UIView& containerView() const override;
    void appendContents(std::vector<std::shared_ptr<UIView>>& views) const override;

private:
    // Parents before children, and siblings in the order in which they came.
    struct IsBefore {
        bool operator()(const ViewNode* a, const ViewNode* b) const;
    };
    using ByDepth = std::set<ViewNode*, IsBefore>;
    bool hasWork() const
    {
        return !dirty_.empty() || !dirtyContainers_.empty() || !afterSync_.empty() || !afterFlush_.empty();
    }
    void perform(const Transaction& transaction, const std::function<void()>& action);
    void bringUpToDate();
    void syncContainers();
    void placeAbsorbed(ViewNode& node);
    void layoutNow();
    void runAppearances();
    void requestFlush();

    UIViewController& controller_;
    std::shared_ptr<EnvironmentScope> environment_ = std::make_shared<EnvironmentScope>();
    HostStatistics statistics_;
    ByDepth dirty_, layoutDirty_;
    std::vector<ViewContainer*> dirtyContainers_;
    std::vector<std::function<void()>> afterSync_, afterFlush_;
    std::vector<std::pair<ViewNode*, std::function<void()>>> appearing_;
    std::vector<AppearanceNode*> appearanceNodes_; // each takes itself out before it goes
    // Each node takes itself out before it goes; the second are those until the next layout is done.
    std::map<const ViewNode*, TransactionChange> transactionChanges_, changesOnce_;
    Transaction pending_, active_;
    Token observer_;
    CGRect bounds_;
    UIEdgeInsets safeArea_;
    int evaluating_ = 0;
    bool isFlushing_ = false;
    bool isLayingOut_ = false;
    bool needsFullLayout_ = true;
    bool hasAppeared_ = false;
    std::vector<std::shared_ptr<ViewNode>> leaving_; // until their transitions are over
    std::unique_ptr<ViewNode> root_;                 // last, so that nodes find the rest alive when they go
};

} // namespace platform
