// SPDX-License-Identifier: MIT
#include "platform/uikit/UIDatePicker.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/DateFormatter.h"
#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/UIPickerView.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace platform {

namespace {

using Component = Calendar::Component;

constexpr int lastYear = 9999;
constexpr double secondsOfADay = 24 * 60 * 60;

std::vector<Component> componentsOf(UIDatePickerMode mode)
{
    using enum Component;
    switch (mode) {
    case UIDatePickerMode::time:
        return {hour, minute};
    case UIDatePickerMode::date:
        return {day, month, year};
    case UIDatePickerMode::dateAndTime:
        break;
    }
    return {day, month, year, hour, minute};
}

// What the first row of a wheel stands for.
std::int64_t firstOf(Component component)
{
    return component == Component::hour || component == Component::minute ? 0 : 1;
}

std::string twoDigits(int number)
{
    std::string text(number < 10 ? "0" : "");
    return text.append(std::to_string(number));
}

} // namespace

// What stands on the wheels.
class UIDatePicker::Columns : public UIPickerViewDelegate {
public:
    explicit Columns(UIDatePicker& picker)
        : picker_(picker)
        , components(componentsOf(picker.mode_))
    {
    }
    int numberOfComponents(const UIPickerView&) const override { return static_cast<int>(components.size()); }
    int numberOfRows(const UIPickerView&, int column) const override
    {
        switch (components[static_cast<std::size_t>(column)]) {
        case Component::hour:
            return 24;
        case Component::minute:
            return 60;
        case Component::day:
            return count(Component::day, Component::month);
        case Component::month:
            return count(Component::month, Component::year);
        default:
            return lastYear;
        }
    }
    double weightOfComponent(const UIPickerView&, int column) const override
    {
        switch (components[static_cast<std::size_t>(column)]) {
        case Component::month:
            return components.size() > 3 ? 1.4 : 2;
        case Component::year:
            return 1.3;
        default:
            return 1;
        }
    }
    bool isReadAfterPrevious(const UIPickerView&, int column) const override
    {
        return components[static_cast<std::size_t>(column)] == Component::minute;
    }
    std::string titleForRow(const UIPickerView&, int row, int column) const override
    {
        auto component = components[static_cast<std::size_t>(column)];
        if (component == Component::month) {
            auto date = moved(component, row);
            auto* pattern = components.size() > 3 ? "LLL" : "LLLL"; // short where it is narrow
            return date ? DateFormatter(pattern, picker_.calendar_).string(*date) : std::string();
        }
        bool isClock = component == Component::hour || component == Component::minute;
        auto number = row + static_cast<int>(firstOf(component));
        return isClock ? twoDigits(number) : std::to_string(number);
    }
    void didSelectRow(UIPickerView&, int row, int column) override
    {
        picker_.choose(components[static_cast<std::size_t>(column)], row);
    }
    // The date with the component as that row has it.
    std::optional<Date> moved(Component component, int row) const
    {
        auto now = picker_.calendar_.component(component, picker_.date_);
        if (!now)
            return std::nullopt;
        return picker_.calendar_.dateByAdding(component, row + firstOf(component) - *now, picker_.date_);
    }
    int rowOf(Component component) const
    {
        return static_cast<int>(
            picker_.calendar_.component(component, picker_.date_).value_or(firstOf(component))
            - firstOf(component));
    }

private:
    // How many of `part` the present `whole` has: from its first one to that of the next.
    int count(Component part, Component whole) const
    {
        constexpr int most = 64;
        auto first = moved(part, 0);
        auto next = first ? picker_.calendar_.dateByAdding(whole, 1, *first) : std::nullopt;
        if (!next)
            return rowOf(part) + 1;
        if (part == Component::day)
            return std::clamp(
                static_cast<int>(
                    std::round((next->timeIntervalSince1970 - first->timeIntervalSince1970) / secondsOfADay)),
                1, most);
        for (int months = 1; months < most; ++months) {
            auto later = picker_.calendar_.dateByAdding(part, months, *first);
            if (!later || *later >= *next)
                return months;
        }
        return most;
    }

