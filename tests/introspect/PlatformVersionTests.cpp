// SPDX-License-Identifier: MIT
#include "introspect/PlatformViewVersionPredicate.h"
#include "introspect/ViewTypes/NavigationStackType.h"
#include "introspect/ViewTypes/SliderType.h"
#include "introspect/ViewTypes/TextEditorType.h"
#include "platform/foundation/ProcessInfo.h"
#include "platform/uikit/UINavigationController.h"
#include "platform/uikit/UISlider.h"
#include "platform/uikit/UITextView.h"
#include "tests/introspect/Reruns.h"

#include <gtest/gtest.h>

namespace introspect {

using platform::OperatingSystemVersion;

namespace {

// One letter for each member from v13 to v17: past, current, future.
std::string conditionsOn(OperatingSystemVersion running)
{
    using Member = iOSVersion::Member;
    std::string letters;
    for (const auto member : {Member::v13, Member::v14, Member::v15, Member::v16, Member::v17}) {
        const auto condition = iOSVersion::conditionOn(member, running);
        letters += condition == PlatformVersionCondition::past ? 'p'
            : condition == PlatformVersionCondition::current   ? 'c'
                                                               : 'f';
    }
    return letters;
}

struct System {
    const char* name;
    OperatingSystemVersion running;
    const char* conditions; // of v13 to v17
    bool editorIsFound;     // by the list v14, v15, v16, v17
    bool editorSince15;     // by the bound v15
};
constexpr System systems[] = {
    {"12.0", {12, 0, 0}, "cffff", false, false},     {"12.5.7", {12, 5, 7}, "cffff", false, false},
    {"13.0", {13, 0, 0}, "cffff", false, false},     {"13.99.99", {13, 99, 99}, "cffff", false, false},
    {"14.0", {14, 0, 0}, "pcfff", true, false},      {"15.0", {15, 0, 0}, "ppcff", true, true},
    {"15.8.4", {15, 8, 4}, "ppcff", true, true},     {"16.0", {16, 0, 0}, "pppcf", true, true},
    {"16.4", {16, 4, 0}, "pppcf", true, true},       {"17.0", {17, 0, 0}, "ppppc", true, true},
    {"17.99.99", {17, 99, 99}, "ppppc", true, true}, {"18.0", {18, 0, 0}, "ppppp", false, true},
    {"19.0", {19, 0, 0}, "ppppp", false, true},      {"26.1", {26, 1, 0}, "ppppp", false, true},
};

} // namespace

TEST(PlatformVersion, MembersAreCurrentUntilTheNextMajorVersion)
{
    for (const auto& system : systems)
        EXPECT_EQ(conditionsOn(system.running), system.conditions) << system.name;
}

TEST(PlatformVersion, VersionsOfOtherPlatformsAreNeverCurrent)
{
    const PlatformVersion others[] = {
        tvOSVersion::v13(),  tvOSVersion::v14(),       tvOSVersion::v15(),  tvOSVersion::v16(),
        tvOSVersion::v17(),  macOSVersion::v10_15(),   macOSVersion::v11(), macOSVersion::v12(),
        macOSVersion::v13(), macOSVersion::v10_15_4(), macOSVersion::v14(), visionOSVersion::v1(),
    };
    for (const auto& version : others)
        EXPECT_EQ(version.condition, std::nullopt);
}

TEST(PlatformVersion, AMemberIsLookedUpOnceAndKept)
{
    const auto before = iOSVersion::v17().condition;
    const platform::SystemVersionOverride later({13, 0, 0});
    EXPECT_EQ(&iOSVersion::v17(), &iOSVersion::member(iOSVersion::Member::v17));
    EXPECT_EQ(iOSVersion::v17().condition, before);
}

// Runs on whatever system the process has: by itself on the default one, below on all of the table.
TEST(PlatformViewVersionPredicate, FollowsTheRunningSystem)
{
    const auto running = platform::ProcessInfo::processInfo().operatingSystemVersion();
    const auto* system = std::ranges::find(systems, running, &System::running);
    ASSERT_NE(system, std::end(systems)) << running.string();

    const auto editor = textEditor.iOS;
    EXPECT_EQ(iOS(editor.v14, editor.v15, editor.v16, editor.v17).selector.has_value(),
              system->editorIsFound);
    EXPECT_EQ(iOS(startingAt(editor.v15)).selector.has_value(), system->editorSince15);
    // Unavailable versions never match, not even as a bound that every system has passed.
    EXPECT_FALSE(iOS(editor.v13).selector.has_value());
    EXPECT_FALSE(iOS(startingAt(editor.v13)).selector.has_value());
    EXPECT_FALSE(
        iOS(navigationStack.iOS.v13, navigationStack.iOS.v14, navigationStack.iOS.v15).selector.has_value());
    // A version of another platform never matches.
    EXPECT_FALSE(visionOS(textEditor.visionOS.v1).selector.has_value());
    EXPECT_FALSE(visionOS(startingAt(textEditor.visionOS.v1)).selector.has_value());
    EXPECT_FALSE(tvOS(startingAt(navigationStack.tvOS.v16)).selector.has_value());
    // v13 is the lowest supported system: what exists on it is found on lower ones too.
    EXPECT_EQ(iOS(slider.iOS.v13).selector.has_value(), system->conditions[0] == 'c');
    EXPECT_TRUE(iOS(startingAt(slider.iOS.v13)).selector.has_value());
}

TEST(PlatformViewVersionPredicate, FollowsEverySystem)
{
    for (const auto& system : systems)
        EXPECT_TRUE(passesOnSystem(system.name, "PlatformViewVersionPredicate.FollowsTheRunningSystem"))
            << system.name;
}

TEST(PlatformViewVersionPredicate, TakesTheFirstMatchInTheListsOrder)
{
    using Constant = PlatformViewVersion<iOSVersion, SliderType, platform::UISlider>;
    using Selector = IntrospectionSelector<platform::UISlider>;
    using Predicate = PlatformViewVersionPredicate<SliderType, platform::UISlider>;
    const auto probe = std::make_shared<platform::UIViewController>();
    static const auto found = std::make_shared<platform::UISlider>();
    // Nothing is found by the default selector here, `found` by this one.
    const auto own = Constant::available(iOSVersion::Member::v13, [] {
        return Selector::defaultSelector().withReceiverSelector(
            [](platform::UIViewController&) { return found; });
    });
    const auto plain = Constant::available(iOSVersion::Member::v13);
    const auto isFoundBy = [&](std::initializer_list<Constant> versions) {
        // Every system is at or past 13.
        const auto predicate = Predicate::firstMatch<iOSVersion>(versions, &PlatformVersion::isCurrentOrPast);
        return predicate.selector.value().find(*probe, IntrospectionScope::receiver) == found;
    };
    EXPECT_TRUE(isFoundBy({own, plain}));
    EXPECT_FALSE(isFoundBy({plain, own}));
    EXPECT_TRUE(isFoundBy({Constant::unavailable(), own}));
}

} // namespace introspect
