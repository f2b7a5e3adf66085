// SPDX-License-Identifier: MIT
#include "introspect/EntityWalks.h"
#include "introspect/IntrospectionMarkers.h"
#include "tests/introspect/Catalogue.h"
#include "tests/introspect/Representables.h"
#include "tests/introspect/Screen.h"

#include <gtest/gtest.h>

namespace introspect {

using platform::Binding;
using platform::String;
using platform::TextEditor;
using platform::UIScrollView;
using platform::UISlider;
using platform::UITextView;
using platform::UIView;

namespace {

// What a customisation was called with, in order.
template <class Target>
using Calls = std::vector<std::shared_ptr<Target>>;

template <class Target>
auto recording(Calls<Target>& calls)
{
    return [&calls](Target& target) {
        calls.push_back(std::static_pointer_cast<Target>(target.shared_from_this()));
    };
}

// The markers among a controller's children, and the others.
int countOfMarkers(const platform::UIViewController& host)
{
    return static_cast<int>(std::ranges::count_if(
        host.children(), [](const auto& child) { return isIntrospectionPlatformEntity(*child); }));
}

struct ContextType : IntrospectableViewTypeDefaults {
    static constexpr IntrospectionScope scope = IntrospectionScope::ancestor;
};

const auto sliderOnAll = [] {
    return iOS(slider.iOS.v13, slider.iOS.v14, slider.iOS.v15, slider.iOS.v16, slider.iOS.v17);
};

} // namespace

TEST(Introspect, ReachesTheTextViewBehindATextEditor)
{
    Screen screen(
        TextEditor{Binding<String>::constant("text")}
        | introspect(textEditor,
                     iOS(textEditor.iOS.v14, textEditor.iOS.v15, textEditor.iOS.v16, textEditor.iOS.v17),
                     [](UITextView& found) { found.setEditable(false); }));
    int count = 0;
    for (const auto& entity : allDescendants(*screen.window)) {
        if (auto textView = std::dynamic_pointer_cast<UITextView>(entity)) {
            ++count;
            EXPECT_FALSE(textView->isEditable());
        }
    }
    EXPECT_EQ(count, 1);
}

TEST(Introspect, LeavesTheViewAsItIsWhereNoPredicateMatches)
{
    Calls<UISlider> calls;
    // Written for a system that is not the running one.
    Screen modified(
        shown<UISlider>()
        | introspect(slider, {iOS(slider.iOS.v13), visionOS(slider.visionOS.v1)}, recording(calls)));
    EXPECT_TRUE(calls.empty());
    EXPECT_TRUE(modified.host->children().empty());
    EXPECT_EQ(modified.host->view()->subviews().size(), 1u);
}

TEST(Introspect, PlantsAnAnchorBehindAndAProbeInFront)
{
    Calls<UISlider> calls;
    Screen screen(shown<UISlider>() | introspect(slider, sliderOnAll(), recording(calls)));
    const auto& views = screen.host->view()->subviews();
    ASSERT_EQ(views.size(), 3u);
    EXPECT_TRUE(isIntrospectionPlatformEntity(*views.front()));
    EXPECT_EQ(views[1], calls.at(0));
    EXPECT_TRUE(isIntrospectionPlatformEntity(*views.back()));
    for (const auto& marker : {views.front(), views.back()}) {
        EXPECT_EQ(marker->bounds().size, (platform::CGSize{0, 0}));
        EXPECT_EQ(marker->center(), views[1]->center());
        EXPECT_TRUE(marker->accessibility().isHidden);
    }
    EXPECT_FALSE(views[1]->accessibility().isHidden);
    EXPECT_EQ(views[1]->frame(), platform::CGRect::make(0, 0, 400, 300)); // the markers take nothing from it
    EXPECT_EQ(countOfMarkers(*screen.host), 2);
}

TEST(Introspect, TakesTheFirstPredicateThatMatches)
{
    Calls<UISlider> calls;
    using Predicate = PlatformViewVersionPredicate<SliderType, UISlider>;
    const auto elsewhere = std::make_shared<UISlider>();
    const Predicate own{IntrospectionSelector<UISlider>::defaultSelector().withReceiverSelector(
        [elsewhere](platform::UIViewController&) { return elsewhere; })};
    Screen screen(shown<UISlider>()
                  | introspect(slider, {Predicate{}, own, sliderOnAll()}, recording(calls)));
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls[0], elsewhere);
}

TEST(Introspect, HasTheViewTypesScopeUnlessAnotherIsGiven)
{
    const auto customize = [](UISlider&) { };
    const PlatformViewVersionPredicate<ContextType, UISlider> predicate;
    constexpr auto receiver = IntrospectionScope::receiver;
    EXPECT_EQ(introspect(ContextType(), predicate, customize).scope, IntrospectionScope::ancestor);
    EXPECT_EQ(introspect(ContextType(), predicate, receiver, customize).scope, receiver);
    EXPECT_EQ(introspect(ContextType(), predicate, IntrospectionScope(), customize).scope,
              IntrospectionScope());
}

TEST(Introspect, FindsEachOfTwoModifiersAroundOneView)
{
    Calls<UISlider> inner;
    Calls<UIView> outer;
    Screen screen(shown<UISlider>() | introspect(slider, sliderOnAll(), recording(inner))
                  | introspect(view, iOS(startingAt(view.iOS.v13)), recording(outer)));
    ASSERT_FALSE(inner.empty());
    ASSERT_FALSE(outer.empty());
    EXPECT_EQ(outer[0], inner[0]); // the markers between are not taken for content
    EXPECT_EQ(countOfMarkers(*screen.host), 4);
}

