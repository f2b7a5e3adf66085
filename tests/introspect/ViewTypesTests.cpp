// SPDX-License-Identifier: MIT
#include "introspect/IntrospectableViewType.h"
#include "introspect/IntrospectionSelector.h"
#include "introspect/ViewTypes.h"
#include "platform/services/ASAuthorizationAppleIDButton.h"
#include "platform/services/AVPlayerViewController.h"
#include "platform/services/MKMapView.h"
#include "platform/uikit/UIActivityIndicatorView.h"
#include "platform/uikit/UICollectionView.h"
#include "platform/uikit/UICollectionViewCell.h"
#include "platform/uikit/UIColorWell.h"
#include "platform/uikit/UIDatePicker.h"
#include "platform/uikit/UINavigationController.h"
#include "platform/uikit/UIPageControl.h"
#include "platform/uikit/UIPickerView.h"
#include "platform/uikit/UIPopoverPresentationController.h"
#include "platform/uikit/UIProgressView.h"
#include "platform/uikit/UISearchBar.h"
#include "platform/uikit/UISegmentedControl.h"
#include "platform/uikit/UISheetPresentationController.h"
#include "platform/uikit/UISlider.h"
#include "platform/uikit/UISplitViewController.h"
#include "platform/uikit/UIStepper.h"
#include "platform/uikit/UISwitch.h"
#include "platform/uikit/UITabBarController.h"
#include "platform/uikit/UITableView.h"
#include "platform/uikit/UITableViewCell.h"
#include "platform/uikit/UITextField.h"
#include "platform/uikit/UITextView.h"
#include "platform/uikit/UIWindow.h"

#include <cxxabi.h>
#include <gtest/gtest.h>

namespace introspect {

namespace {

template <class Entity>
std::string nameOf()
{
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> name(
        abi::__cxa_demangle(typeid(Entity).name(), nullptr, nullptr, &status), std::free);
    return std::string(name.get()).substr(std::string_view("platform::").size());
}

// "-" where unavailable, else the class, with the scope whose closure is not the default one's.
template <class Version, class ViewType, class Entity>
std::string describe(const PlatformViewVersion<Version, ViewType, Entity>& constant)
{
    if (!constant.isAvailable())
        return "-";
    auto text = nameOf<Entity>();
    if (const auto own = constant.selector()) {
        const auto standard = IntrospectionSelector<Entity>::defaultSelector();
        if (own->receiverSelector.target_type() != standard.receiverSelector.target_type())
            text += " by receiver";
        if (own->ancestorSelector.target_type() != standard.ancestorSelector.target_type())
            text += " by ancestor";
    }
    return text;
}

// The constants of a row as "13-15 UITableView, 16-17 UICollectionView".
class RowText {
public:
    template <class Version, class ViewType, class Entity>
    void add(const std::string& member, typename Version::Member expected,
             const PlatformViewVersion<Version, ViewType, Entity>& constant)
    {
        // A constant under another version's name would match on the wrong system.
        if (constant.isAvailable()) {
            EXPECT_EQ(constant.version(), &Version::member(expected)) << member;
        }
        const auto text = describe(constant);
        if (!runs_.empty() && runs_.back().text == text)
            runs_.back().last = member;
        else
            runs_.push_back({member, member, text});
    }

