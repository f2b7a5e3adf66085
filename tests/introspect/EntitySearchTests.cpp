// SPDX-License-Identifier: MIT
#include "introspect/EntitySearch.h"

#include "introspect/IntrospectionMarkers.h"
#include "introspect/IntrospectionStore.h"
#include "platform/uikit/UIControl.h"
#include "platform/uikit/UIScrollView.h"
#include "platform/uikit/UISlider.h"
#include "platform/uikit/UISwitch.h"
#include "tests/introspect/MarkedStage.h"

#include <gtest/gtest.h>

namespace introspect {

using platform::UIControl;
using platform::UIScrollView;
using platform::UISlider;
using platform::UISwitch;
using platform::UIView;
using platform::UIViewController;

namespace {

struct Content : UIViewController { };

} // namespace

TEST(ReceiverSearch, FindsTheOutermostWantedViewBetweenTheMarkers)
{
    MarkedStage stage;
    stage.addNew<UISlider>(); // before the anchor
    stage.addAnchor();
    const auto box = stage.addNew<UIView>();
    const auto outer = std::make_shared<UISlider>();
    box->addSubview(outer);
    outer->addSubview(std::make_shared<UISlider>());
    stage.addNew<UISlider>(); // a later sibling
    stage.addProbe();
    EXPECT_EQ(receiverEntity<UISlider>(*stage.probe), outer);
    EXPECT_EQ(receiverEntity<UIControl>(*stage.probe), outer); // a subclass is of the type, too
    EXPECT_EQ(receiverEntity<UIView>(*stage.probe), box);
    EXPECT_EQ(receiverEntity<UISwitch>(*stage.probe), nullptr);
}

TEST(ReceiverSearch, NeverFindsMarkersNorWhatStandsOutsideOfThem)
{
    MarkedStage stage;
    stage.addNew<UISlider>();
    stage.addAnchor();
    // The markers of a modifier inside of this one's content are no content either.
    stage.add(IntrospectionAnchorPlatformViewController::make(platform::UUID{}));
    const auto inner = IntrospectionPlatformViewController::make(platform::UUID{}, {});
    stage.add(inner);
    stage.addProbe();
    stage.addNew<UISlider>();
    stage.probe->view()->addSubview(std::make_shared<UISlider>());
    EXPECT_EQ(receiverEntity<UIView>(*stage.probe), nullptr);
    EXPECT_EQ(receiverEntity<UIViewController>(*stage.probe), nullptr);
}

TEST(ReceiverSearch, BeginsWithTheBackEntityItself)
{
    MarkedStage stage;
    stage.addAnchor();
    stage.addNew<UIView>();
    stage.addProbe();
    stage.anchor->view()->removeAssociatedObject(isIntrospectionPlatformEntityKey);
    EXPECT_EQ(receiverEntity<UIView>(*stage.probe), stage.anchor->view());
}

TEST(ReceiverSearch, GoesUpToTheNearestCommonAncestor)
{
    MarkedStage stage;
    stage.addNew<UISlider>();
    const auto background = stage.addNew<UIView>();
    const auto content = stage.addNew<UIView>();
    const auto overlay = stage.addNew<UIView>();
    background->addSubview(stage.anchor->view());
    const auto behind = std::make_shared<UISwitch>(); // between the anchor and the content
    background->addSubview(behind);
    const auto found = std::make_shared<UISlider>();
    content->addSubview(found);
    overlay->addSubview(std::make_shared<UISlider>());
    overlay->addSubview(stage.probe->view());
    EXPECT_EQ(receiverEntity<UISlider>(*stage.probe), found);
    EXPECT_EQ(receiverEntity<UISwitch>(*stage.probe), behind);
}

TEST(ReceiverSearch, FindsControllersAmongTheChildrenBetweenTheMarkers)
{
    MarkedStage stage;
    stage.addNew<Content>();
    stage.addAnchor();
    const auto wrapper = stage.addNew<UIViewController>();
    const auto found = std::make_shared<Content>();
    wrapper->addChild(found);
    stage.addNew<Content>();
    stage.addProbe();
    stage.addNew<Content>();
    EXPECT_EQ(receiverEntity<Content>(*stage.probe), found);
    EXPECT_EQ(receiverEntity<UIViewController>(*stage.probe), wrapper);
}

TEST(ReceiverSearch, FindsNothingWithoutAnAnchorOrACommonAncestor)
{
    MarkedStage stage;
    stage.addAnchor();
    stage.addNew<UISlider>();
    EXPECT_EQ(receiverEntity<UIView>(*stage.probe), nullptr);
    EXPECT_EQ(ancestorEntity<UIView>(*stage.probe), nullptr);
    EXPECT_FALSE(stage.probe->isViewLoaded()) << "a search loads no view";
    const auto expectNothing = [&](UIViewController& from) {
        EXPECT_EQ(receiverEntity<UISlider>(from), nullptr);
        EXPECT_EQ(receiverEntity<UIViewController>(from), nullptr);
    };
    const auto elsewhere = std::make_shared<UIViewController>();
    elsewhere->addChild(stage.probe);
    elsewhere->view()->addSubview(stage.probe->view());
    expectNothing(*stage.probe);
    expectNothing(*stage.host); // no probe, so there is no anchor
    stage.anchor->removeFromParent();
    stage.anchor->view()->removeFromSuperview();
    stage.anchor.reset();
    stage.addProbe();
    expectNothing(*stage.probe);
}

TEST(ReceiverSearch, VisitsNothingAfterTheProbe)
{
    MarkedStage stage;
    stage.addAnchor();
    stage.addNew<UIView>();
    stage.addNew<UIView>();
    stage.addProbe();
    for (int count = 0; count < 100; ++count)
        stage.addNew<UIView>();
    static int tested;
    tested = 0;
    receiverView(*stage.probe, [](const platform::NSObject&) { return ++tested < 0; });
    EXPECT_EQ(tested, 2);
}

TEST(ReceiverSearch, UsesTheAnchorThatWasRecordedLast)
{
    MarkedStage stage;
    stage.addAnchor();
    stage.addNew<UISlider>();
    const auto later = IntrospectionAnchorPlatformViewController::make(stage.id);
    stage.add(later);
    const auto found = stage.addNew<UISlider>();
    stage.addProbe();
    EXPECT_EQ(receiverEntity<UISlider>(*stage.probe), found);
}

TEST(AncestorSearch, FindsTheNearestWantedEntityAboveTheProbe)
{
    MarkedStage stage;
    const auto outer = std::make_shared<UIScrollView>();
    const auto inner = std::make_shared<UIScrollView>();
    const auto content = std::make_shared<Content>();
    outer->addSubview(inner);
    inner->addSubview(stage.host->view());
    content->addChild(stage.host);
    stage.addProbe();
    EXPECT_EQ(ancestorEntity<UIScrollView>(*stage.probe), inner);
    EXPECT_EQ(ancestorEntity<UIView>(*stage.probe), stage.host->view());
    EXPECT_EQ(ancestorEntity<Content>(*stage.probe), content);
    EXPECT_EQ(ancestorEntity<UIViewController>(*stage.probe), stage.host); // not the probe itself
    EXPECT_EQ(ancestorEntity<UISlider>(*stage.probe), nullptr);
}

TEST(AncestorSearch, PassesMarkers)
{
    MarkedStage stage;
    stage.addAnchor();
    stage.anchor->addChild(stage.probe);
    stage.anchor->view()->addSubview(stage.probe->view());
    EXPECT_EQ(ancestorEntity<UIView>(*stage.probe), stage.host->view());
    EXPECT_EQ(ancestorEntity<UIViewController>(*stage.probe), stage.host);
}

TEST(IntrospectionStore, EmptiesByItselfAndKeepsThePair)
{
    platform::UUID id;
    auto& store = IntrospectionStore::shared();
    EXPECT_EQ(store.pair(id).controller.wrappedValue(), nullptr);
    auto probe = IntrospectionPlatformViewController::make(id, {});
    const auto anchor = IntrospectionAnchorPlatformViewController::make(id);
    EXPECT_EQ(store.pair(id).controller.wrappedValue(), probe);
    probe.reset();
    EXPECT_EQ(store.pair(id).controller.wrappedValue(), nullptr);
    EXPECT_EQ(store.pair(id).anchor.wrappedValue(), anchor);
}

} // namespace introspect
