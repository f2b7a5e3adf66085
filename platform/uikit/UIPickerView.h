// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"
#include "platform/uikit/UIViewController.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace platform {

class UIPickerView;

// What stands on the wheels, and who is told of what is chosen. Main thread only.
class UIPickerViewDelegate {
public:
    virtual ~UIPickerViewDelegate() = default;
    virtual int numberOfComponents(const UIPickerView&) const { return 1; }
    virtual int numberOfRows(const UIPickerView&, int component) const = 0;
    // How wide a wheel is beside the others; positive.
    virtual double weightOfComponent(const UIPickerView&, int /*component*/) const { return 1; }
    // Whether a wheel stands to the right of the one before it in every layout direction, as minutes do beside hours: a clock
    // is read from left to right everywhere.
    virtual bool isReadAfterPrevious(const UIPickerView&, int /*component*/) const { return false; }
    virtual std::string titleForRow(const UIPickerView&, int row, int component) const = 0;
    // The user chose another row, once the wheel is let go.
    virtual void didSelectRow(UIPickerView&, int /*row*/, int /*component*/) { }
};

// Wheels of values to choose from, beside each other in reading order. A wheel is turned by dragging, by the mouse wheel,
// by clicks on its rows and by keys, and comes to rest on a row. Only the rows that are seen are asked for. Main thread only.
class UIPickerView : public UIView {
public:
    UIPickerView();
    explicit UIPickerView(CGRect frame);
    ~UIPickerView() override;

    void setDelegate(std::weak_ptr<UIPickerViewDelegate> delegate); // reloads
    // Asks for everything anew. What was selected stays where it is still there.
    void reloadAllComponents();
    int numberOfComponents() const { return static_cast<int>(wheels_.size()); }
    int selectedRow(int component) const; // -1 where there is none
    // Clamped. Tells nobody.
    void selectRow(int row, int component, Animated animated = Animated::no);
    bool isEnabled() const { return isEnabled_; }
    void setEnabled(bool isEnabled);

    void layoutSubviews() override;
    void draw(CGContext& context, CGRect dirty) override;
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(CGSize available) const override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    AccessibilityProperties accessibilityNow() const override;

private:
    class Wheel;
    std::string titleOf(int row, int component) const;
    void rowChosen(int component);
    CGFloat rowHeight() const;

    std::weak_ptr<UIPickerViewDelegate> delegate_;
    std::vector<std::shared_ptr<Wheel>> wheels_;
    bool isEnabled_ = true;
};

} // namespace platform