    std::string string() const
    {
        std::string all;
        for (const auto& run : runs_) {
            all += all.empty() ? "" : ", ";
            all += run.first == run.last ? run.first : run.first + "-" + run.last;
            all += " " + run.text;
        }
        return all;
    }

private:
    struct Run {
        std::string first, last, text;
    };
    std::vector<Run> runs_;
};

#define ADD(row, Version, name, number)                                                                      \
    if constexpr (requires { row.name; })                                                                    \
    text.add<Version>(number, Version::Member::name, row.name)

template <class Version, class Row>
std::string fiveVersions(const Row& row)
{
    RowText text;
    ADD(row, Version, v13, "13");
    ADD(row, Version, v14, "14");
    ADD(row, Version, v15, "15");
    ADD(row, Version, v16, "16");
    ADD(row, Version, v17, "17");
    return text.string();
}

template <class Row>
std::string macVersions(const Row& row)
{
    RowText text;
    ADD(row, macOSVersion, v10_15, "10.15");
    ADD(row, macOSVersion, v10_15_4, "10.15.4");
    ADD(row, macOSVersion, v11, "11");
    ADD(row, macOSVersion, v12, "12");
    ADD(row, macOSVersion, v13, "13");
    ADD(row, macOSVersion, v14, "14");
    return text.string();
}

#undef ADD

struct Entry {
    std::string name, scope, iOS, tvOS, macOS, visionOS;
    bool operator==(const Entry&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Entry& entry)
{
    return out << entry.name << " | " << entry.scope << " | iOS: " << entry.iOS << " | tvOS: " << entry.tvOS
               << " | macOS: " << entry.macOS << " | visionOS: " << entry.visionOS;
}

template <IntrospectableViewType ViewType>
Entry entryOf(const char* name, ViewType)
{
    Entry entry{.name = name};
    constexpr IntrospectionScope scope = ViewType::scope;
    entry.scope += scope.contains(IntrospectionScope::receiver) ? "r" : "";
    entry.scope += scope.contains(IntrospectionScope::ancestor) ? "a" : "";
    if constexpr (requires { ViewType::iOS; })
        entry.iOS = fiveVersions<iOSVersion>(ViewType::iOS);
    if constexpr (requires { ViewType::tvOS; })
        entry.tvOS = fiveVersions<tvOSVersion>(ViewType::tvOS);
    if constexpr (requires { ViewType::macOS; })
        entry.macOS = macVersions(ViewType::macOS);
    if constexpr (requires { ViewType::visionOS; }) {
        RowText text;
        text.add<visionOSVersion>("1", visionOSVersion::Member::v1, ViewType::visionOS.v1);
        entry.visionOS = text.string();
    }
    return entry;
}

#define ENTRY(accessor) entryOf(#accessor, accessor)

// clang-format off
const std::vector<std::pair<Entry, Entry>>& catalogueTable()
{
    static const std::vector<std::pair<Entry, Entry>> all = {
        {ENTRY(button), {"button", "r", "", "", "", ""}},
        {ENTRY(colorPicker), {"colorPicker", "r", "13 -, 14-17 UIColorWell", "", "", "1 UIColorWell"}},
        {ENTRY(datePicker), {"datePicker", "r", "13-17 UIDatePicker", "", "", "1 UIDatePicker"}},
        {ENTRY(datePickerWithCompactStyle),
         {"datePickerWithCompactStyle", "r", "13-17 UIDatePicker", "", "", "1 UIDatePicker"}},
        {ENTRY(datePickerWithFieldStyle), {"datePickerWithFieldStyle", "r", "", "", "", ""}},
        {ENTRY(datePickerWithGraphicalStyle),
         {"datePickerWithGraphicalStyle", "r", "13-17 UIDatePicker", "", "", "1 UIDatePicker"}},
        {ENTRY(datePickerWithStepperFieldStyle), {"datePickerWithStepperFieldStyle", "r", "", "", "", ""}},
        {ENTRY(datePickerWithWheelStyle),
         {"datePickerWithWheelStyle", "r", "13-17 UIDatePicker", "", "", "1 UIDatePicker"}},
        {ENTRY(form),
         {"form", "r", "13-15 UITableView, 16-17 UICollectionView",
          "13-15 UITableView, 16-17 UICollectionView", "", "1 UICollectionView"}},
        {ENTRY(formWithGroupedStyle),
         {"formWithGroupedStyle", "r", "13-15 -, 16-17 UICollectionView",
          "13-15 -, 16-17 UICollectionView", "", "1 UICollectionView"}},
        {ENTRY(fullScreenCover),
         {"fullScreenCover", "a", "13 -, 14-17 UIPresentationController by ancestor",
          "13 -, 14-17 UIPresentationController by ancestor", "", "1 UIPresentationController by ancestor"}},
        {ENTRY(list),
         {"list", "r", "13-15 UITableView, 16-17 UICollectionView",
          "13-15 UITableView, 16-17 UICollectionView", "", "1 UICollectionView"}},
        {ENTRY(listCell),
         {"listCell", "a", "13-15 UITableViewCell, 16-17 UICollectionViewCell",
          "13-15 UITableViewCell, 16-17 UICollectionViewCell", "", "1 UICollectionViewCell"}},
        {ENTRY(listWithBorderedStyle), {"listWithBorderedStyle", "r", "", "", "", ""}},
        {ENTRY(listWithGroupedStyle),
         {"listWithGroupedStyle", "r", "13-15 UITableView, 16-17 UICollectionView",
          "13-15 UITableView, 16-17 UICollectionView", "", "1 UICollectionView"}},
        {ENTRY(listWithInsetGroupedStyle),
         {"listWithInsetGroupedStyle", "r", "13-15 UITableView, 16-17 UICollectionView",
          "", "", "1 UICollectionView"}},
        {ENTRY(listWithInsetStyle),
         {"listWithInsetStyle", "r", "13 -, 14-15 UITableView, 16-17 UICollectionView",
          "", "", "1 UICollectionView"}},
        {ENTRY(listWithSidebarStyle),
         {"listWithSidebarStyle", "r", "13 -, 14-15 UITableView, 16-17 UICollectionView",
          "", "", "1 UICollectionView"}},
        {ENTRY(map),
         {"map", "r", "13 -, 14-17 MKMapView",
          "13 -, 14-17 MKMapView", "10.15-10.15.4 -, 11-14 MKMapView", "1 MKMapView"}},
        {ENTRY(navigationSplitView),
         {"navigationSplitView", "r", "13-15 -, 16-17 UISplitViewController by ancestor",
          "13-15 -, 16-17 UISplitViewController by ancestor", "", "1 UISplitViewController by ancestor"}},
        {ENTRY(navigationStack),
         {"navigationStack", "r", "13-15 -, 16-17 UINavigationController by ancestor",
          "13-15 -, 16-17 UINavigationController by ancestor", "", "1 UINavigationController by ancestor"}},
        {ENTRY(navigationViewWithColumnsStyle),
         {"navigationViewWithColumnsStyle", "r", "13-17 UISplitViewController by ancestor",
          "13-17 UISplitViewController by ancestor", "", "1 UISplitViewController by ancestor"}},
        {ENTRY(navigationViewWithStackStyle),
         {"navigationViewWithStackStyle", "r", "13-17 UINavigationController by ancestor",
          "13-17 UINavigationController by ancestor", "", "1 UINavigationController by ancestor"}},
        {ENTRY(pageControl),
         {"pageControl", "r", "13-17 UIPageControl", "13-17 UIPageControl", "", "1 UIPageControl"}},
        {ENTRY(pickerWithMenuStyle), {"pickerWithMenuStyle", "r", "", "", "", ""}},
        {ENTRY(pickerWithSegmentedStyle),
         {"pickerWithSegmentedStyle", "r", "13-17 UISegmentedControl",
          "13-17 UISegmentedControl", "", "1 UISegmentedControl"}},
        {ENTRY(pickerWithWheelStyle),
         {"pickerWithWheelStyle", "r", "13-17 UIPickerView", "", "", "1 UIPickerView"}},
        {ENTRY(popover),
         {"popover", "a", "13-17 UIPopoverPresentationController by ancestor",
          "", "", "1 UIPopoverPresentationController by ancestor"}},
        {ENTRY(progressViewWithCircularStyle),
         {"progressViewWithCircularStyle", "r", "13-17 UIActivityIndicatorView",
          "13-17 UIActivityIndicatorView", "", "1 UIActivityIndicatorView"}},
        {ENTRY(progressViewWithLinearStyle),
         {"progressViewWithLinearStyle", "r", "13-17 UIProgressView",
          "13-17 UIProgressView", "", "1 UIProgressView"}},
        {ENTRY(scrollView),
         {"scrollView", "r", "13-17 UIScrollView", "13-17 UIScrollView", "", "1 UIScrollView"}},
        {ENTRY(searchField),
         {"searchField", "r", "13-14 -, 15-17 UISearchBar by receiver",
          "13-14 -, 15-17 UISearchBar by receiver", "", "1 UISearchBar by receiver"}},
        {ENTRY(secureField),
         {"secureField", "r", "13-17 UITextField", "13-17 UITextField", "", "1 UITextField"}},
        {ENTRY(sheet),
         {"sheet", "a", "13-17 UIPresentationController by ancestor",
          "13-17 UIPresentationController by ancestor", "", "1 UISheetPresentationController by ancestor"}},
        {ENTRY(signInWithAppleButton),
         {"signInWithAppleButton", "r", "13 -, 14-17 ASAuthorizationAppleIDButton",
          "13 -, 14-17 ASAuthorizationAppleIDButton", "10.15-10.15.4 -, 11-14 ASAuthorizationAppleIDButton", "1 ASAuthorizationAppleIDButton"}},
        {ENTRY(slider), {"slider", "r", "13-17 UISlider", "", "", "1 UISlider"}},
        {ENTRY(stepper), {"stepper", "r", "13-17 UIStepper", "", "", "1 UIStepper"}},
        {ENTRY(table), {"table", "r", "13-17 UICollectionView", "", "", "1 UICollectionView"}},
        {ENTRY(tabView),
         {"tabView", "r", "13-17 UITabBarController by ancestor",
          "13-17 UITabBarController by ancestor", "", "1 UITabBarController by ancestor"}},
        {ENTRY(tabViewWithPageStyle),
         {"tabViewWithPageStyle", "r", "13 -, 14-17 UICollectionView",
          "13 -, 14-17 UICollectionView", "", "1 UICollectionView"}},
        {ENTRY(textEditor), {"textEditor", "r", "13 -, 14-17 UITextView", "", "", "1 UITextView"}},
        {ENTRY(textField), {"textField", "r", "13-17 UITextField", "13-17 UITextField", "", "1 UITextField"}},
        {ENTRY(textFieldWithVerticalAxis),
         {"textFieldWithVerticalAxis", "r", "13-15 -, 16-17 UITextView",
          "13-15 -, 16-17 UITextView", "", "1 UITextView"}},
        {ENTRY(toggle), {"toggle", "r", "13-17 UISwitch", "", "", "1 UISwitch"}},
        {ENTRY(toggleWithButtonStyle), {"toggleWithButtonStyle", "r", "", "", "", ""}},
        {ENTRY(toggleWithCheckboxStyle), {"toggleWithCheckboxStyle", "r", "", "", "", ""}},
        {ENTRY(toggleWithSwitchStyle),
         {"toggleWithSwitchStyle", "r", "13-17 UISwitch", "", "", "1 UISwitch"}},
        {ENTRY(videoPlayer),
         {"videoPlayer", "r", "13 -, 14-17 AVPlayerViewController",
          "13 -, 14-17 AVPlayerViewController", "", "1 AVPlayerViewController"}},
        {ENTRY(view), {"view", "r", "13-17 UIView", "13-17 UIView", "", "1 UIView"}},
        {ENTRY(viewController),
         {"viewController", "ra", "13-17 UIViewController",
          "13-17 UIViewController", "", "1 UIViewController"}},
        {ENTRY(window),
         {"window", "r", "13-17 UIWindow by receiver",
          "13-17 UIWindow by receiver", "", "1 UIWindow by receiver"}},
    };
    return all;
}
// clang-format on

} // namespace

TEST(ViewTypes, ResolveToTheClassesOfTheirPlatforms)
{
    for (const auto& [actual, expected] : catalogueTable())
        EXPECT_EQ(actual, expected);
}

TEST(ViewTypes, TheTableHoldsAll)
{
    EXPECT_EQ(catalogueTable().size(), 51u);
}

// What a sheet is in the second typing, from version 15 on.
TEST(ViewTypes, ASheetIsAlsoASheetPresentationController)
{
    EXPECT_EQ(fiveVersions<iOSVersion>(sheet.iOS.asSheet), "15-17 UISheetPresentationController by ancestor");
}

} // namespace introspect