TEST(Introspect, CustomisesTheSameTargetAgainOnEachUpdateWithTheLatestClosure)
{
    std::vector<int> calls;
    Calls<UISlider> targets;
    const auto described = [&](int number) {
        return ShownView<UISlider>(number) | introspect(slider, sliderOnAll(), [&, number](UISlider& found) {
                   calls.push_back(number);
                   recording(targets)(found);
               });
    };
    Screen screen(described(0));
    const auto children = screen.host->children();
    calls.clear();
    screen.settle(); // nothing is described anew
    // Each description is a modifier with another id; the markers stay and keep theirs.
    screen.show(described(1));
    screen.show(described(2));
    EXPECT_EQ(calls, (std::vector{1, 2}));
    for (const auto& target : targets)
        EXPECT_EQ(target, targets[0]);
    EXPECT_EQ(screen.host->children(), children);
}

// The description is renewed while there is nothing to find yet: what the probe does when it finds something is what the
// latest description says.
TEST(Introspect, FindsLateWithTheLatestDescription)
{
    std::shared_ptr<UISlider> late;
    std::vector<int> calls;
    const auto described = [&](int number) {
        const PlatformViewVersionPredicate<SliderType, UISlider> predicate{
            IntrospectionSelector<UISlider>::defaultSelector().withReceiverSelector(
                [&late](platform::UIViewController&) { return late; })};
        return ShownView<UISlider>(number)
            | introspect(slider, predicate, [&calls, number](UISlider&) { calls.push_back(number); });
    };
    Screen screen(described(1));
    screen.show(described(2));
    EXPECT_TRUE(calls.empty());
    late = std::make_shared<UISlider>();
    const auto probe = screen.host->children().back();
    probe->viewDidLayoutSubviews();
    EXPECT_EQ(calls, std::vector{2});
    probe->viewDidLayoutSubviews();
    EXPECT_EQ(calls, std::vector{2}); // once: it has succeeded
}

// A target that is gone is searched for on each update, and what is found so is not kept.
TEST(Introspect, SearchesAgainWhenTheTargetIsGone)
{
    std::shared_ptr<UISlider> present = std::make_shared<UISlider>();
    int searches = 0;
    std::vector<const UISlider*> calls;
    const auto described = [&](int number) {
        const PlatformViewVersionPredicate<SliderType, UISlider> predicate{
            IntrospectionSelector<UISlider>::defaultSelector().withReceiverSelector(
                [&](platform::UIViewController&) {
                    ++searches;
                    return present;
                })};
        return ShownView<UISlider>(number)
            | introspect(slider, predicate, [&calls](UISlider& found) { calls.push_back(&found); });
    };
    Screen screen(described(0));
    searches = 0;
    calls.clear();
    screen.show(described(1));
    EXPECT_EQ(searches, 0); // the cached one is there
    EXPECT_EQ(calls.size(), 1u);

    present.reset();
    screen.show(described(2));
    EXPECT_EQ(searches, 1);
    EXPECT_EQ(calls.size(), 1u);

    present = std::make_shared<UISlider>();
    screen.show(described(3));
    screen.show(described(4));
    EXPECT_EQ(searches, 3);
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls.back(), present.get());
}

TEST(Introspect, FindsWhatComesLaterAndWhatTookThePlaceOfItsTarget)
{
    Calls<UISlider> calls;
    const auto described = [&](int number) {
        return platform::when(
                   number == 0, [] { return shown<UIView>(); },
                   [number] { return ShownView<UISlider>(number); })
            | introspect(slider, sliderOnAll(), recording(calls));
    };
    Screen screen(described(0));
    EXPECT_TRUE(calls.empty());
    screen.show(described(1));
    const auto former = std::weak_ptr(calls.at(0));
    calls.clear();
    screen.show(described(0));
    EXPECT_TRUE(former.expired());
    screen.show(described(2));
    EXPECT_EQ(calls.at(0)->superview(), screen.host->view());
}

TEST(Introspect, FindsForEachOfManyViewsItsOwn)
{
    Calls<UISlider> calls[3];
    const auto row = [&](int index) {
        return shown<UISlider>() | introspect(slider, sliderOnAll(), recording(calls[index]));
    };
    Screen screen(platform::HStack(row(0), platform::VStack(shown<UIView>(), row(1)), row(2)));
    std::size_t index = 0;
    for (const auto& entity : allDescendants(*screen.window)) {
        if (auto one = std::dynamic_pointer_cast<UISlider>(entity)) {
            EXPECT_EQ(calls[index++].at(0), one);
        }
    }
    EXPECT_EQ(index, 3u);
}

TEST(Introspect, LetsGoOfEverythingWithTheView)
{
    Calls<UISlider> calls;
    const auto kept = std::make_shared<int>(0);
    std::vector<std::weak_ptr<platform::UIViewController>> markers;
    {
        Screen screen(shown<UISlider>() | introspect(slider, sliderOnAll(), [kept, &calls](UISlider& found) {
                          recording(calls)(found);
                      }));
        markers.assign(screen.host->children().begin(), screen.host->children().end());
    }
    ASSERT_EQ(markers.size(), 2u);
    EXPECT_TRUE(markers[0].expired());
    EXPECT_TRUE(markers[1].expired());
    EXPECT_EQ(kept.use_count(), 1);
}

} // namespace introspect