    UIDatePicker& picker_; // the owner

public:
    const std::vector<Component> components;
};

UIDatePicker::UIDatePicker(UIDatePickerMode mode)
    : mode_(mode)
{
    setUp();
}

UIDatePicker::UIDatePicker(CGRect frame)
    : UIControl(frame)
    , mode_(UIDatePickerMode::dateAndTime)
{
    setUp();
}

UIDatePicker::~UIDatePicker()
{
    wheels_->setDelegate({});
}

void UIDatePicker::setUp()
{
    wheels_ = std::make_shared<UIPickerView>();
    addSubview(wheels_);
    reload();
}

void UIDatePicker::reload()
{
    columns_ = std::make_shared<Columns>(*this);
    wheels_->setDelegate(columns_);
    show(Animated::no);
}

// --- The date ------------------------------------------------------------------------------------

Date UIDatePicker::limited(Date date) const
{
    if (maximum_ && date > *maximum_)
        date = *maximum_;
    if (minimum_ && date < *minimum_)
        date = *minimum_;
    return date;
}

void UIDatePicker::setDate(Date date, Animated animated)
{
    assertOnMainThread();
    if (!calendar_.component(Component::year, date))
        return;
    auto wanted = limited(date);
    if (std::exchange(date_, wanted) == wanted)
        return;
    show(animated);
    notifyAccessibility(*this, AccessibilityEvent::valueChanged);
}

void UIDatePicker::setMinimumDate(std::optional<Date> date)
{
    minimum_ = date;
    setDate(limited(date_));
}

void UIDatePicker::setMaximumDate(std::optional<Date> date)
{
    maximum_ = date;
    setDate(limited(date_));
}

void UIDatePicker::setDatePickerMode(UIDatePickerMode mode)
{
    assertOnMainThread();
    if (std::exchange(mode_, mode) != mode)
        reload();
}

void UIDatePicker::setCalendar(Calendar calendar)
{
    assertOnMainThread();
    calendar_ = std::move(calendar);
    reload();
}

// The rows of the date; the month decides how many days there are.
void UIDatePicker::show(Animated animated)
{
    wheels_->reloadAllComponents();
    for (int column = 0; column < wheels_->numberOfComponents(); ++column)
        wheels_->selectRow(columns_->rowOf(columns_->components[static_cast<std::size_t>(column)]), column,
                           animated);
}

void UIDatePicker::choose(Component component, int row)
{
    auto keepAlive = weak_from_this().lock();
    auto wish = columns_->moved(component, row);
    auto before = date_;
    if (wish)
        setDate(*wish, Animated::yes);
    show(Animated::yes); // where it was, if it was refused
    if (date_ != before)
        sendActions({UIControlEvents::valueChanged});
}

// --- Look ----------------------------------------------------------------------------------------

void UIDatePicker::controlStateChanged()
{
    wheels_->setEnabled(isEnabled());
}

void UIDatePicker::layoutSubviews()
{
    UIControl::layoutSubviews();
    wheels_->setSemanticContentAttribute(semanticContentAttribute());
    wheels_->setFrame(bounds());
}

CGSize UIDatePicker::intrinsicContentSize() const
{
    return wheels_->intrinsicContentSize();
}

CGSize UIDatePicker::sizeThatFits(CGSize available) const
{
    constexpr CGFloat widthOfAWheel = 84;
    auto usual = widthOfAWheel * wheels_->numberOfComponents();
    auto width =
        std::isfinite(available.width) && available.width > 0 ? std::min(available.width, usual) : usual;
    return {width, intrinsicContentSize().height};
}

AccessibilityProperties UIDatePicker::accessibilityNow() const
{
    auto properties = UIControl::accessibilityNow();
    if (properties.role == AccessibilityRole::none)
        properties.role = AccessibilityRole::group;
    return properties;
}

} // namespace platform
