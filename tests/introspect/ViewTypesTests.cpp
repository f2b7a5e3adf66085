// SPDX-License-Identifier: MIT
#include "tests/introspect/Catalogue.h"
#include "tests/introspect/MarkedStage.h"

#include <cxxabi.h>
#include <filesystem>
#include <gtest/gtest.h>

namespace introspect {

namespace {

constexpr std::string_view same = "as on iOS";

template <class Entity>
std::string nameOf()
{
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> name(
        abi::__cxa_demangle(typeid(Entity).name(), nullptr, nullptr, &status), std::free);
    return std::string(name.get()).substr(std::string_view("platform::").size());
}

// "-" where unavailable, else the class; with an arrow for the scope that is searched in a way of its own: down in the
// receiver, up among the ancestors.
template <class Version, class ViewType, class Entity>
std::string describe(const PlatformViewVersion<Version, ViewType, Entity>& constant)
{
    if (!constant.isAvailable())
        return "-";
    auto text = nameOf<Entity>();
    if (const auto own = constant.selector()) {
        const auto standard = IntrospectionSelector<Entity>::defaultSelector();
        if (own->receiverSelector.target_type() != standard.receiverSelector.target_type())
            text += "↓";
        if (own->ancestorSelector.target_type() != standard.ancestorSelector.target_type())
            text += "↑";
    }
    return text;
}

// The constants of a row as "13-15 UITableView, 16-17 UICollectionView".
struct RowText {
    template <class Version, class ViewType, class Entity>
    void add(const std::string& member, typename Version::Member expected,
             const PlatformViewVersion<Version, ViewType, Entity>& constant)
    {
        // A constant under another version's name would match on the wrong system.
        if (constant.isAvailable()) {
            EXPECT_EQ(constant.version(), &Version::member(expected)) << member;
        }
        if (auto text = describe(constant); runs.empty() || runs.back().text != text)
            runs.push_back({member, member, text});
        runs.back().last = member;
    }
    std::string string() const
    {
        std::string all;
        for (const auto& [first, last, text] : runs)
            all += (all.empty() ? "" : ", ") + first + (first == last ? "" : "-" + last) + " " + text;
        return all;
    }
    struct Run {
        std::string first, last, text;
    };
    std::vector<Run> runs;
};

template <class Row>
std::string textOf(const Row& row)
{
    RowText text;
#define ADD(Version, name, number)                                                                           \
    if constexpr (requires { text.add(number, Version::Member::name, row.name); })                           \
    text.add(number, Version::Member::name, row.name)
    ADD(iOSVersion, v13, "13");
    ADD(iOSVersion, v14, "14");
    ADD(iOSVersion, v15, "15");
    ADD(iOSVersion, v16, "16");
    ADD(iOSVersion, v17, "17");
    ADD(tvOSVersion, v13, "13");
    ADD(tvOSVersion, v14, "14");
    ADD(tvOSVersion, v15, "15");
    ADD(tvOSVersion, v16, "16");
    ADD(tvOSVersion, v17, "17");
    ADD(macOSVersion, v10_15, "10.15");
    ADD(macOSVersion, v10_15_4, "10.15.4");
    ADD(macOSVersion, v11, "11");
    ADD(macOSVersion, v12, "12");
    ADD(macOSVersion, v13, "13");
    ADD(macOSVersion, v14, "14");
    ADD(visionOSVersion, v1, "1");
#undef ADD
    return text.string();
}

// Where the content holds the entity, it is found there.
template <class ViewType, class Entity>
void expectReceiver(const PlatformViewVersion<iOSVersion, ViewType, Entity>& v17)
{
    if constexpr (ViewType::scope.contains(IntrospectionScope::receiver)
                  && !std::same_as<Entity, platform::UIWindow>) {
        MarkedStage stage;
        stage.addAnchor();
        const auto entity = stage.addNew<Entity>();
        stage.addProbe();
        EXPECT_EQ(iOS(v17).selector.value().find(*stage.probe, ViewType::scope), entity);
    }
}

template <IntrospectableViewType ViewType>
void expectRow(ViewType, std::string_view scope, std::string_view onIOS = "", std::string_view onTvOS = "",
               std::string_view onMacOS = "", std::string_view onVisionOS = "")
{
    EXPECT_EQ(ViewType::scope.contains(IntrospectionScope::receiver), scope.contains('r'));
    EXPECT_EQ(ViewType::scope.contains(IntrospectionScope::ancestor), scope.contains('a'));
    std::string actual[4];
    if constexpr (requires { ViewType::iOS; }) {
        actual[0] = textOf(ViewType::iOS);
        expectReceiver(ViewType::iOS.v17);
    }
    if constexpr (requires { ViewType::tvOS; })
        actual[1] = textOf(ViewType::tvOS);
    if constexpr (requires { ViewType::macOS; })
        actual[2] = textOf(ViewType::macOS);
    if constexpr (requires { ViewType::visionOS; })
        actual[3] = textOf(ViewType::visionOS);
    EXPECT_EQ(actual[0], onIOS);
    EXPECT_EQ(actual[1], onTvOS == same ? onIOS : onTvOS);
    EXPECT_EQ(actual[2], onMacOS);
    EXPECT_EQ(actual[3], onVisionOS);
}

} // namespace

// Scope, then the classes on iOS, tvOS, macOS and visionOS.
TEST(ViewTypes, ResolveToTheClassesOfTheirPlatformsAndFindThem)
{
    std::ptrdiff_t count = 0;
#define ROW(type, ...)                                                                                       \
    {                                                                                                        \
        SCOPED_TRACE(#type);                                                                                 \
        expectRow(type, __VA_ARGS__);                                                                        \
        ++count;                                                                                             \
    }
    // clang-format off
    ROW(button, "r")
    ROW(colorPicker, "r", "13 -, 14-17 UIColorWell", "", "", "1 UIColorWell")
    ROW(datePicker, "r", "13-17 UIDatePicker", "", "", "1 UIDatePicker")
    ROW(datePickerWithCompactStyle, "r", "13-17 UIDatePicker", "", "", "1 UIDatePicker")
    ROW(datePickerWithFieldStyle, "r")
    ROW(datePickerWithGraphicalStyle, "r", "13-17 UIDatePicker", "", "", "1 UIDatePicker")
    ROW(datePickerWithStepperFieldStyle, "r")
    ROW(datePickerWithWheelStyle, "r", "13-17 UIDatePicker", "", "", "1 UIDatePicker")
    ROW(fontPicker, "r", "13-17 UIFontPickerViewController", "", "", "1 UIFontPickerViewController")
    ROW(form, "r", "13-15 UITableView, 16-17 UICollectionView", same, "", "1 UICollectionView")
    ROW(formWithGroupedStyle, "r", "13-15 -, 16-17 UICollectionView", same, "", "1 UICollectionView")
    ROW(fullScreenCover, "a", "13 -, 14-17 UIPresentationController↑", same, "", "1 UIPresentationController↑")
    ROW(imagePicker, "r", "13-17 UIImagePickerController", "", "", "1 UIImagePickerController")
    ROW(list, "r", "13-15 UITableView, 16-17 UICollectionView", same, "", "1 UICollectionView")
    ROW(listCell, "a", "13-15 UITableViewCell, 16-17 UICollectionViewCell", same, "", "1 UICollectionViewCell")
    ROW(listWithBorderedStyle, "r")
    ROW(listWithGroupedStyle, "r", "13-15 UITableView, 16-17 UICollectionView", same, "", "1 UICollectionView")
    ROW(listWithInsetGroupedStyle, "r", "13-15 UITableView, 16-17 UICollectionView", "", "", "1 UICollectionView")
    ROW(listWithInsetStyle, "r", "13 -, 14-15 UITableView, 16-17 UICollectionView", "", "", "1 UICollectionView")
    ROW(listWithSidebarStyle, "r", "13 -, 14-15 UITableView, 16-17 UICollectionView", "", "", "1 UICollectionView")
    ROW(map, "r", "13 -, 14-17 MKMapView", same, "10.15-10.15.4 -, 11-14 MKMapView", "1 MKMapView")
    ROW(navigationSplitView, "r", "13-15 -, 16-17 UISplitViewController↑", same, "", "1 UISplitViewController↑")
    ROW(navigationStack, "r", "13-15 -, 16-17 UINavigationController↑", same, "", "1 UINavigationController↑")
    ROW(navigationViewWithColumnsStyle, "r", "13-17 UISplitViewController↑", same, "", "1 UISplitViewController↑")
    ROW(navigationViewWithStackStyle, "r", "13-17 UINavigationController↑", same, "", "1 UINavigationController↑")
    ROW(pageControl, "r", "13-17 UIPageControl", same, "", "1 UIPageControl")
    ROW(pickerWithMenuStyle, "r")
    ROW(pickerWithSegmentedStyle, "r", "13-17 UISegmentedControl", same, "", "1 UISegmentedControl")
    ROW(pickerWithWheelStyle, "r", "13-17 UIPickerView", "", "", "1 UIPickerView")
    ROW(popover, "a", "13-17 UIPopoverPresentationController↑", "", "", "1 UIPopoverPresentationController↑")
    ROW(progressViewWithCircularStyle, "r", "13-17 UIActivityIndicatorView", same, "", "1 UIActivityIndicatorView")
    ROW(progressViewWithLinearStyle, "r", "13-17 UIProgressView", same, "", "1 UIProgressView")
    ROW(scrollView, "r", "13-17 UIScrollView", same, "", "1 UIScrollView")
    ROW(searchField, "r", "13-14 -, 15-17 UISearchBar↓", same, "", "1 UISearchBar↓")
    ROW(secureField, "r", "13-17 UITextField", same, "", "1 UITextField")
    ROW(sheet, "a", "13-17 UIPresentationController↑", same, "", "1 UISheetPresentationController↑")
    ROW(signInWithAppleButton, "r", "13 -, 14-17 ASAuthorizationAppleIDButton", same,
        "10.15-10.15.4 -, 11-14 ASAuthorizationAppleIDButton", "1 ASAuthorizationAppleIDButton")
    ROW(slider, "r", "13-17 UISlider", "", "", "1 UISlider")
    ROW(stepper, "r", "13-17 UIStepper", "", "", "1 UIStepper")
    ROW(table, "r", "13-17 UICollectionView", "", "", "1 UICollectionView")
    ROW(tabView, "r", "13-17 UITabBarController↑", same, "", "1 UITabBarController↑")
    ROW(tabViewWithPageStyle, "r", "13 -, 14-17 UICollectionView", same, "", "1 UICollectionView")
    ROW(textEditor, "r", "13 -, 14-17 UITextView", "", "", "1 UITextView")
    ROW(textField, "r", "13-17 UITextField", same, "", "1 UITextField")
    ROW(textFieldWithVerticalAxis, "r", "13-15 -, 16-17 UITextView", same, "", "1 UITextView")
    ROW(toggle, "r", "13-17 UISwitch", "", "", "1 UISwitch")
    ROW(toggleWithButtonStyle, "r")
    ROW(toggleWithCheckboxStyle, "r")
    ROW(toggleWithSwitchStyle, "r", "13-17 UISwitch", "", "", "1 UISwitch")
    ROW(videoEditor, "r", "13-17 UIVideoEditorController", "", "", "1 UIVideoEditorController")
    ROW(videoPlayer, "r", "13 -, 14-17 AVPlayerViewController", same, "", "1 AVPlayerViewController")
    ROW(view, "r", "13-17 UIView", same, "", "1 UIView")
    ROW(viewController, "ra", "13-17 UIViewController", same, "", "1 UIViewController")
    ROW(window, "r", "13-17 UIWindow↓", same, "", "1 UIWindow↓")
    // clang-format on
#undef ROW
    const std::filesystem::directory_iterator headers(ZELK_SOURCE_DIR "/introspect/ViewTypes");
    EXPECT_EQ(count,
              std::ranges::count_if(
                  headers, [](const auto& entry) { return entry.path().string().ends_with("Type.h"); }))
        << "a row for each";
}

// What a sheet is in the second typing, from version 15 on.
TEST(ViewTypes, ASheetIsAlsoASheetPresentationController)
{
    EXPECT_EQ(textOf(sheet.iOS.asSheet), "15-17 UISheetPresentationController↑");
}

} // namespace introspect
