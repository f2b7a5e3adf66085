// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Calendar.h"
#include "platform/uikit/UIControl.h"
#include "platform/uikit/UIViewController.h"

#include <memory>
#include <optional>
#include <vector>

namespace platform {

class UIPickerView;

enum class UIDatePickerMode {
    time,       // hours and minutes, of 24
    date,       // day, month and year
    dateAndTime // all five
};

// A choice of a date, a time of day, or both, on wheels, by a calendar. A day that a month does not have becomes its last.
// Sends valueChanged when the user chose another date. Main thread only.
class UIDatePicker : public UIControl {
public:
    explicit UIDatePicker(UIDatePickerMode mode = UIDatePickerMode::dateAndTime);
    explicit UIDatePicker(CGRect frame);
    ~UIDatePicker() override;

    Date date() const { return date_; } // at first the beginning of 1970 in UTC
    // Kept between the limits; one that is no number, or beyond the calendar, is ignored. Tells nobody.
    void setDate(Date date, Animated animated = Animated::no);
    // None: no limit. A limit that crosses the other holds before it.
    void setMinimumDate(std::optional<Date> date);
    void setMaximumDate(std::optional<Date> date);
    UIDatePickerMode datePickerMode() const { return mode_; }
    void setDatePickerMode(UIDatePickerMode mode);
    const Calendar& calendar() const { return calendar_; } // default: the user's
    void setCalendar(Calendar calendar);

    void layoutSubviews() override;
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(CGSize available) const override;
    bool canBecomeFirstResponder() const override { return false; } // its wheels can
    AccessibilityProperties accessibilityNow() const override;
    bool accessibilityActivate() override { return false; }

protected:
    void controlStateChanged() override;

private:
    class Columns;
    void setUp();
    Date limited(Date date) const;
    void show(Animated animated);
    void reload();
    void choose(Calendar::Component component, int row);

    Calendar calendar_ = Calendar::current();
    UIDatePickerMode mode_;
    Date date_;
    std::optional<Date> minimum_, maximum_;
    std::shared_ptr<Columns> columns_;
    std::shared_ptr<UIPickerView> wheels_;
};

} // namespace platform
