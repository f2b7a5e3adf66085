// SPDX-License-Identifier: MIT
#include "platform/uikit/ViewLayout.h"

#include "platform/foundation/Logger.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UIScrollView.h"
#include "tests/platform/uikit/TouchTestSupport.h"

#include <gtest/gtest.h>

namespace platform {

namespace {

using Constraints = std::vector<std::shared_ptr<NSLayoutConstraint>>;

// A view with a size of its own.
struct Sized : UIView {
    CGSize own{noIntrinsicMetric, noIntrinsicMetric};
    CGSize intrinsicContentSize() const override { return own; }
};

struct Room : Stage {
    std::shared_ptr<UIView> root = add<UIView>(CGRect::make(0, 0, 300, 200));
    std::vector<std::string> errors;
    LogCapture capture{[this](const LogRecord& record) { errors.emplace_back(record.message); }};

    std::shared_ptr<Sized> put(CGSize own = {noIntrinsicMetric, noIntrinsicMetric},
                               std::shared_ptr<UIView> into = nullptr)
    {
        auto view = std::make_shared<Sized>();
        view->own = own;
        view->setTranslatesAutoresizingMaskIntoConstraints(false);
        (into ? into : root)->addSubview(view);
        return view;
    }
    void layOut(const Constraints& constraints = {})
    {
        NSLayoutConstraint::activateConstraints(constraints);
        window->layoutNow();
    }
};

// Inside of a view or a guide.
Constraints pinned(UIView& view, auto& space, CGFloat gap = 0)
{
    return {view.leadingAnchor().constraintEqualTo(space.leadingAnchor(), gap),
            view.trailingAnchor().constraintEqualTo(space.trailingAnchor(), -gap),
            view.topAnchor().constraintEqualTo(space.topAnchor(), gap),
            view.bottomAnchor().constraintEqualTo(space.bottomAnchor(), -gap)};
}

TEST(ViewLayout, EdgesPinnedWithAGapFollowTheSuperviewsSizeAndTheSafeArea)
{
    Room room;
    auto view = room.put(), safe = room.put();
    auto guide = room.root->safeAreaLayoutGuide();
    room.layOut(pinned(*view, *room.root, 10));
    room.layOut(pinned(*safe, *guide));
    EXPECT_EQ(view->frame(), CGRect::make(10, 10, 280, 180));
    EXPECT_EQ(safe->frame(), CGRect::make(0, 0, 300, 200));
    room.root->setFrame(CGRect::make(0, 0, 400, 400));
    room.window->setBaseSafeAreaInsets({20, 5, 10, 15});
    room.layOut();
    EXPECT_EQ(view->frame(), CGRect::make(10, 10, 380, 380));
    EXPECT_EQ(safe->frame(), CGRect::make(5, 20, 380, 370));
    EXPECT_EQ(guide->layoutFrame(), safe->frame());
    EXPECT_TRUE(room.errors.empty());
}

TEST(ViewLayout, LeadingIsTheRightEdgeWhereReadingBeginsThere)
{
    for (auto isRightToLeft : {false, true}) {
        Room room;
        room.root->setSemanticContentAttribute(isRightToLeft ? UISemanticContentAttribute::forceRightToLeft
                                                             : UISemanticContentAttribute::forceLeftToRight);
        auto first = room.put({40, 20}), second = room.put({30, 20});
        for (auto& view : {first, second})
            view->setSemanticContentAttribute(room.root->semanticContentAttribute());
        room.layOut({first->leadingAnchor().constraintEqualTo(room.root->leadingAnchor(), 8),
                     second->leadingAnchor().constraintEqualTo(first->trailingAnchor(), 5)});
        EXPECT_EQ(first->frame().minX(), isRightToLeft ? 300 - 8 - 40 : 8);
        EXPECT_EQ(second->frame().minX(), isRightToLeft ? 300 - 8 - 40 - 5 - 30 : 8 + 40 + 5);
    }
}

TEST(ViewLayout, HuggingAndCompressionDecideWhoGivesWay)
{
    struct Case {
        std::string_view name;
        CGFloat space;
        float hugging, compression; // of the first of two views that want 100 each
        CGFloat firstWidth;
    };
    constexpr Case cases[] = {
        {"the one that hugs less grows", 300, 200, 750, 200},
        {"the one that hugs more stays", 300, 300, 750, 100},
        {"the one that resists less shrinks", 150, 250, 700, 50},
        {"the one that resists more stays", 150, 250, 800, 100},
        {"required compression is a wish all the same", 60, 250, 1000, 60},
    };
    for (auto& test : cases) {
        SCOPED_TRACE(test.name);
        Room room;
        room.root->setFrame(CGRect::make(0, 0, test.space, 50));
        auto first = room.put({100, 20}), second = room.put({100, 20});
        first->setContentHuggingPriority(test.hugging, UILayoutAxis::horizontal);
        first->setContentCompressionResistancePriority(test.compression, UILayoutAxis::horizontal);
        room.layOut({first->leftAnchor().constraintEqualTo(room.root->leftAnchor()),
                     second->leftAnchor().constraintEqualTo(first->rightAnchor()),
                     second->rightAnchor().constraintEqualTo(room.root->rightAnchor())});
        EXPECT_EQ(first->frame().width(), test.firstWidth);
        EXPECT_EQ(second->frame().width(), test.space - test.firstWidth);
        EXPECT_TRUE(room.errors.empty());
    }
}

TEST(ViewLayout, AContainerIsAsLargeAsItsContentWants)
{
    Room room;
    auto box = room.put();
    auto content = room.put({50, 30}, box);
    room.layOut(pinned(*content, *box, 6));
    room.layOut({box->centerXAnchor().constraintEqualTo(room.root->centerXAnchor()),
                 box->centerYAnchor().constraintEqualTo(room.root->centerYAnchor())});
    EXPECT_EQ(box->frame(), CGRect::make(119, 79, 62, 42));
    EXPECT_EQ(content->frame(), CGRect::make(6, 6, 50, 30));

    content->own = {70, 40};
    content->invalidateIntrinsicContentSize();
    room.layOut();
    EXPECT_EQ(box->frame(), CGRect::make(109, 74, 82, 52));
    EXPECT_EQ(box->systemLayoutSizeFitting({}), (CGSize{82, 52}));
}

TEST(ViewLayout, AViewThatFollowsItsMaskStaysAndOthersHoldOnToItAndToItsLengths)
{
    Room room;
    auto still = std::make_shared<UIView>(CGRect::make(20, 30, 40, 50));
    room.root->addSubview(still);
    auto view = room.put();
    room.layOut({view->leftAnchor().constraintEqualTo(still->rightAnchor(), 5),
                 view->topAnchor().constraintEqualTo(still->bottomAnchor(), 5),
                 view->widthAnchor().constraintEqualTo(still->widthAnchor(), 0.5, -8),
                 view->heightAnchor().constraintEqualTo(view->widthAnchor(), 0.25, 0)});
    EXPECT_EQ(still->frame(), CGRect::make(20, 30, 40, 50));
    EXPECT_EQ(view->frame(), CGRect::make(65, 85, 12, 3));
}

TEST(ViewLayout, ContradictingConstraintsAreLoggedOnceAndTheFirstHold)
{
    Room room;
    auto view = room.put();
    auto loser = view->widthAnchor().constraintEqualToConstant(80);
    room.layOut({view->widthAnchor().constraintEqualToConstant(50), loser});
    EXPECT_EQ(view->bounds().width(), 50);
    EXPECT_EQ(room.errors.size(), 1u);
    room.root->setNeedsLayout();
    room.layOut();
    EXPECT_EQ(room.errors.size(), 1u);
    loser->setPriority(UILayoutPriorityDefaultHigh);
    room.layOut();
    EXPECT_EQ(room.errors.size(), 1u);
}

TEST(ViewLayout, ConstraintsThatRunInACircleComeToRest)
{
    Room room;
    auto a = room.put(), b = room.put();
    room.layOut({a->widthAnchor().constraintEqualTo(b->widthAnchor(), 2, 0),
                 b->widthAnchor().constraintEqualTo(a->widthAnchor(), 2, 0)});
    EXPECT_EQ(a->bounds().width(), 0);
    EXPECT_EQ(b->bounds().width(), 0);
}

TEST(ViewLayout, NumbersThatAreNoneAreLeftOut)
{
    Room room;
    auto view = room.put({40, 20});
    auto nan = std::numeric_limits<CGFloat>::quiet_NaN();
    auto infinity = std::numeric_limits<CGFloat>::infinity();
    room.layOut({view->widthAnchor().constraintEqualToConstant(nan),
                 view->heightAnchor().constraintGreaterThanOrEqualToConstant(infinity),
                 view->widthAnchor().constraintEqualToConstant(-30)});
    EXPECT_EQ(view->bounds().size, (CGSize{40, 20}));
    EXPECT_EQ(room.errors.size(), 3u);
    view->own = {nan, -5};
    view->invalidateIntrinsicContentSize();
    room.layOut();
    EXPECT_TRUE(std::isfinite(view->frame().width()));
}

TEST(ViewLayout, AConstraintGoesWithTheViewItReachesInto)
{
    Room room;
    auto view = room.put({40, 20});
    auto edge = view->leftAnchor().constraintEqualTo(room.root->leftAnchor(), 9);
    auto own = view->heightAnchor().constraintEqualToConstant(7);
    room.layOut({edge, own});
    view->removeFromSuperview();
    EXPECT_FALSE(edge->isActive());
    EXPECT_TRUE(own->isActive());
    EXPECT_TRUE(room.root->constraints().empty());
    room.root->addSubview(view);
    room.layOut();
    EXPECT_EQ(view->bounds().height(), 7);
}

TEST(ViewLayout, ViewsThatTouchStillTouchAfterRoundingToPixels)
{
    Room room;
    std::vector<std::shared_ptr<Sized>> views;
    Constraints constraints;
    for (int i = 0; i < 7; ++i) {
        views.push_back(room.put());
        auto left = i == 0 ? room.root->leftAnchor() : views[i - 1]->rightAnchor();
        constraints.push_back(views[i]->leftAnchor().constraintEqualTo(left));
        constraints.push_back(
            views[i]->widthAnchor().constraintEqualTo(room.root->widthAnchor(), 1.0 / 7, 0));
    }
    room.layOut(constraints);
    for (int i = 1; i < 7; ++i) {
        EXPECT_EQ(views[i]->frame().minX(), views[i - 1]->frame().maxX());
        EXPECT_EQ(views[i]->frame().minX(), std::round(views[i]->frame().minX()));
    }
    EXPECT_EQ(views[6]->frame().maxX(), 300);
}

TEST(ViewLayout, TheContentOfAScrollViewGetsItsSizeFromConstraints)
{
    Room room;
    auto scrollView = room.add<UIScrollView>(CGRect::make(0, 0, 100, 100));
    auto content = room.put({60, 500}, scrollView);
    room.layOut(pinned(*content, *scrollView, 4));
    room.layOut({content->widthAnchor().constraintEqualTo(scrollView->widthAnchor(), -8)});
    EXPECT_EQ(scrollView->contentSize(), (CGSize{100, 508}));
    scrollView->setContentOffset({0, 200});
    room.layOut();
    EXPECT_EQ(content->frame(), CGRect::make(4, 4, 92, 500)); // where it scrolled to makes no difference
    EXPECT_EQ(scrollView->contentOffset().y, 200);
}

TEST(ViewLayout, ATextOfSeveralLinesGetsTheHeightThatItsWidthAsksFor)
{
    Room room;
    auto label = room.add<UILabel>({});
    label->setNumberOfLines(0);
    label->setText("a text that is long enough to take more than one line in a narrow space");
    label->setTranslatesAutoresizingMaskIntoConstraints(false);
    room.root->addSubview(label);
    auto constraints = pinned(*label, *room.root);
    constraints.pop_back(); // the bottom
    room.layOut(constraints);
    auto wide = label->frame().height();
    room.root->setFrame(CGRect::make(0, 0, 120, 200));
    room.layOut();
    EXPECT_GE(label->frame().height(), 2 * wide);
    EXPECT_EQ(label->frame().height(), label->sizeThatFits({120, 0}).height);
}

TEST(NSLayoutConstraintDeathTest, FaultsOfTheProgramStopIt)
{
    auto a = std::make_shared<UIView>(), b = std::make_shared<UIView>();
    EXPECT_DEATH(a->leftAnchor().constraintEqualTo(b->leftAnchor())->setActive(true), "no common superview");
    EXPECT_DEATH(NSLayoutConstraint(a, NSLayoutAttribute::left, NSLayoutRelation::equal, a,
                                    NSLayoutAttribute::top, 1, 0),
                 "different kinds");
}

} // namespace
} // namespace platform
